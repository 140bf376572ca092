// The register map of KVT71374 and KVT71376, against the bytes that their panels' captions stand for.
#include "registers/kvt71374.h"

#include <gtest/gtest.h>

namespace {

using namespace registers::kvt71374;

struct Bits {
  registers::Field field;
  int register_number, value, byte;
  const char* word;
};

TEST(Kvt71374Registers, TheCommandBytesAreMadeOfTheirFields) {
  const Bits all[]{{operation, 0, power_down, 0x00, "power down"},
                   {operation, 0, als_once, 0x20, "ALS once"},
                   {operation, 0, ir_once, 0x40, "IR once"},
                   {operation, 0, proximity_once, 0x60, "proximity once"},
                   {operation, 0, als_continuous, 0xA0, "ALS continuous"},
                   {operation, 0, ir_continuous, 0xC0, "IR continuous"},
                   {operation, 0, proximity_continuous, 0xE0, "proximity continuous"},
                   {external_timing, 0, 1, 0x10, "external"},
                   {time_base, 0, 1, 0x08, "time base"},
                   {scheme, 0, 1, 0x01, "scheme 1"},
                   {current, 1, 0, 0x00, "100 mA"},
                   {current, 1, 1, 0x40, "50 mA"},
                   {current, 1, 2, 0x80, "25 mA"},
                   {current, 1, 3, 0xC0, "12.5 mA"},
                   {modulation, 1, 0, 0x00, "DC"},
                   {modulation, 1, 1, 0x10, "1311 kHz"},
                   {modulation, 1, 2, 0x20, "655.3 kHz"},
                   {modulation, 1, 3, 0x30, "327.7 kHz"},
                   {width, 1, 1, 0x04, "12 bits"},
                   {width, 1, 2, 0x08, "8 bits"},
                   {width, 1, 3, 0x0C, "4 bits"},
                   {range, 1, 0, 0x00, "1000 lux"},
                   {range, 1, 1, 0x01, "4000 lux"},
                   {range, 1, 2, 0x02, "16000 lux"},
                   {range, 1, 3, 0x03, "64000 lux"}};
  for (const Bits& bits : all) {
    SCOPED_TRACE(bits.word);
    EXPECT_EQ(bits.field.register_number, bits.register_number);
    EXPECT_EQ(bits.field.in(0x00, bits.value), bits.byte);
    EXPECT_EQ(bits.field.of(static_cast<std::uint8_t>(bits.byte)), bits.value);
    EXPECT_EQ(bits.field.in(0xFF, 0), 0xFF & ~bits.field.mask());
    EXPECT_EQ(bits.field.words[static_cast<std::size_t>(bits.value)], bits.word);
  }
}

TEST(Kvt71374Registers, AreTwoToWriteAndTwoPairsToRead) {
  ASSERT_EQ(kvt71374_map.registers.size(), 6u);
  for (std::size_t number = 0; number < kvt71374_map.registers.size(); ++number) {
    EXPECT_EQ(kvt71374_map.registers[number].power_on, 0) << number;
    EXPECT_EQ(kvt71374_map.registers[number].access == registers::Access::read, number >= result_register)
        << number;
  }
  EXPECT_EQ(operation_register, 0);
  EXPECT_EQ(configuration_register, 1);
  EXPECT_EQ(result_register, 2);
  EXPECT_EQ(cycles_register, 4);
}

TEST(Kvt71374Registers, ASyncIsNoRegister) {
  EXPECT_EQ(registers::kvt71374::sync.byte, 0x80);
  EXPECT_GE(registers::kvt71374::sync.byte, kvt71374_map.registers.size());
}

}  // namespace
