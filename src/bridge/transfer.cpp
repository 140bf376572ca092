#include "bridge/transfer.h"

#include <algorithm>
#include <array>
#include <span>

#include "bridge/log.h"
#include "forms/controls.h"
#include "forms/form.h"
#include "forms/text.h"

namespace varzelin {

void raw_transfer(Program& program, bool read) {
  Store& store = program.store;
  const auto wanted = static_cast<std::size_t>(std::max(store.Xfer_Size, 0));
  const std::span<std::uint8_t> buffer(store.Xfer_Buf.data(), std::min(wanted, store.Xfer_Buf.size()));
  std::size_t transferred = 0;
  store.Usb_Status = program.driver.WDU_Transfer(store.Dev_Handle, store.Pipe_Num, read, buffer, transferred);
}

namespace {

// A yield in the middle of a transfer: a handler that runs in it may transfer something else, and finds the
// variables free. They are put back behind it.
void yield_within_transfer(Program& program) {
  Store& store = program.store;
  constexpr std::size_t longest = 32;
  if (store.Xfer_Buf.size() > longest) {
    program.runtime.DoEvents();
    return;
  }
  const auto pipe = store.Pipe_Num;
  const auto size = store.Xfer_Size;
  std::array<std::uint8_t, longest> bytes;
  const std::size_t count = store.Xfer_Buf.size();
  std::ranges::copy(store.Xfer_Buf, bytes.begin());
  program.runtime.DoEvents();
  store.Pipe_Num = pipe;
  store.Xfer_Size = size;
  store.Xfer_Buf.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
}

Outcome fast_transfer(Program& program, bool read) {
  Store& store = program.store;
  const std::int32_t collection = store.Collections;
  yield_within_transfer(program);
  // A collection begun in the yield has the transfer variables and the bus to itself: what was to be
  // transferred for the one before is void, and its failure would stop the new one.
  if (store.Collections != collection) return Outcome::given_up;
  raw_transfer(program, read);
  const bool good = store.Usb_Status == boards::success;
  if (!good) store.Sample_Run = false_flag;
  colour_attach_lamp(store, forms::QBColor(good ? store.Clr_LtGreen : store.Clr_Red));
  yield_within_transfer(program);
  return good ? Outcome::good : Outcome::failed;
}

void size_transfer(Store& store, std::int32_t pipe, std::int32_t size) {
  store.Pipe_Num = pipe;
  store.Xfer_Size = size;
  ReDim_Xfer_Buf(store);
}

// False, with its words in the log, when the device doesn't give its information or has no pipes.
bool device_is_ready(Program& program, std::string_view routine) {
  Store& store = program.store;
  store.Dev_Handle = store.Dev_Ctx.device;
  boards::DeviceInfo info;
  store.Usb_Status = program.driver.WDU_GetDeviceInfo(store.Dev_Handle, info);
  if (store.Usb_Status != boards::success) {
    Log_Err(program, device_info_failed_text(program, routine));
    return false;
  }
  store.Log_Error = false_flag;
  std::vector<boards::PipeInfo> pipes;
  return Get_Pipes(program, boards::active_setting(info), pipes);
}

Outcome checked_transfer(Program& program, bool read, std::string_view routine) {
  Store& store = program.store;
  if (!device_is_ready(program, routine)) return Outcome::failed;
  const std::int32_t collection = store.Collections;
  if (!read) yield_within_transfer(program);
  if (store.Collections != collection) return Outcome::given_up;
  raw_transfer(program, read);
  const bool good = store.Usb_Status == boards::success;
  if (good) {
    store.Log_Error = false_flag;
  } else {
    Log_Err(program, std::string(routine) + ": WDU_Transfer() failed: error &H" +
                         forms::Hex(store.Usb_Status) + " (" + Stat_Text(program, store.Usb_Status) + ")");
  }
  return good ? Outcome::good : Outcome::failed;
}

}  // namespace

void set_bus_address(Store& store, int write_address) {
  store.I2C_WrAdr = static_cast<std::uint8_t>(write_address);
  store.I2C_RdAdr = static_cast<std::uint8_t>(write_address + 1);
}

void ReDim_Xfer_Buf(Store& store) {
  store.Xfer_Buf.assign(static_cast<std::size_t>(std::max(store.Xfer_Size, 0)), 0);
}

std::uint8_t xfer_byte(const Store& store, std::size_t index) {
  if (index >= store.Xfer_Buf.size()) forms::raise_error(forms::subscript_out_of_range);
  return store.Xfer_Buf[index];
}

void set_request(Store& store, std::int32_t pipe, std::initializer_list<int> bytes) {
  set_blank_request(store, pipe, static_cast<std::int32_t>(bytes.size()));
  std::ranges::transform(bytes, store.Xfer_Buf.begin(),
                         [](int byte) { return static_cast<std::uint8_t>(byte); });
}

void set_blank_request(Store& store, std::int32_t pipe, std::int32_t size) {
  size_transfer(store, pipe, size);
}

void set_reply(Store& store, std::int32_t pipe, std::int32_t size) {
  size_transfer(store, pipe, size);
}

Outcome Fast_Write(Program& program) {
  return fast_transfer(program, false);
}
Outcome Fast_Read(Program& program) {
  return fast_transfer(program, true);
}

Outcome WritePipe(Program& program) {
  if (program.store.Usb_Open == 0) {
    Log_Msg(program, "Write GPIOPipe .. USB Not opened");
    return Outcome::failed;
  }
  return checked_transfer(program, false, "WritePipe");
}

Outcome ReadPipe(Program& program) {
  if (program.store.Usb_Open == 0) {
    Log_Msg(program, "ReadPipe .. USB Not opened");
    program.runtime.DoEvents();
    return Outcome::failed;
  }
  return checked_transfer(program, true, "ReadPipe");
}

bool Get_Pipes(Program& program, const boards::AlternateSetting& setting,
               std::vector<boards::PipeInfo>& list) {
  list = setting.pipes;
  if (!list.empty()) return true;
  Log_Msg(program, "  No pipes are defined for this device \r\nother than the default pipe (number 0)");
  return false;
}

void colour_attach_lamp(Store& store, forms::Color color) {
  if (!store.Active_Form) return;
  if (auto* lamp = dynamic_cast<forms::Shape*>(store.Active_Form->find("ShpAttach"))) {
    lamp->FillColor = color;
  }
}

std::string device_info_failed_text(Program& program, std::string_view routine) {
  const boards::Status status = program.store.Usb_Status;
  return std::string(routine) + ": WDU_GetDeviceInfo() failed:\r\nerror &H" + std::to_string(status) + " (" +
         Stat_Text(program, status) + ")\r\n";
}

}  // namespace varzelin
