// What may go wrong on the bus where the two-mode panels measure pairs: at each transfer of the pair loop and
// of the filter loop in turn.
#include "panels/two_mode/two_mode_panel.h"
#include "support/fault_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeFaults : PanelFaults {
  TwoModePanel& pairs = dynamic_cast<TwoModePanel&>(panel);
  bool filtered = false;

  // A sensor that lost its power has lost its emitter's current, too.
  void make_ready() override {
    PanelFaults::make_ready();
    click(pairs.cmdSetControl);
    forget_traffic();
  }
  // Behind the fixture's infrared, without a transfer of its own.
  void act(std::function<void()> and_then) override {
    store.RegImage[0] = 0x60;
    pairs.txtRegHex(0).Text = "60";
    store.ProxIRMode = -1;
    store.ProxMode = 0;
    store.ProxAdjMode = flag(filtered);
    pairs.txtSampling_Delay.Text = "118";
    and_then();
  }
  // What the sensor makes of a scene near its limits may differ by a count.
  void SetUp() override {
    PanelFaults::SetUp();
    board.set_timing(false);
    board.scene().distance_mm = 60;
    tolerance = 1;
  }
};

TEST_P(TwoModeFaults, PlugPulledInThePairLoop) {
  pull_the_plug_everywhere(true);
}
TEST_P(TwoModeFaults, ErrorInThePairLoop) {
  fail_everywhere(true, boards::statuses::transfer_failed);
}
TEST_P(TwoModeFaults, PlugPulledInTheFilterLoop) {
  filtered = true;
  pull_the_plug_everywhere(true);
}
TEST_P(TwoModeFaults, ErrorInTheFilterLoop) {
  filtered = true;
  fail_everywhere(true, boards::statuses::transfer_failed);
}
TEST_P(TwoModeFaults, PlugPulledInATimedRunOfPairs) {
  pull_the_plug_everywhere(false);
}
TEST_P(TwoModeFaults, ErrorInATimedRunOfPairs) {
  fail_everywhere(false, boards::statuses::transfer_failed);
}

INSTANTIATE_TEST_SUITE_P(Each, TwoModeFaults, ::testing::Values("frmKVT71374", "frmKVT71376"), panel_name);

}  // namespace
}  // namespace varzelin::testing
