#include "boards/simulated/sensors/register_file.h"

namespace boards {

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
    }
    ++pointer_;
  }
  registers_written();
  return bytes.size();
}

void RegisterFile::read(std::span<std::uint8_t> bytes) {
  catch_up();
  for (std::uint8_t& value : bytes) {
    value = pointer_ < cells_.size() ? cells_[pointer_].value : std::uint8_t{0};
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
  registers_written();
  return true;
}

void RegisterFile::set_pair(std::uint8_t address, std::uint16_t value) {
  cells_[address].value = static_cast<std::uint8_t>(value);
  cells_[address + 1u].value = static_cast<std::uint8_t>(value >> 8);
}

}  // namespace boards
