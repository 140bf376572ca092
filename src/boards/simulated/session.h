// The simulated driver's session, the USB plug, and the notifications between them.
//
// One session at a time: opening another ends the one before.
#pragma once

#include "boards/driver.h"

namespace boards {

class Session {
 public:
  // The handle of the new session. A session for another device is never notified.
  Handle open(bool matches, EventTable events);
  // False: no such session.
  bool close(Handle session);
  bool is_open(Handle session) const { return session != 0 && session == session_; }

  // Success while the device behind the handle is there; not_attached after its plug was pulled;
  // invalid_handle for a handle of no or of an earlier device.
  Status device_status(Handle device) const;

  void plug();
  void unplug() { plugged_ = false; }
  bool plugged() const { return plugged_; }

  // Notifies detach of a device that is gone, then attach of one that has come.
  void deliver(const DeviceInfo& info);

 private:
  // Counts the times that the plug went in; 0 while it is out.
  unsigned present() const { return plugged_ ? times_plugged_ : 0; }

  Handle session_ = 0;
  Handle device_ = 0;  // accepted at the last attach; kept when the device has gone
  Handle last_session_ = 0;
  Handle last_device_ = 0x100;
  EventTable events_;
  bool matches_ = false;
  bool plugged_ = true;
  unsigned times_plugged_ = 1;
  unsigned told_ = 0;  // present() of the device that the session was notified of
};

}  // namespace boards
