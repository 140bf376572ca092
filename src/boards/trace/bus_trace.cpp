#include "boards/trace/bus_trace.h"

#include <utility>

namespace boards {

void BusTrace::start() {
  if (driver_.observer == this) return;
  driver_.observer = this;
  after_gap_ = transfers_.size() > 0;
}

void BusTrace::stop() {
  if (driver_.observer == this) driver_.observer = nullptr;
  // An answer that comes when listening goes on again may be that of a packet which nobody saw.
  unanswered_.clear();
}

void BusTrace::clear() {
  transfers_.clear();
  after_gap_ = false;
}

std::chrono::system_clock::time_point BusTrace::time_zero() const {
  return clock_.date() - std::chrono::duration_cast<std::chrono::system_clock::duration>(clock_.now());
}

void BusTrace::call_ended(const CallRecord& record) {
  if (!record.transfer) return;
  const auto bytes = record.read ? record.data : record.buffer;
  transfers_.add({.number = 0,
                  .begin = begin_,
                  .end = clock_.now(),
                  .pipe = record.pipe,
                  .read = record.read,
                  .status = record.status,
                  .size = record.buffer.size(),
                  .transferred = record.data.size(),
                  .bytes = {bytes.begin(), bytes.end()},
                  .request = request_for(record),
                  .urb_status = driver_.urb_status(record.status),
                  .after_gap = std::exchange(after_gap_, false),
                  .place = driver_.transfer_place()});
}

// The program reads also after a packet that failed: what comes then answers the packet before.
std::uint64_t BusTrace::request_for(const CallRecord& record) {
  if (!record.read) {
    if (record.status == success) unanswered_[record.pipe] = transfers_.next_number();
    return 0;
  }
  std::uint64_t& unanswered = unanswered_[record.pipe & ~pipe_direction_bit];
  return record.data.empty() ? unanswered : std::exchange(unanswered, 0);
}

}  // namespace boards
