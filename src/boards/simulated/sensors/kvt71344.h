// KVT71344, KVT71345 and KVT71356: eight registers, continuous conversion or integrations that the host
// times, interrupt limits.
#pragma once

#include <array>

#include "boards/simulated/sensors/converter.h"
#include "boards/simulated/sensors/interrupt_limits.h"
#include "boards/simulated/sensors/light.h"
#include "boards/simulated/sensors/register_file.h"
#include "registers/kvt71344.h"

namespace boards {

class Kvt71344 final : public RegisterFile {
 public:
  // What the sensors differ in.
  struct Model {
    std::span<const registers::Register, 8> registers;
    double lowest_range;  // lux; each further range is four times the one before
    int result_bits;      // of the highest resolution; each further one has four fewer
  };
  static constexpr Model kvt71344{registers::kvt71344::kvt71344_map.registers, 1000, 16};
  static constexpr Model kvt71356{registers::kvt71344::kvt71356_map.registers, 2000, 15};

  // What the integration cycle counter counts under external timing.
  static constexpr Converter::Time cycle = std::chrono::microseconds(100);

  Kvt71344(const Model& model, const Surroundings& surroundings);

  void catch_up() override;
  bool interrupts() override;

 private:
  void register_written(std::uint8_t address) override;
  void command(std::uint8_t byte) override;

  std::uint16_t full_scale(int resolution) const;
  // What the conversions depend on; another setting starts them anew.
  using Setting = std::array<int, 2>;
  Setting setting();
  void start_converting();
  void end_external_integration();
  // Takes over the result of a conversion in the present setting that ends now.
  void conversion_ended(std::uint16_t highest_count);

  Model model_;
  Surroundings surroundings_;
  Setting setting_;
  Converter converter_;
  InterruptLimits limits_;
};

}  // namespace boards
