#include "panels/common/bus_panel.h"

#include "workbench/connection_rule.h"
#include "workbench/workbench.h"

namespace varzelin {

BusPanel::BusPanel(Program& owner, const PanelModel& panel_model)
    : ProgramForm(owner, panel_model.form_name, panel_model.title), model(panel_model) {}

void BusPanel::connect() {
  form<frmI2C_General>().cmdUSBConnect_Click();
}

void BusPanel::disconnect() {
  form<frmI2C_General>().cmdUSBDisconnect_Click();
}

void BusPanel::connect_by_rule() {
  varzelin::connect_by_rule(program);
}

void BusPanel::disconnect_by_rule() {
  varzelin::disconnect_by_rule(program);
}

void BusPanel::hold_session() {
  connect_by_rule();
  store.Man_Usb_Conn = true_flag;
}

void BusPanel::release_session() {
  store.Man_Usb_Conn = false_flag;
  disconnect();
}

void BusPanel::exchange(std::initializer_list<int> request, int reply_size, Route route,
                        BehindFailure behind_failure) {
  leave_if_overtaken();
  struct OnStack {
    explicit OnStack(int& of_exchanges) : exchanges(of_exchanges) { ++exchanges; }
    ~OnStack() { --exchanges; }
    int& exchanges;
  } const on_stack(exchanges_);
  set_request(store, route.out_pipe, request);
  const Outcome asked = transfer(false, route.transfers);
  if (asked == Outcome::failed && behind_failure == BehindFailure::stops) {
    leave_if_overtaken();
    return;
  }
  set_reply(store, route.out_pipe + in_pipe_offset, reply_size);
  // What was asked for is fetched even if nobody wants it any more: the next reply is the next request's.
  if (asked != Outcome::given_up) transfer(true, route.transfers);
  leave_if_overtaken();
}

void BusPanel::send(std::initializer_list<int> bytes, Route route) {
  leave_if_overtaken();
  set_request(store, route.out_pipe, bytes);
  transfer(false, route.transfers);
  leave_if_overtaken();
}

void BusPanel::receive(int size, Route route) {
  leave_if_overtaken();
  set_reply(store, route.out_pipe + in_pipe_offset, size);
  transfer(true, route.transfers);
  leave_if_overtaken();
}

Outcome BusPanel::transfer(bool read, Transfers how) {
  if (how == Transfers::checked) return counted(read, checked_transfer(read));
  return counted(read, read ? Fast_Read(program) : Fast_Write(program));
}

// The first byte of a reply says how many bytes came.
Outcome BusPanel::counted(bool read, Outcome outcome) {
  const bool failed = outcome == Outcome::failed;
  failed_transfers_ += failed;
  if (read && outcome != Outcome::given_up && (failed || store.Xfer_Buf.empty() || store.Xfer_Buf[0] == 0))
    ++missing_replies_;
  return outcome;
}

Outcome BusPanel::checked_transfer(bool read) {
  const Outcome outcome = read ? ReadPipe(program) : WritePipe(program);
  if (outcome == Outcome::given_up) return outcome;
  const bool good = outcome == Outcome::good;
  colour_attach_lamp(store, lamp(good ? store.Clr_LtGreen : store.Clr_Red));
  if (!good) store.Sample_Run = false_flag;
  if (!good && read) store.AbortRequested = true_flag;
  return outcome;
}

std::uint8_t BusPanel::reply(std::size_t index) const {
  leave_if_overtaken();
  return xfer_byte(store, index);
}

bool BusPanel::deferred(PendingFlags pending) {
  if (store.Sample_Run == 0 && store.AbortRequested == 0) return false;
  for (const auto member : pending) store.*member = true_flag;
  store.PendingUpdate = true_flag;
  return true;
}

void BusPanel::run_deferred(const std::vector<DeferredWork>& work) {
  if (store.PendingUpdate == 0) return;
  store.PendingUpdate = false_flag;
  for (const DeferredWork& item : work) {
    if (store.*(item.pending) != 0) item.run();
  }
}

}  // namespace varzelin
