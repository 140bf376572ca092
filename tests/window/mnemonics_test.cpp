// The keys of buttons and menus.
#include <QButtonGroup>
#include <QLabel>
#include <QMenuBar>
#include <QStackedWidget>
#include <QTabWidget>
#include <map>
#include <set>

#include "forms/controls.h"
#include "panels/single_channel/kvt71346.h"
#include "support/keyboard_window.h"
#include "window/bench_window.h"
#include "window/bus_trace_window.h"
#include "window/mnemonics.h"

namespace varzelin::testing {
namespace {

using WindowMnemonics = KeyboardWindow;

QChar key_of(const QString& caption) {
  for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] != '&') return caption[i + 1].toUpper();
    ++i;
  }
  return {};
}

// A caption with the widget that it stands on; none for a menu.
struct Marked {
  QString text;
  const QWidget* widget = nullptr;
};
// Those that a key of their own is for: a button of a group goes by the group's.
std::vector<Marked> marked_captions(const QWidget& window) {
  std::vector<Marked> captions;
  if (const auto* main = qobject_cast<const QMainWindow*>(&window)) {
    for (const QAction* menu : main->menuBar()->actions()) captions.push_back({menu->text()});
  }
  for (const QAbstractButton* button : window.findChildren<QAbstractButton*>()) {
    const bool has_key = qobject_cast<const QPushButton*>(button) || !key_of(button->text()).isNull();
    if (has_key && !button->group()) captions.push_back({button->text(), button});
  }
  for (const QLabel* label : window.findChildren<QLabel*>()) {
    if (label->buddy()) captions.push_back({label->text(), label});
  }
  return captions;
}

bool on_different_pages(const QWidget* one, const QWidget* other) {
  for (const QWidget* page = one; page && page->parentWidget(); page = page->parentWidget()) {
    const QWidget* stack = page->parentWidget();
    if (qobject_cast<const QStackedWidget*>(stack) && stack->isAncestorOf(other) &&
        !page->isAncestorOf(other)) {
      return true;
    }
  }
  return false;
}

// The start and the stop of a timed run stand in one place.
bool in_one_place(const QWidget& one, const QWidget& other) {
  const std::set<QString> names{one.objectName(), other.objectName()};
  return names == std::set<QString>{"cmdSample", "cmdEndSampling"} && one.isHidden() != other.isHidden();
}

bool never_in_sight_together(const QWidget* one, const QWidget* other) {
  return one && other && (on_different_pages(one, other) || in_one_place(*one, *other));
}

void expect_keys(const QWidget& window) {
  SCOPED_TRACE(window.objectName().toStdString());
  const std::vector<Marked> captions = marked_captions(window);
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const QChar key = key_of(captions[i].text);
    EXPECT_FALSE(key.isNull()) << "no key: " << captions[i].text.toStdString();
    for (std::size_t other = 0; other < i; ++other) {
      if (key_of(captions[other].text) != key) continue;
      EXPECT_TRUE(never_in_sight_together(captions[other].widget, captions[i].widget))
          << captions[other].text.toStdString() << " and " << captions[i].text.toStdString();
    }
  }
}

TEST_F(WindowMnemonics, EveryButtonAndMenuHasAKeyThatNothingElseInSightHas) {
  std::map<std::string, qsizetype> in_groups;
  for (const std::string& form : program.forms.names()) {
    show(form);
    expect_keys(window_of(form));
    for (const QButtonGroup* group : window_of(form).findChildren<QButtonGroup*>())
      in_groups[form] += group->buttons().size();
  }
  expect_keys(*windows.bench());
  entry("frmKVT71346", "Bus Trace")->trigger();
  expect_keys(*windows.bus_trace());
  EXPECT_EQ(in_groups,
            (std::map<std::string, qsizetype>{
                {"frmKVT71385", 18}, {"frmKVT71388", 18}, {"frmKVT71390", 18}, {"frmKVT71392", 18}}));
}

TEST_F(WindowMnemonics, AMarkThatACaptionCameWithStays) {
  QWidget window;
  QPushButton came_with("&AB", &window);
  QPushButton other("A", &window);
  window::mark_keys(window);
  EXPECT_EQ(came_with.text(), "&AB");
  EXPECT_EQ(other.text(), "A");
}

TEST_F(WindowMnemonics, AMarkMovesOnlyForACaptionThatFindsNoOtherKey) {
  QWidget window;
  QPushButton first("AB", &window);
  QPushButton second("C", &window);
  window::mark_keys(window);
  EXPECT_EQ(first.text(), "&AB");
  second.setText("AC");
  window::mark_keys(window);
  EXPECT_EQ(first.text(), "&AB");
  EXPECT_EQ(second.text(), "A&C");
  second.setText("A");
  window::mark_keys(window);
  EXPECT_EQ(first.text(), "A&B");
  EXPECT_EQ(second.text(), "&A");
}

