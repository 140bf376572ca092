#include "workbench/usb_diagnostics.h"

#include <algorithm>
#include <string>
#include <vector>

#include "bridge/log.h"
#include "bridge/text_utilities.h"
#include "bridge/transfer.h"
#include "forms/text.h"

namespace varzelin {
namespace {

std::string hex(std::int32_t number) {
  return "&H" + forms::Hex(number);
}
std::string decimal(std::size_t number) {
  return std::to_string(number);
}

// Whether a call of the driver went well: no error stands in the log behind it then.
bool succeeded(Program& program, boards::Status status) {
  if (status != boards::success) return false;
  program.store.Log_Error = false_flag;
  return true;
}

// "error &H... (text)"
std::string error_words(Program& program, boards::Status status) {
  return "error " + hex(status) + " (" + Stat_Text(program, status) + ")";
}

// The index of the configuration to show; false when the user gave none.
bool choose_configuration(Program& program, std::size_t count, std::size_t& index) {
  index = 0;
  if (count <= 1) return count == 1;
  const std::string maximum = decimal(count - 1);
  const std::string invalid = "You have not entered a valid configuration index.\r\nValid values are 0 to " +
                              maximum + " (dec). Please try again";
  std::int32_t number = 0;
  while (Ask_Number(program, "Please enter the configuration \r\nindex to display (dec - zero based): ",
                    "Enter configuration index", number, false, invalid, "")) {
    if (number >= 0 && static_cast<std::size_t>(number) < count) {
      index = static_cast<std::size_t>(number);
      return true;
    }
    Ask_Box(program, invalid, forms::vbOKOnly, "Invalid Value");
  }
  return false;
}

void print_interface(Program& program, const boards::InterfaceInfo& interface) {
  Log_Msg(program, "interface no. " + decimal(interface.number) + ":");
  for (const auto& setting : interface.alternates) {
    Log_Msg(program, "    alternate: " + decimal(setting.number) + ",  endpoints: " +
                         decimal(setting.pipes.size()) + ",  class: " + hex(setting.interface_class) +
                         ",  subclass: " + hex(setting.interface_subclass) +
                         ",\r\n    protocol: " + hex(setting.interface_protocol));
    Print_Endpoints(program, setting);
  }
}

void change_alternate_setting(Program& program) {
  const std::string invalid = "You entered an invalid value.\r\nPlease try again.";
  Log_Info(program, "DiagMenu - Change interface alternate setting:");
  std::int32_t interface = 0;
  if (!Ask_Number(program, "Please enter the interface number (dec): ", "Select Interface", interface, false,
                  invalid, "")) {
    Log_Info(program, "No valid interface number entered - menu option abandoned.");
    return;
  }
  std::int32_t alternate = 0;
  if (!Ask_Number(program, "Please enter the alternate setting index (dec): ", "Select Alternate Setting",
                  alternate, false, invalid, "")) {
    Log_Info(program, "No valid alternate setting entered - menu option abandoned.");
    return;
  }
  const boards::Status status =
      program.driver.WDU_SetInterface(program.store.Dev_Handle, interface, alternate);
  const std::string start = "WDU_SetInterface() for interface " + std::to_string(interface) +
                            " alternate setting " + std::to_string(alternate);
  if (succeeded(program, status)) {
    Log_Info(program, start + " completed successfully.");
  } else {
    Log_Err(program, start + " failed:\r\n" + error_words(program, status));
  }
}

// False, with words in the log that begin with `entry`, when the user gave no pipe.
bool ask_pipe(Program& program, const std::string& title, const std::string& entry, std::int32_t& pipe) {
  if (Ask_Number(program, "Please enter the pipe number (hex): ", title, pipe, true,
                 "You did not enter a valid pipe number. Pleasy try again.", "")) {
    return true;
  }
  Log_Info(program, entry + ": No valid pipe number entered.");
  Log_Msg(program, "Read/Write Pipes failed");
  return false;
}

void reset_pipe(Program& program) {
  std::int32_t pipe = 0;
  if (!ask_pipe(program, "Select Pipe to Reset", "DiagMenu - Reset Pipe", pipe)) return;
  const boards::Status status = program.driver.WDU_ResetPipe(program.store.Dev_Handle, pipe);
  if (succeeded(program, status)) {
    Log_Info(program,
             "DiagMenu - Reset Pipe: WDU_ResetPipe() for pipe " + hex(pipe) + " completed successfully.");
  } else {
    Log_Err(program,
            "DiagMenu: WDU_ResetPipe() for pipe " + hex(pipe) + " failed:" + error_words(program, status));
  }
}

void read_write_pipe(Program& program) {
  boards::DeviceInfo info;
  const boards::Status status = program.driver.WDU_GetDeviceInfo(program.store.Dev_Handle, info);
  if (!succeeded(program, status)) {
    Log_Err(program, "ReadWritePipesMenu: WDU_GetDeviceInfo() failed:\r\n" + error_words(program, status));
    return;
  }
  std::int32_t pipe = 0;
  if (!ask_pipe(program, "Enter Pipe Number", "Read/Write Pipes", pipe)) return;
  const auto& pipes = boards::active_setting(info).pipes;
  const bool exists = std::ranges::any_of(pipes, [&](const auto& known) { return known.address == pipe; });
  if (exists) {
    Log_Info(program, "Read/Write Pipes: pipe " + hex(pipe) + " is there.");
    return;
  }
  Ask_Box(program,
          "There is no pipe " + hex(pipe) + " for the active alternate setting.\r\nPlease try again.",
          forms::vbOKOnly, "generic_usb");
  Log_Info(program, "Read/Write Pipes: Selected pipe does not exist.");
}

}  // namespace

void Print_Endpoints(Program& program, const boards::AlternateSetting& setting) {
  if (setting.pipes.empty()) {
    Log_Err(program,
            "PrintEndpoints: No pipes were detected for the device other than the default pipe (number "
            "0).\r\n");
  }
  for (const auto& pipe : setting.pipes) {
    Log_Msg(program, "    end-point address: " + hex(pipe.address) +
                         ",  attributes: " + hex(pipe.attributes) + ",  max packet: " + hex(pipe.max_packet) +
                         ",\r\n    Interval: " + hex(pipe.interval));
  }
}

void Print_Device_Configurations(Program& program, boards::Handle device) {
  boards::DeviceInfo info;
  const boards::Status status = program.driver.WDU_GetDeviceInfo(device, info);
  if (!succeeded(program, status)) {
    Log_Err(program, "PrintDeviceConfigurations: WDU_GetDeviceInfo failed: " + error_words(program, status));
    Log_Msg(program, "PrintDeviceConfigurations() failed");
    return;
  }
  const auto& configurations = info.configurations;
  Log_Msg(program, "This device has " + decimal(configurations.size()) + " configuration(s):");
  for (std::size_t i = 0; i < configurations.size(); ++i) {
    Log_Msg(program, decimal(i) + ". configuration value " + decimal(configurations[i].value) + " (has " +
                         decimal(configurations[i].interfaces.size()) + " interface(s))");
  }
  std::size_t index = 0;
  if (!choose_configuration(program, configurations.size(), index)) {
    Log_Msg(program, "PrintDeviceConfigurations: Invalid configuration number selected.");
    return;
  }
  const auto& interfaces = configurations.at(index).interfaces;
  Log_Msg(program, "The configuration indexed " + decimal(index) + " has " + decimal(interfaces.size()) +
                       " interface(s):");
  for (const auto& interface : interfaces) print_interface(program, interface);
}

void Diag_Menu(Program& program, forms::Form& form, Diagnostic choice) {
  switch (choice) {
    case Diagnostic::PrintConfigurations:
      Print_Device_Configurations(program, program.store.Dev_Handle);
      break;
    case Diagnostic::ChangeAlternateSetting:
      change_alternate_setting(program);
      break;
    case Diagnostic::ResetPipe:
      reset_pipe(program);
      break;
    case Diagnostic::ReadWritePipe:
      read_write_pipe(program);
      break;
    case Diagnostic::Exit:
      program.forms.unload(form);
      break;
  }
}

}  // namespace varzelin
