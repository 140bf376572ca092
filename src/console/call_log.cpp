#include "console/call_log.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "boards/hex.h"

namespace console {

double milliseconds(forms::Clock::Duration time) {
  return std::round(std::chrono::duration<double, std::micro>(time).count()) / 1000.0;
}

void CallLog::call_ended(const boards::CallRecord& record) {
  if (calls_.size() == most_calls) drop_first();
  calls_.push_back({begin_, record.call, record.status, record.transfer ? record.pipe : 0,
                    static_cast<std::uint32_t>(record.buffer.size()),
                    static_cast<std::uint32_t>(record.data.size())});
  data_.insert(data_.end(), record.data.begin(), record.data.end());
  while (data_.size() > most_bytes) drop_first();
}

void CallLog::drop_first() {
  data_.erase(data_.begin(), data_.begin() + static_cast<std::ptrdiff_t>(calls_.front().data_size));
  calls_.pop_front();
  ++dropped_;
}

void CallLog::drop_told() {
  const std::uint64_t told = std::min(packets_told_, calls_told_);
  while (dropped_ < told) drop_first();
}

void CallLog::write_packets(Json& json) {
  json.begin_array();
  auto data = data_.begin();
  std::uint64_t number = dropped_;
  for (const Call& call : calls_) {
    const auto end = data + static_cast<std::ptrdiff_t>(call.data_size);
    if (number++ >= packets_told_ && call.pipe != 0) {
      const std::vector<std::uint8_t> bytes(data, end);
      json.begin_object()
          .member("pipe", call.pipe)
          .member("size", std::int64_t{call.size})
          .member("data", boards::hex(bytes))
          .member("status", call.status)
          .member("time", milliseconds(call.begin))
          .end_object();
    }
    data = end;
  }
  json.end_array();
  packets_told_ = number;
  drop_told();
}

void CallLog::write_calls(Json& json) {
  json.begin_array();
  std::uint64_t number = dropped_;
  for (const Call& call : calls_) {
    if (number++ < calls_told_) continue;
    json.begin_object()
        .member("call", call.name)
        .member("status", call.status)
        .member("time", milliseconds(call.begin))
        .end_object();
  }
  json.end_array();
  calls_told_ = number;
  drop_told();
}

}  // namespace console
