// Interrupt limits in decimal: around every border.
#include "panels/single_channel/limit_byte.h"

#include <gtest/gtest.h>

#include "support/forms_program.h"

namespace varzelin::testing {
namespace {

constexpr LimitRules high{65280, false};
constexpr LimitRules low{65280, true};
constexpr LimitRules high_of_15_bits{32512, false};

constexpr int refused = -1;
constexpr int unchanged = -1;

struct Case {
  double number;
  LimitRules rules;
  int byte;
  int shown;
};

TEST(LimitByte, BoxRoundsDownAndByteToNearest) {
  for (const Case& c : {Case{256, high, 1, unchanged},
                        {65280, high, 255, unchanged},
                        {65024, high, 254, unchanged},
                        {65536, high, refused, unchanged},
                        {0, high, refused, unchanged},
                        {-256, high, refused, unchanged},
                        {255.5, high, 1, unchanged},  // rounds to 256 first
                        {300, high, 1, 256},
                        {384, high, 2, 256},  // 1.5: to the even number
                        {383, high, 1, 256},
                        {400, high, 2, 256},
                        {640, high, 2, 512},  // 2.5: to the even number
                        {641, high, 3, 512},
                        {1000, high, 4, 768},
                        {100, high, 256, 0},  // a byte of 0 becomes 256
                        {128, high, 256, 0},
                        {129, high, 1, 0},
                        {65500, high, 256, 65280},
                        {70000, high, 273, 69888},  // not tested against the range
                        {32512, high_of_15_bits, 127, unchanged},
                        {32768, high_of_15_bits, refused, unchanged},
                        {32769, high_of_15_bits, 128, 32768},
                        {0, low, 0, unchanged},
                        {256, low, 1, unchanged},
                        {65280, low, 255, unchanged},
                        {65536, low, refused, unchanged},
                        {-256, low, refused, unchanged},
                        {100, low, 0, 0},
                        {128, low, 0, 0},
                        {129, low, 1, 0},
                        {-300, low, -1, -512}}) {
    const LimitEntry entry = limit_entry(c.number, c.rules);
    EXPECT_EQ(entry.byte.value_or(refused), c.byte) << c.number;
    EXPECT_EQ(entry.shown.value_or(unchanged), c.shown) << c.number;
    EXPECT_EQ(entry.byte.has_value(), c.byte != refused || c.shown != unchanged) << c.number;
  }
}

TEST(LimitByte, ANumberBeyondThePlatformsIntegersOverflows) {
  EXPECT_EQ(error_of([] { limit_entry(2147483648.0, high); }), forms::overflow);
  EXPECT_EQ(error_of([] { limit_entry(2147483647.0, high); }), 0);
}

}  // namespace
}  // namespace varzelin::testing
