#include "forms/clock.h"

#include <thread>

namespace forms {

void SystemClock::pass(Duration time) {
  if (time > Duration::zero()) std::this_thread::sleep_for(time);
}

std::tm SystemClock::local_time() const {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date());
  std::tm result{};
  localtime_r(&seconds, &result);
  return result;
}

std::chrono::system_clock::time_point VirtualClock::date() const {
  constexpr std::chrono::seconds start(1227621787);  // 2008-11-25 14:03:07
  return std::chrono::system_clock::time_point(
      std::chrono::duration_cast<std::chrono::system_clock::duration>(start + now_));
}

std::tm VirtualClock::local_time() const {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date());
  std::tm result{};
  gmtime_r(&seconds, &result);
  return result;
}

}  // namespace forms
