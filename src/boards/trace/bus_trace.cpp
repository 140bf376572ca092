#include "boards/trace/bus_trace.h"

namespace boards {

void BusTrace::start() {
  driver_.observer = this;
}

void BusTrace::stop() {
  if (driver_.observer == this) driver_.observer = nullptr;
  // An answer that comes when listening goes on again may be that of a packet which nobody saw.
  requests_.clear();
}

void BusTrace::clear() {
  transfers_.clear();
}

const Transfer* BusTrace::find(std::uint64_t number) const {
  if (number < first_number() || number >= next_number_) return nullptr;
  return &transfers_[static_cast<std::size_t>(number - first_number())];
}

std::chrono::system_clock::time_point BusTrace::time_zero() const {
  return clock_.date() - std::chrono::duration_cast<std::chrono::system_clock::duration>(clock_.now());
}

void BusTrace::call_ended(const CallRecord& record) {
  if (!record.transfer) return;
  if (transfers_.size() == most_transfers) transfers_.pop_front();
  Transfer& transfer = transfers_.emplace_back(Transfer{.number = next_number_++,
                                                        .begin = begin_,
                                                        .end = clock_.now(),
                                                        .pipe = record.pipe,
                                                        .status = record.status,
                                                        .size = record.buffer.size(),
                                                        .transferred = record.data.size(),
                                                        .bytes = {},
                                                        .request = 0,
                                                        .urb_status = driver_.urb_status(record.status),
                                                        .place = driver_.usb_place()});
  const auto bytes = transfer.to_host() ? record.data : record.buffer;
  transfer.bytes.assign(bytes.begin(), bytes.end());
  std::uint64_t& request = requests_[record.pipe & 0x7F];
  if (transfer.to_host()) {
    transfer.request = request;
  } else {
    request = transfer.number;
  }
}

}  // namespace boards
