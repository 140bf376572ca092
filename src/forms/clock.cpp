#include "forms/clock.h"

#include <thread>

namespace forms {

void SystemClock::pass(Duration time) {
  if (time > Duration::zero()) std::this_thread::sleep_for(time);
}

std::tm SystemClock::local_time() const {
  const std::time_t seconds = std::time(nullptr);
  std::tm result{};
  localtime_r(&seconds, &result);
  return result;
}

std::tm VirtualClock::local_time() const {
  constexpr std::time_t start = 1227621787;  // 2008-11-25 14:03:07, read as UTC
  const std::time_t seconds = start + std::chrono::duration_cast<std::chrono::seconds>(now_).count();
  std::tm result{};
  gmtime_r(&seconds, &result);
  return result;
}

}  // namespace forms
