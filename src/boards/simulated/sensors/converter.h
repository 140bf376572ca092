// When the conversions of a sensor end. What they bring is the sensor's matter.
#pragma once

#include <cstdint>
#include <optional>

#include "forms/clock.h"

namespace boards {

// How long a conversion takes that counts 2^`bits` cycles of the sensor's own clock of 640 kHz: 102.4 ms,
// 6.4 ms, 400 us and 25 us for 16, 12, 8 and 4 bits.
constexpr forms::Clock::Duration integration_time(int bits) {
  using Cycles = std::chrono::duration<std::int64_t, std::ratio<1, 640'000>>;
  return std::chrono::duration_cast<forms::Clock::Duration>(Cycles{std::int64_t{1} << bits});
}

// All times are those of one clock, and never go back.
class Converter {
 public:
  using Time = forms::Clock::Duration;

  // Each of these drops the integration that is under way. `integration` is more than zero.
  void stop();
  void convert_once(Time now, Time integration);
  void convert_continuously(Time now, Time integration);
  // External timing: nothing happens until the host's first command.
  void convert_on_command();

  // True while an integration is under way.
  bool integrating() const { return began_.has_value(); }

  // How many conversions have ended by themselves since the last call.
  std::uint64_t take_ended(Time now);
  // Ends a single conversion before its time is over. How long it took; no value when there is none under
  // way.
  std::optional<Time> cut_off(Time now);
  // The host's command under external timing: it ends an integration and starts the next. How long the
  // ended one took; no value when there was none, or when the host doesn't time the conversions.
  std::optional<Time> command(Time now);

 private:
  enum class Timing { own_once, own_continuous, external };

  void start(Timing timing, std::optional<Time> began, Time integration);

  Timing timing_ = Timing::own_once;
  std::optional<Time> began_;
  Time integration_{};
};

}  // namespace boards
