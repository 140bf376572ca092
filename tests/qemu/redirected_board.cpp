#include "qemu/redirected_board.h"

#include <linux/usb/ch9.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <utility>

namespace usb_testing {
namespace {

RedirectedBoard& board_of(void* self) {
  return *static_cast<RedirectedBoard*>(self);
}

// usb-redir's number of an endpoint: those to the host stand behind those from it.
std::size_t endpoint_index(std::int32_t pipe) {
  return static_cast<std::size_t>((pipe & 0x80) >> 3 | (pipe & 0x0F));
}

}  // namespace

RedirectedBoard::RedirectedBoard(int socket) : socket_(socket), parser_(usbredirparser_create()) {
  if (!parser_) throw std::bad_alloc();
  answer_calls();
  std::uint32_t capabilities[USB_REDIR_CAPS_SIZE] = {};
  for (const int each :
       {usb_redir_cap_connect_device_version, usb_redir_cap_device_disconnect_ack,
        usb_redir_cap_ep_info_max_packet_size, usb_redir_cap_64bits_ids, usb_redir_cap_32bits_bulk_length}) {
    usbredirparser_caps_set_cap(capabilities, each);
  }
  usbredirparser_init(parser_.get(), "evaluation board", capabilities, USB_REDIR_CAPS_SIZE,
                      usbredirparser_fl_usb_host);
}

void RedirectedBoard::answer_calls() {
  parser_->priv = this;
  parser_->log_func = [](void*, int level, const char* text) {
    if (level <= usbredirparser_warning) std::fprintf(stderr, "board: %s\n", text);
  };
  parser_->read_func = [](void* self, std::uint8_t* data, int count) {
    return board_of(self).read(data, count);
  };
  parser_->write_func = [](void* self, std::uint8_t* data, int count) {
    return board_of(self).write(data, count);
  };
  parser_->hello_func = [](void*, usb_redir_hello_header*) {};
  parser_->reset_func = [](void* self) { board_of(self).device_.reset(); };
  parser_->set_configuration_func = [](void* self, Id id, usb_redir_set_configuration_header* wanted) {
    usb_redir_configuration_status_header status{usb_redir_success, wanted->configuration};
    usbredirparser_send_configuration_status(board_of(self).parser_.get(), id, &status);
  };
  parser_->get_configuration_func = [](void* self, Id id) {
    usb_redir_configuration_status_header status{usb_redir_success, 1};
    usbredirparser_send_configuration_status(board_of(self).parser_.get(), id, &status);
  };
  parser_->set_alt_setting_func = [](void* self, Id id, usb_redir_set_alt_setting_header* wanted) {
    const bool known = wanted->interface == 0 && wanted->alt == 0;
    const std::uint8_t result = known ? usb_redir_success : usb_redir_stall;
    usb_redir_alt_setting_status_header status{result, wanted->interface, wanted->alt};
    usbredirparser_send_alt_setting_status(board_of(self).parser_.get(), id, &status);
  };
  parser_->get_alt_setting_func = [](void* self, Id id, usb_redir_get_alt_setting_header* wanted) {
    usb_redir_alt_setting_status_header status{usb_redir_success, wanted->interface, 0};
    usbredirparser_send_alt_setting_status(board_of(self).parser_.get(), id, &status);
  };
  parser_->cancel_data_packet_func = [](void* self, Id id) { board_of(self).cancel(id); };
  parser_->device_disconnect_ack_func = [](void* self) {
    RedirectedBoard& board = board_of(self);
    board.disconnecting_ = false;
    if (std::exchange(board.plug_next_, false)) board.send_connect();
  };
  parser_->control_packet_func = [](void* self, Id id, usb_redir_control_packet_header* header,
                                    std::uint8_t* data, int) {
    RedirectedBoard& board = board_of(self);
    usbredirparser_free_packet_data(board.parser_.get(), data);
    if (board.on_the_bus()) board.control(id, *header);
  };
  parser_->bulk_packet_func = [](void* self, Id id, usb_redir_bulk_packet_header* header, std::uint8_t* data,
                                 int length) {
    RedirectedBoard& board = board_of(self);
    BridgeDevice::Bytes sent(data, data + length);
    usbredirparser_free_packet_data(board.parser_.get(), data);
    if (board.on_the_bus()) board.bulk(id, *header, std::move(sent));
  };
}

// ---- The socket

int RedirectedBoard::read(std::uint8_t* data, int count) {
  const auto size = recv(socket_, data, static_cast<std::size_t>(count), MSG_DONTWAIT);
  if (size < 0 && errno == EAGAIN) return 0;
  if (size <= 0) ended_ = true;
  return size > 0 ? static_cast<int>(size) : -1;
}

int RedirectedBoard::write(const std::uint8_t* data, int count) {
  const auto size = send(socket_, data, static_cast<std::size_t>(count), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (size < 0 && errno == EAGAIN) return 0;
  if (size < 0) ended_ = true;
  return static_cast<int>(size);
}

bool RedirectedBoard::serve() {
  usbredirparser_do_read(parser_.get());
  look_at_waiting();
  while (!ended_ && has_to_write() && usbredirparser_do_write(parser_.get()) == 0) {
  }
  return !ended_;
}

// ---- The plug

void RedirectedBoard::plug(std::uint16_t product) {
  if (device_.powered()) return;
  product_ = product;
  device_.power(true);
  if (disconnecting_) {
    plug_next_ = true;
  } else {
    send_connect();
  }
}

void RedirectedBoard::unplug() {
  device_.power(false);
  waiting_.clear();
  plug_next_ = false;
  if (!std::exchange(connected_, false)) return;
  disconnecting_ = true;
  usbredirparser_send_device_disconnect(parser_.get());
}

void RedirectedBoard::send_connect() {
  usb_redir_ep_info_header endpoints{};
  std::ranges::fill(endpoints.type, std::uint8_t{usb_redir_type_invalid});
  endpoints.type[endpoint_index(0x00)] = endpoints.type[endpoint_index(0x80)] = usb_redir_type_control;
  for (const std::int32_t pipe : BridgeDevice::pipes) {
    endpoints.type[endpoint_index(pipe)] = usb_redir_type_bulk;
    endpoints.max_packet_size[endpoint_index(pipe)] = BridgeDevice::max_packet;
  }
  usbredirparser_send_ep_info(parser_.get(), &endpoints);

  usb_redir_interface_info_header interfaces{};
  interfaces.interface_count = 1;
  interfaces.interface_class[0] = USB_CLASS_VENDOR_SPEC;
  usbredirparser_send_interface_info(parser_.get(), &interfaces);

  usb_redir_device_connect_header connect{};
  connect.speed = usb_redir_speed_full;
  connect.vendor_id = BridgeDevice::vendor;
  connect.product_id = product_;
  connect.device_version_bcd = 0x0100;
  usbredirparser_send_device_connect(parser_.get(), &connect);
  connected_ = true;
}

// ---- The control pipe

BridgeDevice::Bytes RedirectedBoard::descriptor(std::uint8_t type) const {
  BridgeDevice::Bytes bytes = BridgeDevice::descriptors();
  const auto behind_device = bytes.begin() + USB_DT_DEVICE_SIZE;
  if (type == USB_DT_CONFIG) return {behind_device, bytes.end()};
  if (type != USB_DT_DEVICE) return {};
  bytes.erase(behind_device, bytes.end());
  bytes[10] = static_cast<std::uint8_t>(product_ & 0xFF);
  bytes[11] = static_cast<std::uint8_t>(product_ >> 8);
  return bytes;
}

// The requests that QEMU doesn't answer itself. Anything else is stalled, as a device does.
void RedirectedBoard::control(Id id, usb_redir_control_packet_header header) {
  BridgeDevice::Bytes bytes;
  header.status = usb_redir_stall;
  if (header.requesttype == (USB_DIR_IN | USB_RECIP_DEVICE) && header.request == USB_REQ_GET_DESCRIPTOR) {
    bytes = descriptor(static_cast<std::uint8_t>(header.value >> 8));
    if (!bytes.empty()) header.status = usb_redir_success;
  } else if (header.requesttype == (USB_DIR_IN | USB_RECIP_DEVICE) && header.request == USB_REQ_GET_STATUS) {
    bytes = {0, 0};
    header.status = usb_redir_success;
  } else if (header.requesttype == (USB_DIR_OUT | USB_RECIP_ENDPOINT) &&
             header.request == USB_REQ_CLEAR_FEATURE && header.value == USB_ENDPOINT_HALT) {
    device_.clear_halt(header.index);
    header.status = usb_redir_success;
  }
  bytes.resize(std::min<std::size_t>(bytes.size(), header.length));
  header.length = static_cast<std::uint16_t>(bytes.size());
  usbredirparser_send_control_packet(parser_.get(), id, &header, bytes.data(), header.length);
}

// ---- Transfers

void RedirectedBoard::bulk(Id id, const usb_redir_bulk_packet_header& header, BridgeDevice::Bytes sent) {
  const std::size_t room = std::size_t{header.length_high} << 16 | header.length;
  BridgeDevice::Transfer transfer{header.endpoint, std::move(sent), room};
  const BridgeDevice::Progress progress = device_.begin(transfer);
  if (progress.state == BridgeDevice::State::Pulled) return unplug();
  if (conclude(id, header, progress)) return;
  waiting_.push_back({id, header, std::move(transfer), progress.state == BridgeDevice::State::Hangs});
}

bool RedirectedBoard::conclude(Id id, usb_redir_bulk_packet_header header,
                               const BridgeDevice::Progress& progress) {
  using State = BridgeDevice::State;
  switch (progress.state) {
    case State::Done:
      header.status = usb_redir_success;
      break;
    case State::TooLong:
      header.status = usb_redir_babble;
      break;
    case State::Stalled:
      header.status = usb_redir_stall;
      break;
    case State::Waits:
    case State::Hangs:
    case State::Pulled:
      return false;
  }
  BridgeDevice::Bytes bytes = progress.bytes;
  if (boards::to_host(header.endpoint) || header.status != usb_redir_success) {
    header.length = static_cast<std::uint16_t>(bytes.size());
    header.length_high = static_cast<std::uint16_t>(bytes.size() >> 16);
  }
  usbredirparser_send_bulk_packet(parser_.get(), id, &header, bytes.data(), static_cast<int>(bytes.size()));
  return true;
}

void RedirectedBoard::cancel(Id id) {
  const auto found = std::ranges::find(waiting_, id, &Waiting::id);
  if (found == waiting_.end()) return;  // answered while the cancel was on its way
  usb_redir_bulk_packet_header header = found->header;
  header.status = usb_redir_cancelled;
  header.length = header.length_high = 0;
  usbredirparser_send_bulk_packet(parser_.get(), id, &header, nullptr, 0);
  waiting_.erase(found);
}

void RedirectedBoard::look_at_waiting() {
  std::erase_if(waiting_, [&](const Waiting& each) {
    return !each.hangs && conclude(each.id, each.header, device_.look_again(each.transfer));
  });
}

}  // namespace usb_testing
