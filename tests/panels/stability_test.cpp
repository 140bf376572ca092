// When two readings of the two-mode panels' stability wait are settled.
#include "panels/two_mode/stability.h"

#include <gtest/gtest.h>

#include <limits>

namespace varzelin::testing {
namespace {

TEST(Stability, TwoReadingsThatDifferByLessThanTheToleranceAreSettled) {
  struct Case {
    int first, second;
    double tolerance;
    bool expected;
  };
  for (const Case& c : {Case{1000, 1000, 0.1, true},
                        {1000, 901, 0.1, true},
                        {1000, 900, 0.1, false},
                        {1000, 899, 0.1, false},
                        {1000, 1001, 0.1, true},  // larger is settled, by however much
                        {1000, 60000, 0.1, true},
                        {1000, 1001, 0, true},
                        {1000, 1000, 0, false},
                        {-1000, 901, 0.1, true},
                        {1000, -901, 0.1, true},
                        {-1000, -899, 0.1, false},
                        {-1000, -2000, 0.1, true},
                        {0, 1000, 0.1, false},
                        {1000, 0, 2, false},
                        {0, 0, 0.1, false},
                        {-1, std::numeric_limits<std::int32_t>::min(), 0, true}}) {
    EXPECT_EQ(settled(c.first, c.second, c.tolerance), c.expected)
        << c.first << ' ' << c.second << ' ' << c.tolerance;
  }
}

}  // namespace
}  // namespace varzelin::testing
