#include "panels/single_channel/kvt71338.h"

#include "panels/single_channel/kvt71338_model.h"
#include "registers/kvt71338.h"

namespace varzelin {
namespace {

namespace map = registers::kvt71338;

// Elements of ShpInd.
constexpr int written_lamp = 0;
constexpr int read_lamp = 4;
constexpr int adc_lamp = 8;         // and the one behind it
constexpr int time_base_lamp = 10;  // and the one behind it
// Elements of txtRegRd, each with the one behind it.
constexpr int adc_box = 4;
constexpr int time_base_box = 6;

constexpr int register_reply = 3;
constexpr int data_reply = 5;

forms::Elements range_options(Frame& frame) {
  forms::Elements options;
  for (std::size_t i = 0; i < range_lux.size(); ++i) {
    options.emplace_back(
        static_cast<int>(i),
        Design{.Caption = range_caption(i, reference_ohms), .Container = &frame, .Value = i == 0});
  }
  return options;
}

}  // namespace

frmKVT71338::frmKVT71338(Program& owner)
    : RegisterPanel(owner, kvt71338_model, kvt71338_writes,
                    {.written = {0},
                     .read = {0, adc_box, adc_box + 1, time_base_box, time_base_box + 1},
                     .lamps = {written_lamp, read_lamp, adc_lamp, adc_lamp + 1, time_base_lamp,
                               time_base_lamp + 1, sync_lamp}}),
      sampling_work_{{&Store::PendingWriteR0, [this] { cmdSetCommand_Click(); }}},
      // The flag is never cleared: once a range or a conversion was chosen in a collection, every later
      // choice brings the write with it.
      collection_work_{{&Store::PendingWriteR1,
                        [this] {
                          cmdSetCommand_Click();
                          cmdSetControl_Click();
                        }}},
      OptGain(*this, "OptGain", range_options(frGain)) {
  on(cmdSetCommand, Event::Click, &frmKVT71338::cmdSetCommand_Click);
  on(cmdSetControl, Event::Click, &frmKVT71338::cmdSetControl_Click);
  on(cmdRead_All, Event::Click, &frmKVT71338::cmdRead_All_Click);
  on(cmdRead_ADC, Event::Click, &frmKVT71338::cmdRead_ADC_Click);
  on(cmdReadTB, Event::Click, &frmKVT71338::cmdReadTB_Click);
  on(cmdSync, Event::Click, &frmKVT71338::cmdSync_Click);
  on(TimerIPol, Event::Timer, &frmKVT71338::TimerIPol_Timer);
  on(OptITime, Event::Click, &frmKVT71338::OptITime_Click);
  on(OptGain, Event::Click, &frmKVT71338::OptGain_Click);
  on(OptMeasure, Event::Click, &frmKVT71338::OptMeasure_Click);
  on(OptMeasQty, Event::Click, &frmKVT71338::OptMeasQty_Click);
  on(OptPwr, Event::Click, &frmKVT71338::OptPwr_Click);
  on(calculator.OptREXT, Event::Click, &frmKVT71338::OptREXT_Click);
  on(OptGraph, Event::Click, &frmKVT71338::OptGraph_Click);
  on(OptMode, Event::Click, &frmKVT71338::OptMode_Click);
  on(calculator.Frame7, Event::Click, &frmKVT71338::Frame7_Click);
  on(Label13, Event::DblClick, &frmKVT71338::Label13_DblClick);
}

// --- load ---

void frmKVT71338::load_model() {
  store.GraphUnit1 = "Lux";
  store.GraphUnit2 = "AD Cnt";
  store.RextOhms = reference_ohms;
  store.RangeIndex = 0;
  store.FullCount = 4095;
  Label16.Caption = "Time Base Counter";
}

void frmKVT71338::load_register_image() {
  store.RegImage = {0, 0, 0xFF, 0};
  show_register(map::command_register);
}

// The sensor is at 12 bits then, and sees visible light.
void frmKVT71338::finish_load() {
  OptMeasure_Click(1);
  OptITime_Click(1);
  cmdSetCommand_Click();
  store.LayoutCompact = false_flag;
  Label13_DblClick();
}

// --- registers ---

void frmKVT71338::cmdSetControl_Click() {
  DoEvents();
  Read_Command_Register();
}

void frmKVT71338::Read_Command_Register() {
  connect_by_rule();
  store.I2C_RdCnt = 1;
  read_registers(map::command_register, register_reply);
  show_command_register();
}

// The first read is for its status: whether the sensor answers a read of two bytes.
void frmKVT71338::Read_Registers() {
  connect_by_rule();
  store.I2C_RdCnt = 2;
  read_registers(map::data_register + 1, register_reply);
  store.BridgeStatus = reply(0);
  flip_lamp(ShpInd(read_lamp));
  store.I2C_RdCnt = 2;
  read_registers(map::command_register, register_reply);
  show_command_register();
}

void frmKVT71338::show_command_register() {
  show_read_back(map::command_register, reply(1));
  flip_lamp(ShpInd(read_lamp));
  compare_read_back(map::command_register, ShpInd(read_lamp));
  if (store.SingleReading == 0) store.I2C_RdCnt = 4;
  store.PendingReadRegs = false_flag;
  disconnect_by_rule();
}

void frmKVT71338::cmdRead_ADC_Click() {
  read_data_pair(adc_box, adc_lamp);
}

void frmKVT71338::cmdReadTB_Click() {
  read_data_pair(time_base_box, time_base_lamp);
}

void frmKVT71338::read_data_pair(int first_box, int first_lamp) {
  connect_by_rule();
  store.I2C_RdCnt = 2;
  read_registers(map::data_register, data_reply);
  for (const int i : {0, 1}) {
    show_read_back(first_box + i, reply(static_cast<std::size_t>(i + 1)));
    flip_lamp(ShpInd(first_lamp + i));
  }
  disconnect_by_rule();
}

void frmKVT71338::cmdSync_Click() {
  connect_by_rule();
  command_write(map::sync_command.byte);
  flip_lamp(ShpInd(sync_lamp));
  disconnect_by_rule();
}

// Nothing looks at what comes, and nothing enables the timer.
void frmKVT71338::TimerIPol_Timer() {
  connect_by_rule();
  store.I2C_RdCnt = 2;
  read_registers(map::command_register, register_reply);
  DoEvents();
  disconnect_by_rule();
}

bool frmKVT71338::sensor_answered() {
  constexpr std::int16_t both_bytes = 2;
  return store.BridgeStatus == both_bytes;
}

// --- the two layouts ---

void frmKVT71338::Label13_DblClick() {
  store.LayoutCompact = flag(store.LayoutCompact == 0);
  show_layout(store.LayoutCompact == 0);
}

void frmKVT71338::show_layout(bool full) {
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &FrmDevice, &calculator.Frame2, &calculator.Frame3, &calculator.Frame5, &calculator.Frame7,
           &calculator.Frame6, &cmdSetCommand, &cmdSetControl, &cmdReadTB, &frmDataRecord, &frmTimeBase,
           &frmGraphSelect, &ChkExternalTime(2), &cmdRead_ADC, &cmdSync, &OptITime(2), &OptITime(3)}) {
    control->Visible = full;
  }
  if (full) return;
  // These don't come back by themselves.
  for (forms::Control* control : std::initializer_list<forms::Control*>{
           &cmdSetIntHigh, &cmdSetIntLow, &cmdRead_All, &txtTimeBaseReading, &Label16}) {
    control->Visible = false;
  }
}

}  // namespace varzelin
