#include "panels/multi_function/multi_function_panel.h"

#include "bridge/text_utilities.h"
#include "panels/multi_function/interrupt_test.h"
#include "registers/kvt71385.h"
#include "waveform/trace.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71385;

constexpr int registers_of_the_sensor = 9;
constexpr int highest_image = 3;  // the limits and the test register have none

// Elements of ShpIndrd behind those of the registers.
constexpr int cycle_lamp = 10;
// Elements of ShpInd.
constexpr int command_read_lamp = 4;

constexpr int both_registers_reply = 3;
constexpr int result_reply = 5;
constexpr int single_register_reply = 6;

constexpr std::array<const char*, registers_of_the_sensor> texts_at_load{"80", "00", "00", "00", "00",
                                                                         "00", "FF", "FF", "00"};

forms::Elements of_registers(const char* caption) {
  return forms::elements(registers_of_the_sensor, [caption](int) { return Design{.Caption = caption}; });
}

void number_tips(const auto& controls, const char* tip) {
  for (int i = 0; i < registers_of_the_sensor; ++i) controls(i).ToolTipText = tip + std::to_string(i);
}

}  // namespace

MultiFunctionPanel::MultiFunctionPanel(Program& owner, const MultiFunctionModel& panel_model)
    : ConverterPanel(owner, panel_model.converter),
      model_(panel_model),
      cmdRDReg(*this, "cmdRDReg", of_registers("Rd")),
      cmdWrtReg(*this, "cmdWrtReg", of_registers("Wr")),
      ShpIndrd(*this, "ShpIndrd", forms::elements(cycle_lamp + 1, [](int) { return Design{}; })),
      ShpIndwr(*this, "ShpIndwr", of_registers("")),
      lblRegister(
          *this, "lblRegister",
          forms::captioned(
              {"  R0        R1         R2        R3        R4        R5         R6         R7         R8",
               "Opr       Con       AD LSB  ADMSB  ILLSB   ILMSB   IHLSB    IHMSB     RSVD"})) {
  if (model_.has_cover) cover.emplace(program, *this);
  if (model_.has_offset) subtraction.emplace(program, *this);
  for (int i = 0; i < registers_of_the_sensor; ++i) {
    txtRegHex(i).Text = forms::element(texts_at_load, i);
    txtRegRd(i).Text = "XX";
  }
  on(cmdRDReg, Event::Click, &MultiFunctionPanel::cmdRDReg_Click);
  on(cmdWrtReg, Event::Click, &MultiFunctionPanel::cmdWrtReg_Click);
  on(cmdRead_ADC, Event::Click, &MultiFunctionPanel::cmdRead_ADC_Click);
  on(cmdReadTB, Event::Click, &MultiFunctionPanel::cmdReadTB_Click);
  on(cmdSampleIIIntr, Event::Click, &MultiFunctionPanel::cmdRead_All_Click);
  on(txtRegHex, Event::KeyPress, &MultiFunctionPanel::txtRegHex_KeyPress);
  on(txtRegHex, Event::LostFocus, &MultiFunctionPanel::txtRegHex_LostFocus);
  on(OptMode, Event::Click, &MultiFunctionPanel::OptMode_Click);
  on(OptMeasure, Event::GotFocus, &MultiFunctionPanel::OptMeasure_GotFocus);
  on(optINTP, Event::Click, &MultiFunctionPanel::optINTP_Click);
  on(OptTimeBase, Event::Click, &MultiFunctionPanel::OptTimeBase_Click);
  on(cmdIntr1, Event::Click, &MultiFunctionPanel::cmdIntr1_Click);
}

// --- load ---

void MultiFunctionPanel::load_model() {
  ConverterPanel::load_model();
  Caption = model_.title_at_load + store.Rev_Sel;
  store.AdcBits = 12;
  store.LimitMax = 4095;
  store.LimitMin = 0;
  txtScale2.Text = txtScale.Text.get();
  OptIRMode(1).Enabled = false;
  number_tips(txtRegHex, "Enter Hex value, click Wr Button below to write to register");
  number_tips(txtRegRd, "Rd Hex Value, click RD Button below to read from register");
  number_tips(cmdWrtReg, "Click to Write to Register ");
  number_tips(cmdRDReg, "Click to Read from Register ");
}

void MultiFunctionPanel::finish_load() {
  constexpr int width_12_bits = 1;
  set_sensor_at_load(width_12_bits);
  limits.txtIHigh.Text = "1500";
  limits.txtILow.Text = "100";
  limits.cmdWrtILimits_Click();
  limits.cmdReadILimits_Click();
}

// --- registers ---

void MultiFunctionPanel::show_read(int register_number, std::uint8_t value) {
  show_read_back(register_number, value);
  flip_lamp(ShpIndrd(register_number));
  if (register_number != map::operation_register) return;
  // The transfer buffer keeps the interrupt alone of this byte.
  std::uint8_t& interrupt = store.Xfer_Buf[1];
  interrupt &= map::interrupt_flag.mask();
  ShpINt.FillColor = lamp(interrupt != 0 ? store.Clr_Red : store.Clr_Black);
}

