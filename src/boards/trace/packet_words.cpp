#include "boards/trace/packet_words.h"

#include <optional>
#include <span>

#include "boards/hex.h"
#include "forms/text.h"

namespace boards {
namespace {

using Bytes = std::span<const std::uint8_t>;

// "r1", "r1A": without a leading zero, as data sheets count registers.
std::string register_name(std::uint8_t number) {
  return 'r' + forms::Hex(number);
}

std::string counted(std::size_t count, const char* what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// A packet of the I2C pipe: a count, the address, and what goes on the bus behind it.
struct I2cPacket {
  std::uint8_t count;
  std::uint8_t address;
  Bytes rest;

  bool reads() const { return count != 0 && (address & 1) != 0; }
  std::string at() const { return " at " + forms::Hex2(address & 0xFE); }
};

bool is_i2c_packet(Bytes packet) {
  return packet.size() >= 2;
}

I2cPacket i2c_packet(Bytes packet) {
  return {packet[0], packet[1], packet.subspan(2)};
}

std::string i2c_request(Bytes bytes) {
  if (!is_i2c_packet(bytes)) return "no packet";
  const I2cPacket packet = i2c_packet(bytes);
  if (packet.reads()) {
    const std::string from = packet.rest.empty() ? "" : ' ' + register_name(packet.rest[0]);
    return "read" + from + packet.at() + ", " + counted(packet.count, "byte");
  }
  if (packet.rest.empty()) return "address" + packet.at();
  if (packet.rest.size() > 1) {
    return "write " + register_name(packet.rest[0]) + " = " + hex(packet.rest.subspan(1)) + packet.at();
  }
  // One byte is a sensor's command when nothing is answered, and sets its register pointer when something is.
  if (packet.count == 0) return "command " + forms::Hex2(packet.rest[0]) + packet.at();
  return "point to " + register_name(packet.rest[0]) + packet.at();
}

// The packet that an answer on the I2C pipe belongs to; none when the board doesn't answer such a packet.
std::optional<I2cPacket> answered(const Transfer* request) {
  if (!request || !is_i2c_packet(request->bytes) || request->bytes[0] == 0) return std::nullopt;
  return i2c_packet(request->bytes);
}

// The first byte of an answer says how many bytes went over the bus: those read, or those acknowledged.
std::size_t good_count(const I2cPacket& packet) {
  return packet.reads() ? packet.count : 1 + packet.rest.size();
}

std::string i2c_answer(Bytes answer, const Transfer* request) {
  const auto packet = answered(request);
  if (!packet)
    return "answer " + forms::Hex2(answer[0]) + (answer.size() > 1 ? ", " + hex(answer.subspan(1)) : "");
  if (answer[0] != good_count(*packet)) {
    if (packet->reads() || answer[0] == 0) return "not acknowledged" + packet->at();
    return counted(answer[0], "byte") + " of " + std::to_string(good_count(*packet)) + " acknowledged" +
           packet->at();
  }
  if (!packet->reads()) return "acknowledged" + packet->at();
  const Bytes data = answer.subspan(1);
  std::string text = packet->rest.empty() ? "read" : register_name(packet->rest[0]);
  if (!data.empty()) text += " = " + hex(data);
  text += packet->at();
  if (data.size() < packet->count) {
    text += ", " + counted(data.size(), "byte") + " of " + std::to_string(packet->count) + " came";
  }
  return text;
}

std::string ports(Bytes bytes) {
  return "B = " + forms::Hex2(bytes[0]) + ", C = " + forms::Hex2(bytes[1]) + ", outputs B " +
         forms::Hex2(bytes[2]) + ", C " + forms::Hex2(bytes[3]);
}

std::string gpio_request(Bytes packet) {
  constexpr std::uint8_t sample_only = 2;
  if (packet.size() < 4) return "no packet";
  if (packet.size() > 4 && packet[4] == sample_only) return "read the ports";
  return "set ports " + ports(packet);
}

std::string gpio_answer(Bytes answer) {
  return answer.size() < 4 ? "answer " + hex(answer) : "ports " + ports(answer);
}

}  // namespace

std::string in_words(const Transfer& transfer, const Transfer* request) {
  if (transfer.read != to_host(transfer.pipe)) return "wrong direction";
  if (transfer.read && transfer.bytes.empty()) return "no answer";
  switch (transfer.pipe) {
    case pipe_i2c_out:
      return i2c_request(transfer.bytes);
    case pipe_i2c_in:
      return i2c_answer(transfer.bytes, request);
    case pipe_gpio_out:
      return gpio_request(transfer.bytes);
    case pipe_gpio_in:
      return gpio_answer(transfer.bytes);
    default:
      return "unknown pipe";
  }
}

bool is_refusal(const Transfer& transfer, const Transfer* request) {
  if (transfer.pipe != pipe_i2c_in || transfer.bytes.empty()) return false;
  const auto packet = answered(request);
  return packet && transfer.bytes[0] != good_count(*packet);
}

}  // namespace boards
