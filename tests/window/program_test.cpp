// The program's own forms in their windows, on the simulated board.
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QTabWidget>
#include <QTimer>

#include "boards/simulated/light_sources.h"
#include "panels/single_channel/kvt71346.h"
#include "script/script_panel.h"
#include "shell/start_panel.h"
#include "support/window_of_program.h"
#include "window/bench_window.h"
#include "window/lamp.h"
#include "window/layouts/layouts.h"
#include "window/log_view.h"
#include "workbench/gpio_panel.h"
#include "workbench/workbench.h"

namespace varzelin::testing {
namespace {

TEST_F(WindowOfProgram, EveryFormHasALayoutThatPlacesEveryControl) {
  for (const std::string& form : program.forms.names()) {
    EXPECT_TRUE(window::layout_of(form)) << form;
    show(form);
    for (const forms::Control* control : window_of(form).left_over())
      ADD_FAILURE() << form << " " << control->full_name();
  }
}

// The widget that a control in this container stands on: the frame, or one page of a tab control.
const QWidget* inside_of(const QWidget& container, const forms::Control& control) {
  const auto* tabs = qobject_cast<const QTabWidget*>(&container);
  return tabs ? tabs->widget(control.tab()) : &container;
}

TEST_F(WindowOfProgram, EveryControlStandsInsideItsContainer) {
  for (const std::string& form : program.forms.names()) {
    show(form);
    const auto widget_of = [&](const forms::Control& control) {
      return window_of(form).content()->findChild<QWidget*>(QString::fromStdString(control.full_name()));
    };
    for (const forms::Control* control : program.forms.loaded(form)->controls()) {
      const QWidget* widget = widget_of(*control);
      if (!widget || !control->container()) continue;
      const QWidget* container = widget_of(*control->container());
      ASSERT_TRUE(container) << form << " " << control->full_name();
      EXPECT_TRUE(inside_of(*container, *control)->isAncestorOf(widget))
          << form << " " << control->full_name() << " is outside " << control->container()->full_name();
    }
  }
}

TEST_F(WindowOfProgram, EveryLampSaysWhatItMeans) {
  for (const std::string& form : program.forms.names()) {
    show(form);
    for (const forms::Control* control : program.forms.loaded(form)->controls()) {
      if (control->kind() != forms::Kind::Shape) continue;
      const std::string name = control->full_name();
      EXPECT_NE(widget<window::Lamp>(form, name.c_str()).accessibleName().toStdString(), name) << form;
    }
  }
}

TEST_F(WindowOfProgram, EveryWindowFitsASmallScreen) {
  for (const std::string& form : program.forms.names()) {
    show(form);
    const QSize least = window_of(form).content()->minimumSizeHint();
    EXPECT_LE(least.width(), 1358) << form;
    EXPECT_LE(least.height(), 710) << form;
  }
}

TEST_F(WindowOfProgram, AFormOnAScreenTooSmallForItScrolls) {
  choose_model(0);
  window::FormWindow& panel = window_of("frmKVT71346");
  auto* bars = panel.findChild<QScrollArea*>();
  panel.resize(1366, 768);
  QApplication::processEvents();
  EXPECT_EQ(bars->horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(bars->verticalScrollBar()->maximum(), 0);
  panel.resize(700, 400);
  QApplication::processEvents();
  EXPECT_EQ(panel.size(), QSize(700, 400));
  EXPECT_GT(bars->horizontalScrollBar()->maximum(), 0);
  EXPECT_GT(bars->verticalScrollBar()->maximum(), 0);
  widget<QPushButton>("frmKVT71346", "cbReset").setFocus(Qt::TabFocusReason);
  bars->ensureWidgetVisible(&widget<QPushButton>("frmKVT71346", "cbReset"));
  EXPECT_GT(bars->verticalScrollBar()->value(), 0);
}

TEST_F(WindowOfProgram, EveryTitleNamesTheSimulatedBoard) {
  choose_model(0);
  for (const std::string& form : program.forms.names()) {
    show(form);
    EXPECT_TRUE(window_of(form).windowTitle().endsWith(" \u2014 simulated board")) << form;
  }
  EXPECT_TRUE(windows.bench()->windowTitle().endsWith(" \u2014 simulated board"));
}

TEST_F(WindowOfProgram, ChoosingAModelChangesWindows) {
  EXPECT_TRUE(window_of("frmStartup").isVisible());
  choose_model(0);
  EXPECT_FALSE(window_of("frmStartup").isVisible());
  EXPECT_TRUE(window_of("frmKVT71346").isVisible());
  EXPECT_EQ(board.mounted_model(), "KVT71346/7");
}

TEST_F(WindowOfProgram, HiddenFormsCostNoWindow) {
  choose_model(0);
  EXPECT_TRUE(program.forms.loaded("frmI2C_General"));
  EXPECT_FALSE(windows.window_of("frmI2C_General"));
}

TEST_F(WindowOfProgram, TheWindowsMenuReachesWhatNoControlOpens) {
  choose_model(0);
  for (const auto& [text, form] :
       {std::pair{"Register Workbench", "frmI2C_General"}, {"GPIO Panel", "frmGPIO"}}) {
    ASSERT_TRUE(entry("frmKVT71346", text)) << text;
    entry("frmKVT71346", text)->trigger();
    turn();
    EXPECT_TRUE(window_of(form).isVisible());
    EXPECT_EQ(program.forms.front()->name(), form);
    EXPECT_EQ(program.store.Active_Form, program.forms.loaded(form));
  }
  entry("frmGPIO", "Simulated Bench")->trigger();
  EXPECT_TRUE(windows.bench()->isVisible());
}

TEST_F(WindowOfProgram, AWindowThatTheUserBringsForwardIsTheActiveForm) {
  choose_model(0);
  show("frmGPIO");
  ASSERT_EQ(program.forms.front()->name(), "frmGPIO");
  window_of("frmKVT71346").activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window_of("frmKVT71346")));
  turn();
  EXPECT_EQ(program.store.Active_Form, program.forms.loaded("frmKVT71346"));
}

TEST_F(WindowOfProgram, ClosingTheLastWindowEndsTheProgram) {
  window_of("frmStartup").close();
  EXPECT_TRUE(turn_ends());
  EXPECT_TRUE(program.runtime.ended());
}

TEST_F(WindowOfProgram, ClosingThePanelEndsTheProgramThoughHiddenFormsStayLoaded) {
  choose_model(0);
  window_of("frmKVT71346").close();
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowOfProgram, ClosingOneOfTwoWindowsUnloadsItsForm) {
  choose_model(0);
  show("frmGPIO");
  window_of("frmGPIO").close();
  EXPECT_TRUE(window_of("frmGPIO").isVisible());
  EXPECT_FALSE(turn_ends());
  EXPECT_FALSE(program.forms.loaded("frmGPIO"));
  EXPECT_FALSE(windows.window_of("frmGPIO"));
  EXPECT_TRUE(window_of("frmKVT71346").isVisible());
}

TEST_F(WindowOfProgram, AFormMayRefuseToClose) {
  choose_model(0);
  show("frmI2C_General");
  program.runtime.dispatch([&] { program.forms.touch<frmI2C_General>().Connect_Usb(); });
  window_of("frmI2C_General").close();
  EXPECT_FALSE(turn_ends());
  EXPECT_TRUE(window_of("frmI2C_General").isVisible());
  EXPECT_TRUE(widget<window::LogView>("frmI2C_General", "Txtlog")
                  .lines_in_sight()
                  .join('\n')
                  .contains("Form will not close"));
}

TEST_F(WindowOfProgram, ExitEndsTheProgram) {
  choose_model(0);
  click("frmKVT71346", "CommandButton1");
  EXPECT_TRUE(turn_ends());
}

TEST_F(WindowOfProgram, AProgramWithNothingOnScreenEndsInItsMainLoop) {
  program.runtime.post([&] { program.forms.loaded("frmStartup")->Hide(); });
  program.runtime.run(program.forms);
  EXPECT_TRUE(program.runtime.ended());
}

// Of the next row nothing is seen.
TEST_F(WindowOfProgram, AListIsAsHighAsItsRows) {
  choose_model(0);
  for (const auto& [name, rows] : {std::pair{"LstDeviceSel", 4}, {"lst_MainOptions", 6}, {"LstMode2", 3}}) {
    const auto& list = widget<QListWidget>("frmKVT71346", name);
    EXPECT_EQ(list.viewport()->height(), rows * list.visualItemRect(list.item(0)).height()) << name;
  }
}

TEST_F(WindowOfProgram, ABarShowsHowFarAScriptIs) {
  show("frmScriptOps");
  auto& panel = program.forms.touch<frmScriptOps>();
  auto* bar = window_of("frmScriptOps").findChild<QProgressBar*>();
  ASSERT_TRUE(bar);
  panel.txtTotLines.Text = "13";
  turn();
  panel.txtRunning.Text = "5";
  turn();
  EXPECT_EQ(bar->value(), 5);
  EXPECT_EQ(bar->maximum(), 13);
  EXPECT_EQ(bar->text(), "row 5 of 13");
  panel.txtRunning.Text = "Done";
  turn();
  EXPECT_EQ(bar->value(), 0);
  EXPECT_FALSE(bar->isTextVisible());
}

TEST_F(WindowOfProgram, TheBenchMovesTheScene) {
  auto* light = windows.bench()->findChild<QDoubleSpinBox*>("light");
  auto* slider = windows.bench()->findChild<QSlider*>("light_slider");
  EXPECT_EQ(light->value(), board.scene().light_lux);
  light->setValue(1000);
  EXPECT_EQ(board.scene().light_lux, 1000);
  slider->setValue(slider->maximum());
  EXPECT_NEAR(board.scene().light_lux, 100000, 1);
  EXPECT_NEAR(light->value(), 100000, 1);
  slider->setValue(0);
  EXPECT_EQ(board.scene().light_lux, 0);
  windows.bench()->findChild<QDoubleSpinBox*>("distance")->setValue(42);
  EXPECT_EQ(board.scene().distance_mm, 42);
  windows.bench()->findChild<QDoubleSpinBox*>("infrared")->setValue(77);
  EXPECT_EQ(board.scene().ir_counts, 77);
  windows.bench()->findChild<QDoubleSpinBox*>("noise")->setValue(5);
  EXPECT_EQ(board.noise(), 5);
  windows.bench()->findChild<QCheckBox*>("answers")->setChecked(false);
  EXPECT_FALSE(board.sensor_answers());
  windows.bench()->findChild<QCheckBox*>("plugged")->setChecked(false);
  EXPECT_FALSE(board.plugged());
  windows.bench()->findChild<QCheckBox*>("plugged")->setChecked(true);
  EXPECT_TRUE(board.plugged());
}

TEST_F(WindowOfProgram, TheBenchHasTheLightOfCommonSources) {
  for (const boards::LightSource& source : boards::light_sources) {
    auto* button = windows.bench()->findChild<QPushButton*>(QString::fromUtf8(source.name.data()));
    ASSERT_TRUE(button) << source.name;
    button->click();
    EXPECT_EQ(board.scene().light_lux, source.light_lux) << source.name;
    EXPECT_EQ(board.scene().ir_counts, source.ir_counts) << source.name;
    EXPECT_EQ(windows.bench()->findChild<QDoubleSpinBox*>("light")->value(), source.light_lux);
    EXPECT_EQ(windows.bench()->findChild<QDoubleSpinBox*>("infrared")->value(), source.ir_counts);
  }
}

TEST_F(WindowOfProgram, TheBenchShowsTheSensorInTheSocket) {
  choose_model(0);
  windows.bench()->show_board();
  auto* socket = windows.bench()->findChild<QComboBox*>("model");
  EXPECT_EQ(socket->currentText(), "KVT71346/7");
  emit socket->activated(0);
  EXPECT_EQ(board.mounted_model(), "");
  emit socket->activated(socket->findText("KVT71385"));
  EXPECT_EQ(board.mounted_model(), "KVT71385");
}

// The user stops a collection by its button, and moves the light while it runs.
TEST_F(WindowOfProgram, ACollectionIsWorkedWhileItRuns) {
  choose_model(0);
  auto& panel = program.forms.touch<frmKVT71346>();
  panel.ModeIndex = 2;
  QTimer user;
  bool moved = false;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (!moved && program.store.Sample_Count > 20) {
      windows.bench()->findChild<QDoubleSpinBox*>("light")->setValue(2000);
      moved = true;
    }
    if (program.store.Sample_Count > 60) click("frmKVT71346", "cmdStopData");
  });
  user.start(0);
  click("frmKVT71346", "cmdCollectData");
  turn();
  turn();
  EXPECT_EQ(program.store.Sample_Run, 0);
  EXPECT_TRUE(moved);
  EXPECT_GT(program.store.Sample_Value[60], program.store.Sample_Value[15]);
  EXPECT_EQ(widget<QLabel>("frmKVT71346", "Label18").text(), "Data Collection Halted");
  EXPECT_FALSE(widget<QPushButton>("frmKVT71346", "cmdStopData").isVisible());
  EXPECT_TRUE(widget<QPushButton>("frmKVT71346", "cmdSample").isVisible());
}

