// Controls and their widgets in step, on a form with every kind of control.
#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QWheelEvent>

#include "support/sample_form.h"
#include "support/window_program.h"
#include "window/lamp.h"

namespace varzelin::testing {
namespace {

using Events = std::vector<std::string>;

struct WindowControls : WindowProgram {
  SampleForm* form = nullptr;

  void SetUp() override {
    program.forms.add(SampleForm::form_name, [this](const std::string&) {
      auto made = std::make_unique<SampleForm>(program.forms);
      form = made.get();
      made->grid.AddColumn("Adr", 40);
      made->grid.set_rows(2);
      return made;
    });
    show(SampleForm::form_name);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_of(SampleForm::form_name)));
    turn();
    form->events.clear();
  }
  template <class Widget>
  Widget& widget(const char* name) {
    return WindowProgram::widget<Widget>(SampleForm::form_name, name);
  }
  // Events of one kind, in order.
  Events events(const std::string& kind) const {
    Events found;
    for (const std::string& event : form->events) {
      if (event.ends_with(kind)) found.push_back(event);
    }
    return found;
  }
};

TEST_F(WindowControls, AFormThatIsClosedWhileItTakesItsNewSizeStaysUntilItHasDoneSo) {
  bool stays = false;
  form->on_resize = [&] {
    program.runtime.post([this] { program.forms.unload(SampleForm::form_name); });
    program.runtime.DoEvents();
    EXPECT_FALSE(program.forms.loaded(SampleForm::form_name));
    stays = program.runtime.is_kept(*form);
  };
  window_of(SampleForm::form_name).resize(700, 500);
  turn();
  EXPECT_TRUE(stays);
}

// It would write to a sensor, or open a panel.
TEST_F(WindowControls, ATurnOfTheWheelChoosesNothingInADropDown) {
  auto& drop_down = widget<QComboBox>("cbo");
  for (const bool focused : {false, true}) {
    if (focused) drop_down.setFocus();
    EXPECT_EQ(drop_down.hasFocus(), focused);
    QWheelEvent turned({5, 5}, drop_down.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                       Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&drop_down, &turned);
    EXPECT_FALSE(turned.isAccepted());
    turn();
    EXPECT_EQ(form->cbo.ListIndex, -1);
    EXPECT_EQ(drop_down.currentIndex(), -1);
  }
}

TEST_F(WindowControls, EveryControlHasItsWidget) {
  for (const forms::Control* control : form->controls()) {
    if (control->kind() == forms::Kind::Timer || control->kind() == forms::Kind::CommonDialog) continue;
    const QString name = QString::fromStdString(control->full_name());
    if (control->kind() == forms::Kind::Menu) {
      EXPECT_TRUE(window_of(SampleForm::form_name).menuBar()->findChild<QAction*>(name)) << control->name();
    } else {
      EXPECT_TRUE(window_of(SampleForm::form_name).findChild<QWidget*>(name)) << control->name();
    }
  }
}

TEST_F(WindowControls, HandlersRunInTheMessageLoopAndNotInQt) {
  QTest::mouseClick(&widget<QPushButton>("cmd"), Qt::LeftButton);
  EXPECT_TRUE(events("Click").empty());
  turn();
  EXPECT_EQ(events("Click"), Events{"cmd Click"});
}

TEST_F(WindowControls, AControlDisabledBeforeItsTurnIsNotClicked) {
  QTest::mouseClick(&widget<QPushButton>("cmd"), Qt::LeftButton);
  form->cmd.Enabled = false;
  turn();
  EXPECT_TRUE(events("Click").empty());
}

TEST_F(WindowControls, AControlInADisabledFrameIsNotClicked) {
  QTest::mouseClick(&widget<QRadioButton>("opt(1)"), Qt::LeftButton, {}, QPoint(8, 8));
  form->fra.Enabled = false;
  turn();
  EXPECT_TRUE(events("Click").empty());
  EXPECT_FALSE(widget<QRadioButton>("opt(1)").isChecked());
}

TEST_F(WindowControls, ClicksOfAFormThatIsGoneAreDropped) {
  QTest::mouseClick(&widget<QPushButton>("cmd"), Qt::LeftButton);
  program.forms.unload(*form);
  EXPECT_FALSE(windows.window_of(SampleForm::form_name));
  turn();
}

