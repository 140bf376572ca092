#include "window/signal_watch.h"

#include <QApplication>
#include <QDialog>
#include <utility>

#include "shell/ending.h"
#include "window/window_front_end.h"

namespace window {

SignalWatch::SignalWatch(varzelin::Program& program, WindowFrontEnd& front_end,
                         const forms::EndSignals& end_signals)
    : notifier_(end_signals.descriptor(), QSocketNotifier::Read) {
  varzelin::end_on(program, end_signals);
  front_end.end_on(end_signals);
  // Comes again as long as Qt gets turns, so for a dialog behind the dialog, too.
  QObject::connect(&notifier_, &QSocketNotifier::activated, [this, &program] {
    if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
    if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
    if (!std::exchange(posted_, true)) program.runtime.post([this] { posted_ = false; });
  });
}

}  // namespace window
