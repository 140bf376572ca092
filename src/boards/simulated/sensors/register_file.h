// A sensor with registers. By itself they hold what is written and convert nothing; the sensors derive from
// it.
#pragma once

#include <span>
#include <vector>

#include "boards/simulated/sensors/sensor.h"
#include "registers/register_map.h"

namespace boards {

class RegisterFile : public Sensor {
 public:
  // As the map has them.
  explicit RegisterFile(std::span<const registers::Register> map);
  // `flag` is what only the sensor changes in a register that the host writes.
  RegisterFile(std::span<const registers::Register> map, const registers::Field& flag);

  // The first byte is the register pointer, which steps on at every data byte. Data beyond the last
  // register is acknowledged and lost. A single byte beyond it is a command, and always acknowledged.
  std::size_t write(std::span<const std::uint8_t> bytes) override;
  // From the pointer on, 0 beyond the last register.
  void read(std::span<std::uint8_t> bytes) override;

  std::optional<std::uint8_t> register_value(std::uint8_t address) override;
  bool set_register(std::uint8_t address, std::uint8_t value) override;

 protected:
  std::uint8_t& cell(std::uint8_t address) { return cells_[address].value; }
  std::uint8_t cell(std::uint8_t address) const { return cells_[address].value; }
  int value_of(const registers::Field& field) const { return field.of(cell(field.register_number)); }
  void set(const registers::Field& field, int value);
  // A pair of registers, low byte first.
  std::uint16_t pair(std::uint8_t address) const;
  void set_pair(std::uint8_t address, std::uint16_t value);

 private:
  struct Cell {
    std::uint8_t value;
    std::uint8_t writable;  // the bits that the bus can change
  };

  // The bus or the bench has written this register.
  virtual void register_written(std::uint8_t) {}
  // The bus reads this register: what it gets.
  virtual std::uint8_t read_register(std::uint8_t address) { return cell(address); }
  virtual void command(std::uint8_t) {}

  std::vector<Cell> cells_;
  std::size_t pointer_ = 0;
};

}  // namespace boards
