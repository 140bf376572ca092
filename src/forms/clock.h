// Time as the program sees it: the system's clock, or a virtual one on which nothing waits.
#pragma once

#include <chrono>
#include <cstdint>
#include <ctime>

namespace forms {

class Clock {
 public:
  using Duration = std::chrono::nanoseconds;

  virtual ~Clock() = default;

  // Time since the program started.
  virtual Duration now() const = 0;
  // Lets this much time pass. On the system's clock the thread sleeps.
  virtual void pass(Duration time) = 0;
  // The message loop yielded once: 1 microsecond on a virtual clock, nothing on the system's.
  virtual void yielded() = 0;
  // Date and time of now(). The virtual clock's are those of a place in Greenwich.
  virtual std::chrono::system_clock::time_point date() const = 0;
  // The same, broken down and local.
  virtual std::tm local_time() const = 0;
  virtual bool is_virtual() const = 0;

  double milliseconds() const { return std::chrono::duration<double, std::milli>(now()).count(); }
};

// The system's monotonic clock and its local time.
class SystemClock final : public Clock {
 public:
  SystemClock() : start_(std::chrono::steady_clock::now()) {}
  Duration now() const override { return std::chrono::steady_clock::now() - start_; }
  void pass(Duration time) override;
  void yielded() override {}
  std::chrono::system_clock::time_point date() const override { return std::chrono::system_clock::now(); }
  std::tm local_time() const override;
  bool is_virtual() const override { return false; }

 private:
  std::chrono::steady_clock::time_point start_;
};

// A clock that moves only when told. It starts at 2008-11-25 14:03:07, so that everything written
// on it is the same on every run.
class VirtualClock final : public Clock {
 public:
  Duration now() const override { return now_; }
  void pass(Duration time) override {
    if (time > Duration::zero()) now_ += time;
  }
  void yielded() override { now_ += std::chrono::microseconds(1); }
  std::chrono::system_clock::time_point date() const override;
  std::tm local_time() const override;
  bool is_virtual() const override { return true; }

 private:
  Duration now_{};
};

}  // namespace forms
