// The way of the Tab key through a window.
#pragma once

class QWidget;

namespace window {

// Sets the order in which the Tab key goes through what stands on `content`: that in which it is read, column
// by column and line by line, as its layouts have it. The first one has the focus when the window comes.
void set_tab_order(QWidget& content);

}  // namespace window
