#include "panels/common/sensor_panel.h"

#include "bridge/log.h"
#include "bridge/text_utilities.h"
#include "waveform/trace.h"
#include "workbench/gpio_panel.h"

namespace varzelin {
namespace {

constexpr int default_address = 0x88;

}  // namespace

SensorPanel::SensorPanel(Program& owner, const PanelModel& panel_model)
    : BusPanel(owner, panel_model),
      cmdSample(*this, "cmdSample", {.Caption = panel_model.sample_caption}),
      txtInterval(*this, "txtInterval", {.Text = panel_model.interval}),
      txtSampleByte(*this, "txtSampleByte",
                    forms::elements(panel_model.shown_reply_bytes, [](int) { return Design{}; })),
      Picture2(*this, "Picture2", {.Width = label_width, .Height = label_height}),
      Picture1(*this, "Picture1",
               {.Container = &Picture2,
                .Width = plot_columns,
                .Height = plot_rows,
                .BackColor = forms::clr_white}),
      txtScale(*this, "txtScale",
               {.Text = panel_model.scale,
                .ToolTipText = "Enter a number here followed by the \"Enter\" key to set the Max range toa "
                               "specific number."}),
      Command4(*this, panel_model.exit_button.name,
               {.Caption = "Exit", .ToolTipText = "Click here when you wish to exit the program."}) {
  on(Command4, Event::Click, &SensorPanel::Command4_Click);
  on(frmAbout, Event::Click, &SensorPanel::frmAbout_Click);
  on(LstDeviceSel, Event::MouseUp, &SensorPanel::LstDeviceSel_MouseUp);
  on(cmdSample, Event::Click, &SensorPanel::cmdSample_Click);
  on(cmdEndSampling, Event::Click, &SensorPanel::cmdEndSampling_Click);
  on(cmdCollectData, Event::Click, &SensorPanel::cmdCollectData_Click);
  on(cmdStopData, Event::Click, &SensorPanel::cmdStopData_Click);
  on(cmdAbort, Event::Click, &SensorPanel::cmdAbort_Click);
  on(txtInterval, Event::KeyPress, &SensorPanel::txtInterval_KeyPress);
  on(txtInterval, Event::LostFocus, &SensorPanel::txtInterval_LostFocus);
  on(txtScale, Event::Click, &SensorPanel::txtScale_Click);
  on(TmrSample, Event::Timer, &SensorPanel::TmrSample_Timer);
  for (forms::Control* stop : {&cmdEndSampling, &cmdStopData}) {
    if (!model.buttons_stay) break;
    stop->Visible = true;
    stop->Enabled = false;
  }
  if (model.integration_timer) on(Tmr_Integration, Event::Timer, &SensorPanel::Tmr_Integration_Timer);
  on(cmdWaveformINit, Event::Click, &SensorPanel::cmdWaveformINit_Click);
  on(cmdDrawTrace, Event::Click, &SensorPanel::cmdDrawTrace_Click);
  on(cmdScale, Event::Click, &SensorPanel::cmdScale_Click);
  on(cmdAutoScale, Event::Click, &SensorPanel::cmdAutoScale_Click);
  on(cmdSaveScreen, Event::Click, &SensorPanel::cmdSaveScreen_Click);
  on(cmdRestoreScreen, Event::Click, &SensorPanel::cmdRestoreScreen_Click);
  on(cmdBrowse, Event::Click, &SensorPanel::cmdBrowse_Click);
  on(cmdStartRec, Event::Click, &SensorPanel::cmdStartRec_Click);
}

void SensorPanel::Form_Load() {
  Init_Colors(store);
  store.Active_Form = this;
  ShpAttach.FillColor = lamp(store.Clr_LtGreen);
  store.AbortRequested = false_flag;
  store.Sample_Run = false_flag;
  set_bus_address(store, default_address);
  store.Board_Rev = 2;
  store.I2C_Pipe = 2;
  DoEvents();
  load_model();
  TmrSample.Enabled = false;
  store.EventsEnabled = true_flag;
  store.TriggerDone = false_flag;
  for (const auto pending :
       {&Store::PendingUpdate, &Store::PendingClearInt, &Store::PendingReadRegs, &Store::PendingWriteR0,
        &Store::PendingWriteR1, &Store::PendingIntHigh, &Store::PendingIntLow}) {
    store.*pending = false_flag;
  }
  LblCommTest.Visible = false;
  fill_device_list();
  store.SingleReading = true_flag;
  store.I2C_RdCnt = 2;
  Label17.Visible = false;
  txtReading2.Visible = false;
  load_register_image();
  CommonDialog2.FileName = program.application_folder + "/Data.txt";
  txtFilePath.Text = CommonDialog2.FileName;
  txtInterval.Text = model.interval;
  store.IntervalMs = interval_of_text();
  store.Sample_Run = false_flag;
  DoEvents();
  build_time_labels_at_load();
  fill_delay_list();
  load_chart();
  for (Frame* frame : {&frmMode, &frmTimeBase, &FrmDevice}) frame->Visible = true;
  ShpHandleStatus.FillColor = lamp(store.Clr_LtGreen);
  finish_load();
}

void SensorPanel::fill_device_list() {
  for (const DeviceRow& row : model.devices) LstDeviceSel.AddItem(row.text);
  LstDeviceSel.ListIndex = 0;
}

void SensorPanel::fill_delay_list() {
  for (int delay = 0; delay <= 500; delay += 5) CboIntTime(5).AddItem(std::to_string(delay));
  CboIntTime(5).ListIndex = 8;
}

void SensorPanel::load_chart() {
  store.Scale_Min = 0;
  store.Scale_Max = scale_of(txtScale);
  store.Scale_Span = store.Scale_Max - store.Scale_Min;
  build_value_labels();
  store.Trace_Y.fill(1);
  Picture1.Cls();
  DrawGrid(program, Picture1);
  draw_labels();
  Save_Screen(store, Picture1);
  Restore_Screen(store, Picture1);
  DoEvents();
}

std::int32_t SensorPanel::interval_of_text() const {
  return forms::CLng(forms::Int(forms::Val(txtInterval.Text)));
}

std::int32_t SensorPanel::scale_of(const TextBox& box) const {
  return forms::CLng(forms::Int(forms::Val(box.Text) + model.scale_addition));
}

void SensorPanel::build_time_labels(std::int32_t interval_ms) {
  store.Label_Time[0] = "0.00";
  for (std::size_t i = 1; i <= 10; ++i) {
    const double seconds = interval_ms / 1000.0 * 400 * static_cast<double>(i) / 10;
    store.Label_Time[i] = forms::Format(seconds, "##.00");
  }
}

void SensorPanel::build_value_labels() {
  const std::int64_t step = forms::CLng(store.Scale_Span / 10.0);
  for (std::size_t i = 0; i <= 10; ++i) {
    store.Label_Left[i] = std::to_string(store.Scale_Min + static_cast<std::int64_t>(i) * step);
  }
}

void SensorPanel::draw_labels() {
  DrawGridLabels2(store, Picture2, Picture1);
}

void SensorPanel::LstDeviceSel_MouseUp() {
  const std::int32_t row = LstDeviceSel.ListIndex;
  const bool in_table = row >= 0 && static_cast<std::size_t>(row) < model.devices.size();
  set_bus_address(store,
                  in_table ? model.devices[static_cast<std::size_t>(row)].write_address : default_address);
  txtI2CAddr.Text = forms::Hex(forms::CLng(store.I2C_WrAdr / 2.0));
  txtI2cXmitAdr.Text = forms::Hex(store.I2C_WrAdr);
}

void SensorPanel::Command4_Click() {
  cmdAbort_Click();
  store.Sample_Run = false_flag;
  for (forms::Control* control : controls()) {
    if (control->kind() == forms::Kind::Timer) control->Enabled = false;
  }
  store.PendingClearInt = false_flag;
  store.PendingReadRegs = false_flag;
  store.PendingUpdate = false_flag;
  for (const char* other : {"frmAbout2", "frmScriptOps", "frmStartup", log_form_name}) set().unload(other);
  for (const char* other : model.unloaded_panels) set().unload(other);
  set().unload(*this);
}

void SensorPanel::frmAbout_Click() {
  program.forms.touch("frmAbout2").Show();
}

void SensorPanel::TmrSample_Timer() {
  cmdSample_Click();
}

void SensorPanel::Tmr_Integration_Timer() {
  store.IntegrationMs += 25.0;
}

void SensorPanel::toggle_leds() {
  auto& gpio = form<frmGPIO>();
  for (const int led : {0, 1}) gpio.ChKLedData(led).Value = gpio.ChKLedData(led).Value == 0 ? 1 : 0;
  gpio.cmdGPIO_Write_Click();
}

void SensorPanel::show_comm_test(bool good) {
  show_verdict(LblCommTest, good);
  LblCommTest.ForeColor = good ? forms::clr_button_text : forms::clr_white;
}

void SensorPanel::show_reply_bytes() {
  txtSampleByte(0).Text = forms::Hex(reply(0));
  txtSampleByte(1).Text = forms::Hex2(reply(1));
  txtSampleByte(2).Text = forms::Hex(reply(2));
  show_count_of_bytes(txtSampleByte(2), txtSampleByte(1), txtADHex, txtADDec);
}

void SensorPanel::show_count_of_bytes(const TextBox& high, const TextBox& low, TextBox& hex,
                                      TextBox& decimal) {
  hex.Text = high.Text + low.Text;
  std::int32_t count = 0;
  HexToLong(hex.Text, count);
  decimal.Text = forms::CStr(count);
}

void SensorPanel::wait_integration() {
  store.IntegrationMs = 0;
  Tmr_Integration.Enabled = true;
  while (store.IntegrationMs <= 1000 && Tmr_Integration.Enabled) {
    leave_if_overtaken();
    DoEvents();
  }
  Tmr_Integration.Enabled = false;
}

}  // namespace varzelin
