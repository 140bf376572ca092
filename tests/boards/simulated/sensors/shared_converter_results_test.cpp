// KVT71374, KVT71385 and their families: what the conversions bring, against the scene and as the panels show
// it.
#include <algorithm>
#include <cmath>

#include "support/simulated_shared_converter_fixture.h"

using namespace boards;
using namespace std::chrono_literals;

namespace {

class SimulatedConverterResults : public EachConverterFamily {
 protected:
  static constexpr std::array<int, 4> range_lux{1000, 4000, 16000, 64000};

  static int full_count(int width) { return 1 << widths[static_cast<std::size_t>(width)]; }
  // As the panels show a count of light, halves to the even number.
  double shown_lux(int count, int range, int width) const {
    return std::nearbyint(range_lux[static_cast<std::size_t>(range)] *
                          (static_cast<double>(count) / counts_of_range(width)));
  }

  // A proximity result under scheme 1 as the collections decode it. Those that look for the sign where 12
  // bits have it find it at all widths but 16.
  int signed_proximity(int width) {
    const int word = converted(proximity_once);
    if (width != 0) {
      EXPECT_EQ(decoded(word, 16), decoded(word, 12));
    }
    return decoded(word, 16);
  }
};

TEST_P(SimulatedConverterResults, ThePanelsShowTheLightOfTheBench) {
  for (int range = 0; range < 4; ++range) {
    const int lux = range_lux[static_cast<std::size_t>(range)];
    for (int width = 0; width < 4; ++width) {
      const double count_lux = lux / static_cast<double>(counts_of_range(width));
      configure(width, range);
      for (int light = 0; light < (full_count(width) - 0.5) * count_lux; light += 1 + lux / 1500) {
        board.scene().light_lux = light;
        const int count = converted(als_once);
        ASSERT_LE(std::abs(shown_lux(count, range, width) - light), count_lux)
            << lux << " lux, " << full_count(width) << ": " << light << " is " << count;
      }
    }
  }
}

TEST_P(SimulatedConverterResults, NoiseIsOnWhatThePanelsShow) {
  board.set_noise(4);
  int lowest = 65535;
  int highest = 0;
  configure(1, 3);
  for (int i = 0; i < 500; ++i) {
    const int count = converted(als_once);
    EXPECT_LE(std::abs(shown_lux(count, 3, 1) - 500), 3 * 64000.0 / counts_of_range(1));
    lowest = std::min(lowest, count);
    highest = std::max(highest, count);
  }
  EXPECT_EQ(lowest, 30);  // 32 is 500 lux
  EXPECT_EQ(highest, 34);
}

TEST_P(SimulatedConverterResults, LightSaturatesBelowTheFullCount) {
  for (int range = 0; range < 4; ++range) {
    for (int width = 0; width < 4; ++width) {
      configure(width, range);
      for (const double part : {1.0, 1.001, 70.0}) {
        board.scene().light_lux = part * range_lux[static_cast<std::size_t>(range)];
        EXPECT_EQ(converted(als_once), full_count(width) - 1);
      }
    }
  }
}

TEST_P(SimulatedConverterResults, LightIsFreeOfInfraredAndInfraredOfLight) {
  for (const double infrared : {0.0, 100.0, 65535.0, 1e9}) {
    board.scene() = {.light_lux = 250, .ir_counts = infrared, .distance_mm = 0};
    EXPECT_EQ(converted(als_once), 16384) << infrared;
  }
  for (const double light : {0.0, 250.0, 1e9}) {
    board.scene() = {.light_lux = light, .ir_counts = 100, .distance_mm = 0};
    EXPECT_EQ(converted(ir_once), 1600) << light;
  }
}

TEST_P(SimulatedConverterResults, InfraredCountsAreThoseOfTwelveBitsInTheFirstRange) {
  board.scene().ir_counts = 1000;
  const auto infrared = [&](int width, int range, int others = 0) {
    configure(width, range, 0, others);
    return converted(ir_once);
  };
  EXPECT_EQ(infrared(1, 0), 1000);
  EXPECT_EQ(infrared(1, 1), 250);
  EXPECT_EQ(infrared(1, 2), 63);  // 62.5
  EXPECT_EQ(infrared(1, 3), 16);
  EXPECT_EQ(infrared(0, 0), 16000);
  EXPECT_EQ(infrared(0, 3), 250);
  EXPECT_EQ(infrared(2, 0), 63);
  EXPECT_EQ(infrared(3, 0), 4);
  // The scheme is that of proximity.
  board.scene().ir_counts = 1e9;
  for (int width = 0; width < 4; ++width) {
    EXPECT_EQ(infrared(width, 0, scheme1), full_count(width) - 1);
    EXPECT_EQ(converted(als_once), half_range(width));
  }
}

// Down when a reading is below a fifth, up when it is above nine tenths of the full count.
TEST_P(SimulatedConverterResults, AnAutomaticRangeFollowsTheInfraredOfTheBench) {
  const auto settle = [&](int range, int width) {
    for (int step = 0; step < 10; ++step) {
      configure(width, range);
      const int count = converted(ir_once);
      if (count < 0.2 * full_count(width) && range > 0) {
        --range;
      } else if (count > 0.9 * full_count(width) && range < 3) {
        ++range;
      } else {
        return range;
      }
    }
    ADD_FAILURE() << "doesn't settle at " << board.scene().ir_counts;
    return range;
  };
  for (int width = 0; width < 4; ++width) {
    int range = 0;
    std::array<bool, 4> seen_up{};
    std::array<bool, 4> seen_down{};
    for (double infrared = 0; infrared <= 65535; infrared += 51) {
      board.scene().ir_counts = infrared;
      seen_up[static_cast<std::size_t>(range = settle(range, width))] = true;
    }
    EXPECT_EQ(range, 3);
    for (double infrared = 65535; infrared >= 0; infrared -= 51) {
      board.scene().ir_counts = infrared;
      seen_down[static_cast<std::size_t>(range = settle(range, width))] = true;
    }
    EXPECT_EQ(range, 0);
    EXPECT_EQ(seen_up, (std::array{true, true, true, true}));
    EXPECT_EQ(seen_down, (std::array{true, true, true, true}));
  }
}

// ---- Proximity

TEST_P(SimulatedConverterResults, NearerAndMoreCurrentIsMoreProximity) {
  int pairs = 0;
  for (const int scheme : {0, +scheme1}) {
    for (const int modulation : {0, +modulated}) {
      for (int width = 0; width < 4; ++width) {
        for (int range = 0; range < 4; ++range) {
          std::array<int, 4> nearer;
          nearer.fill(full_count(width));
          for (double distance = 0; distance <= 500; distance += 12.5) {
            board.scene() = {.light_lux = 500, .ir_counts = 100, .distance_mm = distance};
            int less_current = -full_count(width);
            for (int current = 0; current < 4; ++current) {
              configure(width, range, current, scheme | modulation);
              const int word = converted(proximity_once);
              const int count = scheme == 0 ? word : decoded_in_pair(word);
              int& at_nearer = nearer[static_cast<std::size_t>(current)];
              ASSERT_LE(count, at_nearer) << distance << ' ' << current;
              ASSERT_GE(count, less_current) << distance << ' ' << current;
              // Sixteen bits tell all of it apart, as long as they aren't full.
              if (width == 0 && range == 0 && count < (scheme == 0 ? 65535 : 32767)) {
                ASSERT_LT(count, at_nearer) << distance << ' ' << current;
                ASSERT_GT(count, less_current) << distance << ' ' << current;
                ++pairs;
              }
              at_nearer = less_current = count;
            }
          }
        }
      }
    }
  }
  EXPECT_GT(pairs, 550);
}

TEST_P(SimulatedConverterResults, ModulationHalvesTheTarget) {
  board.scene().distance_mm = 30;
  configure(0, 0, 1);
  const int steady = converted(proximity_once) - 140 * 16;
  configure(0, 0, 1, modulated);
  const int half = converted(proximity_once) - 60 * 16;
  EXPECT_NEAR(steady, 2 * half, 1);
  EXPECT_EQ(half, 10082);  // 2048 counts of 12 bits at the sensor, 4 of 13 of them here
}

// What the panel subtracts at 12 bits.
TEST_P(SimulatedConverterResults, TheOffsetIsThatOfCurrentAndModulation) {
  constexpr std::array<std::array<int, 2>, 4> offsets{{{60, 30}, {140, 60}, {320, 150}, {700, 330}}};
  for (int current = 0; current < 4; ++current) {
    for (const bool modulation : {false, true}) {
      const int offset = offsets[static_cast<std::size_t>(current)][modulation ? 1 : 0];
      for (int range = 0; range < 4; ++range) {
        for (const int scheme : {0, +scheme1}) {
          const auto proximity_at = [&](int width) {
            configure(width, range, current, scheme | (modulation ? modulated : 0));
            return converted(proximity_once);
          };
          EXPECT_EQ(proximity_at(1), offset);
          EXPECT_EQ(proximity_at(0), offset * 16);
          EXPECT_EQ(proximity_at(2), (offset + 8) / 16);
          EXPECT_EQ(proximity_at(3), (offset + 128) / 256);
        }
      }
    }
  }
}

TEST_P(SimulatedConverterResults, ProximityLessInfraredIsTheLightOfTheEmitter) {
  for (int width = 0; width < 2; ++width) {
    for (const double distance : {10.0, 50.0, 100.0, 1e9}) {
      for (int current = 0; current < 4; ++current) {
        configure(width, 0, current, modulated);
        board.scene() = {.light_lux = 500, .ir_counts = 0, .distance_mm = distance};
        const int alone = converted(proximity_once);
        for (const double infrared : {0.4, 100.0, 333.3, 500.0}) {
          board.scene().ir_counts = infrared;
          const int together = converted(proximity_once);
          if (together == full_count(width) - 1) continue;
          EXPECT_NEAR(together - converted(ir_once), alone, 1) << width << ' ' << distance << ' ' << infrared;
        }
      }
    }
  }
}

TEST_P(SimulatedConverterResults, ProximityFollowsTheRange) {
  board.scene() = {.light_lux = 500, .ir_counts = 400, .distance_mm = 20};
  const std::array counts{60 + 1024 + 400, 60 + 256 + 100, 60 + 64 + 25, 60 + 16 + 6};
  for (int range = 0; range < 4; ++range) {
    configure(1, range);
    EXPECT_EQ(converted(proximity_once), counts[static_cast<std::size_t>(range)]) << range;
  }
}

TEST_P(SimulatedConverterResults, SchemeOneTakesAmbientInfraredAwayAndGoesBelowZero) {
  struct Row {
    double infrared, distance;
    int twelve_bits;
  };
  for (const auto& [infrared, distance, twelve_bits] :
       {Row{0, 1e9, 30}, Row{80, 1e9, 20}, Row{240, 1e9, 0}, Row{248, 1e9, -1}, Row{1040, 1e9, -100},
        Row{4096, 1e9, -482}, Row{65535, 1e9, -482}, Row{4096, 20, -482 + 512}}) {
    board.scene() = {.light_lux = 500, .ir_counts = infrared, .distance_mm = distance};
    for (int width = 0; width < 4; ++width) {
      configure(width, 0, 0, scheme1 | modulated);
      const double scaled = twelve_bits * full_count(width) / 4096.0;
      const int count = signed_proximity(width);
      EXPECT_EQ(count, std::floor(scaled + 0.5)) << width << ' ' << infrared;
      EXPECT_EQ(decoded_in_pair(held()), count) << width << ' ' << infrared;
    }
  }
}

TEST_P(SimulatedConverterResults, ProximitySaturatesAtEachSchemesEnd) {
  board.scene() = {.light_lux = 500, .ir_counts = 1e9, .distance_mm = 0};
  for (int width = 0; width < 4; ++width) {
    configure(width, 0, 3);
    EXPECT_EQ(converted(proximity_once), full_count(width) - 1);
    configure(width, 0, 3, scheme1);
    EXPECT_EQ(signed_proximity(width), full_count(width) / 2 - 1);
  }
  board.scene() = {.light_lux = 500, .ir_counts = 0, .distance_mm = 1e9};
  board.set_noise(1e6);
  for (int width = 0; width < 4; ++width) {
    configure(width, 0, 0, scheme1);
    int lowest = 0;
    for (int i = 0; i < 20; ++i) lowest = std::min(lowest, signed_proximity(width));
    EXPECT_EQ(lowest, -full_count(width) / 2);
  }
}

INSTANTIATE_TEST_SUITE_P(Families, SimulatedConverterResults, converter_families, family_name);

}  // namespace
