// The command register and the data pair of KVT71338.
#pragma once

#include "registers/register_map.h"

namespace registers::kvt71338 {

inline constexpr std::uint8_t command_register = 0;
inline constexpr std::uint8_t data_register = 1;  // low byte, high byte behind it

// Starts an integration and ends it in turn, under external timing.
inline constexpr Command sync_command{0x80, "Sync"};

inline constexpr Field power{0, 7, 1, "Power", {"down", "up"}};
inline constexpr Field conversion{0, 6, 1, "Conversion", {"one shot", "continuous"}};
inline constexpr Field measurement{0, 5, 1, "Measurement", {"visible light", "infrared"}};
// 2^16, 2^12, 2^8 or 2^4 cycles of the oscillator. Or the host's own time, and then what the data pair
// holds: the count, or the cycles that it took.
inline constexpr Field integration{
    0,
    2,
    3,
    "Integration",
    {"16 bits", "12 bits", "8 bits", "4 bits", "external, ADC value", "external, time base"}};
// With a resistor of 500 kOhm; a smaller one widens them.
inline constexpr Field range{0, 0, 2, "Range", {"1000 lux", "4000 lux", "16000 lux", "64000 lux"}};

inline constexpr auto kvt71338_map =
    checked(RegisterMap<3, 7>{.registers = {{{"R0", "command", Access::read_write, 0x00},
                                             {"R1", "data, low byte", Access::read},
                                             {"R2", "data, high byte", Access::read}}},
                              .fields = {{power,
                                          conversion,
                                          measurement,
                                          integration,
                                          range,
                                          {1, 0, 8, "data, low byte"},
                                          {2, 0, 8, "data, high byte"}}}});

}  // namespace registers::kvt71338
