#include "panels/single_channel/eight_register_panel.h"

#include "registers/kvt71344.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71344;

// Elements of ShpInd: 0 to 3 are the writes of R0 to R3, 8 to 11 the reads of R4 to R7.
constexpr int limits_read_lamp = 4;   // and the one behind it
constexpr int command_read_lamp = 6;  // and the one behind it
constexpr int compare_lamp = 4;       // of R0 to R3
constexpr int results_read_lamp = 8;

constexpr int written_registers = 4;
constexpr int register_pair_reply = 3;

constexpr const char* gain_tip = "Set the Lux Sensitivity Gain  / Level.";
constexpr const char* reset_tip =
    "The resets the KVT71344 and then places it in D1, Internal Integration Sensing Mode.";

std::string trips_tip(const char* cycles) {
  return std::string("Interrupt High / Low threshold level must exist for ") + cycles +
         " before Interrupt Signal will be asserted.";
}

}  // namespace

EightRegisterPanel::EightRegisterPanel(Program& owner, const EightRegisterModel& panel_model)
    : RegisterPanel(owner, panel_model.panel, panel_model.writes,
                    {.written = {0, 1, 2, 3},
                     .read = {0, 1, 2, 3, 4, 5, 6, 7},
                     .lamps = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}}),
      model_(panel_model),
      register_work_{{&Store::PendingClearInt,
                      [this] {
                        watch.cmdClearInt_Click();
                        watch.cmdSample_Portb_Click();
                        DoEvents();
                      }},
                     {&Store::PendingWriteR1, [this] { cmdSetControl_Click(); }},
                     {&Store::PendingWriteR0, [this] { cmdSetCommand_Click(); }},
                     {&Store::PendingIntHigh, [this] { cmdSetIntHigh_Click(); }},
                     {&Store::PendingIntLow, [this] { cmdSetIntLow_Click(); }},
                     {&Store::PendingReadRegs, [this] { Read_Registers(); }}},
      OptMeasure(
          *this, "OptMeasure",
          model_.one_measurement
              ? forms::Elements{{0, {.Caption = "D1-Only", .Container = &frmMeasure, .Visible = false}},
                                {1, {.Caption = "D2-Only", .Container = &frmMeasure, .Visible = false}},
                                {2, {.Caption = "Light Count", .Container = &frmMeasure, .Value = 1}}}
              : forms::captioned_options({"D1-Only", "D2-Only", "D1-D2"}, 0, {.Container = &frmMeasure})),
      OptITime(*this, "OptITime", forms::captioned_options(model_.resolutions, 0, {.Container = &frItime})),
      frGain(*this, "frGain", {.Caption = "Range", .ToolTipText = gain_tip}),
      OptGain(*this, "OptGain",
              forms::captioned_options(model_.ranges, 0, {.ToolTipText = gain_tip, .Container = &frGain})),
      OpInt(
          *this, "OpInt",
          {{0,
            {.Caption = "1 Trip",
             .ToolTipText = trips_tip("1 integration cycle"),
             .Container = &frControl,
             .Value = 1}},
           {1,
            {.Caption = "4 Trip", .ToolTipText = trips_tip("4 integration cycles"), .Container = &frControl}},
           {2,
            {.Caption = "8 Trip", .ToolTipText = trips_tip("8 integration cycles"), .Container = &frControl}},
           {3,
            {.Caption = "16 Trip",
             .ToolTipText = trips_tip("16 integration cycles"),
             .Container = &frControl}}}),
      ChkCommand(*this, "ChkCommand", forms::captioned(model_.commands)),
      LstMode2(*this, "LstMode2",
               {.Container = &frmMode, .List = {model_.diodes.begin(), model_.diodes.end()}}),
      OptGraph(*this, "OptGraph",
               {{0,
                 {.Caption = "Lux Count",
                  .ToolTipText = "Graph the measured Lux count ",
                  .Container = &frmGraphSelect,
                  .Value = 1}},
                {1,
                 {.Caption = "Integration Count",
                  .ToolTipText = "Graphs the Integration Counter Value, External Time Base Only",
                  .Container = &frmGraphSelect,
                  .Visible = false}},
                {2,
                 {.Caption = "Calculated Lux  - Integration Count Ratio",
                  .ToolTipText = "Graph Calculated Lux based on ratio of Integration Count and Lux Count.",
                  .Container = &frmGraphSelect,
                  .Visible = false}}}),
      lblRegister(*this, "lblRegister", forms::captioned(model_.register_labels)),
      cmdSetCommand(*this, "cmdSetCommand", {.Caption = model_.buttons[0]}),
      cmdSetControl(*this, "cmdSetControl", {.Caption = model_.buttons[1]}),
      cmdSetIntHigh(*this, "cmdSetIntHigh", {.Caption = model_.buttons[2]}),
      cmdSetIntLow(*this, "cmdSetIntLow", {.Caption = model_.buttons[3]}),
      cmdRead_All(*this, "cmdRead_All", {.Caption = model_.buttons[4]}),
      cmdRead_Measurements(*this, "cmdRead_Measurements", {.Caption = model_.buttons[5]}),
      cbReset(*this, "cbReset", {.Caption = "Reset  KVT7134x", .ToolTipText = reset_tip}) {
  on(cmdSetCommand, Event::Click, &EightRegisterPanel::cmdSetCommand_Click);
  on(cmdSetControl, Event::Click, &EightRegisterPanel::cmdSetControl_Click);
  on(cmdSetIntHigh, Event::Click, &EightRegisterPanel::cmdSetIntHigh_Click);
  on(cmdSetIntLow, Event::Click, &EightRegisterPanel::cmdSetIntLow_Click);
  on(cmdRead_All, Event::Click, &EightRegisterPanel::cmdRead_All_Click);
  on(cmdRead_Measurements, Event::Click, &EightRegisterPanel::cmdRead_Measurements_Click);
  on(cmdSync, Event::Click, &EightRegisterPanel::cmdSync_Click);
  on(txtRegHex, Event::KeyPress, &EightRegisterPanel::txtRegHex_KeyPress);
  on(OptMeasure, Event::Click, &EightRegisterPanel::OptMeasure_Click);
  on(OptITime, Event::Click, &EightRegisterPanel::OptITime_Click);
  on(OptGain, Event::Click, &EightRegisterPanel::OptGain_Click);
  on(OpInt, Event::Click, &EightRegisterPanel::OpInt_Click);
  on(ChkCommand, Event::Click, &EightRegisterPanel::ChkCommand_Click);
  on(OptTimeBase, Event::Click, &EightRegisterPanel::OptTimeBase_Click);
  on(OptGraph, Event::Click, &EightRegisterPanel::OptGraph_Click);
  on(OptMode, Event::Click, &EightRegisterPanel::OptMode_Click);
  on(LstMode2, Event::MouseUp, &EightRegisterPanel::LstMode2_MouseUp);
  on(cbReset, Event::Click, &EightRegisterPanel::cbReset_Click);
}

