// A driver that answers as a recording says, as long as the program asks what it asked then.
#pragma once

#include <istream>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "boards/driver.h"
#include "forms/clock.h"

namespace boards {

// The status of every call after the first that isn't the recorded one.
inline constexpr Status replay_differs = 0x30000001;

class ReplayingBoard final : public Driver {
 public:
  struct Difference {
    std::size_t line;      // of the recording, from 1
    std::string expected;  // the recorded call, or that the recording ends
    std::string got;
  };

  // Reads the whole recording. Every call takes the time that it took then.
  // Throws std::runtime_error with the line when it isn't a recording.
  ReplayingBoard(std::istream& recording, forms::Clock& clock);

  // No value: all went as recorded so far.
  const std::optional<Difference>& difference() const { return difference_; }
  // Everything recorded has happened.
  bool at_end() const { return next_ == lines_.size(); }
  // The program has ended: what was recorded beyond this point is the first difference, if none was before.
  void end();

  std::string VB_Stat2Str(Status status) const override;
  // A recorded notification comes when all that stands before it has happened.
  void deliver_notifications() override;
  void model_chosen(std::string_view model) override;
  std::string board_name() const override { return board_name_ + ", replayed"; }

 private:
  struct Line {
    std::size_t number = 0;
    std::string request;
    Status status = success;
    forms::Clock::Duration took{};
    std::string result;
    std::size_t device = 0;  // how many device lines stand before it
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

  void parse(const std::string& text, std::size_t number);
  void differ(std::string got);
  // The line of this request, which has then happened; null when the next line is another one.
  const Line* take(const std::string& request);
  Status replay(const std::string& request);
  const DeviceInfo& device_info(const Line& line) const;

  forms::Clock& clock_;
  std::string board_name_;
  std::vector<Line> lines_;
  std::vector<DeviceInfo> devices_;
  std::map<Status, std::string> texts_;
  std::size_t next_ = 0;
  std::optional<Difference> difference_;
  EventTable events_;
};

}  // namespace boards
