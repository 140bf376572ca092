#include "panels/two_mode/two_mode_panel.h"

#include "bridge/text_utilities.h"
#include "registers/kvt71374.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71374;

// Elements of ShpInd.
constexpr int read_back_lamp = 4;  // of register 0, that of register 1 behind it
constexpr int result_lamp = 8;
constexpr int cycles_lamp = 10;

constexpr int register_reply = 3;
constexpr int pair_reply = 5;

constexpr const char* batch_form_name = "ALS_Batch";

}  // namespace

TwoModePanel::TwoModePanel(Program& owner, const TwoModeModel& panel_model)
    : ConverterPanel(owner, panel_model.converter, &Frame12),
      lblRegister(*this, "lblRegister", forms::captioned({"b000", "b001", "ADC", "ADC", "TB", "TB"})) {
  txtRegHex(0).Text = "80";
  txtRegHex(0).ToolTipText = "Display actual hex value of KVT71344 control Register. ";
  txtRegHex(1).Text = "00";
  txtRegHex(1).ToolTipText = "Hex  Write value of KVT71344 control Register. ";
  txtRegRd(2).ToolTipText = "ADC Readback LSB (7:0)";
  txtRegRd(3).ToolTipText = "ADC Readback MSB (15:8)";
  txtRegRd(4).ToolTipText = "Integration Counter LSB Value";
  txtRegRd(5).ToolTipText = "Integration Counter MSB Value";
  on(cmdRead_ADC, Event::Click, &TwoModePanel::cmdRead_ADC_Click);
  on(cmdReadTB, Event::Click, &TwoModePanel::cmdReadTB_Click);
  on(txtRegHex, Event::KeyPress, &TwoModePanel::txtRegHex_KeyPress);
  on(OptMode, Event::Click, &TwoModePanel::OptMode_Click);
  on(ChStab, Event::Click, &TwoModePanel::ChStab_Click);
  on(cmdRead, Event::Click, &TwoModePanel::cmdRead_Click);
  on(cmdBatchShow, Event::Click, &TwoModePanel::cmdBatchShow_Click);
}

// --- load ---

void TwoModePanel::load_model() {
  ConverterPanel::load_model();
  store.ProxAdjMode = false_flag;
  store.AdcBits = 16;
  txtScale2.Text = txtScale.Text.get();
}

void TwoModePanel::finish_load() {
  constexpr int width_16_bits = 0;
  set_sensor_at_load(width_16_bits);
}

// --- registers ---

void TwoModePanel::read_back(int register_number, std::uint8_t value) {
  Shape& shape = ShpInd(read_back_lamp + register_number);
  show_read_back(register_number, value);
  flip_lamp(shape);
  compare_read_back(register_number, shape);
}

void TwoModePanel::Read_Registers() {
  connect_by_rule();
  store.I2C_RdCnt = 2;
  read_registers(map::operation_register, register_reply);
  store.BridgeStatus = reply(0);
  for (const int i : {0, 1}) read_back(i, reply(static_cast<std::size_t>(i + 1)));
  store.PendingReadRegs = false_flag;
  disconnect_by_rule();
}

void TwoModePanel::Read_Command_Register() {
  connect_by_rule();
  store.I2C_RdCnt = 1;
  read_registers(map::operation_register, register_reply);
  store.BridgeStatus = reply(0);
  read_back(map::operation_register, reply(1));
  // A digit that the user left alone in a box gets its zero again.
  for (const int i : {1, 2, 3}) {
    const std::string text = txtRegRd(i).Text;
    if (text.size() == 1) txtRegRd(i).Text = "0" + text;
  }
  if (store.SingleReading == 0) store.I2C_RdCnt = 4;
  disconnect_by_rule();
}

void TwoModePanel::cmdRead_ADC_Click() {
  read_pair(map::result_register, result_lamp);
}

void TwoModePanel::cmdReadTB_Click() {
  read_pair(map::cycles_register, cycles_lamp);
}

void TwoModePanel::read_pair(int first_register, int first_lamp) {
  connect_by_rule();
  fetch(2, first_register, pair_reply);
  show_results(first_register, first_lamp, 2);
  disconnect_by_rule();
}

void TwoModePanel::Read_Measurements() {
  constexpr int results = 4;
  connect_by_rule();
  store.I2C_RdCnt = results;
  read_registers(map::result_register, pair_reply);
  show_results(map::result_register, result_lamp, results);
  disconnect_by_rule();
}

void TwoModePanel::show_results(int first_register, int first_lamp, int count) {
  for (int i = 0; i < count; ++i) {
    show_read_back(first_register + i, reply(static_cast<std::size_t>(i + 1)));
    flip_lamp(ShpInd(first_lamp + i));
  }
}

// The limit doesn't follow the operation field: below it a command counts as a single conversion.
void TwoModePanel::txtRegHex_KeyPress(int Index, int& KeyAscii) {
  constexpr int continuous_from = 80;
  if (KeyAscii != forms::vbKeyReturn) return;
  txtRegHex(Index).Text = forms::UCase(txtRegHex(Index).Text);
  if (Index == map::operation_register) {
    store.OneShotMode = flag(HexVal(txtRegHex(Index).Text) < continuous_from);
    cmdSetCommand_Click();
  } else {
    cmdSetControl_Click();
  }
}

// In the first position the byte goes out that was shown before.
void TwoModePanel::OptMode_Click(int Index) {
  toggle_led_enables();
  switch (Index) {
    case 0:
      store.RegImage[map::operation_register] |= map::time_base.mask();
      cmdSetCommand_Click();
      show_register(map::operation_register);
      break;
    case 1:
      OptMeasure(2).Value = false;
      break;
    default:
      test_communications();
      break;
  }
}

bool TwoModePanel::sensor_answered() {
  constexpr std::int16_t both_bytes = 2;
  return store.BridgeStatus == both_bytes;
}

void TwoModePanel::cmdBatchShow_Click() {
  program.forms.touch(batch_form_name).Show();
}

// --- the two layouts ---

void TwoModePanel::show_layout(bool full) {
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &Frame4, &Frame5, &Frame11, &Frame2, &Frame8, &Frame3, &frmTimeBase, &frmDataRecord, &OptITime(2),
           &OptITime(3), &OptMeasure(2), &OptMeasure(3), &cmdSetCommand, &cmdSetControl, &cmdRead_All,
           &cmdRead_ADC, &cmdReadTB, &cmdSync, &cmdProx_IR}) {
    control->Visible = full;
  }
  // These are of the pairs alone.
  for (Frame* frame : {&Frame9, &Frame10}) frame->Visible = full && store.ProxIRMode != 0;
}

}  // namespace varzelin
