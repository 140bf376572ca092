// The multi-function panels over the simulated sensor: what they show against the bench's light, infrared and
// target.
#include <cmath>

#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

constexpr std::array<double, 4> ranges{1000, 4000, 16000, 64000};   // lux
constexpr std::array<double, 4> full_counts{65536, 4096, 256, 16};  // by position of the width
constexpr double far_away_mm = 1e9;

struct Bench : MultiFunctionLoop {
  void open_in_the_dark(const std::string& form_name) {
    open(form_name);
    board.scene() = {.light_lux = 0, .ir_counts = 0, .distance_mm = far_away_mm};
    board.set_noise(0);
  }
  void set_converter(int width, int range) {
    choose(panel->OptITime(width));
    choose(panel->OptGain(range));
  }
  // Collects until the sensor has surely converted in the present setting; what the panel shows then.
  double shown() {
    panel->txtInterval.Text = "110";
    collect(3);
    return forms::Val(panel->txtReading.Text);
  }
};

// --- light ---

struct Light : Bench, ::testing::WithParamInterface<std::string> {
  void SetUp() override { open_in_the_dark(GetParam()); }
};

TEST_P(Light, ShowsTheBenchsLuxWithinACount) {
  for (int width = 0; width < 4; ++width) {
    for (int range = 0; range < 4; ++range) {
      const double full = ranges[static_cast<std::size_t>(range)];
      const double lux_of_a_count = full / (full_counts[static_cast<std::size_t>(width)] + 1);
      for (const double part : {0.0, 0.001, 0.1, 0.5, 0.9}) {
        SCOPED_TRACE(::testing::Message() << width << ' ' << range << ' ' << part);
        measure_by(als_continuous);
        set_converter(width, range);
        board.scene().light_lux = part * full;
        // Rounded to a count, and to whole lux.
        EXPECT_NEAR(shown(), part * full, lux_of_a_count / 2 + 0.5);
      }
    }
  }
}

TEST_P(Light, OneShotsShowTheSame) {
  for (int width = 0; width < 4; ++width) {
    measure_by(als_once);
    set_converter(width, 1);
    board.scene().light_lux = 2500;
    EXPECT_NEAR(shown(), 2500, 4000 / (full_counts[static_cast<std::size_t>(width)] + 1) / 2 + 0.5) << width;
  }
}

TEST_P(Light, EndsAtTheRange) {
  measure_by(als_continuous);
  set_converter(bits_16, 0);
  board.scene().light_lux = 5000;
  EXPECT_EQ(shown(), 1000);  // 65535 of 65537 are 999.97
}

TEST_P(Light, KnowsNoInfrared) {
  measure_by(als_continuous);
  set_converter(bits_16, 0);
  board.scene().light_lux = 300;
  board.scene().ir_counts = 3000;
  EXPECT_NEAR(shown(), 300, 0.6);
}

INSTANTIATE_TEST_SUITE_P(Each, Light, ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71392"),
                         panel_name);

// --- infrared ---

struct Infrared : Bench, ::testing::WithParamInterface<std::string> {
  void SetUp() override { open_in_the_dark(GetParam()); }
};

TEST_P(Infrared, IsCountedByRange) {
  for (int range = 0; range < 4; ++range) {
    measure_by(ir_continuous);
    set_converter(bits_12, range);
    board.scene().ir_counts = 3200;
    EXPECT_EQ(shown(), 3200 >> (2 * range)) << range;
  }
}

// One-shots, of which each starts its own conversion: so the readings go on behind a switch.
TEST_P(Infrared, TheRangeFollowsItUpAndDown) {
  measure_by(ir_once);
  choose(panel->OptGainMode(1));
  std::string ranges_taken;
  std::vector<std::int32_t> readings;
  const std::vector<double> infrared{2000, 8000, 32000, 128000, 32000, 8000, 2000};
  std::size_t stage = 0;
  std::int32_t next = 20;
  board.scene().ir_counts = infrared[0];
  user.at_yield = [&] {
    if (store.Sample_Run == 0 || store.Sample_Count < next) return;
    next += 20;
    ranges_taken += std::to_string(selected(panel->OptGain));
    readings.push_back(store.Reading);
    if (++stage == infrared.size()) {
      program.runtime.post(clicking(panel->cmdStopData));
    } else {
      board.scene().ir_counts = infrared[stage];
    }
  };
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  EXPECT_EQ(ranges_taken, "0123210");
  EXPECT_EQ(readings, std::vector<std::int32_t>(7, 2000));
  expect_ended();
}