// --- load ---

void EightRegisterPanel::load_register_image() {
  std::ranges::copy(model_.image_at_load, store.RegImage.begin());
  for (int i = 0; i < written_registers; ++i) show_register(i);
  limit_top_byte(0);
}

void EightRegisterPanel::finish_load() {
  if (!model_.writes_at_load) return;
  for (int i = 0; i < written_registers; ++i) write_register(i);
}

// --- registers ---

void EightRegisterPanel::cmdRead_All_Click() {
  if (model_.read_back_connects_first) connect_by_rule();
  RegisterPanel::cmdRead_All_Click();
}

void EightRegisterPanel::Read_Registers() {
  connect_by_rule();
  store.I2C_RdCnt = 2;
  read_registers(map::high_limit_register, register_pair_reply);
  show_read_back(map::high_limit_register, reply(1));
  show_read_back(map::low_limit_register, reply(2));
  for (const int i : {0, 1}) flip_lamp(ShpInd(limits_read_lamp + i));
  read_registers(map::command_register, register_pair_reply);
  show_read_back(map::command_register, reply(1));
  show_read_back(map::control_register, reply(2));
  for (const int i : {0, 1}) flip_lamp(ShpInd(command_read_lamp + i));
  watch.show_flag(reply(2));
  for (int i = 0; i < written_registers; ++i) compare_read_back(i, ShpInd(compare_lamp + i));
  if (store.SingleReading == 0) store.I2C_RdCnt = 4;
  store.PendingReadRegs = false_flag;
  disconnect_by_rule();
}

// Leaves the read count at 4, also for the next reading.
void EightRegisterPanel::cmdRead_Measurements_Click() {
  connect_by_rule();
  store.I2C_RdCnt = 4;
  read_registers(map::result_register, results_reply);
  for (int i = 0; i < 4; ++i) {
    show_read_back(map::result_register + i, reply(static_cast<std::size_t>(i + 1)));
    flip_lamp(ShpInd(results_read_lamp + i));
  }
  disconnect_by_rule();
}

void EightRegisterPanel::cmdSync_Click() {
  connect_by_rule();
  command_write(map::end_of_conversion.byte);
  flip_lamp(ShpInd(sync_lamp));
  disconnect_by_rule();
}

void EightRegisterPanel::txtRegHex_KeyPress(int Index, int& KeyAscii) {
  if (KeyAscii != forms::vbKeyReturn) return;
  txtRegHex(Index).Text = forms::UCase(txtRegHex(Index).Text);
  limits.show_limit_of(Index);
  write_register(Index);
}

void EightRegisterPanel::exchange_for_test() {
  cmdSetCommand_Click();
  cmdRead_All_Click();
}

bool EightRegisterPanel::sensor_answered() {
  return txtRegHex(0).Text.get() == txtRegRd(0).Text.get();
}

}  // namespace varzelin
