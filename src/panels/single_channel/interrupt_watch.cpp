#include "panels/single_channel/interrupt_watch.h"

#include "boards/driver.h"
#include "registers/kvt71344.h"
#include "workbench/gpio_panel.h"

namespace varzelin {
namespace {

constexpr int clear_lamp = 13;
constexpr std::uint8_t pin_bit = 0x80;

}  // namespace

InterruptWatch::InterruptWatch(Program& owner, RegisterPanel& of_panel, const EightRegisterModel& panel_model)
    : PanelPart(owner, of_panel), model_(panel_model) {
  on(cmdClearInt, Event::Click, &InterruptWatch::cmdClearInt_Click);
  on(cmdClrInt, Event::Click, &InterruptWatch::cmdClrInt_Click);
  on(cmdSample_Portb, Event::Click, &InterruptWatch::cmdSample_Portb_Click);
  on(ChkIpol, Event::Click, &InterruptWatch::ChkIpol_Click);
  if (model_.timer_polls) on(TimerIPol, Event::Timer, &InterruptWatch::TimerIPol_Timer);
}

// --- clearing ---

void InterruptWatch::cmdClearInt_Click() {
  panel.connect_by_rule();
  panel.command_write(registers::kvt71344::clear_interrupt.byte);
  flip_lamp(panel.ShpInd(clear_lamp));
  if (model_.clear_disconnects_first) panel.disconnect_by_rule();
  if (store.Sample_Run == 0) panel.cmdRead_All_Click();
  store.PendingClearInt = false_flag;
  if (!model_.clear_disconnects_first) panel.disconnect_by_rule();
}

void InterruptWatch::cmdClrInt_Click() {
  if (panel.deferred({&Store::PendingClearInt, &Store::PendingReadRegs})) {
    DoEvents();
    return;
  }
  cmdClearInt_Click();
  cmdSample_Portb_Click();
}

void InterruptWatch::show_flag(std::uint8_t control_byte) {
  const bool set = registers::kvt71344::interrupt_flag.of(control_byte) != 0;
  ShpINt.FillColor = lamp(set ? store.Clr_Red : store.Clr_Black);
}

// --- the pin ---

void InterruptWatch::Sample_PortB() {
  if (model_.pin_by_gpio_panel) {
    form<frmGPIO>().cmdGPIO_Write_Click();
    return;
  }
  constexpr int port_reply = 25;
  constexpr int first_board_reply = 3;
  panel.connect_by_rule();
  if (store.Board_Rev == 1) {
    const BusPanel::Route sensor_pipe{boards::pipe_i2c_out, Transfers::fast};
    panel.exchange({2, 0, 0}, first_board_reply, sensor_pipe);
  }
  if (store.Board_Rev == 2) {
    const BusPanel::Route port_pipe{boards::pipe_gpio_out, Transfers::fast};
    // Asks for the pins and changes nothing.
    panel.exchange({0, 0, 0, 0, 2}, port_reply, port_pipe);
  }
  panel.disconnect_by_rule();
}

void InterruptWatch::show_pin() {
  const bool high = (panel.reply(0) & pin_bit) != 0;
  ShpINTexternal.FillColor = lamp(high ? store.Clr_Black : store.Clr_Red);
}

void InterruptWatch::cmdSample_Portb_Click() {
  Sample_PortB();
  txtPbInt.Text = forms::Hex2(panel.reply(0));
  show_pin();
}

// --- polling ---

void InterruptWatch::ChkIpol_Click() {
  if (ChkIpol.Value == 1) {
    if (store.Sample_Run != 0) return;
    TimerIPol.Enabled = true;
    ChkIpol.Caption = "Polling INT Via Register";
    return;
  }
  TimerIPol.Enabled = false;
  ChkIpol.Caption = "Check to enable Interrupt Polling";
  DoEvents();
  ShpISample.FillColor = lamp(store.Clr_Black);
}

void InterruptWatch::TimerIPol_Timer() {
  constexpr int reply_size = 3;
  panel.connect_by_rule();
  store.I2C_RdCnt = 2;
  panel.read_registers(registers::kvt71344::command_register, reply_size);
  show_flag(panel.reply(2));
  flip_lamp(ShpISample);
  DoEvents();
  // The session stays open for the next tick.
  if (store.Man_Usb_Conn == 0) panel.connect();
}

void InterruptWatch::collection_starts() {
  if (ChkIpol.Value == 1) ChkIpol.Caption = "Polling via External INT Pin";
  TimerIPol.Enabled = false;
}

void InterruptWatch::begin_pass() {
  if (ChkIpol.Value != 1) return;
  Sample_PortB();
  flip_lamp(ShpISample);
  show_pin();
}

void InterruptWatch::collection_ended() {
  if (ChkIpol.Value != 1) return;
  TimerIPol.Enabled = true;
  ChkIpol.Caption = "Polling INT Via Reg b001 Bit h20";
}

}  // namespace varzelin
