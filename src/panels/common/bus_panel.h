// How a sensor panel reaches its sensor: the connection rule, the transfers and the deferred register
// work. The panel's handlers and its parts use it.
#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "bridge/program_form.h"
#include "bridge/transfer.h"
#include "panels/common/panel_model.h"

namespace varzelin {

class BusPanel : public ProgramForm {
 public:
  BusPanel(Program& owner, const PanelModel& panel_model);

  // The connection rule: a handler that touches the bus begins with connect_by_rule() and ends with
  // disconnect_by_rule(); neither does anything while the session is held.
  void connect_by_rule();
  void disconnect_by_rule();
  void connect();
  void disconnect();
  // A loop holds the session, so that every handler called in it finds the session open.
  void hold_session();
  void release_session();

  // Where a transfer goes and how. A reply comes on the pipe's IN twin.
  struct Route {
    std::int32_t out_pipe;
    Transfers transfers;
  };
  Route sensor_route() const { return {store.I2C_Pipe, model.transfers}; }

  // A panel's writes: byte 0 is 0 though data follow, and no reply comes.
  void register_write(int register_number, int value) {
    register_write(register_number, value, model.write_address);
  }
  void register_write(int register_number, int value, AddressForm form) {
    send({0, address(form), register_number, value}, sensor_route());
  }
  void command_write(int command) { command_write(command, model.write_address); }
  void command_write(int command, AddressForm form) { send({0, address(form), command}, sensor_route()); }
  // Asks for I2C_RdCnt registers from one on, and fetches a reply of `reply_size` bytes, the status first.
  // The reply may be asked for longer than what was requested.
  void read_registers(int first_register, int reply_size) {
    exchange({store.I2C_RdCnt, store.I2C_RdAdr, first_register}, reply_size, sensor_route());
  }
  // A request and its reply, which is fetched though the request failed, unless the caller says otherwise.
  // One that is given up has a reply of zeros.
  enum class BehindFailure { fetches_reply, stops };
  void exchange(std::initializer_list<int> request, int reply_size, Route route,
                BehindFailure behind_failure = BehindFailure::fetches_reply);
  // Between a request and its reply, in a handler that runs in their yields: the next reply isn't one's own.
  bool within_exchange() const { return exchanges_ != 0; }

  int address(AddressForm form) const {
    return form == AddressForm::write ? store.I2C_WrAdr : store.I2C_RdAdr;
  }
  // One transfer each, bytes as they stand.
  void send(std::initializer_list<int> bytes, Route route);
  void receive(int size, Route route);

  // A byte of the last reply. Raises subscript_out_of_range beyond its end.
  std::uint8_t reply(std::size_t index) const;
  // A 16-bit value of the reply: low byte at `low_index`, high byte behind it.
  std::int32_t reply_word(std::size_t low_index) const {
    return reply(low_index + 1) * 256 + reply(low_index);
  }

  // Replies that were asked for and brought nothing since the panel was made: a transfer failed, or the
  // sensor didn't acknowledge its address.
  std::int32_t missing_replies() const { return missing_replies_; }
  // Transfers that failed since then.
  std::int32_t failed_transfers() const { return failed_transfers_; }

  // --- deferred register work ---

  using PendingFlags = std::initializer_list<Flag Store::*>;
  // While a loop runs a control must not use the bus: sets the pending flags and PendingUpdate, and
  // says true. Otherwise false: the caller writes at once.
  bool deferred(PendingFlags pending);
  // One kind of work: done when its flag is set. The work clears the flag itself.
  struct DeferredWork {
    Flag Store::*pending;
    std::function<void()> run;
  };
  // Does what is pending, in the order of the list.
  void run_deferred(const std::vector<DeferredWork>& work);

  const PanelModel& model;

 protected:
  // Ends a pass whose collection was begun anew meanwhile, wherever it is. Only the loop catches it, and only
  // code of the pass is between.
  struct Overtaken {};
  void leave_if_overtaken() const {
    if (overtaken()) throw Overtaken{};
  }
  // True in the code of such a pass, not in handlers that run in its yields.
  virtual bool overtaken() const { return false; }
  void Sleep(std::int64_t milliseconds) {
    leave_if_overtaken();
    ProgramForm::Sleep(milliseconds);
  }

 private:
  Outcome transfer(bool read, Transfers how);
  Outcome counted(bool read, Outcome outcome);
  Outcome checked_transfer(bool read);

  int exchanges_ = 0;  // on the stack
  std::int32_t missing_replies_ = 0;
  std::int32_t failed_transfers_ = 0;
};

}  // namespace varzelin
