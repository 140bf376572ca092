// What readings the real-time loop of the two-mode panels makes of counts, and of light on the bench; and the
// light source that their sequence tells.
#include <cmath>

#include "boards/simulated/light_sources.h"
#include "script/batch_panel.h"
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeReadings : TwoModeTest {};
using TwoModeLight = Kvt71374;

TEST_F(TwoModeLight, ALightReadingIsInLux) {
  struct Light {
    int width, range, count;
    std::int32_t lux;
  };
  for (const Light& l : {Light{0, 0, 32768, 500}, Light{0, 0, 65535, 1000}, Light{0, 3, 1, 1},
                         Light{0, 1, 8, 0}, Light{0, 2, 2, 0}, Light{2, 0, 255, 992}, Light{3, 1, 17, 4000},
                         Light{3, 1, 1, 235}, Light{1, 2, 64, 250}, Light{1, 3, 4095, 63984}}) {
    click(panel->OptITime(l.width));
    click(panel->OptGain(l.range));
    select(measure::light);
    reading(l.count);
    run(1);
    EXPECT_EQ(store.Reading, l.lux) << l.count;
    EXPECT_EQ(store.Sample_Value[0], l.lux);
    EXPECT_EQ(store.TripReading, l.lux);
    EXPECT_EQ(store.RawReading, l.count);
    EXPECT_EQ(panel->txtADCRaw.Text, std::to_string(l.count));
    EXPECT_EQ(panel->txtReading.Text, std::to_string(l.lux));
  }
}

TEST_F(TwoModeLight, HalfALuxGoesToTheEvenOne) {
  click(panel->OptGain(2));
  select(measure::light);
  store.RangeLux[2] = 32768;
  for (const auto& [count, lux] : {std::pair{1, 0}, std::pair{3, 2}, std::pair{5, 2}, std::pair{7, 4}}) {
    reading(count);
    run(1);
    EXPECT_EQ(store.Reading, lux) << count;
  }
}

TEST_P(TwoModeReadings, TheReadingIsTheCountTimesItsFactor) {
  select(measure::infrared);
  store.GainMultiplier = 4;
  reading(300);
  run(1);
  EXPECT_EQ(store.Sample_Value[0], 300);
  EXPECT_EQ(store.Reading, 1200);
  EXPECT_EQ(panel->txtReading.Text, "1200");
}

TEST_P(TwoModeReadings, APairsDifferenceIsTheReading) {
  select(measure::pair);
  replying_pairs();
  run(2);
  EXPECT_EQ(store.Sample_Value[1], 950);
  EXPECT_EQ(store.Reading, 950);
  EXPECT_EQ(store.RawReading, 950);
  EXPECT_EQ(store.Stab_Value[0], 950);
  EXPECT_EQ(store.ProxVal, 1000);
  EXPECT_EQ(store.IrVal, 50);
  EXPECT_EQ(panel->txtADCRaw.Text, "950");
  EXPECT_EQ(panel->txtReading.Text, "950");
}

TEST_P(TwoModeReadings, OutOfRangeAPairRepeatsTheReadingBefore) {
  select(measure::pair);
  replying_pairs();
  collect_and(
      3, [&] { proximity_count = 65535; }, 4);
  EXPECT_EQ(panel->txtProx_IR(6).Text, "NA");
  EXPECT_EQ(store.Sample_Value[6], 950);
  EXPECT_EQ(store.Reading, 950);
  EXPECT_EQ(store.ProxVal, 65535);
}

// --- on the bench ---

// What is shown is what is there, as well as the width can tell.
TEST_F(TwoModeLight, TheReadingIsTheLightWithinACount) {
  const std::array<std::int32_t, 4> full_scale{1000, 4000, 16000, 64000};
  int compared = 0;
  for (const int width : {0, 1, 2, 3}) {
    for (const int range : {0, 1, 2, 3}) {
      for (const double lux : {0.0, 1.0, 50.0, 500.0, 999.0, 3000.0, 15000.0, 60000.0}) {
        const std::int32_t full = full_scale[static_cast<std::size_t>(range)];
        if (lux > full) continue;
        user.yields_left = 5'000'000;
        click(panel->OptITime(width));
        click(panel->OptGain(range));
        const std::string interval = panel->txtInterval.Text;
        select(measure::light);
        panel->txtInterval.Text = std::to_string(std::stoi(interval) + 5);
        board.scene() = {.light_lux = lux, .ir_counts = 0, .distance_mm = 1e9};
        run(3);
        const double count = full / (store.FullCount + 1.0);
        // The narrow widths end short of the range.
        const double most = count * ((1 << store.AdcBits) - 1);
        EXPECT_LE(std::abs(store.Reading - std::min(lux, most)), count + 0.5)
            << width << ' ' << range << ' ' << lux;
        ++compared;
      }
    }
  }
  EXPECT_EQ(compared, 4 * (5 + 6 + 7 + 8));
}

// --- the sequence ---

TEST_P(TwoModeReadings, TheSequenceTellsTheLightSource) {
  click(panel->cmdBatchShow);
  auto& sequence = form<ALS_Batch>();
  EXPECT_TRUE(sequence.visible());
  EXPECT_EQ(sequence.Caption, "ALS, IR, Prox Sequence");
  int row = 0;
  for (const boards::LightSource& source : boards::light_sources) {
    board.scene() = {.light_lux = source.light_lux, .ir_counts = source.ir_counts, .distance_mm = 1e9};
    click(sequence.cmdScript1);
    EXPECT_TRUE(sequence.OptSource(row++).Value) << source.name;
  }
  EXPECT_EQ(row, 3);
  EXPECT_TRUE(user.errors.empty());
}

ON_BOTH_MODELS(TwoModeReadings);

}  // namespace
}  // namespace varzelin::testing
