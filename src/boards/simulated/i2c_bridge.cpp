#include "boards/simulated/i2c_bridge.h"

#include <algorithm>

namespace boards {

std::optional<Reply> I2cBridge::serve(std::span<const std::uint8_t> packet) {
  if (packet.size() < 2) return std::nullopt;
  const std::uint8_t count = packet[0];
  const std::uint8_t address = packet[1];
  const bool read_form = (address & 1) != 0;
  if (count != 0 && read_form) return read(count, address, packet.subspan(2));

  const std::size_t acknowledged = bus_.write(address, packet.subspan(2));
  if (count == 0) return std::nullopt;
  return Reply{{static_cast<std::uint8_t>(std::min<std::size_t>(acknowledged, 0xFF))}};
}

Reply I2cBridge::read(std::uint8_t count, std::uint8_t address, std::span<const std::uint8_t> pointer) {
  const Reply not_acknowledged{{0}};
  if (!pointer.empty() && bus_.write(address, pointer) != 1 + pointer.size()) return not_acknowledged;

  Reply reply{std::vector<std::uint8_t>(1u + count), count};
  reply.bytes[0] = count;
  if (!bus_.read(address, std::span(reply.bytes).subspan(1))) return not_acknowledged;
  return reply;
}

}  // namespace boards
