#include "panels/converter/converter_panel.h"

#include "waveform/trace.h"
#include "workbench/gpio_panel.h"

namespace varzelin {
namespace {

// The sync command, in the place of a register's number.
constexpr int sync_command = 0x80;
constexpr int sync_lamp = 12;  // element of ShpInd

constexpr int proximity_results = 7;
constexpr int proximity_bytes = 4;  // the first of them, two for each of the pair

forms::Elements options(const std::vector<Option>& list, Frame& frame) {
  forms::Elements elements;
  for (const Option& option : list) {
    elements.emplace_back(option.position, Design{.Caption = option.caption, .Container = &frame});
  }
  return elements;
}

RegisterPanel::Boxes framed(RegisterPanel::Boxes boxes, Frame* lamp_frame) {
  boxes.lamp_frame = lamp_frame;
  return boxes;
}

}  // namespace

ConverterPanel::ConverterPanel(Program& owner, const ConverterModel& converter_model, Frame* lamp_frame)
    : RegisterPanel(owner, converter_model.panel, converter_model.writes,
                    framed(converter_model.boxes, lamp_frame)),
      converter_(converter_model),
      sampling_work_{{&Store::PendingWriteR1, [this] { cmdSetControl_Click(); }},
                     {&Store::PendingWriteR0, [this] { cmdSetCommand_Click(); }},
                     {&Store::PendingReadRegs, [this] { Read_Registers(); }}},
      // The loop goes on behind a box that can't be read.
      collection_work_{
          {&Store::PendingReadRegs, [this] { forms::resume_next([&] { Read_Registers(); }); }},
          {&Store::PendingWriteR1,
           [this] {
             forms::resume_next([&] { cmdSetControl_Click(); });
             control_written();
           }},
          {&Store::PendingWriteR0, [this] { forms::resume_next([&] { cmdSetCommand_Click(); }); }}},
      OptMeasure(*this, "OptMeasure", options(converter_.measurements, frmMeasure)),
      frGain(*this, "frGain",
             {.Caption = "Sensitivity - Range Select",
              .ToolTipText = "Set the Lux Sensitivity Gain  / Level.",
              .Container = &frmadccontrol}),
      OptGain(*this, "OptGain",
              forms::captioned_options({"1000", "4000", "16000", "64000"}, 0,
                                       {.ToolTipText = frGain.ToolTipText.get(), .Container = &frGain})),
      ChkEOC1(*this, "ChkEOC1",
              forms::elements(
                  converter_.syncs,
                  [this](int) { return Design{.Caption = "Sync", .Container = &Frame5, .Visible = false}; })),
      txtSync1Delay(*this, "txtSync1Delay",
                    forms::elements(converter_.syncs,
                                    [this](int) {
                                      return Design{.Text = "5",
                                                    .ToolTipText = "Delay to first Sync",
                                                    .Container = &Frame5,
                                                    .Visible = false};
                                    })),
      OptMFreq(*this, "OptMFreq", options(converter_.modulations, Frame7)),
      lblProx_IR(*this, "lblProx_IR",
                 {{0, {.Caption = "Prox Hex  ", .Container = &Frame9}},
                  {2, {.Caption = "IR  Hex  ", .Container = &Frame9}},
                  {4, {.Caption = "Prox", .Container = &Frame10}},
                  {5, {.Caption = "IR", .Container = &Frame10}},
                  {6, {.Caption = "Prox-IR", .Container = &Frame10}}}),
      txtProx_IR(*this, "txtProx_IR",
                 forms::elements(proximity_results,
                                 [this](int i) {
                                   return Design{.Container = i < proximity_bytes ? &Frame9 : &Frame10};
                                 })),
      OptMode(*this, "OptMode", options(converter_.modes, frmMode)),
      cmdSetCommand(*this, "cmdSetCommand", {.Caption = converter_.command_caption, .Container = &Frame2}),
      cmdSetControl(*this, "cmdSetControl", {.Caption = converter_.control_caption, .Container = &Frame2}) {
  on(Label13, Event::DblClick, &ConverterPanel::Label13_DblClick);
  on(cmdSetCommand, Event::Click, &ConverterPanel::cmdSetCommand_Click);
  on(cmdSetControl, Event::Click, &ConverterPanel::cmdSetControl_Click);
  on(cmdRead_All, Event::Click, &ConverterPanel::cmdRead_All_Click);
  on(cmdSync, Event::Click, &ConverterPanel::cmdSync_Click);
  on(cmdProx_IR, Event::Click, &ConverterPanel::cmdProx_IR_Click);
  on(OptMeasure, Event::Click, &ConverterPanel::OptMeasure_Click);
  on(OptITime, Event::Click, &ConverterPanel::OptITime_Click);
  on(OptGain, Event::Click, &ConverterPanel::OptGain_Click);
  on(OptExtTime, Event::Click, &ConverterPanel::OptExtTime_Click);
  on(OptMeasMode, Event::Click, &ConverterPanel::OptMeasMode_Click);
  on(OptIRMode, Event::Click, &ConverterPanel::OptIRMode_Click);
  on(OptPSrc, Event::Click, &ConverterPanel::OptPSrc_Click);
  on(OptMFreq, Event::Click, &ConverterPanel::OptMFreq_Click);
  on(OptGainMode, Event::Click, &ConverterPanel::OptGainMode_Click);
  on(OptIRDRMode, Event::Click, &ConverterPanel::OptIRDRMode_Click);
  on(TimerIPol, Event::Timer, &ConverterPanel::TimerIPol_Timer);
  on(OptGraph, Event::Click, &ConverterPanel::OptGraph_Click);
}

// --- load ---

void ConverterPanel::load_model() {
  constexpr std::array<std::int32_t, 4> ranges{1000, 4000, 16000, 64000};  // lux
  constexpr std::int32_t resistor_ohms = 500000;
  store.RangeLux = ranges;
  store.ResistorScale = resistor_ohms;
  store.GainMultiplier = 1;
  store.GraphUnit1 = store.GraphUnit2 = "AD Cnt";
  store.OneShotMode = true_flag;
  for (const auto mode : std::initializer_list<Flag Store::*>{
           &Store::ProxMode, &Store::ProxIRMode, &Store::LuxMode, &Store::CoverMode, &Store::ExtTiming,
           &Store::GainAuto, &Store::IrdrAuto}) {
    store.*mode = false_flag;
  }
  store.InternalTiming = true_flag;
  store.ProxScheme = 0;
  store.SinglePolarity = true_flag;
  store.GainIndex = store.RangeIndex = 0;
  store.IrdrIndex = 0;
}

void ConverterPanel::set_sensor_at_load(int width) {
  constexpr int current_50_mA = 1;
  constexpr int modulated = 3;
  OptITime(width).select_quietly();
  OptITime_Click(width);
  OptPSrc(current_50_mA).Value = true;
  OptMFreq(modulated).Value = true;
  cmdSetCommand_Click();
  cmdSetControl_Click();
  store.LayoutCompact = false_flag;
  Label13_DblClick();
}

void ConverterPanel::load_register_image() {
  constexpr std::array<std::uint8_t, 4> image_at_load{0x00, 0x00, 0xFF, 0x00};
  std::ranges::copy(image_at_load, store.RegImage.begin());
  for (const int shown : {0, 1}) show_register(shown);
}

// --- registers ---

void ConverterPanel::cmdSync_Click() {
  connect_by_rule();
  command_write(sync_command);
  flip_lamp(ShpInd(sync_lamp));
  disconnect_by_rule();
}

void ConverterPanel::TimerIPol_Timer() {
  constexpr int both_registers_reply = 3;
  connect_by_rule();
  fetch(2, 0, both_registers_reply);
  disconnect_by_rule();
}

void ConverterPanel::toggle_led_enables() {
  auto& gpio = form<frmGPIO>();
  for (const int led : {0, 1}) gpio.chkOutEnc(led).Value = 1 - gpio.chkOutEnc(led).Value;
  gpio.cmdGPIO_Write_Click();
}

bool ConverterPanel::without_measurement() const {
  return field(converter_.fields->operation) == 0;
}

// The single row raises the address by one at each click, that of the reads alone.
void ConverterPanel::LstDeviceSel_MouseUp() {
  set_bus_address(store, converter_.panel.devices.front().write_address);
  ++store.I2C_RdAdr;
  txtI2CAddr.Text = forms::Hex(forms::CLng(store.I2C_RdAdr / 2.0));
  txtI2cXmitAdr.Text = forms::Hex(store.I2C_RdAdr);
}

// --- the two layouts ---

void ConverterPanel::Label13_DblClick() {
  store.LayoutCompact = flag(store.LayoutCompact == 0);
  show_layout(store.LayoutCompact == 0);
}

}  // namespace varzelin
