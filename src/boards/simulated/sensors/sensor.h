// A sensor in the socket of the simulated board, as its bus, its pins and the bench see it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "boards/simulated/sensors/noise_source.h"
#include "boards/simulated/sensors/scene.h"
#include "forms/clock.h"

namespace boards {

// What a sensor is built with. The board owns it all and outlives the sensor.
struct Surroundings {
  const Scene& scene;
  const forms::Clock& clock;
  NoiseSource& noise;
};

class Sensor {
 public:
  virtual ~Sensor() = default;

  // The bytes behind the address of one bus write, a register pointer or command first. Returns how
  // many of them were acknowledged.
  virtual std::size_t write(std::span<const std::uint8_t> bytes) = 0;
  // One bus read; fills all of `bytes`.
  virtual void read(std::span<std::uint8_t> bytes) = 0;

  // The registers behind the bus's back. No value, or false: there is no such register.
  virtual std::optional<std::uint8_t> register_value(std::uint8_t address) = 0;
  virtual bool set_register(std::uint8_t address, std::uint8_t value) = 0;

  // Lets happen what should have happened by now. The board asks for it before it changes the scene, so that
  // no conversion sees light that came after its end.
  virtual void catch_up() {}
  // True while the sensor pulls its active-low interrupt pin.
  virtual bool interrupts() { return false; }
};

}  // namespace boards
