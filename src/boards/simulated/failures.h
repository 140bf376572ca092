// Failures that were ordered from the bench.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "boards/driver.h"

namespace boards {

class Failures {
 public:
  // The next call of this driver operation fails. False: no such operation, or `status` is success.
  bool fail_call(std::string_view call, Status status);
  // After `after` good transfers, the next `count` fail. False: `status` is success. A later order
  // replaces an earlier one.
  bool fail_transfers(std::size_t count, Status status, std::size_t after);
  // The plug is pulled in the middle of the transfer after `good_transfers` good ones.
  void unplug_after(std::size_t good_transfers) { until_unplug_ = good_transfers; }
  void clear() { *this = {}; }

  std::size_t transfers_to_fail() const { return transfers_.count; }

  // For the driver, once a call: its ordered failure, or success. The order is used up.
  Status take_call(const char* call);
  Status take_transfer();
  bool take_unplug();
  void transfer_worked();

 private:
  struct Transfers {
    std::size_t count = 0;
    Status status = success;
    std::size_t after = 0;
  };

  std::map<std::string, Status, std::less<>> calls_;
  Transfers transfers_;
  std::optional<std::size_t> until_unplug_;
};

}  // namespace boards