TEST_F(WindowMnemonics, EveryCaptionThatAButtonTakesHasAKey) {
  for (int row = 0; row < 10; ++row) {
    choose_model(row);
    const std::string form = program.forms.front()->name();
    SCOPED_TRACE(form);
    const auto change = [&](const char* button, int index, const char* caption) {
      forms::Control* control = program.forms.loaded(form)->find(button, index);
      if (!control) return;
      dynamic_cast<forms::CommandButton&>(*control).Caption = caption;
      turn();
      EXPECT_EQ(widget<QPushButton>(form, control->full_name().c_str()).text().remove('&'), caption);
      expect_keys(window_of(form));
    };
    change("cmdCollectData", -1, "Real Time data display is executing, Click -Stop Real Time- to End");
    change("cmdCollectData", -1, "Collect Data Graphical Real Time Data");
    change("cmdStartRec", 0, "Save More Measurements");
    change("cbReset", -1, "Resetting ADC");
    change("cbReset", -1, "Reset");
    program.runtime.dispatch([&] { program.forms.unload(*program.forms.loaded(form)); });
    show("frmStartup");
  }
}

TEST_F(WindowMnemonics, AKeyStaysWithItsButtonWhenAnotherCaptionChanges) {
  choose_model(0);
  const auto keys = [this] {
    std::map<std::string, QChar> found;
    for (const QPushButton* button : window_of("frmKVT71346").findChildren<QPushButton*>())
      found[button->objectName().toStdString()] = key_of(button->text());
    return found;
  };
  auto before = keys();
  program.forms.touch<frmKVT71346>().cmdCollectData.Caption = "Collect Data Graphical Real Time Data";
  turn();
  before["cmdCollectData"] = keys()["cmdCollectData"];
  EXPECT_EQ(keys(), before);
}

void bring_page_forward(const QPushButton& button) {
  for (QWidget* each = button.parentWidget(); each; each = each->parentWidget()) {
    auto* tabs = qobject_cast<QTabWidget*>(each);
    for (int page = 0; tabs && page < tabs->count(); ++page) {
      if (tabs->widget(page)->isAncestorOf(&button)) tabs->setCurrentIndex(page);
    }
  }
}

TEST_F(WindowMnemonics, AKeyThatPagesSharePressesTheButtonOnThePageInFront) {
  constexpr const char* form = "frmKVT71385";
  choose_model(4);
  front(form);
  std::map<QChar, std::vector<QPushButton*>> by_key;
  for (QPushButton* button : window_of(form).findChildren<QPushButton*>())
    by_key[key_of(button->text())].push_back(button);
  by_key.erase(QChar());
  int shared = 0;
  for (const auto& [key, buttons] : by_key) {
    for (QPushButton* button : buttons) {
      if (buttons.size() == 1) continue;
      bring_page_forward(*button);
      if (!button->isVisible() || !button->isEnabled()) continue;
      ++shared;
      QTest::keyClick(&window_of(form), static_cast<Qt::Key>(key.unicode()), Qt::AltModifier);
      for (const QPushButton* each : buttons) {
        EXPECT_EQ(each->isDown(), each == button)
            << each->text().toStdString() << " with " << button->text().toStdString();
      }
      button->setDown(false);
    }
  }
  EXPECT_GT(shared, 3);
}

TEST_F(WindowMnemonics, AKeyLeadsToTheButtonsOfATableAndTheArrowsGoOn) {
  constexpr const char* form = "frmKVT71385";
  choose_model(4);
  front(form);
  const auto has_focus = [&](const char* name) {
    return QApplication::focusWidget()->objectName().toStdString() == name;
  };
  std::string pressed;
  for (QPushButton* button : window_of(form).findChildren<QPushButton*>()) {
    QObject::connect(button, &QPushButton::pressed, button,
                     [&pressed, button] { pressed += button->objectName().toStdString(); });
  }
  for (const auto& [words, first] : {std::pair{"Write", "cmdWrtReg(0)"}, {"Read", "cmdRDReg(0)"}}) {
    for (const QLabel* label : window_of(form).findChildren<QLabel*>()) {
      if (!label->buddy() || QString(label->text()).remove('&') != words) continue;
      EXPECT_TRUE(label->isVisible());
      press(static_cast<Qt::Key>(key_of(label->text()).unicode()), Qt::AltModifier);
    }
    EXPECT_TRUE(has_focus(first)) << QApplication::focusWidget()->objectName().toStdString();
  }
  press(Qt::Key_Right);
  press(Qt::Key_Right);
  EXPECT_TRUE(has_focus("cmdRDReg(2)")) << QApplication::focusWidget()->objectName().toStdString();
  press(Qt::Key_Up);
  EXPECT_TRUE(has_focus("cmdWrtReg(2)")) << QApplication::focusWidget()->objectName().toStdString();
  press(Qt::Key_Left);
  EXPECT_TRUE(has_focus("cmdWrtReg(1)")) << QApplication::focusWidget()->objectName().toStdString();
  EXPECT_EQ(pressed, "");
  press(Qt::Key_Down);
  EXPECT_TRUE(has_focus("cmdRDReg(1)")) << QApplication::focusWidget()->objectName().toStdString();
  press(Qt::Key_Return);
  EXPECT_EQ(pressed, "cmdRDReg(1)");
}

}  // namespace
}  // namespace varzelin::testing
