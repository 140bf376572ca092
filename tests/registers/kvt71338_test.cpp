// The register map of KVT71338, against the bytes that its panel's captions stand for.
#include <gtest/gtest.h>

#include "registers/kvt71338.h"

namespace {

using namespace registers::kvt71338;

struct Bits {
  registers::Field field;
  int value;
  int byte;
  const char* word;
};

TEST(Kvt71338Registers, TheCommandByteIsMadeOfItsFields) {
  const Bits all[]{{power, 1, 0x80, "up"},
                   {conversion, 1, 0x40, "continuous"},
                   {measurement, 1, 0x20, "infrared"},
                   {integration, 1, 0x04, "12 bits"},
                   {integration, 2, 0x08, "8 bits"},
                   {integration, 3, 0x0C, "4 bits"},
                   {integration, 4, 0x10, "external, ADC value"},
                   {integration, 5, 0x14, "external, time base"},
                   {range, 1, 0x01, "4000 lux"},
                   {range, 2, 0x02, "16000 lux"},
                   {range, 3, 0x03, "64000 lux"}};
  for (const Bits& bits : all) {
    SCOPED_TRACE(bits.word);
    EXPECT_EQ(bits.field.register_number, command_register);
    EXPECT_EQ(bits.field.in(0x00, bits.value), bits.byte);
    EXPECT_EQ(bits.field.of(static_cast<std::uint8_t>(bits.byte)), bits.value);
    EXPECT_EQ(bits.field.in(0xFF, 0), 0xFF & ~bits.field.mask());
    EXPECT_EQ(bits.field.words[static_cast<std::size_t>(bits.value)], bits.word);
  }
}

TEST(Kvt71338Registers, AreACommandAndADataPair) {
  ASSERT_EQ(kvt71338_map.registers.size(), 3u);
  EXPECT_EQ(kvt71338_map.registers[0].power_on, 0);
  EXPECT_EQ(kvt71338_map.registers[0].access, registers::Access::read_write);
  EXPECT_EQ(kvt71338_map.registers[data_register].access, registers::Access::read);
  EXPECT_EQ(kvt71338_map.registers[data_register + 1].access, registers::Access::read);
  EXPECT_EQ(sync_command.byte, 0x80);
}

}  // namespace
