#include "boards/simulated/sensors/register_file.h"

namespace boards {

RegisterFile::RegisterFile(std::span<const registers::Register> map) {
  for (const registers::Register& one : map) {
    const bool writable = one.access == registers::Access::read_write;
    cells_.push_back({one.power_on, writable ? std::uint8_t{0xFF} : std::uint8_t{0}});
  }
}

RegisterFile::RegisterFile(std::span<const registers::Register> map, const registers::Field& flag)
    : RegisterFile(map) {
  std::uint8_t& writable = cells_[flag.register_number].writable;
  writable = flag.in(writable, 0);
}

std::size_t RegisterFile::write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return 0;
  catch_up();
  if (bytes.size() == 1 && bytes.front() >= cells_.size()) {
    command(bytes.front());
    return 1;
  }
  pointer_ = bytes.front();
  for (const std::uint8_t byte : bytes.subspan(1)) {
    if (pointer_ < cells_.size()) {
      auto& [value, writable] = cells_[pointer_];
      value = static_cast<std::uint8_t>((value & ~writable) | (byte & writable));
      register_written(static_cast<std::uint8_t>(pointer_));
    }
    ++pointer_;
  }
  return bytes.size();
}

void RegisterFile::read(std::span<std::uint8_t> bytes) {
  catch_up();
  for (std::uint8_t& value : bytes) {
    value = pointer_ < cells_.size() ? read_register(static_cast<std::uint8_t>(pointer_)) : std::uint8_t{0};
    ++pointer_;
  }
}

std::optional<std::uint8_t> RegisterFile::register_value(std::uint8_t address) {
  if (address >= cells_.size()) return std::nullopt;
  catch_up();
  return cells_[address].value;
}

bool RegisterFile::set_register(std::uint8_t address, std::uint8_t value) {
  if (address >= cells_.size()) return false;
  catch_up();
  cells_[address].value = value;
  register_written(address);
  return true;
}

void RegisterFile::set(const registers::Field& field, int value) {
  std::uint8_t& byte = cell(field.register_number);
  byte = field.in(byte, value);
}

std::uint16_t RegisterFile::pair(std::uint8_t address) const {
  return static_cast<std::uint16_t>(cells_[address].value | cells_[address + 1u].value << 8);
}

void RegisterFile::set_pair(std::uint8_t address, std::uint16_t value) {
  cells_[address].value = static_cast<std::uint8_t>(value);
  cells_[address + 1u].value = static_cast<std::uint8_t>(value >> 8);
}

}  // namespace boards
