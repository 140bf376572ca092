// The last transfers between the program and its board, kept while somebody looks.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <vector>

#include "boards/driver.h"
#include "forms/clock.h"

namespace boards {

// One call of WDU_Transfer.
struct Transfer {
  std::uint64_t number;          // from 1 on, as they came
  forms::Clock::Duration begin;  // of the program's clock
  forms::Clock::Duration end;
  std::int32_t pipe;
  Status status;
  std::size_t size;                 // bytes asked for
  std::size_t transferred;          // bytes that went through
  std::vector<std::uint8_t> bytes;  // out: the whole packet, also what didn't go through; in: what came
  std::uint64_t request;            // in: number of the transfer that it answers; 0 if that isn't known
  std::int32_t urb_status;          // as Linux reports it, 0 or a negative errno
  UsbPlace place;                   // of the board

  bool to_host() const { return (pipe & 0x80) != 0; }
};

// Everything runs on the interface thread. While it doesn't listen it isn't in the driver's way at all.
class BusTrace final : private Driver::Observer {
 public:
  static constexpr std::size_t most_transfers = 100'000;

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

  // The oldest is at 0. When there are most_transfers, each new one drives out the oldest.
  std::size_t size() const { return transfers_.size(); }
  const Transfer& operator[](std::size_t index) const { return transfers_[index]; }
  // Null when it isn't kept (any more).
  const Transfer* find(std::uint64_t number) const;
  // What an answer belongs to; null when that isn't known, or not kept any more.
  const Transfer* request_of(const Transfer& transfer) const { return find(transfer.request); }
  // The number of the oldest kept, and of the one that comes next: numbers between them are kept.
  std::uint64_t first_number() const { return next_number_ - transfers_.size(); }
  std::uint64_t next_number() const { return next_number_; }

  // Date and time at 0 of the program's clock.
  std::chrono::system_clock::time_point time_zero() const;
  const Driver& driver() const { return driver_; }

 private:
  void call_begins() override { begin_ = clock_.now(); }
  void call_ended(const CallRecord& record) override;

  Driver& driver_;
  const forms::Clock& clock_;
  forms::Clock::Duration begin_{};
  std::deque<Transfer> transfers_;
  std::uint64_t next_number_ = 1;
  std::map<std::int32_t, std::uint64_t> requests_;  // by pipe: the last packet sent on it
};

}  // namespace boards
