#include "boards/trace/pcapng.h"

#include <cerrno>
#include <chrono>
#include <concepts>
#include <span>
#include <string>

namespace boards {
namespace {

using Nanoseconds = std::chrono::nanoseconds;

// pcapng's block types and options.
constexpr std::uint32_t section_header_block = 0x0A0D0D0A;
constexpr std::uint32_t interface_description_block = 1;
constexpr std::uint32_t enhanced_packet_block = 6;
constexpr std::uint32_t byte_order_magic = 0x1A2B3C4D;
constexpr std::uint16_t end_of_options = 0;
constexpr std::uint16_t section_application = 4;
constexpr std::uint16_t interface_name = 2;
constexpr std::uint16_t interface_time_resolution = 9;
constexpr std::uint16_t link_type_usb_linux_mmapped = 220;

// usbmon's packets.
constexpr std::uint8_t bulk = 3;
constexpr std::uint8_t no_setup = '-';
constexpr std::uint8_t data_follow = 0;
constexpr std::uint32_t flag_direction_in = 0x200;  // URB_DIR_IN of the kernel's usb.h

class Bytes {
 public:
  template <std::integral Number>
  Bytes& add(Number number) {
    for (std::size_t i = 0; i < sizeof number; ++i) bytes_ += static_cast<char>(number >> 8 * i);
    return *this;
  }
  Bytes& add(std::span<const std::uint8_t> data) {
    bytes_.append(data.begin(), data.end());
    return *this;
  }
  Bytes& add_padded(std::string_view data) {
    bytes_ += data;
    bytes_.resize((bytes_.size() + 3) / 4 * 4);
    return *this;
  }
  Bytes& add_option(std::uint16_t code, std::string_view value) {
    return add(code).add(static_cast<std::uint16_t>(value.size())).add_padded(value);
  }
  Bytes& end_options() { return add(end_of_options).add(std::uint16_t{0}); }
  const std::string& str() const { return bytes_; }

 private:
  std::string bytes_;
};

void write_block(std::ostream& out, std::uint32_t type, const Bytes& body) {
  const auto length = static_cast<std::uint32_t>(body.str().size() + 12);
  out << Bytes().add(type).add(length).str() << body.str() << Bytes().add(length).str();
}

void write_section_header(std::ostream& out, std::string_view program) {
  constexpr std::uint16_t major = 1;
  constexpr std::uint16_t minor = 0;
  constexpr std::int64_t unknown_length = -1;
  Bytes body;
  body.add(byte_order_magic).add(major).add(minor).add(unknown_length);
  write_block(out, section_header_block, body.add_option(section_application, program).end_options());
}

void write_interface(std::ostream& out, const std::string& name) {
  constexpr std::uint16_t reserved = 0;
  constexpr std::uint32_t no_limit = 0;
  constexpr std::string_view nanoseconds("\x09", 1);  // 10 to the minus 9 s
  Bytes body;
  body.add(link_type_usb_linux_mmapped).add(reserved).add(no_limit);
  body.add_option(interface_name, name).add_option(interface_time_resolution, nanoseconds);
  write_block(out, interface_description_block, body.end_options());
}

// One of the two events of a transfer.
struct UrbEvent {
  std::uint8_t type;    // 'S' submitted, 'C' completed
  Nanoseconds time;     // since 1970
  std::int32_t status;  // 0 or a negative errno
  std::size_t length;   // of the transfer: asked for, or gone through
  bool carries_data;
};

void write_event(std::ostream& out, const Transfer& transfer, const UrbEvent& event) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(event.time);
  const auto microseconds = std::chrono::floor<std::chrono::microseconds>(event.time - seconds);
  const std::span<const std::uint8_t> data =
      event.carries_data ? std::span(transfer.bytes) : std::span<const std::uint8_t>();
  const std::uint8_t data_flag = event.carries_data ? data_follow : transfer.read ? '<' : '>';

  Bytes urb;
  urb.add(transfer.number)
      .add(event.type)
      .add(bulk)
      .add(static_cast<std::uint8_t>(transfer.pipe))
      .add(transfer.place->device)
      .add(transfer.place->bus)
      .add(no_setup)
      .add(data_flag)
      .add(std::int64_t{seconds.count()})
      .add(static_cast<std::int32_t>(microseconds.count()))
      .add(event.status)
      .add(static_cast<std::uint32_t>(event.length))
      .add(static_cast<std::uint32_t>(data.size()))
      .add(std::uint64_t{0})  // setup packet: none on bulk pipes
      .add(std::int32_t{0})   // interval
      .add(std::int32_t{0})   // start frame
      .add(transfer.read ? flag_direction_in : 0)
      .add(std::uint32_t{0});  // isochronous descriptors
  urb.add(data);

  constexpr std::uint32_t interface_number = 0;
  const auto time = static_cast<std::uint64_t>(event.time.count());
  const auto length = static_cast<std::uint32_t>(urb.str().size());
  Bytes body;
  body.add(interface_number)
      .add(static_cast<std::uint32_t>(time >> 32))
      .add(static_cast<std::uint32_t>(time))
      .add(length)
      .add(length);
  write_block(out, enhanced_packet_block, body.add_padded(urb.str()));
}

}  // namespace

void write_pcapng(std::ostream& out, const BusTrace& trace, std::string_view program) {
  const auto zero = std::chrono::duration_cast<Nanoseconds>(trace.time_zero().time_since_epoch());
  write_section_header(out, program);
  write_interface(out, trace.driver().board_name());
  const Transfers& transfers = trace.transfers();
  for (std::size_t i = 0; i < transfers.size(); ++i) {
    const Transfer& transfer = transfers[i];
    if (!transfer.place) continue;
    write_event(out, transfer, {'S', zero + transfer.begin, -EINPROGRESS, transfer.size, !transfer.read});
    write_event(out, transfer,
                {'C', zero + transfer.end, transfer.urb_status, transfer.transferred, transfer.read});
  }
}

}  // namespace boards
