// Message boxes, input boxes and file dialogs. All but ask_for_file return when the user has answered.
#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <string>

#include "forms/runtime.h"

class QWidget;

namespace window {

int show_message(QWidget* parent, const forms::MessageBox& box, const QString& title_suffix);
std::optional<std::string> ask_text(QWidget* parent, const forms::InputBoxRequest& request,
                                    const QString& title_suffix);

struct FileChoice {
  QString& folder;       // where the dialog begins, unless empty, and the folder of the file that was chosen
  bool replaces = true;  // a file to write takes the place of one that is there: the user is asked
};
std::optional<std::string> choose_file(QWidget* parent, const forms::FileDialog& dialog,
                                       const QString& title_suffix, const FileChoice& choice);
// The same beside the running program: it returns at once, and `take` comes with the file, or never. The
// choice's folder outlives the dialog.
void ask_for_file(QWidget& parent, const forms::FileDialog& dialog, const QString& title_suffix,
                  const FileChoice& choice, std::function<void(const QString& path)> take);

// "text|pattern|text|pattern" as Qt's name filters: "text (pattern)", a pattern in the text dropped.
QStringList name_filters(const std::string& filter);

}  // namespace window
