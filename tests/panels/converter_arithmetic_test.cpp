// What a converter's counts mean, on both sides of each limit.
#include "panels/converter/arithmetic.h"

#include <gtest/gtest.h>

#include "forms/text.h"

namespace varzelin::testing {
namespace {

struct Lux {
  double count;
  int range;
  int resistor;
  int full_count;
  int lux;
};

TEST(ConverterArithmetic, LuxEndsOneCountBeyondTheScale) {
  for (const Lux& c : {Lux{0, 1000, 500000, 65536, 0},
                       {65535, 1000, 500000, 65536, 1000},
                       {65504, 1000, 500000, 65536, 999},
                       {65505, 1000, 500000, 65536, 1000},
                       {65535, 64000, 500000, 65536, 63998},
                       {65536, 64000, 500000, 65536, 63999},
                       {65537, 64000, 500000, 65536, 64000},
                       {4095, 1000, 500000, 4096, 1000},
                       {4095, 4000, 500000, 4096, 3998},
                       {4095, 16000, 500000, 4096, 15992},
                       {4095, 64000, 500000, 4096, 63969},
                       {255, 1000, 500000, 256, 992},
                       {15, 1000, 500000, 16, 882},
                       {1, 1000, 500000, 16, 59},
                       {2048.5, 1000, 500000, 4096, 500},
                       {100, 1000, 250000, 4096, 49},
                       {100, 1000, 1000000, 4096, 12},
                       {-100, 1000, 500000, 4096, -24}}) {
    EXPECT_EQ(forms::CLng(lux_of(c.count, c.range, c.resistor, c.full_count)), c.lux)
        << c.count << " " << c.range;
  }
  EXPECT_DOUBLE_EQ(lux_of(65535, 1000, 500000, 65536), 1000.0 * 65535 / 65537);
}

struct Inverted {
  int low;
  int high;
  int negative_from;
  int value;
};

TEST(ConverterArithmetic, InvertedMagnitudeBeginsWhereItIsSaid) {
  for (const Inverted& c : {Inverted{0x00, 0x00, 128, 0},
                            {0xFF, 0x7F, 128, 32767},
                            {0x00, 0x80, 128, -32768},
                            {0xFF, 0xFF, 128, -1},
                            {0x00, 0x80, 129, 32768},
                            {0xFF, 0x80, 129, 33023},
                            {0x00, 0x81, 129, -32512},
                            {0x9C, 0xFF, 129, -100}}) {
    const SignedCount count = inverted_magnitude(c.low, c.high, c.negative_from);
    EXPECT_EQ(count.value, c.value) << c.high << " " << c.negative_from;
    EXPECT_EQ(count.sign, c.value < 0 ? -1 : 1) << c.high << " " << c.negative_from;
  }
}

struct Complement {
  int low;
  int high;
  int sign_bit;
  int sign_mask;
  int value;
};

TEST(ConverterArithmetic, TwosComplementIsOfTheWidth) {
  for (const Complement& c : {Complement{0x00, 0x00, 8, 2047, 0},
                              {0xFF, 0x07, 8, 2047, 2047},
                              {0x00, 0x08, 8, 2047, -2048},
                              {0xFF, 0x0F, 8, 2047, -1},
                              {0x9C, 0x0F, 8, 2047, -100},
                              {0x9C, 0xFF, 8, 2047, -100},  // the upper half means nothing
                              {0xFF, 0xF7, 8, 2047, 2047},
                              {0xFF, 0x7F, 128, 32767, 32767},
                              {0x00, 0x80, 128, 32767, -32768},
                              {0xFF, 0xFF, 128, 32767, -1},
                              {0x9C, 0xFF, 128, 32767, -100},
                              // The mask of a write that came before.
                              {0x9C, 0xFF, 8, 4095, -2148}}) {
    const SignedCount count = twos_complement(c.low, c.high, c.sign_bit, c.sign_mask);
    EXPECT_EQ(count.value, c.value) << c.high << " " << c.low << " " << c.sign_bit;
    EXPECT_EQ(count.sign, c.value < 0 ? -1 : 1) << c.high;
  }
}

TEST(ConverterArithmetic, APlainCountHasNoSign) {
  EXPECT_EQ(plain_count(0xFF, 0xFF).value, 65535);
  EXPECT_EQ(plain_count(0x34, 0x12).value, 0x1234);
  EXPECT_EQ(plain_count(0xFF, 0xFF).sign, 1);
}

}  // namespace
}  // namespace varzelin::testing
