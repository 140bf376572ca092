// An interrupt limit as two bytes: without a sign, and in two's complement at both widths.
#include "panels/multi_function/limit_bytes.h"

#include <gtest/gtest.h>

namespace varzelin::testing {
namespace {

struct Case {
  double limit;
  int mask;
  int sign_bit;
  int low;
  int high;
};

TEST(LimitBytes, AtTheBordersOfEachFormat) {
  for (const Case& c : {Case{0, 4095, 8, 0x00, 0x00},
                        {1, 4095, 8, 0x01, 0x00},
                        {255, 4095, 8, 0xFF, 0x00},
                        {256, 4095, 8, 0x00, 0x01},
                        {2047, 4095, 8, 0xFF, 0x07},
                        {2048, 4095, 8, 0x00, 0x08},
                        {4095, 4095, 8, 0xFF, 0x0F},
                        {4096, 4095, 8, 0x00, 0x10},
                        {32767, 65535, 128, 0xFF, 0x7F},
                        {32768, 65535, 128, 0x00, 0x80},
                        {65535, 65535, 128, 0xFF, 0xFF},
                        {65536, 65535, 128, 0x00, 256},
                        // A fraction is rounded, beyond a byte's end too; below zero the complement is.
                        {255.4, 4095, 8, 0xFF, 0x00},
                        {255.6, 4095, 8, 0x00, 0x01},
                        {-0.5, 4095, 8, 0x00, 0xFF},
                        {-0.5, 65535, 128, 0x00, 0xFF},
                        {-99.5, 4095, 8, 0x9C, 0xFF},
                        {-99.6, 4095, 8, 0x9C, 0xFF},
                        {-98.5, 4095, 8, 0x9E, 0xFF},
                        {-1, 4095, 8, 0xFF, 0xFF},
                        {-99, 4095, 8, 0x9D, 0xFF},
                        {-100, 4095, 8, 0x9C, 0xFF},
                        {-256, 4095, 8, 0x00, 0xFF},
                        {-257, 4095, 8, 0xFF, 0xFE},
                        {-2048, 4095, 8, 0x00, 0xF8},
                        {-1, 65535, 128, 0xFF, 0xFF},
                        {-100, 65535, 128, 0x9C, 0xFF},
                        {-257, 65535, 128, 0xFF, 0xFE},
                        {-32768, 65535, 128, 0x00, 0x80},
                        // The mask of a read that came before, at the widths without a format.
                        {-100, 2047, 8, 0x9C, 0xF7},
                        {-100, 32767, 128, 0x9C, 0x7F}}) {
    const LimitBytes bytes = limit_bytes(c.limit, c.mask, c.sign_bit);
    EXPECT_EQ(bytes.low, c.low) << c.limit << " " << c.mask;
    EXPECT_EQ(bytes.high, c.high) << c.limit << " " << c.mask;
  }
}

TEST(LimitBytes, RoundsToTheEvenNumber) {
  for (const auto& [limit, low] : {std::pair{99.5, 100}, {100.5, 100}, {100.6, 101}, {0.4, 0}}) {
    EXPECT_EQ(limit_bytes(limit, 4095, 8).low, low) << limit;
  }
}

}  // namespace
}  // namespace varzelin::testing
