// How a sensor panel reaches its sensor: the connection rule, the raw transfers and the deferred
// register work.
#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "bridge/program_form.h"
#include "bridge/transfer.h"

namespace varzelin {

class BusPanel : public ProgramForm {
 public:
  using ProgramForm::ProgramForm;

 protected:
  // The connection rule: a handler that touches the bus begins with connect_by_rule() and ends with
  // disconnect_by_rule(); neither does anything while the session is held.
  void connect_by_rule();
  void disconnect_by_rule();
  // A loop holds the session, so that every handler called in it finds the session open.
  void hold_session();
  void release_session();

  // One raw transfer each, in the panels' own forms. No reply is read after a write.
  void send(std::initializer_list<int> bytes);
  void receive(int size);
  // Byte 0 of a panel's write is 0 though data follow.
  void register_write(int register_number, int value) { send({0, write_address(), register_number, value}); }
  void command_write(int command) { send({0, write_address(), command}); }
  void read_request(int count, int register_number) { send({count, store.I2C_RdAdr, register_number}); }
  // Some families send the read form of the address in their writes.
  virtual int write_address() const { return store.I2C_WrAdr; }

  std::uint8_t reply(std::size_t index) const { return xfer_byte(store, index); }
  // A 16-bit value of the reply: low byte at `low_index`, high byte behind it.
  std::int32_t reply_word(std::size_t low_index) const {
    return reply(low_index + 1) * 256 + reply(low_index);
  }

  // --- deferred register work ---

  // While a loop runs a control must not use the bus: sets the pending flags and PendingUpdate, and
  // says true. Otherwise false: the caller writes at once.
  bool deferred(std::initializer_list<Flag Store::*> pending);
  // One kind of work: done when its flag is set. The work clears the flag itself.
  struct DeferredWork {
    Flag Store::*pending;
    std::function<void()> run;
  };
  // Does what is pending, in the order of the list.
  void run_deferred(const std::vector<DeferredWork>& work);

  // --- showing ---

  // A heartbeat between black and light green.
  void beat(Shape& shape);
};

}  // namespace varzelin