TEST_F(WindowControls, AHandlerMayUnloadItsForm) {
  form->on_event = [this] { program.forms.unload(*form); };
  QTest::mouseClick(&widget<QPushButton>("cmd"), Qt::LeftButton);
  turn();
  EXPECT_FALSE(program.forms.loaded(SampleForm::form_name));
}

TEST_F(WindowControls, PropertiesReachTheirWidgets) {
  form->Caption = "Other title";
  form->lbl.Caption = "Fish && Chips";
  form->lbl.BackColor = forms::RGB(0, 0, 255);
  form->lbl.ForeColor = forms::clr_white;
  form->cmd.Caption = "Done";
  form->cmd.Enabled = false;
  form->cmd.ToolTipText = "Did it";
  form->cmdOther.Visible = false;
  form->chk.Value = 1;
  form->shp.FillColor = forms::QBColor(10);
  form->hsb.Max = 50;
  form->hsb.Value = 20;
  form->tabs.Tab = 0;
  form->grid.set_text(2, 1, "0F");
  form->lst.AddItem("four");
  form->lst.ListIndex = 3;
  turn();
  EXPECT_TRUE(window_of(SampleForm::form_name).windowTitle().startsWith("Other title"));
  EXPECT_EQ(widget<QLabel>("lbl").text(), "Fish & Chips");
  EXPECT_EQ(widget<QLabel>("lbl").palette().color(QPalette::Window), QColor(0, 0, 255));
  EXPECT_EQ(widget<QLabel>("lbl").palette().color(QPalette::WindowText), QColor(Qt::white));
  EXPECT_TRUE(widget<QLabel>("lbl").autoFillBackground());
  EXPECT_EQ(widget<QPushButton>("cmd").text(), "&Done");  // with its key
  EXPECT_FALSE(widget<QPushButton>("cmd").isEnabled());
  EXPECT_EQ(widget<QPushButton>("cmd").toolTip(), "Did it");
  EXPECT_FALSE(widget<QPushButton>("cmdOther").isVisible());
  EXPECT_TRUE(widget<QCheckBox>("chk").isChecked());
  EXPECT_EQ(widget<window::Lamp>("shp").color(), forms::QBColor(10));
  EXPECT_EQ(widget<window::Lamp>("shp").accessibleDescription(), "light green");
  EXPECT_EQ(widget<QScrollBar>("hsb").value(), 20);
  EXPECT_EQ(widget<QTableWidget>("grid").item(1, 0)->text(), "0F");
  EXPECT_EQ(widget<QListWidget>("lst").currentRow(), 3);
  EXPECT_TRUE(form->events.empty() || events("cmd Click").empty());
}

TEST_F(WindowControls, SystemColoursLeaveThePlatformsPalette) {
  EXPECT_FALSE(widget<QLabel>("lbl").autoFillBackground());
  form->lbl.BackColor = forms::RGB(1, 2, 3);
  turn();
  form->lbl.BackColor = forms::clr_button_face;
  turn();
  EXPECT_FALSE(widget<QLabel>("lbl").autoFillBackground());
}

TEST_F(WindowControls, AnAmpersandThatMarksNoKeyIsShown) {
  EXPECT_EQ(widget<QGroupBox>("fra").title(), "Mode && Status");
}

TEST_F(WindowControls, ACheckBoxTurnsOverWithEachClick) {
  QTest::mouseClick(&widget<QCheckBox>("chk"), Qt::LeftButton, {}, QPoint(8, 8));
  turn();
  EXPECT_EQ(form->chk.Value, 1);
  EXPECT_EQ(events("Click"), Events{"chk Click"});
  QTest::keyClick(&widget<QCheckBox>("chk"), Qt::Key_Space);
  turn();
  EXPECT_EQ(form->chk.Value, 0);
  EXPECT_FALSE(widget<QCheckBox>("chk").isChecked());
}

TEST_F(WindowControls, OptionButtonsFollowTheirControls) {
  QTest::mouseClick(&widget<QRadioButton>("opt(1)"), Qt::LeftButton, {}, QPoint(8, 8));
  turn();
  EXPECT_TRUE(form->opt(1).Value);
  EXPECT_EQ(events("Click"), Events{"opt(1) Click"});
  QTest::mouseClick(&widget<QRadioButton>("opt(1)"), Qt::LeftButton, {}, QPoint(8, 8));
  turn();
  EXPECT_TRUE(widget<QRadioButton>("opt(1)").isChecked());
  EXPECT_EQ(events("Click"), (Events{"opt(1) Click", "opt(1) Click"}));
  form->opt(1).Value = false;
  turn();
  EXPECT_FALSE(widget<QRadioButton>("opt(1)").isChecked());
}

