// The nine registers of KVT71385, KVT71388, KVT71390 and KVT71392.
#pragma once

#include "registers/shared_converter.h"

namespace registers::kvt71385 {

using namespace shared_converter;

inline constexpr std::uint8_t low_limit_register = 4;   // low byte, high byte behind it
inline constexpr std::uint8_t high_limit_register = 6;  // low byte, high byte behind it
// For the maker's tests; the first revision wants it at 1 in the proximity modes.
inline constexpr std::uint8_t test_register = 8;

// Cleared by being read.
inline constexpr Field interrupt_flag{0, 2, 1, "Interrupt", {"none", "pending"}};
// How many conversions in a row have to be outside the limits.
inline constexpr Field persistence{0, 0, 2, "Persistence", {"1 trip", "4 trips", "8 trips", "16 trips"}};

// Results of proximity: scheme 0 counts from 0, scheme 1 in two's complement of the converter's width.
inline constexpr Field scheme{1, 7, 1, "Proximity scheme", {"scheme 0", "scheme 1"}};
inline constexpr Field modulation{1, 6, 1, "Emitter modulation", {"DC", "327.7 kHz"}};
inline constexpr Field current{1, 4, 2, "Emitter current", {"12.5 mA", "25 mA", "50 mA", "100 mA"}};

inline constexpr auto kvt71385_map = checked(
    RegisterMap<9, 17>{.registers = {{{"R0", "operation"},
                                      {"R1", "configuration"},
                                      {"R2", "result, low byte", Access::read},
                                      {"R3", "result, high byte", Access::read},
                                      {"R4", "low interrupt limit, low byte"},
                                      {"R5", "low interrupt limit, high byte"},
                                      {"R6", "high interrupt limit, low byte", Access::read_write, 0xFF},
                                      {"R7", "high interrupt limit, high byte", Access::read_write, 0xFF},
                                      {"R8", "reserved, for tests"}}},
                       .fields = {{operation,
                                   external_timing,
                                   time_base,
                                   interrupt_flag,
                                   persistence,
                                   scheme,
                                   modulation,
                                   current,
                                   width,
                                   range,
                                   {2, 0, 8, "result, low byte"},
                                   {3, 0, 8, "result, high byte"},
                                   {4, 0, 8, "low interrupt limit, low byte"},
                                   {5, 0, 8, "low interrupt limit, high byte"},
                                   {6, 0, 8, "high interrupt limit, low byte"},
                                   {7, 0, 8, "high interrupt limit, high byte"},
                                   {8, 0, 8, "reserved"}}}});

}  // namespace registers::kvt71385