void MultiFunctionPanel::Read_Registers() {
  connect_by_rule();
  store.I2C_RdCnt = 2;
  read_registers(map::operation_register, both_registers_reply);
  store.BridgeStatus = reply(0);
  for (const int i : {0, 1}) {
    show_read(i, reply(static_cast<std::size_t>(i + 1)));
    compare_read_back(i, ShpIndrd(i));
  }
  flip_lamp(ShpIndrd(cycle_lamp));
  store.PendingReadRegs = false_flag;
  disconnect_by_rule();
}

void MultiFunctionPanel::Read_Command_Register() {
  connect_by_rule();
  fetch(1, map::operation_register, both_registers_reply);
  store.BridgeStatus = reply(0);
  show_read_back(map::operation_register, reply(1));
  flip_lamp(ShpInd(command_read_lamp));
  compare_read_back(map::operation_register, ShpInd(command_read_lamp));
  if (store.InternalTiming == 0) store.I2C_RdCnt = 4;
  disconnect_by_rule();
}

void MultiFunctionPanel::cmdRDReg_Click(int Index) {
  read_register(Index);
}

int MultiFunctionPanel::read_register(int register_number) {
  connect_by_rule();
  fetch(1, register_number, single_register_reply);
  store.BridgeStatus = reply(0);
  const std::uint8_t value = reply(1);
  show_read(register_number, value);
  // The halves of the result aren't what was written.
  const bool of_result =
      register_number == map::result_register || register_number == map::result_register + 1;
  if (!of_result) compare_read_back(register_number, ShpIndrd(register_number));
  disconnect_by_rule();
  return value;
}

void MultiFunctionPanel::cmdWrtReg_Click(int Index) {
  connect_by_rule();
  const std::uint8_t value = byte_of_box(Index);
  register_write(Index, value, AddressForm::read);
  if (Index <= highest_image) forms::element(store.RegImage, Index) = value;
  flip_lamp(ShpIndwr(Index));
  disconnect_by_rule();
}

// The result goes into boxes of its own kind, behind those of its registers.
void MultiFunctionPanel::cmdRead_ADC_Click() {
  read_results(4);
  for (const int i : {0, 1}) flip_lamp(ShpIndrd(map::result_register + i));
}

void MultiFunctionPanel::cmdReadTB_Click() {
  read_results(6);
}

void MultiFunctionPanel::read_results(int first_box) {
  connect_by_rule();
  fetch(2, map::result_register, result_reply);
  for (const int i : {0, 1}) show_read_back(first_box + i, reply(static_cast<std::size_t>(i + 1)));
  disconnect_by_rule();
}

// Above 0x4F a command means a continuous conversion.
void MultiFunctionPanel::txtRegHex_KeyPress(int Index, int& KeyAscii) {
  constexpr int continuous_from = 0x50;
  if (KeyAscii != forms::vbKeyReturn) return;
  TextBox& box = txtRegHex(Index);
  box.Text = forms::UCase(box.Text);
  const int value = HexVal(box.Text);
  if (value < 0 || value > 0xFF) box.Text = "00";
  if (Index == map::operation_register) {
    store.OneShotMode = flag(HexVal(box.Text) < continuous_from);
    cmdSetCommand_Click();
  } else if (Index == map::configuration_register) {
    cmdSetControl_Click();
  } else if (Index > highest_image) {
    cmdWrtReg_Click(Index);
  }
}

void MultiFunctionPanel::txtRegHex_LostFocus(int Index) {
  txtRegHex(Index).Text = forms::UCase(txtRegHex(Index).Text).substr(0, 2);
}

void MultiFunctionPanel::OptMode_Click() {
  toggle_led_enables();
  test_communications();
  OptMode(2).Value = false;
}

// --- the interrupt test ---

void MultiFunctionPanel::cmdIntr1_Click() {
  constexpr int yields_for_the_loop = 100;
  store.Sample_Run = false_flag;
  DoEvents(yields_for_the_loop);
  if (model_.has_interrupt_test) form<frm71385INTR>().Show();
}

// --- the two layouts ---

void MultiFunctionPanel::show_layout(bool full) {
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &Frame4,      &Frame5,  &Frame10,       &Frame11,       &Frame9,      &Frame2,
           &Frame8,      &Frame3,  &frmTimeBase,   &frmDataRecord, &FrmDevice,   &OptITime(2),
           &OptITime(3), &Label17, &cmdSetCommand, &cmdSetControl, &cmdRead_All, &cmdRead_ADC,
           &cmdReadTB,   &cmdSync, &cmdProx_IR,    &txtReading2,   &txtReading3}) {
    control->Visible = full;
  }
  for (const int position : model_.short_layout_hides) OptMeasure(position).Visible = full;
  Frame10.Visible = full && model_.full_layout_shows_pair;
  cmdIntr1.Visible = false;
}

}  // namespace varzelin