TEST_F(WindowControls, ArrowKeysGoThroughAGroupOfOptions) {
  form->opt(2).Enabled = false;
  turn();
  widget<QRadioButton>("opt(0)").setFocus();
  QTest::keyClick(&widget<QRadioButton>("opt(0)"), Qt::Key_Down);
  turn();
  EXPECT_TRUE(form->opt(1).Value);
  EXPECT_TRUE(widget<QRadioButton>("opt(1)").hasFocus());
  QTest::keyClick(&widget<QRadioButton>("opt(1)"), Qt::Key_Down);
  turn();
  EXPECT_TRUE(form->opt(0).Value);
}

TEST_F(WindowControls, AListRowRaisesItsEventsAtEveryClick) {
  auto& list = widget<QListWidget>("lst");
  const QPoint second = list.visualItemRect(list.item(1)).center();
  for (int time = 0; time < 2; ++time) {
    form->events.clear();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
    turn();
    EXPECT_EQ(form->lst.ListIndex, 1);
    EXPECT_EQ(events("Click"), Events{"lst Click"});
    EXPECT_EQ(events("MouseUp"), Events{"lst MouseUp"});
  }
}

TEST_F(WindowControls, ArrowsMoveTheCursorOfAListAndEnterOrSpaceChooses) {
  auto& list = widget<QListWidget>("lst");
  form->lst.ListIndex = 0;
  turn();
  form->events.clear();
  QTest::keyClick(&list, Qt::Key_Down);
  form->lbl.Caption = "Something else changed";
  form->lst.touched();
  turn();
  EXPECT_EQ(list.currentRow(), 1);
  EXPECT_EQ(form->lst.ListIndex, 0);
  EXPECT_TRUE(form->events.empty());
  QTest::keyClick(&list, Qt::Key_Return);
  turn();
  EXPECT_EQ(form->lst.ListIndex, 1);
  EXPECT_TRUE(list.item(1)->isSelected());
  QTest::keyClick(&list, Qt::Key_T);  // "two", "three"
  QTest::keyClick(&list, Qt::Key_Space);
  turn();
  EXPECT_EQ(form->lst.ListIndex, 2);
  EXPECT_EQ(events("MouseUp"), (Events{"lst MouseUp", "lst MouseUp"}));
}

// A screen reader selects a row without keys and without the mouse.
TEST_F(WindowControls, ARowSelectedFromOutsideIsChosen) {
  widget<QListWidget>("lst").item(2)->setSelected(true);
  turn();
  EXPECT_EQ(form->lst.ListIndex, 2);
  EXPECT_EQ(events("Click"), Events{"lst Click"});
}

TEST_F(WindowControls, AKeyOpensADropDownAndChoosesNothing) {
  auto& combo = widget<QComboBox>("cbo");
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_G, Qt::Key_Return, Qt::Key_Space}) {
    QTest::keyClick(&combo, key);
    EXPECT_TRUE(combo.view()->isVisible()) << key;
    EXPECT_EQ(combo.view()->currentIndex().row(), 0) << key;
    combo.hidePopup();
    turn();
    EXPECT_EQ(form->cbo.ListIndex, -1) << key;
  }
  QTest::keyClick(&combo, Qt::Key_Down);
  QTest::keyClick(combo.view(), Qt::Key_Down);
  QTest::keyClick(combo.view(), Qt::Key_Return);
  turn();
  EXPECT_EQ(form->cbo.Text, "green");
  QTest::keyClick(&combo, Qt::Key_Up);
  EXPECT_EQ(combo.view()->currentIndex().row(), 1);
  turn();
  EXPECT_EQ(events("Click"), Events{"cbo Click"});
}

TEST_F(WindowControls, ADropDownShowsItsTextUntilARowIsChosen) {
  auto& combo = widget<QComboBox>("cbo");
  EXPECT_EQ(combo.currentIndex(), -1);
  EXPECT_EQ(combo.placeholderText(), "Choose");
  combo.setCurrentIndex(1);
  emit combo.activated(1);
  turn();
  EXPECT_EQ(form->cbo.ListIndex, 1);
  EXPECT_EQ(form->cbo.Text, "green");
  EXPECT_EQ(events("Click"), Events{"cbo Click"});
}

