#include "window/dialogs.h"

#include <QApplication>
#include <QComboBox>
#include <QEventLoop>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <utility>

#include "shell/application.h"
#include "window/look.h"

namespace window {
namespace {

struct Answer {
  int number;
  QMessageBox::StandardButton button;
};
constexpr Answer answers[] = {{forms::vbOK, QMessageBox::Ok},
                              {forms::vbCancel, QMessageBox::Cancel},
                              {forms::vbRetry, QMessageBox::Retry},
                              {forms::vbYes, QMessageBox::Yes},
                              {forms::vbNo, QMessageBox::No}};

QMessageBox::Icon icon_of(int buttons) {
  constexpr int icon_bits = 0x70;
  switch (buttons & icon_bits) {
    case 16:
      return QMessageBox::Critical;
    case 32:
      return QMessageBox::Question;
    case 48:
      return QMessageBox::Warning;
    case 64:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

QString title_of(const std::string& title, const QString& suffix) {
  return (title.empty() ? QString(varzelin::application_title) : to_qt(title)) + suffix;
}

}  // namespace

namespace {

// Where no window manager does it, the focus goes back by hand to the window that had it before a dialog.
class FocusComesBack {
 public:
  FocusComesBack() : window_(QApplication::activeWindow()) {}
  ~FocusComesBack() {
    if (window_) window_->activateWindow();
  }
  FocusComesBack(const FocusComesBack&) = delete;
  FocusComesBack& operator=(const FocusComesBack&) = delete;

 private:
  QPointer<QWidget> window_;
};

}  // namespace

int show_message(QWidget* parent, const forms::MessageBox& message, const QString& title_suffix) {
  const FocusComesBack focus;
  QMessageBox box(icon_of(message.buttons), title_of(message.title, title_suffix), to_qt(message.text),
                  QMessageBox::NoButton, parent);
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);  // some texts name a command to be typed
  const auto possible = message.answers();
  for (const int answer : possible) {
    for (const Answer& each : answers) {
      if (each.number != answer) continue;
      QPushButton* button = box.addButton(each.button);
      if (answer == possible.front()) box.setDefaultButton(button);
    }
  }
  const int clicked = box.exec();
  for (const Answer& each : answers) {
    if (each.button == clicked) return each.number;
  }
  return possible.back();
}

std::optional<std::string> ask_text(QWidget* parent, const forms::InputBoxRequest& request,
                                    const QString& title_suffix) {
  const FocusComesBack focus;
  bool accepted = false;
  const QString text =
      QInputDialog::getText(parent, title_of(request.title, title_suffix), to_qt(request.prompt),
                            QLineEdit::Normal, to_qt(request.default_text), &accepted);
  if (!accepted) return std::nullopt;
  return text.toStdString();
}

QStringList name_filters(const std::string& filter) {
  QStringList filters;
  const QStringList parts = to_qt(filter).split('|');
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString name = parts[i];
    if (const auto bracket = name.lastIndexOf('('); bracket >= 0) name.truncate(bracket);
    QString pattern = parts[i + 1];
    pattern.replace(';', ' ');
    if (pattern == "*.*") pattern = "*";
    filters << name.trimmed() + " (" + pattern + ")";
  }
  return filters;
}

namespace {

// The file for measurements is chosen by a dialog to open, and written.
bool writes(const forms::FileDialog& request) {
  return request.save || request.title == "Select File For Recording";
}
// The workbench's rows don't reach its file.
bool writes_empty_file(const forms::FileDialog& request) {
  return request.save && request.filter.find("*.kvt") != std::string::npos;
}

QString title_of(const forms::FileDialog& request, const QString& suffix) {
  if (writes_empty_file(request)) return "Save Setup: the file will be empty" + suffix;
  if (!writes(request)) return title_of(request.title, suffix);
  return (request.title.empty() ? QString("Save") : "Save: " + to_qt(request.title)) + suffix;
}

// Qt names all parts of its file dialog but these. The desktop's own dialog has none of them.
void name_drop_downs(const QFileDialog& dialog) {
  for (const auto& [name, words] :
       {std::pair("lookInCombo", "Look in"), std::pair("fileTypeCombo", "Files of type")}) {
    if (auto* drop_down = dialog.findChild<QComboBox*>(name)) drop_down->setAccessibleName(words);
  }
}

// Shown until the user has chosen a file that may be taken, or none.
class FileQuestion final : public QFileDialog {
 public:
  FileQuestion(QWidget* parent, const forms::FileDialog& request, const QString& title_suffix,
               const FileChoice& choice, Qt::WindowModality modality)
      : QFileDialog(parent, title_of(request, title_suffix)),
        choice_(choice),
        writes_(writes(request)),
        writes_empty_(writes_empty_file(request)) {
    setWindowModality(modality);
    setAcceptMode(writes_ ? AcceptSave : AcceptOpen);
    setFileMode(writes_ ? AnyFile : ExistingFile);
    setOption(DontConfirmOverwrite);  // it is asked here, in words of what is lost
    if (const QStringList filters = name_filters(request.filter); !filters.isEmpty()) {
      setNameFilters(filters);
      selectNameFilter(filters.value(std::max(0, request.filter_index - 1), filters.front()));
    }
    setDefaultSuffix(to_qt(request.default_extension).remove('*'));
    name_drop_downs(*this);
    propose(QFileInfo(to_qt(request.filename)));
    connect(this, &QDialog::finished, this, &FileQuestion::closed);
  }

