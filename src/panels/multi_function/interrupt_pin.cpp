#include "panels/multi_function/interrupt_pin.h"

#include "panels/multi_function/multi_function_panel.h"
#include "workbench/gpio_panel.h"

namespace varzelin {
namespace {

constexpr std::uint8_t pin_bit = 0x80;
constexpr int sample_lamp = 9;  // element of ShpIndrd

}  // namespace

InterruptPin::InterruptPin(Program& owner, MultiFunctionPanel& of_panel, Frame& frame)
    : PartOf(owner, of_panel),
      cmdSampleInterrupt(panel, "cmdSampleInterrupt",
                         {.Caption = "Sample  Ext. Interrupt Pin",
                          .ToolTipText = "Samples the external interrupt pin (7) on the KVT71385",
                          .Container = &frame}),
      ChkSampleInt(panel, "ChkSampleInt",
                   {.Caption = "Poll External Intr.",
                    .ToolTipText = "Check to Poll External Interrupt Status during data collection.",
                    .Container = &frame}),
      ShpINTexternal(panel, "ShpINTexternal", {.Container = &frame}),
      lblINTexternal(panel, "lblINTexternal", {.Caption = "Pin 7", .Container = &frame}),
      lblStatus(panel, "lblStatus", {.Caption = "Status", .Container = &frame}) {
  on(cmdSampleInterrupt, Event::Click, &InterruptPin::cmdSampleInterrupt_Click);
}

void InterruptPin::cmdSampleInterrupt_Click() {
  Sample_PortB();
  show_pin(ShpINTexternal, panel.ShpIndrd(sample_lamp));
}

void InterruptPin::Sample_PortB() {
  panel.connect_by_rule();
  form<frmGPIO>().cmdGPIO_Write_Click();
  panel.disconnect_by_rule();
}

void InterruptPin::show_pin(Shape& pin, Shape& sampled) {
  const bool released = (panel.reply(0) & pin_bit) != 0;
  pin.FillColor = lamp(released ? store.Clr_Black : store.Clr_Red);
  store.IntPinAsserted = flag(!released);
  flip_lamp(sampled);
}

}  // namespace varzelin