TEST_F(WindowControls, MenusAreNestedByTheirContainers) {
  auto* bar = window_of(SampleForm::form_name).menuBar();
  QStringList top;
  for (const QAction* action : bar->actions()) top << action->text().remove('&');
  EXPECT_EQ(top, (QStringList{"File", "Alone", "Program", "Windows", "Help"}));
  bar->findChild<QAction*>("mnuOpen")->trigger();
  bar->findChild<QAction*>("mnuAlone")->trigger();
  turn();
  EXPECT_EQ(events("Click"), (Events{"mnuOpen Click", "mnuAlone Click"}));
  form->mnuOpen.Enabled = false;
  form->mnuAlone.Caption = "Lonely";
  turn();
  EXPECT_FALSE(bar->findChild<QAction*>("mnuOpen")->isEnabled());
  EXPECT_EQ(bar->findChild<QAction*>("mnuAlone")->text().remove('&'), "Lonely");
}

TEST_F(WindowControls, ScrollBarsAreMovedByTheUser) {
  widget<QScrollBar>("hsb").setValue(7);
  turn();
  EXPECT_EQ(form->hsb.Value, 7);
}

TEST_F(WindowControls, AClickOrAKeySelectsARowOfATable) {
  auto& table = widget<QTableWidget>("grid");
  const auto click = [&](int row) {
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(table.model()->index(row, 0)).center());
    turn();
  };
  click(1);
  EXPECT_EQ(form->grid.SelectedRow(), 2);
  EXPECT_EQ(events("SelectionChange"), Events{"grid SelectionChange"});
  click(1);  // the same row runs again
  EXPECT_EQ(events("SelectionChange").size(), 2u);
  QTest::keyClick(&table, Qt::Key_Up);
  form->grid.touched();
  turn();
  EXPECT_EQ(table.currentRow(), 0);
  EXPECT_EQ(form->grid.SelectedRow(), 2);
  EXPECT_EQ(events("SelectionChange").size(), 2u);
  QTest::keyClick(&table, Qt::Key_Return);
  turn();
  EXPECT_EQ(form->grid.SelectedRow(), 1);
  EXPECT_EQ(table.selectionModel()->selectedRows().front().row(), 0);
  QTest::keyClick(&table, Qt::Key_Space);
  turn();
  EXPECT_EQ(events("SelectionChange").size(), 4u);
}

TEST_F(WindowControls, TheFocusAloneSelectsNoRow) {
  auto& table = widget<QTableWidget>("grid");
  widget<QPushButton>("cmd").setFocus();
  table.setFocus(Qt::TabFocusReason);
  turn();
  EXPECT_EQ(form->grid.SelectedRow(), 0);
  EXPECT_TRUE(events("SelectionChange").empty());
}

TEST_F(WindowControls, ARowIsCopiedAsText) {
  auto& table = widget<QTableWidget>("grid");
  form->grid.set_text(1, 1, "88");
  turn();
  QTest::keyClick(&table, Qt::Key_Down);
  QTest::keyClick(&table, Qt::Key_Home, Qt::ControlModifier);
  QTest::keySequence(&table, QKeySequence::Copy);
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith("88"));
}

TEST_F(WindowControls, LampsAndLabelsTakeClicks) {
  QTest::mouseClick(&widget<QLabel>("lbl"), Qt::LeftButton);
  QTest::mouseDClick(&widget<window::Lamp>("shp"), Qt::LeftButton);
  turn();
  EXPECT_EQ(events("lbl Click"), Events{"lbl Click"});
  EXPECT_EQ(events("DblClick"), Events{"shp DblClick"});
}

// The focus that a button loses because it is switched off goes to what was switched on in its place.
TEST_F(WindowControls, FocusMovesToAButtonThatComes) {
  form->cmdOther.Visible = false;
  turn();
  widget<QPushButton>("cmd").setFocus();
  form->cmd.Enabled = false;
  form->cmdOther.Visible = true;
  turn();
  EXPECT_TRUE(widget<QPushButton>("cmdOther").hasFocus());
}

TEST_F(WindowControls, EveryWidgetHasANameForScreenReaders) {
  for (const forms::Control* control : form->controls()) {
    const auto* found =
        window_of(SampleForm::form_name).findChild<QWidget*>(QString::fromStdString(control->full_name()));
    if (!found) continue;
    const auto* interface = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(found));
    ASSERT_TRUE(interface);
    EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << control->full_name();
  }
}

}  // namespace
}  // namespace varzelin::testing
