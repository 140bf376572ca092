#include "boards/simulated/sensors/converter.h"

#include <utility>

namespace boards {

void Converter::stop() {
  start(Timing::own_once, std::nullopt, {});
}

void Converter::convert_once(Time now, Time integration) {
  start(Timing::own_once, now, integration);
}

void Converter::convert_continuously(Time now, Time integration) {
  start(Timing::own_continuous, now, integration);
}

void Converter::convert_on_command() {
  start(Timing::external, std::nullopt, {});
}

std::uint64_t Converter::take_ended(Time now) {
  if (!began_ || timing_ == Timing::external) return 0;
  const auto ended = (now - *began_) / integration_;
  if (timing_ == Timing::own_continuous) {
    *began_ += ended * integration_;
    return static_cast<std::uint64_t>(ended);
  }
  if (ended == 0) return 0;
  stop();
  return 1;
}

std::optional<Converter::Time> Converter::cut_off(Time now) {
  if (!began_ || timing_ != Timing::own_once) return std::nullopt;
  return now - *std::exchange(began_, std::nullopt);
}

std::optional<Converter::Time> Converter::command(Time now) {
  if (timing_ != Timing::external) return std::nullopt;
  const auto began = std::exchange(began_, now);
  if (!began) return std::nullopt;
  return now - *began;
}

void Converter::start(Timing timing, std::optional<Time> began, Time integration) {
  timing_ = timing;
  began_ = began;
  integration_ = integration;
}

}  // namespace boards
