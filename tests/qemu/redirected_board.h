// The evaluation board at the far end of QEMU's usb-redir: the guest's kernel enumerates it, resets it and
// sends it transfers. What the board itself does is the bridge device's.
#pragma once

#include <usbredirparser.h>

#include <list>
#include <memory>
#include <vector>

#include "usb/bridge_device.h"

namespace usb_testing {

class RedirectedBoard {
 public:
  // `socket` leads to QEMU; it isn't owned. Not blocking.
  explicit RedirectedBoard(int socket);

  BridgeDevice& device() { return device_; }

  // The product number makes it another device.
  void plug(std::uint16_t product = BridgeDevice::product);
  void unplug();

  // Reads what has come, and sends what can be sent without waiting. False: QEMU has gone.
  bool serve();
  // Something is still to be sent.
  bool has_to_write() const { return usbredirparser_has_data_to_write(parser_.get()) > 0; }

 private:
  using Id = std::uint64_t;
  struct Free {
    void operator()(usbredirparser* parser) const { usbredirparser_destroy(parser); }
  };
  struct Waiting {
    Id id;
    usb_redir_bulk_packet_header header;
    BridgeDevice::Transfer transfer;
    bool hangs;
  };

  void answer_calls();
  int read(std::uint8_t* data, int count);
  int write(const std::uint8_t* data, int count);
  void send_connect();
  void control(Id id, usb_redir_control_packet_header header);
  BridgeDevice::Bytes descriptor(std::uint8_t type) const;
  void bulk(Id id, const usb_redir_bulk_packet_header& header, BridgeDevice::Bytes sent);
  // False: it stays.
  bool conclude(Id id, usb_redir_bulk_packet_header header, const BridgeDevice::Progress& progress);
  void cancel(Id id);
  void look_at_waiting();
  bool on_the_bus() const { return device_.powered() && !disconnecting_; }

  int socket_;
  std::unique_ptr<usbredirparser, Free> parser_;
  BridgeDevice device_;
  std::uint16_t product_ = BridgeDevice::product;
  std::list<Waiting> waiting_;
  bool connected_ = false;      // as QEMU was told
  bool disconnecting_ = false;  // QEMU hasn't acknowledged yet
  bool plug_next_ = false;      // as soon as it has
  bool ended_ = false;
};

}  // namespace usb_testing
