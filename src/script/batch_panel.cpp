#include "script/batch_panel.h"

#include <algorithm>
#include <array>

#include "bridge/transfer.h"
#include "workbench/connection_rule.h"

namespace varzelin {
namespace {

constexpr std::uint8_t write_address = 0x88;
constexpr std::uint8_t read_address = 0x89;

// Registers of the two-mode sensors.
constexpr std::uint8_t command_register = 0;
constexpr std::uint8_t data_register = 2;  // low byte; the high byte is behind it
// Command: bits 7 to 5 are the operation mode.
constexpr std::int32_t power_down = 0x00;
constexpr std::int32_t als_once = 0x20;
constexpr std::int32_t ir_once = 0x40;
constexpr std::int32_t proximity_once = 0x60;
constexpr std::int32_t command2_setting = 0x76;
constexpr int conversion_ms = 120;

constexpr auto result_format = "####.000";

// The light source, in the order of OptSource, by the whole-number ratio of infrared to ambient light.
enum Source { incandescent, fluorescent, sun_light };
Source source_of(std::int32_t ratio) {
  if (ratio > 26) return incandescent;
  return ratio < 10 ? fluorescent : sun_light;
}

double calculated_als(Source source, double als, double ir) {
  switch (source) {
    case incandescent:
      return ir * 0.004 + als / 1.7;
    case fluorescent:
      return als / 0.225;
    default:
      return als / 0.72;
  }
}

}  // namespace

ALS_Batch::ALS_Batch(Program& owner) : ProgramForm(owner, form_name, "ALS, IR, Prox Sequence") {
  on(cmdScript1, Event::Click, &ALS_Batch::cmdScript1_Click);
  on(cmdWriteI2C, Event::Click, &ALS_Batch::cmdWriteI2C_Click);
  on(cmdReadi2c, Event::Click, &ALS_Batch::cmdReadi2c_Click);
}

void ALS_Batch::open_session() {
  DoEvents();
  connect_unseen_by_rule(program);
}

void ALS_Batch::close_session() {
  disconnect_unseen_by_rule(program);
}

void ALS_Batch::I2C_Read(std::uint8_t address, std::uint8_t reg, std::int16_t count,
                         std::span<std::int32_t> data) {
  set_blank_request(store, store.I2C_Pipe, count + 1);
  if (store.Xfer_Buf.size() < 3) forms::raise_error(forms::subscript_out_of_range);
  store.Xfer_Buf[0] = static_cast<std::uint8_t>(count);
  store.Xfer_Buf[1] = address;
  store.Xfer_Buf[2] = reg;
  raw_transfer(program, false);
  DoEvents();
  set_reply(store, store.I2C_Pipe + in_pipe_offset, count + 1);
  raw_transfer(program, true);
  for (std::size_t i = 0; i < 3; ++i) data[i] = xfer_byte(store, i);
  DoEvents();
}

void ALS_Batch::I2C_Write(std::uint8_t address, std::uint8_t reg, std::int16_t count,
                          std::span<std::int32_t> data) {
  set_blank_request(store, store.I2C_Pipe, count + 3);
  store.Xfer_Buf[0] = static_cast<std::uint8_t>(count);
  store.Xfer_Buf[1] = address;
  store.Xfer_Buf[2] = reg;
  const auto bytes = data.subspan(1, static_cast<std::size_t>(count));
  std::ranges::transform(bytes, store.Xfer_Buf.begin() + 3,
                         [](std::int32_t value) { return static_cast<std::uint8_t>(value); });
  raw_transfer(program, false);
  DoEvents();
  set_reply(store, store.I2C_Pipe + in_pipe_offset, count + 1);
  raw_transfer(program, true);
  data[0] = xfer_byte(store, 0);
  DoEvents();
}

void ALS_Batch::write_commands(std::int32_t command, std::int32_t command2) {
  std::array<std::int32_t, 3> data{0, command, command2};
  I2C_Write(write_address, command_register, 2, data);
}

std::int32_t ALS_Batch::measure(std::int32_t command) {
  write_commands(command, command2_setting);
  Sleep(conversion_ms);
  std::array<std::int32_t, 3> data{};
  I2C_Read(read_address, data_register, 2, data);
  return data[2] * 256 + data[1];
}

void ALS_Batch::cmdScript1_Click() {
  open_session();
  write_commands(power_down, 0);
  const std::int32_t als = measure(als_once);
  const std::int32_t ir = measure(ir_once);
  const std::int32_t prox = measure(proximity_once);
  write_commands(power_down, 0);
  show(als, ir, prox);
  close_session();
}

// Without any ambient light the ratio is a division by zero.
void ALS_Batch::show(std::int32_t als, std::int32_t ir, std::int32_t prox) {
  lblALS(0).Caption = forms::CStr(als);
  lblALS(1).Caption = forms::CStr(ir);
  lblALS(2).Caption = forms::CStr(prox);
  if (als == 0) forms::raise_error(forms::division_by_zero);
  const double ratio = static_cast<double>(ir) / als;
  lblALS(3).Caption = forms::Format(ratio, result_format);

  const Source source = source_of(forms::CLng(ratio));
  lblALS(4).Caption = forms::Format(calculated_als(source, als, ir), result_format);
  OptSource(source).Value = true;

  constexpr std::int32_t least_ir_for_constant = 70;
  const bool by_formula = ir < least_ir_for_constant;
  lblALS(5).Caption = forms::Format(by_formula ? prox - ir * 0.75 : prox - 55.0, result_format);
  OptPrxADJ(by_formula ? 0 : 1).Value = true;
}

void ALS_Batch::cmdWriteI2C_Click() {
  open_session();
  close_session();
}

void ALS_Batch::cmdReadi2c_Click() {
  open_session();
  close_session();
}

}  // namespace varzelin
