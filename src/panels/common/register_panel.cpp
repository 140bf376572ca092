#include "panels/common/register_panel.h"

#include "bridge/text_utilities.h"

namespace varzelin {
namespace {

forms::Elements plain(const std::vector<int>& indices) {
  forms::Elements elements;
  for (const int index : indices) elements.emplace_back(index, Design{});
  return elements;
}

forms::Elements lamps(const RegisterPanel::Boxes& boxes) {
  forms::Elements elements = plain(boxes.lamps);
  for (const int index : boxes.framed_lamps) {
    elements.emplace_back(index, Design{.Container = boxes.lamp_frame});
  }
  return elements;
}

}  // namespace

RegisterPanel::RegisterPanel(Program& owner, const PanelModel& panel_model,
                             std::span<const RegisterWrite> writes, const Boxes& boxes)
    : SensorPanel(owner, panel_model),
      writes_(writes),
      txtRegHex(*this, "txtRegHex", plain(boxes.written)),
      txtRegRd(*this, "txtRegRd", plain(boxes.read)),
      ShpInd(*this, "ShpInd", lamps(boxes)) {}

void RegisterPanel::cmdRead_All_Click() {
  if (!deferred({&Store::PendingReadRegs})) Read_Registers();
}

// --- image and boxes ---

void RegisterPanel::set_field(const registers::Field& field, int value) {
  std::uint8_t& byte = forms::element(store.RegImage, field.register_number);
  byte = field.in(byte, value);
  show_register(field.register_number);
}

void RegisterPanel::show_register(int register_number) {
  txtRegHex(register_number).Text = forms::Hex2(image(register_number));
}

std::uint8_t RegisterPanel::byte_of_box(int register_number) const {
  return static_cast<std::uint8_t>(HexVal(txtRegHex(register_number).Text));
}

// --- writes ---

void RegisterPanel::commit(const Commit& change) {
  if (deferred(change.pending)) return;
  for (const int register_number : change.registers) write_register(register_number);
}

void RegisterPanel::write_register(int register_number) {
  const RegisterWrite& write = writes_[static_cast<std::size_t>(register_number)];
  if (write.only_with_events && store.EventsEnabled == 0) return;
  DoEvents(write.yields_before);
  connect_by_rule();
  const std::uint8_t value = byte_of_box(register_number);
  forms::element(store.RegImage, register_number) = value;
  register_write(register_number, value);
  flip_lamp(write_lamp(register_number));
  if (write.disconnect == RegisterWrite::Disconnect::before_read_back) disconnect_by_rule();
  if (store.Sample_Run == 0) cmdRead_All_Click();
  store.*write.pending = false_flag;
  if (write.disconnect == RegisterWrite::Disconnect::behind_read_back) disconnect_by_rule();
}

// --- read-back ---

void RegisterPanel::show_read_back(int register_number, std::uint8_t value) {
  txtRegRd(register_number).Text = forms::Hex2(value);
}

void RegisterPanel::compare_read_back(int register_number, Shape& lamp_of_it) {
  if (txtRegHex(register_number).Text.get() == txtRegRd(register_number).Text.get()) return;
  lamp_of_it.FillColor = lamp(store.Clr_Red);
}

void RegisterPanel::test_communications() {
  if (!deferred({&Store::PendingWriteR0})) exchange_for_test();
  show_comm_test(true);
  if (!sensor_answered()) show_comm_test(false);
  LblCommTest.Visible = true;
}

std::string RegisterPanel::data_file_header() {
  return "Seq,Lux,Integration,Reg0:&h" + txtRegHex(0).Text.get() + " :Reg1 &h" + txtRegHex(1).Text.get();
}

}  // namespace varzelin
