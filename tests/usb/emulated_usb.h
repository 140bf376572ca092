// A USB with evaluation boards on it, made of umockdev's testbed: the real libusb of this process sees
// it in place of the machine's own. It needs umockdev's library preloaded; ctest does that.
//
// The boards' ioctls are answered on umockdev's thread.
#pragma once

#include <umockdev.h>

#include <memory>
#include <string>
#include <vector>

#include "usb/emulated_board.h"

namespace usb_testing {

class EmulatedUsb {
 public:
  EmulatedUsb();
  ~EmulatedUsb();
  EmulatedUsb(const EmulatedUsb&) = delete;
  EmulatedUsb& operator=(const EmulatedUsb&) = delete;

  // False without the preloaded library: then nothing of this is seen.
  bool possible() const;

  // Puts the board into a port, with a device number of its own as at every plugging, and tells of it.
  void plug(EmulatedBoard& board);
  void unplug(EmulatedBoard& board);

  // Nobody but root may open the board's device node any longer; everybody sees all the rest.
  void deny_access(const EmulatedBoard& board);

 private:
  struct Place {
    EmulatedBoard* board;
    int device_number;
    UMockdevIoctlBase* ioctls;
  };
  const Place& place_of(const EmulatedBoard& board) const;
  static std::string system_path(const Place& place);
  static std::string node(const Place& place);
  void add(const std::string& device);

  UMockdevTestbed* testbed_;
  std::vector<Place> places_;
  int last_device_number_ = 1;
};

}  // namespace usb_testing
