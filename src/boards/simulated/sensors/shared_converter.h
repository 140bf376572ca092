// The sensors with one converter for light, infrared and proximity: single or continuous conversions, or
// integrations that the host times. What differs between the families is told by those that derive from it.
#pragma once

#include <array>

#include "boards/simulated/sensors/converter.h"
#include "boards/simulated/sensors/count_format.h"
#include "boards/simulated/sensors/proximity.h"
#include "boards/simulated/sensors/register_file.h"
#include "registers/shared_converter.h"

namespace boards {

class SharedConverter : public RegisterFile {
 public:
  void catch_up() override;

 protected:
  // `cells` are laid out as registers/shared_converter.h has them. `scheme` is the field of the proximity
  // scheme, of a register map.
  SharedConverter(RegisterFile cells, const registers::Field& scheme, const Surroundings& surroundings);

  std::uint8_t read_register(std::uint8_t address) override;

 private:
  // How many counts the range in lux is to the hosts of the family: they divide by that.
  virtual double counts_of_range(int bits) const = 0;
  virtual Emitter emitter() const = 0;
  // An integration has taken this many of the converter's cycles, 2^bits - 1 when it was whole.
  virtual void cycles_counted(std::uint16_t) {}
  // A conversion has brought this count, which stands in its registers.
  virtual void converted(int /*count*/, const CountFormat&) {}

  void register_written(std::uint8_t address) override;
  void command(std::uint8_t byte) override;

  // What the conversions depend on; another setting starts them anew.
  using Setting = std::array<int, 5>;
  Setting setting() const;
  enum class Timing { none, single, continuous, on_command };
  Timing timing() const;
  int bits() const { return 16 - 4 * value_of(registers::shared_converter::width); }
  Converter::Time conversion_time() const { return integration_time(bits()); }
  CountFormat format() const;

  void start_converting();
  // A conversion in the present setting that took this long ends now: takes over its result.
  void conversion_ended(Converter::Time integrated);
  // In counts of a whole conversion.
  double measured() const;

  const registers::Field& scheme_;
  Surroundings surroundings_;
  Setting setting_;
  Converter converter_;
};

}  // namespace boards
