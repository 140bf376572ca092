// The register map of a sensor family as one constexpr table: which registers there are, what each bit of
// them means, and the words of a field's values. The panels, the simulated sensors, the bus trace and the
// documents take their bits and words from here.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace registers {

enum class Access : std::uint8_t { read_write, read };

// A group of neighbouring bits of one register.
struct Field {
  std::uint8_t register_number = 0;
  std::uint8_t lowest_bit = 0;
  std::uint8_t width = 8;  // bits
  std::string_view name = {};
  // What the values 0, 1, 2, ... mean, as far as they have words of their own.
  std::array<std::string_view, 8> words = {};

  constexpr std::uint8_t mask() const {
    return static_cast<std::uint8_t>(((1u << width) - 1u) << lowest_bit);
  }
  constexpr int of(std::uint8_t byte) const { return (byte & mask()) >> lowest_bit; }
  // The byte with this value in the field; bits of the value beyond the field's width are dropped.
  constexpr std::uint8_t in(std::uint8_t byte, int value) const {
    return static_cast<std::uint8_t>((byte & ~mask()) | ((value << lowest_bit) & mask()));
  }
};

struct Register {
  std::string_view name;     // as the datasheet and the panel's label have it: "R0"
  std::string_view content;  // "command"
  Access access = Access::read_write;
  std::uint8_t power_on = 0;
};

// A byte that is sent where a register number would stand, without data.
struct Command {
  std::uint8_t byte;
  std::string_view name;
};

template <std::size_t Registers, std::size_t Fields>
struct RegisterMap {
  std::array<Register, Registers> registers;  // by number
  std::array<Field, Fields> fields;
};

// Every bit of every register belongs to exactly one field.
template <std::size_t Registers, std::size_t Fields>
constexpr bool is_whole(const RegisterMap<Registers, Fields>& map) {
  std::array<std::uint8_t, Registers> taken{};
  for (const Field& field : map.fields) {
    if (field.register_number >= Registers || field.width == 0 || field.lowest_bit + field.width > 8) {
      return false;
    }
    std::uint8_t& bits = taken[field.register_number];
    if ((bits & field.mask()) != 0) return false;
    bits = static_cast<std::uint8_t>(bits | field.mask());
  }
  for (const std::uint8_t bits : taken) {
    if (bits != 0xFF) return false;
  }
  return true;
}

// A map that isn't whole doesn't compile.
template <std::size_t Registers, std::size_t Fields>
consteval RegisterMap<Registers, Fields> checked(const RegisterMap<Registers, Fields>& map) {
  if (!is_whole(map)) throw "fields overlap, stick out of their register, or leave a bit out";
  return map;
}

}  // namespace registers
