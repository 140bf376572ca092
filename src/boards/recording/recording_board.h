// A driver that sits on another one and writes down what goes between it and the program: every call,
// every notification. ReplayingBoard plays it back.
#pragma once

#include <ostream>
#include <set>

#include "boards/driver.h"
#include "forms/clock.h"

namespace boards {

class RecordingBoard final : public Driver {
 public:
  // All three outlive this. The times written are the clock's. Each line is flushed; whether the
  // writing worked is to be seen from the stream.
  RecordingBoard(Driver& driver, const forms::Clock& clock, std::ostream& out);
  ~RecordingBoard() override;

  std::string VB_Stat2Str(Status status) const override { return driver_.VB_Stat2Str(status); }
  std::int32_t urb_status(Status status) const override { return driver_.urb_status(status); }
  std::optional<UsbPlace> transfer_place() const override { return driver_.transfer_place(); }
  void deliver_notifications() override { driver_.deliver_notifications(); }
  void model_chosen(std::string_view model) override;
  std::string board_name() const override { return driver_.board_name() + ", recorded"; }

 private:
  Status do_init(Handle& session, const MatchRow& match, EventTable events) override;
  Status do_uninit(Handle session) override;
  Status do_close_handle(Handle session) override;
  Status do_get_device_info(Handle device, DeviceInfo& info) override;
  Status do_set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate) override;
  Status do_reset_device(Handle device) override;
  Status do_reset_pipe(Handle device, std::int32_t pipe) override;
  Status do_transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                     std::size_t& transferred) override;

  // Makes the call and writes its line; `result` gives what stands behind status and duration.
  template <class Call, class Result>
  Status recorded(const std::string& request, Call&& call, Result&& result);
  template <class Call>
  Status recorded(const std::string& request, Call&& call);
  void write(double time, const std::string& text);
  void note_device_info(const DeviceInfo& info);

  Driver& driver_;
  const forms::Clock& clock_;
  std::ostream& out_;
  std::set<Status> texts_written_;
  std::string device_info_written_;
};

}  // namespace boards
