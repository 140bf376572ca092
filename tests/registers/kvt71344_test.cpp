// The register map of KVT71344 and KVT71356.
#include "registers/kvt71344.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace registers::kvt71344 {
namespace {

// The map's field at a bit of a register.
template <std::size_t Registers, std::size_t Fields>
const Field& field_at(const RegisterMap<Registers, Fields>& map, int register_number, int bit) {
  return *std::ranges::find_if(map.fields, [&](const Field& field) {
    return field.register_number == register_number && (field.mask() & 1 << bit) != 0;
  });
}

TEST(Kvt71344Map, TheCommandRegisterHasModeAndResolution) {
  EXPECT_EQ(running.mask(), 0x80);
  EXPECT_EQ(power_down.mask(), 0x40);
  EXPECT_EQ(external_timing.mask(), 0x20);
  EXPECT_EQ(measurement.mask(), 0x0C);
  EXPECT_EQ(resolution.mask(), 0x03);
  for (const Field& field : {running, power_down, external_timing, measurement, resolution}) {
    EXPECT_EQ(field.register_number, command_register) << field.name;
  }
}

TEST(Kvt71344Map, TheControlRegisterHasInterruptAndRange) {
  EXPECT_EQ(interrupt_flag.mask(), 0x20);
  EXPECT_EQ(range.mask(), 0x0C);
  EXPECT_EQ(trips.mask(), 0x03);
  for (const Field& field : {interrupt_flag, range, trips}) {
    EXPECT_EQ(field.register_number, control_register) << field.name;
  }
}

TEST(Kvt71344Map, LimitsResultAndCyclesAreWholeBytes) {
  for (const int number : {high_limit_register + 0, low_limit_register + 0, result_register + 0,
                           result_register + 1, cycles_register + 0, cycles_register + 1}) {
    EXPECT_EQ(field_at(kvt71344_map, number, 0).mask(), 0xFF) << number;
  }
}

TEST(Kvt71344Map, OnlyResultAndCyclesCannotBeWritten) {
  for (std::size_t number = 0; number < kvt71344_map.registers.size(); ++number) {
    EXPECT_EQ(kvt71344_map.registers[number].access == Access::read, number >= result_register) << number;
  }
}

TEST(Kvt71344Map, TheModelsDifferInTheFirstCommandAndInWords) {
  EXPECT_EQ(running.of(kvt71344_map.registers[command_register].power_on), 1);
  EXPECT_EQ(measurement.of(kvt71344_map.registers[command_register].power_on), 0);
  EXPECT_EQ(measurement.of(kvt71356_map.registers[command_register].power_on), 2);
  for (std::size_t number = command_register + 1; number < kvt71344_map.registers.size(); ++number) {
    EXPECT_EQ(kvt71344_map.registers[number].power_on, kvt71356_map.registers[number].power_on) << number;
  }
  for (std::size_t i = 0; i < kvt71344_map.fields.size(); ++i) {
    const Field& field = kvt71344_map.fields[i];
    const Field& other = kvt71356_map.fields[i];
    EXPECT_EQ(field.register_number, other.register_number);
    EXPECT_EQ(field.mask(), other.mask());
    EXPECT_EQ(field.name, other.name);
  }
  EXPECT_EQ(field_at(kvt71344_map, 0, 0).words[0], "16 bits");
  EXPECT_EQ(field_at(kvt71356_map, 0, 1).words[3], "3 bits");
  EXPECT_EQ(field_at(kvt71344_map, 1, 3).words[3], "64000 lux");
  EXPECT_EQ(field_at(kvt71356_map, 1, 2).words[0], "2000 lux");
}

TEST(Kvt71344Map, PowerOnValuesAreThoseOfTheDatasheet) {
  std::vector<int> first;
  for (const Register& one : kvt71344_map.registers) first.push_back(one.power_on);
  EXPECT_EQ(first, (std::vector<int>{0x80, 0x00, 0xFF, 0x00, 0, 0, 0, 0}));
  EXPECT_EQ(kvt71356_map.registers[command_register].power_on, 0x88);
}

TEST(Kvt71344Map, CommandsHaveTheirBytes) {
  EXPECT_EQ(end_of_conversion.byte, 0x80);
  EXPECT_EQ(clear_interrupt.byte, 0x40);
}

}  // namespace
}  // namespace registers::kvt71344
