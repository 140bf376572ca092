#include "panels/common/bus_panel.h"

#include "workbench/workbench.h"

namespace varzelin {

void BusPanel::connect_by_rule() {
  if (store.Man_Usb_Conn != 0) return;
  form<frmI2C_General>().cmdUSBConnect_Click();
  DoEvents();
}

void BusPanel::disconnect_by_rule() {
  if (store.Man_Usb_Conn != 0) return;
  form<frmI2C_General>().cmdUSBDisconnect_Click();
  DoEvents();
}

void BusPanel::hold_session() {
  connect_by_rule();
  store.Man_Usb_Conn = true_flag;
}

void BusPanel::release_session() {
  store.Man_Usb_Conn = false_flag;
  form<frmI2C_General>().cmdUSBDisconnect_Click();
}

void BusPanel::send(std::initializer_list<int> bytes) {
  set_request(store, store.I2C_Pipe, bytes);
  Fast_Write(program);
}

void BusPanel::receive(int size) {
  set_reply(store, store.I2C_Pipe + in_pipe_offset, size);
  Fast_Read(program);
}

bool BusPanel::deferred(std::initializer_list<Flag Store::*> pending) {
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

void BusPanel::beat(Shape& shape) {
  const bool was_light = shape.FillColor.get() == lamp(store.Clr_LtGreen);
  shape.FillColor = lamp(was_light ? store.Clr_Black : store.Clr_LtGreen);
}

}  // namespace varzelin
