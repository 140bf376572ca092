#include "boards/simulated/register_file.h"

namespace boards {

std::size_t RegisterFile::write(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return 0;
  const bool command = bytes.size() == 1 && bytes.front() >= registers_.size();
  if (command) return 1;
  pointer_ = bytes.front();
  for (const std::uint8_t value : bytes.subspan(1)) {
    if (pointer_ < registers_.size()) registers_[pointer_] = value;
    ++pointer_;
  }
  return bytes.size();
}

void RegisterFile::read(std::span<std::uint8_t> bytes) {
  for (std::uint8_t& value : bytes) {
    value = pointer_ < registers_.size() ? registers_[pointer_] : std::uint8_t{0};
    ++pointer_;
  }
}

std::optional<std::uint8_t> RegisterFile::register_value(std::uint8_t address) {
  if (address >= registers_.size()) return std::nullopt;
  return registers_[address];
}

bool RegisterFile::set_register(std::uint8_t address, std::uint8_t value) {
  if (address >= registers_.size()) return false;
  registers_[address] = value;
  return true;
}

}  // namespace boards
