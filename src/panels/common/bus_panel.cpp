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

void BusPanel::read_registers(int first_register, int reply_size) {
  send({store.I2C_RdCnt, store.I2C_RdAdr, first_register}, sensor_route());
  receive(reply_size, sensor_route());
}

void BusPanel::send(std::initializer_list<int> bytes, Route route) {
  if (overtaken()) return;
  set_request(store, route.out_pipe, bytes);
  if (route.transfers == Transfers::fast) {
    Fast_Write(program);
  } else {
    checked_transfer(false);
  }
}

void BusPanel::receive(int size, Route route) {
  if (overtaken()) return;
  set_reply(store, route.out_pipe + in_pipe_offset, size);
  if (route.transfers == Transfers::fast) {
    Fast_Read(program);
  } else {
    checked_transfer(true);
  }
}

void BusPanel::checked_transfer(bool read) {
  const std::int32_t collection = store.Collections;
  const bool good = read ? ReadPipe(program) : WritePipe(program);
  if (store.Collections != collection) return;
  colour_attach_lamp(store, lamp(good ? store.Clr_LtGreen : store.Clr_Red));
  if (good) return;
  store.Sample_Run = false_flag;
  if (read) store.AbortRequested = true_flag;
}

std::uint8_t BusPanel::reply(std::size_t index) const {
  return overtaken() ? std::uint8_t{0} : xfer_byte(store, index);
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
