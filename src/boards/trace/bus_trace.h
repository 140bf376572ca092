// The last transfers between the program and its board, kept while somebody looks.
#pragma once

#include <chrono>
#include <map>

#include "boards/trace/transfers.h"

namespace boards {

// Everything runs on the interface thread. While it doesn't listen it isn't in the driver's way at all.
class BusTrace final : private Driver::Observer {
 public:
  // Both outlive this.
  BusTrace(Driver& driver, const forms::Clock& clock) : driver_(driver), clock_(clock) {}
  ~BusTrace() override { stop(); }
  BusTrace(const BusTrace&) = delete;
  BusTrace& operator=(const BusTrace&) = delete;

  // Becomes the driver's observer, in the place of any other.
  void start();
  // What was kept stays.
  void stop();
  void clear();

  const Transfers& transfers() const { return transfers_; }
  // Date and time at 0 of the program's clock.
  std::chrono::system_clock::time_point time_zero() const;
  const Driver& driver() const { return driver_; }

 private:
  void call_begins() override { begin_ = clock_.now(); }
  void call_ended(const CallRecord& record) override;
  // The number of the packet that a read on this pipe brings the answer to.
  std::uint64_t request_for(const CallRecord& record);

  Driver& driver_;
  const forms::Clock& clock_;
  forms::Clock::Duration begin_{};
  Transfers transfers_;
  bool after_gap_ = false;
  std::map<std::int32_t, std::uint64_t> unanswered_;  // by OUT pipe: the last packet that the board got
};

}  // namespace boards
