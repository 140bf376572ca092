// The driver session with the board: opening it, finding the one board, closing it. The workbench owns
// it and shows it on its lamps; the GPIO panel uses the same session without any lamp.
#pragma once

#include "bridge/program.h"

namespace varzelin {

// The evaluation board. Vendor and product as in its USB device descriptor; product decimal 8197.
inline constexpr boards::MatchRow board_match{0x7A53, 0x2005};

// A connect waits for the attach notification by this many yields, whether it came or not.
inline constexpr int attach_yields = 10000;

// What a form shows of the session, called where the session's steps say so.
class SessionDisplay {
 public:
  virtual ~SessionDisplay() = default;
  virtual void driver_handle_changed() = 0;
  virtual void driver_failed() = 0;  // the driver itself couldn't be opened
  virtual void driver_opened() = 0;
  virtual void connecting() = 0;  // before the session counts as open
  virtual void connected() = 0;
  virtual void disconnected() = 0;
};

// Opens the session. The outcome is in Usb_Open and Usb_Status: with a driver but without a board the
// session opens all the same, with an error in the log and a device handle of 0.
void connect_session(Program& program, SessionDisplay& display);
// The same without any lamp.
void Mod_Connect_Usb(Program& program);

// Closes the session; does nothing unless it is open and has a driver handle.
void disconnect_session(Program& program, SessionDisplay& display);
void Mod_Disconnect_USB(Program& program);

}  // namespace varzelin
