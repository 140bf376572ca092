// Takes pictures of docs/images: each "test" saves one into the folder that the variable PICTURES names.
// scripts/take-pictures runs it.
#include <cmath>

#include "forms/controls.h"
#include "support/panel_window.h"

namespace varzelin::testing {
namespace {

constexpr int kvt71385 = 5;  // row of the start list
constexpr int kvt71374 = 4;
constexpr int samples = 390;

struct Pictures : PanelWindow {
  void save(const QString& name) {
    refresh();
    const QString path = qEnvironmentVariable("PICTURES", ".") + "/" + name + ".png";
    EXPECT_TRUE(window_of(form).grab().save(path)) << path.toStdString();
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
};

TEST_F(Pictures, Kvt71385InLight) {
  open(kvt71385);
  click("OptMeasure(5)");
  save_running("kvt71385", [this](double wave) { board.scene().light_lux = 1000 * wave; });
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

// Up to its wait for the target to leave, in which the pin stays high.
TEST_F(Pictures, TheInterruptTest) {
  open(kvt71385);
  form = "frm71385INTR";
  program.forms.touch(form).Show();
  turn();
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
