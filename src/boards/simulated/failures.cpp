#include "boards/simulated/failures.h"

#include <algorithm>
#include <array>

namespace boards {
namespace {

constexpr std::array<std::string_view, 8> operations{
    "WDU_VB_Init",      "WDU_VB_Uninit",   "CloseHandle",   "WDU_GetDeviceInfo",
    "WDU_SetInterface", "WDU_ResetDevice", "WDU_ResetPipe", "WDU_Transfer",
};

}  // namespace

bool Failures::fail_call(std::string_view call, Status status) {
  if (status == success || std::ranges::find(operations, call) == operations.end()) return false;
  calls_.insert_or_assign(std::string(call), status);
  return true;
}

bool Failures::fail_transfers(std::size_t count, Status status, std::size_t after) {
  if (status == success) return false;
  transfers_ = {count, status, after};
  return true;
}

Status Failures::take_call(const char* call) {
  const auto ordered = calls_.find(std::string_view(call));
  if (ordered == calls_.end()) return success;
  const Status status = ordered->second;
  calls_.erase(ordered);
  return status;
}

Status Failures::take_transfer() {
  if (transfers_.count == 0 || transfers_.after > 0) return success;
  --transfers_.count;
  return transfers_.status;
}

bool Failures::take_unplug() {
  if (until_unplug_ != 0u) return false;
  until_unplug_.reset();
  return true;
}

void Failures::transfer_worked() {
  if (transfers_.after > 0) --transfers_.after;
  if (until_unplug_) --*until_unplug_;
}

}  // namespace boards
