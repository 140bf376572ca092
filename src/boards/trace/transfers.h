// Transfers in the order in which they came, each with a number, the oldest given up first.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
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
  bool read;
  Status status;
  std::size_t size;                 // bytes asked for
  std::size_t transferred;          // bytes that went through
  std::vector<std::uint8_t> bytes;  // read: those that came; write: the packet, also what didn't go through
  std::uint64_t request;            // number of the packet that a read brings the answer to; 0: none is known
  std::int32_t urb_status;          // as Linux reports it, 0 or a negative errno
  bool after_gap;                   // the trace didn't listen right before it
  std::optional<UsbPlace> place;    // of the board; none: the driver refused it, nothing was on the USB
};

class Transfers {
 public:
  static constexpr std::size_t most = 100'000;

  // The oldest is at 0. When there are `most`, each new one drives out the oldest.
  std::size_t size() const { return transfers_.size(); }
  const Transfer& operator[](std::size_t index) const { return transfers_[index]; }
  // Null when it isn't kept (any more).
  const Transfer* find(std::uint64_t number) const {
    if (number < first_number() || number >= next_number_) return nullptr;
    return &transfers_[static_cast<std::size_t>(number - first_number())];
  }
  // What an answer belongs to; null when that isn't known, or not kept any more.
  const Transfer* request_of(const Transfer& transfer) const { return find(transfer.request); }
  // The number of the oldest kept, and of the one that comes next: numbers between them are kept.
  std::uint64_t first_number() const { return next_number_ - transfers_.size(); }
  std::uint64_t next_number() const { return next_number_; }

  // Gives it its number.
  void add(Transfer transfer) {
    if (transfers_.size() == most) transfers_.pop_front();
    transfer.number = next_number_++;
    transfers_.push_back(std::move(transfer));
  }
  // Numbers go on.
  void clear() { transfers_.clear(); }

 private:
  std::deque<Transfer> transfers_;
  std::uint64_t next_number_ = 1;
};

}  // namespace boards