  std::function<void(const std::optional<QString>& path)> answered;

 private:
  void propose(const QFileInfo& file) {
    if (!choice_.folder.isEmpty()) setDirectory(choice_.folder);
    if (!file.filePath().isEmpty()) selectFile(choice_.folder.isEmpty() ? file.filePath() : file.fileName());
  }

  void closed(int result) {
    if (result == Rejected || selectedFiles().isEmpty()) return answered(std::nullopt);
    const QFileInfo chosen(selectedFiles().front());
    if (writes_ && choice_.replaces && chosen.exists()) {
      ask_to_replace(chosen);
    } else {
      take(chosen);
    }
  }

  void ask_to_replace(const QFileInfo& chosen) {
    const bool empties = writes_empty_ && chosen.size() > 0;
    auto* box = new QMessageBox(QMessageBox::Warning, windowTitle(), chosen.fileName() + " is there already.",
                                QMessageBox::NoButton, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(windowModality());
    box->setInformativeText(
        empties ? "Saving empties it: what it holds is lost, and no register is written to it."
                : "Writing replaces what it holds.");
    QPushButton* replace = box->addButton(empties ? "&Empty It" : "&Replace It", QMessageBox::AcceptRole);
    box->setDefaultButton(box->addButton(QMessageBox::Cancel));
    connect(box, &QDialog::finished, this, [this, box, replace, chosen] {
      if (box->clickedButton() == replace) {
        take(chosen);
      } else {
        show();
      }
    });
    box->show();
  }

  void take(const QFileInfo& chosen) {
    choice_.folder = chosen.absolutePath();
    answered(chosen.filePath());
  }

  FileChoice choice_;
  bool writes_;
  bool writes_empty_;
};

}  // namespace

std::optional<std::string> choose_file(QWidget* parent, const forms::FileDialog& request,
                                       const QString& title_suffix, const FileChoice& choice) {
  const FocusComesBack focus;
  QEventLoop until_answered;
  std::optional<std::string> answer;
  FileQuestion question(parent, request, title_suffix, choice, Qt::ApplicationModal);
  question.answered = [&](const std::optional<QString>& path) {
    if (path) answer = path->toStdString();
    until_answered.quit();
  };
  question.show();
  until_answered.exec(QEventLoop::DialogExec);
  return answer;
}

void ask_for_file(QWidget& parent, const forms::FileDialog& request, const QString& title_suffix,
                  const FileChoice& choice, std::function<void(const QString& path)> take) {
  auto* question = new FileQuestion(&parent, request, title_suffix, choice, Qt::WindowModal);
  question->answered = [question, take = std::move(take)](const std::optional<QString>& path) {
    question->deleteLater();
    if (path) take(*path);
  };
  question->show();
}

}  // namespace window