TEST_F(WindowOfProgram, ClosingThePanelWhileItCollectsEndsTheProgram) {
  choose_model(0);
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count == 15) window_of("frmKVT71346").close();
  });
  user.start(0);
  click("frmKVT71346", "cmdCollectData");
  EXPECT_TRUE(turn_ends());
}

// In turns of Qt, not in time: the user stops in one, and sees it in the next but one.
TEST_F(WindowOfProgram, ACollectionWithALongIntervalAnswersAtOnceAndKeepsItsPace) {
  choose_model(0);
  auto& panel = program.forms.touch<frmKVT71346>();
  panel.ModeIndex = 2;
  panel.txtInterval.Text = "20000";
  int turns_to_answer = 0;
  std::int64_t stopped = 0;
  std::int64_t answered = 0;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count < 2 || answered != 0) return;
    if (stopped == 0) {
      stopped = program.runtime.timeGetTime();
      click("frmKVT71346", "cmdStopData");
    } else {
      ++turns_to_answer;
      if (panel.Label18.Caption == "Data Collection Halted") answered = program.runtime.timeGetTime();
    }
  });
  user.start(0);
  click("frmKVT71346", "cmdCollectData");
  turn();
  EXPECT_LE(turns_to_answer, 2);
  EXPECT_LT(answered - stopped, 100);
  EXPECT_EQ(program.store.Sample_Run, 0);
  EXPECT_GT(program.runtime.timeGetTime() - answered, 19000) << "the pass came before it was due";
  EXPECT_NEAR(std::stod(panel.txtTime3.Text.get()), 20000, 20);
}

