// What the program did with the driver, for the commands `packets` and `driver`.
#pragma once

#include <cstdint>
#include <deque>

#include "boards/driver.h"
#include "console/json.h"
#include "forms/clock.h"

namespace console {

class CallLog final : public boards::Driver::Observer {
 public:
  // A log that nobody asks for must not eat the memory: beyond this many calls, or bytes that they moved, the
  // oldest go.
  static constexpr std::size_t most_calls = 100'000;
  static constexpr std::size_t most_bytes = std::size_t{16} << 20;

  explicit CallLog(const forms::Clock& clock) : clock_(clock) {}

  void call_begins() override { begin_ = clock_.now(); }
  void call_ended(const boards::CallRecord& record) override;

  // An array of the transfers, or of all calls, since the last time it was written.
  void write_packets(Json& json);
  void write_calls(Json& json);

 private:
  struct Call {
    forms::Clock::Duration begin;
    const char* name;
    boards::Status status;
    std::int32_t pipe;  // 0: not a transfer
    std::uint32_t size;
    std::uint32_t data_size;
  };
  void drop_first();
  void drop_told();

  const forms::Clock& clock_;
  forms::Clock::Duration begin_{};
  std::deque<Call> calls_;
  std::deque<std::uint8_t> data_;  // of all calls in calls_, one behind the other
  std::uint64_t dropped_ = 0;
  std::uint64_t packets_told_ = 0;  // calls counted from the program's start
  std::uint64_t calls_told_ = 0;
};

// Milliseconds, to the microsecond.
double milliseconds(forms::Clock::Duration time);

}  // namespace console
