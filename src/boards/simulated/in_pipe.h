// One pipe to the host: the board's own answer, and replies that the bench queued in its place.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace boards {

struct Reply {
  std::vector<std::uint8_t> bytes;
  std::size_t bus_bytes = 0;  // how many of them had to be read from the I2C bus
};

class InPipe {
 public:
  // A new answer replaces one that was not fetched.
  void answer(Reply reply) { answer_ = std::move(reply); }
  void drop_answer() { answer_.reset(); }

  void queue(std::vector<std::uint8_t> bytes) { queued_.push_back(std::move(bytes)); }
  std::size_t queued() const { return queued_.size(); }
  void drop_queued() { queued_.clear(); }

  // What the next transfer brings; nothing when nothing waits. A queued reply uses up the board's own
  // answer, and takes its time.
  std::optional<Reply> take() {
    std::optional<Reply> own = std::exchange(answer_, std::nullopt);
    if (queued_.empty()) return own;
    Reply reply{std::move(queued_.front()), own ? own->bus_bytes : 0};
    queued_.pop_front();
    return reply;
  }

 private:
  std::optional<Reply> answer_;
  std::deque<std::vector<std::uint8_t>> queued_;
};

}  // namespace boards