INSTANTIATE_TEST_SUITE_P(Each, Infrared,
                         ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71390", "frmKVT71392"),
                         panel_name);

// --- proximity ---

struct Proximity : Bench, ::testing::WithParamInterface<std::string> {
  void SetUp() override { open_in_the_dark(GetParam()); }
  double shown_at(double distance_mm) {
    board.scene().distance_mm = distance_mm;
    return shown();
  }
};

TEST_P(Proximity, RisesAsTheTargetNears) {
  for (const Position position : {proximity_once, proximity_continuous, pair_position}) {
    double before = -1;
    for (const double distance : {far_away_mm, 120.0, 60.0, 30.0}) {
      measure_by(position);
      const double now = shown_at(distance);
      EXPECT_GT(now, before + 20) << position << ' ' << distance;
      before = now;
    }
  }
}

TEST_P(Proximity, FallsWithTheRangeToWhatTheSensorSeesOfItself) {
  double before = 1e9;
  for (int range = 0; range < 4; ++range) {
    measure_by(proximity_continuous);
    set_converter(bits_12, range);
    const double now = shown_at(40);
    EXPECT_LT(now, before) << range;
    before = now;
  }
  EXPECT_NEAR(before, 150, 15);  // 50 mA, modulated
}

// What there is of the surroundings' infrared goes out by the difference.
TEST_P(Proximity, OfAPairKnowsNoInfrared) {
  measure_by(pair_position);
  const double in_the_dark = shown_at(60);
  board.scene().ir_counts = 900;
  measure_by(pair_position);
  EXPECT_EQ(shown_at(60), in_the_dark);
  EXPECT_EQ(store.IrCount, 900);
}

// Under the scheme with a sign a little more is taken off than there is.
TEST_P(Proximity, StrongInfraredWithoutATargetReadsBelowNothing) {
  measure_by(proximity_continuous);
  board.scene().ir_counts = 4000;
  EXPECT_EQ(shown_at(far_away_mm), 150 - 4000 / 8);
}

INSTANTIATE_TEST_SUITE_P(Each, Proximity, ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71390"),
                         panel_name);

// The constant of the setting is what the sensor sees of itself.
struct ProximityOffset : Proximity {};

TEST_P(ProximityOffset, LeavesNothingWithoutATarget) {
  for (int current = 0; current < 4; ++current) {
    for (const int modulation : {0, 3}) {
      measure_by(proximity_continuous);
      choose(panel->OptPSrc(current));
      choose(panel->OptMFreq(modulation));
      panel->subtraction->ChkSubract.Value = 1;
      panel->txtInterval.Text = "110";
      board.scene().distance_mm = far_away_mm;
      collect(
          3, [&] { EXPECT_EQ(store.Reading, 0) << current << ' ' << modulation; }, 0);
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Each, ProximityOffset, ::testing::Values("frmKVT71385"), panel_name);

// --- behind a cover ---

struct CoveredLight : Light {};

TEST_P(CoveredLight, IsTheLuxTimesTheFactorTimesTheRoot) {
  board.scene().light_lux = 500;
  board.scene().ir_counts = 512;
  click(panel->cover->ChkCover);
  const double light = std::round(500.0 * 4097 / 1000);
  EXPECT_EQ(shown(), std::round(std::round(1000 * light / 4097) * 70 * std::sqrt(light / 512)));
}
INSTANTIATE_TEST_SUITE_P(Each, CoveredLight, ::testing::Values("frmKVT71385", "frmKVT71388"), panel_name);

}  // namespace
}  // namespace varzelin::testing
