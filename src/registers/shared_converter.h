// What the register maps of the sensors with one converter for light, infrared and proximity have in common.
#pragma once

#include "registers/register_map.h"

namespace registers::shared_converter {

inline constexpr std::uint8_t operation_register = 0;
inline constexpr std::uint8_t configuration_register = 1;
inline constexpr std::uint8_t result_register = 2;  // low byte, high byte behind it

// Starts an integration under external timing.
inline constexpr Command sync{0x80, "Sync"};

// Values of the operation field; 4 has no meaning.
enum Operation : std::uint8_t {
  power_down = 0,
  als_once = 1,
  ir_once = 2,
  proximity_once = 3,
  als_continuous = 5,
  ir_continuous = 6,
  proximity_continuous = 7,
};

inline constexpr Field operation{0,
                                 5,
                                 3,
                                 "Operation",
                                 {"power down", "ALS once", "IR once", "proximity once", "reserved",
                                  "ALS continuous", "IR continuous", "proximity continuous"}};
inline constexpr Field external_timing{0, 4, 1, "Timing", {"internal", "external"}};
inline constexpr Field time_base{0, 3, 1, "Measurement", {"ADC", "time base"}};

inline constexpr Field width{1, 2, 2, "Converter width", {"16 bits", "12 bits", "8 bits", "4 bits"}};
inline constexpr Field range{1, 0, 2, "Range", {"1000 lux", "4000 lux", "16000 lux", "64000 lux"}};

}  // namespace registers::shared_converter
