// libusb as one session uses it: which of its boards are there, and when to look again.
#pragma once

#include <chrono>
#include <vector>

#include "boards/driver.h"
#include "boards/usb/libusb_handles.h"

namespace boards::usb {

// How a session learns that a board has come or gone.
enum class Watch {
  Hotplug,  // libusb tells, where the platform can; otherwise as Rescan
  Rescan,   // by looking every so often
};

class Context {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  explicit Context(const MatchRow& match) : match_(match) {}
  ~Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  // Once, before anything else. Doesn't wait for any device. Success or init_failed().
  Status open(Watch watch);

  // Of an open one.
  libusb_context* get() const { return context_.get(); }

  // True when the boards may be others than at the last call; always true the first time. Never waits.
  bool changed(TimePoint now);

  // The matching devices, by bus and device number: of those on one bus the longest plugged is first.
  std::vector<DevicePtr> boards() const;

 private:
  MatchRow match_;
  bool changed_ = true;
  int hotplug_ = 0;  // libusb's number of the callback; 0: there is none, and the session rescans
  TimePoint next_scan_{};
  ContextPtr context_;
};

}  // namespace boards::usb
