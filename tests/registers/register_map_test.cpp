// Register maps: which are whole, and what a field does with a byte.
#include "registers/register_map.h"

#include <gtest/gtest.h>

#include "registers/kvt71344.h"

namespace registers {
namespace {

template <std::size_t Registers, std::size_t Fields>
constexpr bool whole(const Field (&fields)[Fields]) {
  RegisterMap<Registers, Fields> map{};
  for (std::size_t i = 0; i < Fields; ++i) map.fields[i] = fields[i];
  return is_whole(map);
}

static_assert(whole<1>({{0, 0, 8}}));
static_assert(whole<1>({{0, 7, 1}, {0, 0, 7}}), "in any order");
static_assert(whole<2>({{1, 0, 4}, {0, 0, 8}, {1, 4, 4}}));
static_assert(!whole<1>({{0, 0, 4}, {0, 3, 5}}), "two fields have bit 3");
static_assert(!whole<1>({{0, 0, 8}, {0, 0, 8}}), "a field twice");
static_assert(!whole<1>({{0, 0, 3}, {0, 4, 4}}), "bit 3 is left out");
static_assert(!whole<1>({{0, 0, 7}}), "the highest bit is left out");
static_assert(!whole<2>({{0, 0, 8}}), "a register is left out");
static_assert(!whole<1>({{0, 0, 8}, {1, 0, 8}}), "no such register");
static_assert(!whole<1>({{0, 0, 1}, {0, 1, 8}}), "sticks out of its register");
static_assert(!whole<1>({{0, 0, 8}, {0, 0, 0}}), "a field of no bits");

constexpr Field middle{0, 2, 3};

TEST(RegisterField, TakesItsBitsOfAByte) {
  EXPECT_EQ(middle.mask(), 0x1C);
  EXPECT_EQ(middle.of(0x00), 0);
  EXPECT_EQ(middle.of(0xFF), 7);
  EXPECT_EQ(middle.of(0xE3), 0);
  EXPECT_EQ(middle.of(0x14), 5);
}

TEST(RegisterField, LeavesTheOtherBitsOfAByte) {
  EXPECT_EQ(middle.in(0x00, 5), 0x14);
  EXPECT_EQ(middle.in(0xFF, 0), 0xE3);
  EXPECT_EQ(middle.in(0xE3, 7), 0xFF);
  EXPECT_EQ(middle.in(0xFF, 2), 0xEB);
}

TEST(RegisterField, DropsWhatIsTooLargeForIt) {
  EXPECT_EQ(middle.in(0x00, 8), 0x00);
  EXPECT_EQ(middle.in(0x00, 13), 0x14);
  EXPECT_EQ(middle.in(0xE3, -1), 0xFF);
  EXPECT_EQ((Field{0, 7, 1}.in(0x00, 3)), 0x80);
}

TEST(RegisterField, MayBeAWholeByte) {
  constexpr Field byte{3, 0, 8};
  EXPECT_EQ(byte.mask(), 0xFF);
  EXPECT_EQ(byte.of(0xA5), 0xA5);
  EXPECT_EQ(byte.in(0xA5, 0x15A), 0x5A);
}

}  // namespace
}  // namespace registers
