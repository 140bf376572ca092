// The evaluation board on the USB behind the driver interface, through libusb.
//
// Everything runs on the interface thread. Statuses are libusb's error codes. A session has a libusb
// context of its own, so each session sees the boards that are there when it opens, also on a system
// that never tells of a board that comes later.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "boards/driver.h"
#include "boards/usb/context.h"

namespace boards {

// Of several boards the session works with the first; the others are looked at when that one has gone.
//
// A board that is there but can't be opened is notified all the same; then every operation gives the
// status that says why.
//
// A stalled pipe stays stalled (LIBUSB_ERROR_PIPE) until WDU_ResetPipe or WDU_ResetDevice: the program
// decides, and a driver that cleared it unseen would hide a packet that the board refused.
//
// A reply longer than what is asked for is LIBUSB_ERROR_OVERFLOW.
class UsbBoard final : public Driver {
 public:
  explicit UsbBoard(usb::Watch watch = usb::Watch::Hotplug) : watch_(watch) {}
  ~UsbBoard() override;
  UsbBoard(const UsbBoard&) = delete;
  UsbBoard& operator=(const UsbBoard&) = delete;

  // Name, version and license of what it is made with.
  static std::string library();

  std::string VB_Stat2Str(Status status) const override;
  std::int32_t urb_status(Status status) const override;
  std::optional<UsbPlace> transfer_place() const override { return transfer_place_; }
  void deliver_notifications() override;
  std::string board_name() const override { return "USB board"; }

 private:
  using Clock = std::chrono::steady_clock;

  struct Session {
    Session(Handle number, const MatchRow& match, EventTable table)
        : handle(number), events(std::move(table)), context(match) {}
    Handle handle;
    EventTable events;
    usb::Context context;
    bool looked = false;  // for boards
    bool found = false;   // one, in use or not
  };
  // The board that the session was notified of, kept as long as it is there.
  struct Board {
    usb::DevicePtr device{};
    usb::HandlePtr open{};     // null while it can't be used
    Status refusal = success;  // why it couldn't be opened
    DeviceInfo info{};
    Handle handle = 0;       // 0: rejected, or gone
    bool gone = false;       // an operation found it gone; detach is still to be notified
    bool unplugged = false;  // and that is why
  };
  // A board that isn't ready to be claimed yet.
  struct Arrival {
    usb::DevicePtr device;
    Clock::time_point give_up;
  };

  Status do_init(Handle& session, const MatchRow& match, EventTable events) override;
  Status do_uninit(Handle session) override;
  Status do_close_handle(Handle session) override;
  Status do_get_device_info(Handle device, DeviceInfo& info) override;
  Status do_set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate) override;
  Status do_reset_device(Handle device) override;
  Status do_reset_pipe(Handle device, std::int32_t pipe) override;
  Status do_transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                     std::size_t& transferred) override;

  bool is_open(Handle session) const { return session_ && session_->handle == session; }
  void end_session();
  // Success when the operation may go on with this device.
  Status admit(Handle device) const;
  // Takes note of what the status of an operation says about the board.
  Status concluded(Status status);
  void has_gone();
  // The session's board isn't there any longer, or has to be taken anew.
  void let_go(bool unplugged);
  void look_for_boards(Clock::time_point now);
  // The board can't be used any longer. Returns the handle that it had.
  Handle release();
  void attach(const std::vector<usb::DevicePtr>& boards, Clock::time_point now);
  void tell_number(const std::vector<usb::DevicePtr>& boards);
  void advise(const std::string& text);

  usb::Watch watch_;
  Handle last_session_ = 0;
  Handle last_device_ = 0x100;
  Clock::time_point next_turn_{};
  std::set<std::string> advised_;
  std::unique_ptr<Session> session_;
  Arrival arrival_;
  std::optional<Board> board_;
  std::optional<UsbPlace> transfer_place_;
};

}  // namespace boards
