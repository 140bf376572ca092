// The KVT71338 panel over the simulated sensor: the lux that it shows against the bench's light.
#include <cmath>

#include "support/kvt71338_fixture.h"

namespace varzelin::testing {
namespace {

struct Kvt71338Light : Kvt71338 {
  void SetUp() override {
    Kvt71338::SetUp();
    make_ready();
    board.scene().ir_counts = 0;
  }
  double shown_lux() { return forms::Val(panel->txtCaclulated_Lux.Text); }
  // Collects until the sensor has surely converted in the present setting.
  void collect_settled() {
    user.yields_left = 5'000'000;  // for this collection
    panel->txtInterval.Text = "120";
    collect(3);
  }
};

constexpr std::array<double, 3> resistors{500e3, 250e3, 100e3};

TEST_F(Kvt71338Light, ShowsTheBenchsLuxWithinACount) {
  for (int resistor = 0; resistor < 3; ++resistor) {
    click(panel->calculator.OptREXT(resistor));
    board.scene().external_resistor_ohms = resistors[static_cast<std::size_t>(resistor)];
    for (int resolution = 0; resolution < 4; ++resolution) {
      click(panel->OptITime(resolution));
      for (int range = 0; range < 4; ++range) {
        click(panel->OptGain(range));
        for (const double part : {0.001, 0.1, 0.5, 0.97}) {
          SCOPED_TRACE(::testing::Message() << resistor << ' ' << resolution << ' ' << range << ' ' << part);
          const double lux = part * store.FsrLux;
          board.scene().light_lux = lux;
          board.set_noise(0);
          collect_settled();
          // Rounded to a count, and to two decimals.
          EXPECT_NEAR(shown_lux(), lux, store.LuxFactor / 2 + 0.006);
          board.set_noise(4);
          collect_settled();
          EXPECT_NEAR(shown_lux(), lux, store.LuxFactor * (1 + 4 / 2.0) + 0.006);
        }
      }
    }
  }
}

TEST_F(Kvt71338Light, SaturatesAtTheFullScale) {
  click(panel->OptITime(0));
  click(panel->OptGain(1));
  board.scene().light_lux = 90000;
  collect_settled();
  EXPECT_EQ(panel->txtADC_Reading.Text, "65535");
  EXPECT_EQ(panel->txtCaclulated_Lux.Text, "4000.00");
}

// The panel reckons with the resistor that it was told, the sensor runs from the one on the board.
TEST_F(Kvt71338Light, AnotherResistorThanOnTheBoardShowsAnotherLight) {
  click(panel->OptITime(0));
  board.scene().light_lux = 400;
  click(panel->calculator.OptREXT(1));
  collect_settled();
  EXPECT_NEAR(shown_lux(), 800, 0.1);
  board.scene().external_resistor_ohms = 250e3;
  collect_settled();
  EXPECT_NEAR(shown_lux(), 400, 0.1);
}

TEST_F(Kvt71338Light, InfraredIsCountedAlone) {
  board.scene() = {.light_lux = 400, .ir_counts = 3000};
  click(panel->OptITime(0));
  collect_settled();
  EXPECT_NEAR(shown_lux(), 400, 0.1);
  click(panel->OptMeasure(2));
  collect_settled();
  EXPECT_EQ(panel->txtADC_Reading.Text, "3000");
}

// One shot: without its command the count stays, with it each pass has a fresh one.
TEST_F(Kvt71338Light, OneShotFollowsTheLightByItsCommand) {
  click(panel->OptMeasQty(1));
  panel->ChkOneShot.Value = 0;
  const auto collect_while_it_changes = [&] {
    board.scene().light_lux = 200;
    collect(
        12, [&] { board.scene().light_lux = 600; }, 12);
  };
  collect_while_it_changes();
  EXPECT_EQ(store.Sample_Value[8], store.Sample_Value[22]);
  panel->ChkOneShot.Value = 1;
  collect_while_it_changes();
  EXPECT_NEAR(store.Sample_Value[8], 819, 1);
  EXPECT_NEAR(store.Sample_Value[22], 2457, 1);
}

// Two syncs a pass time the integration: as many cycles as the wait between them, and counts in proportion.
TEST_F(Kvt71338Light, TheSyncsTimeTheIntegration) {
  board.scene().light_lux = 500;
  panel->txtDelaySync(0).Text = "20";
  click(panel->OptITime(5));
  panel->OptGraph(2).select_quietly();
  collect(6);
  const std::int32_t cycles = store.Reading;
  EXPECT_GT(cycles, 13100);  // 20 ms at 655 kHz, and the transfers between
  EXPECT_LT(cycles, 14100);
  EXPECT_EQ(panel->txtTimeBaseReading.Text, std::to_string(cycles));
  click(panel->OptITime(4));
  panel->OptGraph(0).select_quietly();
  collect(6);
  EXPECT_NEAR(store.Reading, cycles / 2.0, 400);
}

// A journey as the user makes it: from the opened panel to lux in the chart, and the short layout again.
TEST_F(Kvt71338Light, AJourney) {
  open_anew();
  board.scene().light_lux = 1500;
  program.runtime.dispatch([&] { forms::user::double_click(panel->Label13); });
  click(panel->calculator.OptREXT(0));
  click(panel->OptITime(0));
  click(panel->OptGain(1));
  click(panel->OptMeasQty(0));
  EXPECT_EQ(panel->calculator.txtCalcITIme.Text, "100.053");
  EXPECT_EQ(panel->calculator.txtLFactor.Text, "6.10360875867857E-02");
  click(panel->OptGraph(1));
  collect(30);
  EXPECT_NEAR(forms::Val(panel->txtCaclulated_Lux.Text), 1500, 0.1);
  EXPECT_NEAR(store.Sample_Value[25], 1500 / 0.0610360875867857, 1);
  EXPECT_EQ(panel->Label18.Caption, "Data Collection Halted");
  EXPECT_EQ(panel->lblLoop_Count.Caption, std::to_string(store.Sample_Count - 10));
  sample(15);  // the converter is on by now
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_NEAR(forms::Val(panel->txtADDec.Text), 1500 / 0.0610360875867857, 1);
}

}  // namespace
}  // namespace varzelin::testing
