// Noise on readings, the same numbers on every run and every platform.
#pragma once

#include <random>

namespace boards {

class NoiseSource {
 public:
  // Full width of the noise in counts; 0 is none.
  double width = 0;

  // The next value, uniform in -width/2 .. +width/2.
  double next() {
    if (!(width > 0)) return 0;
    // The library's distributions differ between platforms, the generator doesn't.
    constexpr auto lowest = Generator::min();
    constexpr auto range = static_cast<double>(Generator::max() - lowest);
    return (static_cast<double>(generator_() - lowest) / range - 0.5) * width;
  }

 private:
  using Generator = std::minstd_rand;
  Generator generator_{20081125};
};

}  // namespace boards
