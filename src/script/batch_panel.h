// The batch panel: a fixed sequence for the two-mode sensors. One button takes an ambient light, an
// infrared and a proximity reading, tells the light source from their ratio, and derives corrected
// figures. The bus address is the sequence's own and doesn't follow the panels' settings.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

#include "bridge/program_form.h"

namespace varzelin {

class ALS_Batch final : public ProgramForm {
 public:
  static constexpr const char* form_name = "ALS_Batch";

  explicit ALS_Batch(Program& owner);

  void cmdScript1_Click();
  // Both open and close the session and do no transfer.
  void cmdWriteI2C_Click();
  void cmdReadi2c_Click();

  // A register read of `count` bytes on the bus address `address` (read form). data(0) becomes the
  // status byte, data(1) and data(2) the first two bytes read. Nothing is tested; raises
  // subscript_out_of_range for a count below 2.
  void I2C_Read(std::uint8_t address, std::uint8_t reg, std::int16_t count, std::span<std::int32_t> data);
  // A register write of data(1) to data(count), to the register and the ones behind it. data(0)
  // becomes the status byte. Nothing is tested.
  void I2C_Write(std::uint8_t address, std::uint8_t reg, std::int16_t count, std::span<std::int32_t> data);

  // Elements of both: ALS, IR, PROX, their ratio, and the two derived figures.
  ControlArray<Label> lblCaption{
      *this, "lblCaption", forms::captioned({"ALS", "IR", "PROX", "IR/ALS", "Calculated ALS", "Prox ADJ"})};
  ControlArray<Label> lblALS{*this, "lblALS",
                             forms::elements(6, [](int) { return Design{.Caption = "000000"}; })};
  Frame fraSource{*this, "fraSource", {.Caption = "Source"}};
  ControlArray<OptionButton> OptSource{
      *this, "OptSource",
      forms::captioned({"Incandescent", "Flourescent", "Sun Light"}, {.Container = &fraSource})};
  Frame fraPrxADJ{*this, "fraPrxADJ", {.Caption = "Prox-ADJ"}};
  ControlArray<OptionButton> OptPrxADJ{*this, "OptPrxADJ",
                                       forms::captioned({"Formula", "Constant"}, {.Container = &fraPrxADJ})};
  CommandButton cmdScript1{*this, "cmdScript1", {.Caption = "Run Script1"}};
  CommandButton cmdWriteI2C{*this, "cmdWriteI2C", {.Caption = "Write"}};
  CommandButton cmdReadi2c{*this, "cmdReadi2c", {.Caption = "Read I2C"}};

 private:
  void open_session();
  void close_session();
  void write_commands(std::int32_t command, std::int32_t command2);
  // Starts one conversion and fetches its result.
  std::int32_t measure(std::int32_t command);
  void show(std::int32_t als, std::int32_t ir, std::int32_t prox);
};

}  // namespace varzelin
