// KVT71385, KVT71388, KVT71390 and KVT71392: nine registers, one converter for light, infrared and proximity,
// single or continuous conversions, interrupt limits.
#pragma once

#include <array>

#include "boards/simulated/sensors/converter.h"
#include "boards/simulated/sensors/count_format.h"
#include "boards/simulated/sensors/interrupt_limits.h"
#include "boards/simulated/sensors/register_file.h"
#include "registers/kvt71385.h"

namespace boards {

class Kvt71385 final : public RegisterFile {
 public:
  explicit Kvt71385(const Surroundings& surroundings);

  void catch_up() override;
  bool interrupts() override;

 private:
  void register_written(std::uint8_t address) override;
  std::uint8_t read_register(std::uint8_t address) override;
  void command(std::uint8_t byte) override;

  // What the conversions depend on; another setting starts them anew.
  using Setting = std::array<int, 4>;
  Setting setting() const;
  enum class Timing { none, single, continuous, on_command };
  Timing timing() const;
  int bits() const { return 16 - 4 * value_of(registers::kvt71385::width); }
  Converter::Time conversion_time() const { return integration_time(bits()); }
  CountFormat format() const;

  void start_converting();
  // A conversion in the present setting that took this long ends now: takes over its result.
  void conversion_ended(Converter::Time integrated);
  // In counts of a whole conversion.
  double measured() const;

  Surroundings surroundings_;
  Setting setting_;
  Converter converter_;
  InterruptLimits limits_;
};

}  // namespace boards
