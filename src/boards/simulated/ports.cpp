#include "boards/simulated/ports.h"

namespace boards {
namespace {

constexpr std::size_t answer_size = 25;
constexpr std::uint8_t sample_only = 2;
constexpr std::uint8_t interrupt_pin = 0x80;  // of port B

std::optional<std::size_t> index_of(char port) {
  if (port == 'B') return 0;
  if (port == 'C') return 1;
  return std::nullopt;
}

}  // namespace

bool Ports::set_level(char port, std::uint8_t level) {
  const auto index = index_of(port);
  if (index) set_levels_[*index] = level;
  return index.has_value();
}

std::optional<std::uint8_t> Ports::level(char port, bool interrupt) const {
  const auto index = index_of(port);
  if (!index) return std::nullopt;
  const bool pulled = port == 'B' && interrupt;
  const std::uint8_t idle = pulled ? std::uint8_t{0xFF & ~interrupt_pin} : std::uint8_t{0xFF};
  return set_levels_[*index].value_or(idle);
}

std::optional<Reply> Ports::serve(std::span<const std::uint8_t> packet, bool interrupt) {
  if (packet.size() < 4) return std::nullopt;
  if (packet.size() < 5 || packet[4] != sample_only) {
    outputs_ = {{packet[0], packet[1]}, {packet[2], packet[3]}};
  }

  Reply reply{std::vector<std::uint8_t>(answer_size)};
  for (std::size_t i = 0; i < 2; ++i) {
    const std::uint8_t enables = outputs_.enables[i];
    const int outside = *level(i == 0 ? 'B' : 'C', interrupt);
    reply.bytes[i] = static_cast<std::uint8_t>((outputs_.data[i] & enables) | (outside & ~enables));
    reply.bytes[2 + i] = enables;
  }
  return reply;
}

}  // namespace boards
