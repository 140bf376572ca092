// The driver interface: the USB kit's operations by their names, one status per call, and the kit's
// attach and detach notifications, which are delivered when the message loop asks for them.
//
// Everything runs on the interface thread. Handles are opaque numbers above 0; 0 is "none". Every
// operation is told to the observer (if there is one), failed ones too.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace boards {

// 0 is success. Other values are the driver's own; VB_Stat2Str gives their text.
using Status = std::int32_t;
using Handle = std::int32_t;

inline constexpr Status success = 0;
inline constexpr std::uint32_t transfer_timeout_ms = 1000;

// Bulk pipes of the bridge board; bit 7 is the USB direction bit (1: to the host).
inline constexpr std::int32_t pipe_gpio_out = 0x01;
inline constexpr std::int32_t pipe_gpio_in = 0x81;
inline constexpr std::int32_t pipe_i2c_out = 0x02;
inline constexpr std::int32_t pipe_i2c_in = 0x82;
inline constexpr std::int32_t pipe_direction_bit = 0x80;
inline constexpr bool to_host(std::int32_t pipe) {
  return (pipe & pipe_direction_bit) != 0;
}

// The row of the match table that says which device the session is for.
struct MatchRow {
  std::uint16_t vendor_id;
  std::uint16_t product_id;
};

// USB endpoint descriptor, as far as it is shown or used.
struct PipeInfo {
  std::uint8_t address;     // bEndpointAddress, direction in bit 7
  std::uint8_t attributes;  // bmAttributes; 2 is bulk
  std::uint16_t max_packet;
  std::uint8_t interval;
};

// USB interface descriptor of one alternate setting.
struct AlternateSetting {
  std::uint8_t number;
  std::uint8_t interface_class;
  std::uint8_t interface_subclass;
  std::uint8_t interface_protocol;
  std::vector<PipeInfo> pipes;
};

struct InterfaceInfo {
  std::uint8_t number;
  std::vector<AlternateSetting> alternates;
};

struct ConfigurationInfo {
  std::uint8_t value;  // bConfigurationValue
  std::vector<InterfaceInfo> interfaces;
};

struct DeviceInfo {
  std::uint16_t vendor_id = 0;
  std::uint16_t product_id = 0;
  std::vector<ConfigurationInfo> configurations;
  std::size_t active_configuration = 0;  // index into configurations
  std::size_t active_interface = 0;      // index into its interfaces
  std::size_t active_alternate = 0;      // index into its alternates
};

// The alternate setting in use; an empty one when the indices lead nowhere.
const AlternateSetting& active_setting(const DeviceInfo& info);

// Where a board is on the USB: bus and device number, as lsusb shows them. 0 and 0: there is no USB.
struct UsbPlace {
  std::uint16_t bus = 0;
  std::uint8_t device = 0;
  bool operator==(const UsbPlace&) const = default;
};

// Called from Driver::deliver_notifications(), never from inside another driver call.
struct EventTable {
  // A matching device is there. True accepts it.
  std::function<bool(Handle device, const DeviceInfo& info)> attach;
  std::function<void(Handle device)> detach;
};

// What an observer is told of a finished call.
struct CallRecord {
  const char* call;  // the operation's name, e.g. "WDU_Transfer"
  Status status;
  bool transfer = false;  // the fields below are of a transfer
  std::int32_t pipe = 0;
  bool read = false;                       // asked for as a read; a driver may refuse that on this pipe
  std::span<const std::uint8_t> buffer{};  // all that was asked for; of a write also what didn't go through
  std::span<const std::uint8_t> data{};    // the bytes of it that went through
};

class Driver {
 public:
  // Told before a call begins (to take its time) and when it has finished.
  struct Observer {
    virtual ~Observer() = default;
    virtual void call_begins() = 0;
    virtual void call_ended(const CallRecord& record) = 0;
  };

  virtual ~Driver() = default;

  // Opens a session for the device of `match`. On success `session` is set and attach will be
  // notified for a device that is there. On failure `session` is left alone.
  Status WDU_VB_Init(Handle& session, const MatchRow& match, EventTable events);
  // Ends the session; no notification comes afterwards.
  Status WDU_VB_Uninit(Handle session);
  // The system's own close of the session's handle. The session still has to be handed to
  // WDU_VB_Uninit.
  Status CloseHandle(Handle session);
  Status WDU_GetDeviceInfo(Handle device, DeviceInfo& info);
  Status WDU_SetInterface(Handle device, std::int32_t interface_number, std::int32_t alternate);
  Status WDU_ResetDevice(Handle device);
  Status WDU_ResetPipe(Handle device, std::int32_t pipe);
  // One bulk transfer of at most buffer.size() bytes, read when `read` is true, with the time-out of
  // 1000 ms. `transferred` is what went through, also when the status is not 0; a read leaves the
  // bytes of the buffer behind that as they were.
  Status WDU_Transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                      std::size_t& transferred);
  // The driver's words for a status.
  virtual std::string VB_Stat2Str(Status status) const = 0;

  // For captures: how Linux reports a USB transfer that ended so, 0 or a negative errno. A driver that
  // doesn't know better says protocol error.
  virtual std::int32_t urb_status(Status status) const;
  // For captures: where the board is that the last transfer went to. None: it was refused before it
  // reached a board.
  virtual std::optional<UsbPlace> transfer_place() const { return UsbPlace{}; }

  // Delivers waiting attach and detach notifications. The message loop calls it once a turn, so it
  // has to be cheap when nothing waits.
  virtual void deliver_notifications() = 0;

  // The sensor model that the user works with. A simulated board puts that sensor into its socket;
  // a real one has whatever was soldered to it.
  virtual void model_chosen(std::string_view /*model*/) {}

  // One short name for what stands behind the driver, e.g. "simulated board".
  virtual std::string board_name() const = 0;

  Observer* observer = nullptr;  // not owned; may be null

  // Called again and again while a transfer waits for the board, for a front end that stays painted. It runs
  // no handler and calls no driver; may be empty.
  std::function<void()> on_wait;

  // What the user should be told once in a message box, e.g. how to get access to the board. May come
  // from inside any call; may be empty.
  std::function<void(const std::string& text)> on_advice;
  // What the program's log should say about the boards that no status tells. Called from
  // deliver_notifications(); may be empty.
  std::function<void(const std::string& text)> on_remark;

 protected:
  virtual Status do_init(Handle& session, const MatchRow& match, EventTable events) = 0;
  virtual Status do_uninit(Handle session) = 0;
  virtual Status do_close_handle(Handle session) = 0;
  virtual Status do_get_device_info(Handle device, DeviceInfo& info) = 0;
  virtual Status do_set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate) = 0;
  virtual Status do_reset_device(Handle device) = 0;
  virtual Status do_reset_pipe(Handle device, std::int32_t pipe) = 0;
  virtual Status do_transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                             std::size_t& transferred) = 0;
};

}  // namespace boards
