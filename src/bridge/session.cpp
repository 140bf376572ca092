#include "bridge/session.h"

#include <string>

#include "bridge/log.h"
#include "bridge/transfer.h"
#include "forms/text.h"

namespace varzelin {
namespace {

std::string decimal(std::int32_t number) {
  return std::to_string(number);
}

bool device_attach(Program& program, boards::Handle device, const boards::DeviceInfo& info) {
  Store& store = program.store;
  DevCtx& context = store.Dev_Ctx;
  // The alternate setting compared here is never filled from the device: the wanted interface is 0,
  // and so is the record's.
  const boards::InterfaceInfo unfilled{};
  if (unfilled.number != context.interface_number) {
    store.Usb_Attached = false_flag;
    return false;
  }
  context.device = device;
  context.last_status = program.driver.WDU_SetInterface(device, context.interface_number, context.alternate);
  const bool accepted = context.last_status == boards::success;
  if (accepted) {
    store.Log_Error = false_flag;
    Log_Info(program, "DeviceAttach: Received and accepted attach for \r\nvendor ID &H" +
                          forms::Hex(info.vendor_id) + " product ID &H" + forms::Hex(info.product_id) +
                          "\r\ndevice handle &H" + forms::Hex(device));
  } else {
    Log_Err(program, "DeviceAttach: WDU_SetInterface failed\r\n(num. " + decimal(context.interface_number) +
                         " alternate " + decimal(context.alternate) + ")\r\ndevice &H" + forms::Hex(device) +
                         ": error &H" + forms::Hex(context.last_status) + "\r\n(" +
                         Stat_Text(program, context.last_status) + ")");
    context.device = 0;
  }
  store.Usb_Attached = flag(accepted);
  Log_Msg(program, "");
  return accepted;
}

void device_detach(Program& program, boards::Handle device) {
  DevCtx context = program.store.Dev_Ctx;
  program.store.Usb_Attached = false_flag;
  context.device = 0;
  Log_Info(program, "DeviceDetach: Received detach for device handle &H" + forms::Hex(device));
  program.store.Dev_Ctx = context;
}

// Up to the opened driver. False when it can't be opened.
bool open_driver(Program& program, SessionDisplay* display) {
  Store& store = program.store;
  store.Dev_Ctx.interface_number = 0;
  store.Dev_Ctx.alternate = 0;
  store.Dev_Ctx.device = 0;  // a handle of an earlier session must not be taken for the new one
  store.Log_Error = false_flag;
  Log_Msg(program, "Setting eventable up,  verifing that the device is attached...\r\n");
  program.runtime.DoEvents();
  store.Usb_Status =
      program.driver.WDU_VB_Init(store.Drv_Handle, board_match,
                                 {[&program](boards::Handle device, const boards::DeviceInfo& info) {
                                    return device_attach(program, device, info);
                                  },
                                  [&program](boards::Handle device) { device_detach(program, device); }});
  if (display) display->driver_handle_changed();
  if (store.Usb_Status == boards::success) return true;
  if (display) display->driver_failed();
  Log_Err(program, "Form_Activate(): Failed to initialize USB driver: error &H" +
                       forms::Hex(store.Usb_Status) + "\r\n(" + Stat_Text(program, store.Usb_Status) + ")");
  return false;
}

// Gives the attach its time and looks at the device. A device that isn't there only logs.
void look_for_device(Program& program) {
  Store& store = program.store;
  program.runtime.DoEvents(attach_yields);
  store.Dev_Handle = store.Dev_Ctx.device;
  boards::DeviceInfo info;
  store.Usb_Status = program.driver.WDU_GetDeviceInfo(store.Dev_Handle, info);
  if (store.Usb_Status == boards::success) {
    store.Log_Error = false_flag;
  } else {
    Log_Err(program, device_info_failed_text(program, "WriteGPIOPipe"));
  }
}

void open_session(Program& program, SessionDisplay* display) {
  Store& store = program.store;
  if (store.Usb_Open != 0) {
    Log_Msg(program, "Already Opened");
    return;
  }
  if (!open_driver(program, display)) return;
  if (display) {
    display->driver_opened();
    store.Log_Error = false_flag;
  }
  look_for_device(program);
  if (display) {
    display->connecting();
    program.runtime.DoEvents();
  }
  store.Usb_Open = true_flag;
  if (display) {
    program.runtime.DoEvents();
    display->connected();
  }
}

void close_session(Program& program, SessionDisplay* display) {
  Store& store = program.store;
  if (store.Usb_Open == 0 || store.Drv_Handle <= 0) return;
  store.Usb_Status = program.driver.WDU_ResetDevice(store.Dev_Handle);
  program.runtime.DoEvents();
  // The system closes the handle first, and the kit gets it afterwards.
  store.Usb_Status = program.driver.CloseHandle(store.Drv_Handle);
  program.runtime.DoEvents();
  store.Usb_Status = program.driver.WDU_VB_Uninit(store.Drv_Handle);
  program.runtime.DoEvents();
  store.Usb_Open = false_flag;
  program.runtime.DoEvents();
  if (!display) return;
  display->disconnected();
  program.runtime.DoEvents();
  store.Usb_Attached = false_flag;
}

}  // namespace

void connect_session(Program& program, SessionDisplay& display) {
  open_session(program, &display);
}
void Mod_Connect_Usb(Program& program) {
  open_session(program, nullptr);
}
void disconnect_session(Program& program, SessionDisplay& display) {
  close_session(program, &display);
}
void Mod_Disconnect_USB(Program& program) {
  close_session(program, nullptr);
}

}  // namespace varzelin
