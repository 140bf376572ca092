#include "boards/simulated/session.h"

#include <utility>

#include "boards/simulated/statuses.h"

namespace boards {

Handle Session::open(bool matches, EventTable events) {
  session_ = ++last_session_;
  device_ = 0;
  events_ = std::move(events);
  matches_ = matches;
  told_ = 0;
  return session_;
}

bool Session::close(Handle session) {
  if (!is_open(session)) return false;
  session_ = 0;
  device_ = 0;
  events_ = {};
  return true;
}

Status Session::device_status(Handle device) const {
  if (device == 0 || device != device_) return statuses::invalid_handle;
  return told_ != 0 && told_ == present() ? success : statuses::not_attached;
}

void Session::plug() {
  if (!plugged_) ++times_plugged_;
  plugged_ = true;
}

void Session::deliver(const DeviceInfo& info) {
  // The handlers may open and close sessions, so each is called by a copy and after the state is set.
  if (session_ != 0 && told_ != 0 && told_ != present()) {
    told_ = 0;
    const auto detach = events_.detach;
    if (device_ != 0 && detach) detach(device_);
  }
  if (session_ != 0 && matches_ && told_ == 0 && plugged_) {
    told_ = present();
    const Handle device = device_ = ++last_device_;
    const auto attach = events_.attach;
    const bool accepted = attach && attach(device, info);
    if (!accepted && device_ == device) device_ = 0;
  }
}

}  // namespace boards
