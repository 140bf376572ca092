// The eight registers of KVT71344, KVT71345 and KVT71356.
#pragma once

#include "registers/register_map.h"

namespace registers::kvt71344 {

inline constexpr std::uint8_t command_register = 0;
inline constexpr std::uint8_t control_register = 1;
inline constexpr std::uint8_t high_limit_register = 2;  // upper eight bits of sixteen
inline constexpr std::uint8_t low_limit_register = 3;
inline constexpr std::uint8_t result_register = 4;  // low byte, high byte behind it
inline constexpr std::uint8_t cycles_register = 6;  // low byte, high byte behind it

// Ends an integration and starts the next one, under external timing.
inline constexpr Command end_of_conversion{0x80, "End of conversion"};
inline constexpr Command clear_interrupt{0x40, "Clear interrupt"};

inline constexpr Field running{0, 7, 1, "ADC", {"reset", "running"}};
inline constexpr Field power_down{0, 6, 1, "Power", {"up", "down"}};
inline constexpr Field external_timing{0, 5, 1, "Timing", {"internal", "external"}};
inline constexpr Field measurement{0, 2, 2, "Measurement", {"D1", "D2", "D1-D2"}};
// 2^16, 2^12, 2^8 or 2^4 clock cycles.
inline constexpr Field resolution{0, 0, 2, "Resolution", {"16 bits", "12 bits", "8 bits", "4 bits"}};
inline constexpr Field interrupt_flag{1, 5, 1, "Interrupt", {"none", "pending"}};
inline constexpr Field range{1, 2, 2, "Range", {"1000 lux", "4000 lux", "16000 lux", "64000 lux"}};
// How many conversions in a row have to be outside the limits.
inline constexpr Field trips{1, 0, 2, "Persistence", {"1 trip", "4 trips", "8 trips", "16 trips"}};

// What the two sensors of the family differ in.
consteval auto map_with(std::uint8_t command_at_power_on, Field resolutions, Field ranges) {
  return checked(RegisterMap<8, 17>{.registers = {{{"R0", "command", Access::read_write, command_at_power_on},
                                                   {"R1", "control", Access::read_write, 0x00},
                                                   {"R2", "high interrupt limit", Access::read_write, 0xFF},
                                                   {"R3", "low interrupt limit", Access::read_write, 0x00},
                                                   {"R4", "result, low byte", Access::read},
                                                   {"R5", "result, high byte", Access::read},
                                                   {"R6", "integration cycles, low byte", Access::read},
                                                   {"R7", "integration cycles, high byte", Access::read}}},
                                    .fields = {{running,
                                                power_down,
                                                external_timing,
                                                {0, 4, 1, "reserved"},
                                                measurement,
                                                resolutions,
                                                {1, 6, 2, "reserved"},
                                                interrupt_flag,
                                                {1, 4, 1, "reserved"},
                                                ranges,
                                                trips,
                                                {2, 0, 8, "high interrupt limit, upper byte"},
                                                {3, 0, 8, "low interrupt limit, upper byte"},
                                                {4, 0, 8, "result, low byte"},
                                                {5, 0, 8, "result, high byte"},
                                                {6, 0, 8, "integration cycles, low byte"},
                                                {7, 0, 8, "integration cycles, high byte"}}}});
}

inline constexpr auto kvt71344_map = map_with(0x80, resolution, range);
inline constexpr auto kvt71356_map =
    map_with(0x88, {0, 0, 2, "Resolution", {"15 bits", "11 bits", "7 bits", "3 bits"}},
             {1, 2, 2, "Range", {"2000 lux", "8000 lux", "32000 lux", "128000 lux"}});

}  // namespace registers::kvt71344
