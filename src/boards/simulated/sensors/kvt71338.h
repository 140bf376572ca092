// KVT71338: a command register and a data pair, continuous or single conversions or integrations that the
// host times, a clock and ranges that an external resistor sets.
#pragma once

#include "boards/simulated/sensors/converter.h"
#include "boards/simulated/sensors/light.h"
#include "boards/simulated/sensors/register_file.h"
#include "registers/kvt71338.h"

namespace boards {

class Kvt71338 final : public RegisterFile {
 public:
  explicit Kvt71338(const Surroundings& surroundings);

  void catch_up() override;

 private:
  // What the conversions depend on; another setting starts them anew.
  struct Setting {
    std::uint8_t command;
    double resistor_ohms;
    bool operator==(const Setting&) const = default;
  };

  void register_written(std::uint8_t address) override;
  void command(std::uint8_t byte) override;

  Setting setting() const;
  bool single_conversions() const;
  void start_converting();
  void end_external_integration();
  // Cycles of the oscillator as a time, and the other way round.
  Converter::Time time_of(double cycles) const;
  double cycles_in(Converter::Time time) const;
  // The count of an integration in the present setting that ends now and can bring at most this.
  std::uint16_t count(std::uint16_t highest);

  Surroundings surroundings_;
  Setting setting_;
  Converter converter_;
};

}  // namespace boards
