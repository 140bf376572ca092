// Takes the pictures of docs/images: each "test" saves one into the folder that the variable PICTURES names.
// scripts/take-pictures runs it.
#include <QListWidget>
#include <QTableView>
#include <cmath>

#include "forms/controls.h"
#include "support/panel_window.h"
#include "window/bus_trace_window.h"

namespace varzelin::testing {
namespace {

// Rows of the start list.
constexpr int kvt71346 = 0;
constexpr int kvt71344 = 1;
constexpr int kvt71356 = 3;
constexpr int kvt71374 = 4;
constexpr int kvt71385 = 5;
constexpr int kvt71338 = 6;
constexpr int samples = 390;

const std::string script_file = PROJECT_FOLDER "/examples/kvt71385-registers.txt";

struct Pictures : PanelWindow {
  void open(int row) {
    PanelWindow::open(row);
    dynamic_cast<forms::TextBox&>(*program.forms.loaded(form)->find("txtFilePath")).Text =
        "/home/bench/Data.txt";
    turn();
  }
  void save(QWidget& picture, const QString& name) {
    refresh();
    const QString path = qEnvironmentVariable("PICTURES", ".") + "/" + name + ".png";
    EXPECT_TRUE(picture.grab().save(path)) << path.toStdString();
  }
  void save(const QString& name) { save(window_of(form), name); }
  void show_form(const char* name) {
    form = name;
    program.runtime.dispatch([&] { program.forms.touch(form).Show(); });
    turn();
  }
  void scale_to(const char* text) {
    type("txtScale", text);
    click("cmdScale");
  }
  // Two waves, one on the other, from 0 to 1.
  double wave() const {
    const double sample = program.store.Sample_Count;
    return 0.5 + 0.35 * std::sin(sample / 30) + 0.12 * std::sin(sample / 7);
  }
  // Saves the picture of a running collection with a scene that moves.
  void save_running(const QString& name, const std::function<void(double)>& move) {
    QTimer bench;
    QObject::connect(&bench, &QTimer::timeout, &bench, [&] { move(wave()); });
    bench.start(0);
    collect(samples, [&] { save(name); });
  }
  std::function<void(double)> light_up_to(double lux) {
    return [this, lux](double wave) { board.scene().light_lux = lux * wave; };
  }
};

TEST_F(Pictures, Start) {
  form = "frmStartup";
  save("start");
}

// --- panels ---

TEST_F(Pictures, Kvt71346InLight) {
  open(kvt71346);
  auto& modes = widget<QListWidget>("Lst71346_Mode");
  constexpr int diode_1 = 2;
  QTest::mouseClick(modes.viewport(), Qt::LeftButton, {}, modes.visualItemRect(modes.item(diode_1)).center());
  turn();
  save_running("kvt71346", light_up_to(400));
}

TEST_F(Pictures, Kvt71344UnderExternalTiming) {
  open(kvt71344);
  click("OptTimeBase(1)");
  click("OptGraph(2)");
  save_running("kvt71344", light_up_to(400));
}

TEST_F(Pictures, Kvt71356InLight) {
  open(kvt71356);
  save_running("kvt71356", light_up_to(1500));
}

TEST_F(Pictures, Kvt71338WithItsCalculator) {
  open(kvt71338);
  turn_layout();
  click("OptMeasQty(0)");
  click("OptITime(0)");
  click("OptGain(1)");
  scale_to("4000");
  type("txtInterval", "100");
  pages().setCurrentIndex(page("Calculator"));
  save_running("kvt71338", light_up_to(3600));
}

TEST_F(Pictures, Kvt71385InLight) {
  open(kvt71385);
  click("OptMeasure(5)");
  save_running("kvt71385", light_up_to(1000));
}

TEST_F(Pictures, Kvt71385InFullWithATargetThatMoves) {
  open(kvt71385);
  turn_layout();
  click("OptMeasure(4)");
  scale_to("500");
  save_running("kvt71385-full", [this](double wave) { board.scene().distance_mm = 72 + 60 * wave; });
}

TEST_F(Pictures, Kvt71374InItsFilter) {
  open(kvt71374);
  turn_layout();
  click("OptITime(1)");
  click("OptMeasure(9)");
  pages().setCurrentIndex(page("Proximity Filter"));
  scale_to("1000");
  save_running("kvt71374-full", [this](double wave) { board.scene().distance_mm = 40 + 60 * wave; });
}

// --- beside the panels ---

TEST_F(Pictures, TheWorkbench) {
  open(kvt71385);
  click("OptMeasure(5)");
  show_form("frmI2C_General");
  for (const auto& [box, words] : {std::pair{"Reg_Desc(0)", "Operation"},
                                   {"Reg_Desc(1)", "Configuration"},
                                   {"Reg_Desc(2)", "Result, low byte"},
                                   {"Reg_Desc(3)", "Result, high byte"},
                                   {"Reg_Desc(4)", "Interrupt low limit, low byte"},
                                   {"Reg_Desc(5)", "Interrupt low limit, high byte"},
                                   {"Reg_Desc(6)", "Interrupt high limit, low byte"},
                                   {"Reg_Desc(7)", "Interrupt high limit, high byte"}}) {
    type(box, words);
  }
  click("cmdTestComm");
  click("cmdReadRegs");
  save("workbench");
}

TEST_F(Pictures, TheScriptPanel) {
  open(kvt71385);
  front_end.give_file(script_file);
  show_form("frmScriptOps");
  click("cmdExecAll");
  save("script");
}

TEST_F(Pictures, TheGpioPanel) {
  open(kvt71385);
  show_form("frmGPIO");
  for (const char* output :
       {"chkOutEn(0)", "chkOutEn(1)", "chkOutEn(2)", "chkOutEnc(0)", "ChkBData(1)", "ChkCData(0)"})
    click(output);
  click("cmdGPIO_Write");
  click("cmdReadGPIO");
  save("gpio");
}

TEST_F(Pictures, TheBusTraceAfterThePlugWasPulled) {
  open(kvt71385);
  click("OptMeasure(5)");
  entry(form, "Bus Trace")->trigger();
  run("cmdCollectData", [&] {
    if (program.store.Sample_Count > samples && board.plugged()) board.unplug();
  });
  window::BusTraceWindow& trace = *windows.bus_trace();
  trace.refresh();
  widget_in<QTableView>(trace, "transfers").scrollToBottom();
  save(trace, "bus-trace");
}

// Up to its wait for the target to leave, in which the pin stays high.
TEST_F(Pictures, TheInterruptTest) {
  open(kvt71385);
  show_form("frm71385INTR");
  type("txtIHigh", "1600");
  board.scene().distance_mm = 12;
  const auto waits = [&message =
                          dynamic_cast<forms::Label&>(*program.forms.loaded(form)->find("lblMessage"))] {
    return message.Caption == "Waiting for Interrupt Low";
  };
  program.runtime.poll = [this, waits, poll = program.runtime.poll] {
    if (waits()) board.set_port('B', 0xFF);
    poll();
  };
  bool saved = false;
  run("cmdRunCase1", [&] {
    if (saved || !waits()) return;
    saved = true;
    save("interrupt-test");
    widget<QAbstractButton>("cmdAbort1").click();
  });
  EXPECT_TRUE(saved);
}

}  // namespace
}  // namespace varzelin::testing