TEST_F(WindowOfProgram, ExitEndsACollectionWithALongIntervalAtOnce) {
  choose_model(0);
  auto& panel = program.forms.touch<frmKVT71346>();
  panel.txtInterval.Text = "20000";
  std::int64_t asked = 0;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count < 2 || asked != 0) return;
    asked = program.runtime.timeGetTime();
    window_of("frmKVT71346").close();
  });
  user.start(0);
  click("frmKVT71346", "cmdCollectData");
  EXPECT_TRUE(turn_ends());
  EXPECT_LT(program.runtime.timeGetTime() - asked, 100);
}

// A board that is silent: while its driver waits the window is painted, and its title says which row waits.
TEST_F(WindowOfProgram, ReadAllSaysWhichRowWaits) {
  show("frmI2C_General");
  auto& bench = program.forms.touch<frmI2C_General>();
  for (int row = 0; row < 32; ++row) {
    if (row != 0 && row != 6) bench.Reg_Adr(row).Text = "";
  }
  struct Silent final : boards::Driver::Observer {
    void call_begins() override {
      if (waiting) waiting();
    }
    void call_ended(const boards::CallRecord&) override {}
    std::function<void()> waiting;
  } silent;
  QStringList titles;
  board.observer = &silent;
  silent.waiting = [&] {
    forms::SystemClock real;
    const auto before = real.now();
    while (real.now() - before < std::chrono::milliseconds(20)) board.on_wait();
    const QString title = window_of("frmI2C_General").windowTitle();
    if (!titles.contains(title)) titles += title;
  };
  program.store.Usb_Open = true_flag;
  program.store.Man_Usb_Conn = true_flag;
  program.runtime.dispatch([&] { bench.cmdReadRegs_Click(); });
  board.observer = nullptr;
  ASSERT_EQ(titles.size(), 2);
  EXPECT_TRUE(titles[0].contains(": row 1 waits for the board"));
  EXPECT_TRUE(titles[1].contains(": row 7 waits for the board"));
  turn();
  EXPECT_FALSE(window_of("frmI2C_General").windowTitle().contains("waits"));
}

TEST_F(WindowOfProgram, LampsShowTheGpioBytes) {
  choose_model(0);
  show("frmGPIO");
  click("frmGPIO", "cmdGPIO_Write");
  turn();
  EXPECT_EQ(widget<window::Lamp>("frmGPIO", "shpGpioWr(2)").accessibleDescription(), "light green");
  EXPECT_EQ(widget<QLineEdit>("frmGPIO", "txtPCHexData(1)").text(), "FF");
}

}  // namespace
}  // namespace varzelin::testing
