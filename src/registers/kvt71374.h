// The six registers of KVT71374 and KVT71376.
#pragma once

#include "registers/shared_converter.h"

namespace registers::kvt71374 {

using namespace shared_converter;

inline constexpr std::uint8_t cycles_register = 4;  // low byte, high byte behind it

// Results of proximity: scheme 0 counts from 0, scheme 1 in two's complement, with the sign up to bit 15.
inline constexpr Field scheme{0, 0, 1, "Proximity scheme", {"scheme 0", "scheme 1"}};

inline constexpr Field current{1, 6, 2, "Emitter current", {"100 mA", "50 mA", "25 mA", "12.5 mA"}};
inline constexpr Field modulation{
    1, 4, 2, "Emitter modulation", {"DC", "1311 kHz", "655.3 kHz", "327.7 kHz"}};

inline constexpr auto kvt71374_map =
    checked(RegisterMap<6, 13>{.registers = {{{"R0", "command"},
                                              {"R1", "command II"},
                                              {"R2", "result, low byte", Access::read},
                                              {"R3", "result, high byte", Access::read},
                                              {"R4", "integration cycles, low byte", Access::read},
                                              {"R5", "integration cycles, high byte", Access::read}}},
                               .fields = {{operation,
                                           external_timing,
                                           time_base,
                                           {0, 1, 2, "reserved"},
                                           scheme,
                                           current,
                                           modulation,
                                           width,
                                           range,
                                           {2, 0, 8, "result, low byte"},
                                           {3, 0, 8, "result, high byte"},
                                           {4, 0, 8, "integration cycles, low byte"},
                                           {5, 0, 8, "integration cycles, high byte"}}}});

}  // namespace registers::kvt71374
