#include "boards/usb/device.h"

#include <libusb.h>

#include <algorithm>
#include <span>
#include <utility>

namespace boards::usb {
namespace {

struct ConfigurationFree {
  void operator()(libusb_config_descriptor* configuration) const {
    libusb_free_config_descriptor(configuration);
  }
};
using ConfigurationPtr = std::unique_ptr<libusb_config_descriptor, ConfigurationFree>;

AlternateSetting convert(const libusb_interface_descriptor& setting) {
  AlternateSetting result{setting.bAlternateSetting,
                          setting.bInterfaceClass,
                          setting.bInterfaceSubClass,
                          setting.bInterfaceProtocol,
                          {}};
  for (const auto& pipe : std::span(setting.endpoint, setting.bNumEndpoints)) {
    result.pipes.push_back({pipe.bEndpointAddress, pipe.bmAttributes, pipe.wMaxPacketSize, pipe.bInterval});
  }
  return result;
}

ConfigurationInfo convert(const libusb_config_descriptor& configuration) {
  ConfigurationInfo result{configuration.bConfigurationValue, {}};
  for (const auto& interface : std::span(configuration.interface, configuration.bNumInterfaces)) {
    const std::span settings(interface.altsetting, static_cast<std::size_t>(interface.num_altsetting));
    if (settings.empty()) continue;
    InterfaceInfo& info =
        result.interfaces.emplace_back(InterfaceInfo{settings.front().bInterfaceNumber, {}});
    for (const auto& setting : settings) info.alternates.push_back(convert(setting));
  }
  return result;
}

// Index of the element that `matches`, 0 when there is none.
template <class Elements, class Matches>
std::size_t index_of(const Elements& elements, Matches&& matches) {
  const auto found = std::ranges::find_if(elements, matches);
  return found == elements.end() ? 0 : static_cast<std::size_t>(found - elements.begin());
}

}  // namespace

void HandleCloser::operator()(libusb_device_handle* handle) const {
  libusb_release_interface(handle, board_interface);
  libusb_close(handle);
}

Status read_descriptors(libusb_device* device, DeviceInfo& info) {
  libusb_device_descriptor descriptor;
  if (const int error = libusb_get_device_descriptor(device, &descriptor)) return error;
  DeviceInfo result;
  result.vendor_id = descriptor.idVendor;
  result.product_id = descriptor.idProduct;

  libusb_config_descriptor* configuration = nullptr;
  for (std::uint8_t i = 0; i < descriptor.bNumConfigurations; ++i) {
    if (const int error = libusb_get_config_descriptor(device, i, &configuration)) return error;
    result.configurations.push_back(convert(*ConfigurationPtr(configuration)));
  }
  if (const int error = libusb_get_active_config_descriptor(device, &configuration)) return error;
  const std::uint8_t active = ConfigurationPtr(configuration)->bConfigurationValue;
  result.active_configuration =
      index_of(result.configurations, [&](const auto& each) { return each.value == active; });
  if (result.configurations.empty()) return LIBUSB_ERROR_NOT_FOUND;
  const auto& interfaces = result.configurations[result.active_configuration].interfaces;
  if (interfaces.empty()) return LIBUSB_ERROR_NOT_FOUND;
  result.active_interface =
      index_of(interfaces, [](const InterfaceInfo& each) { return each.number == board_interface; });
  info = std::move(result);
  return success;
}

UsbPlace place_of(libusb_device* device) {
  return {libusb_get_bus_number(device), libusb_get_device_address(device)};
}

void select(DeviceInfo& info, std::int32_t interface_number, std::int32_t alternate) {
  const auto& interfaces = info.configurations[info.active_configuration].interfaces;
  info.active_interface =
      index_of(interfaces, [&](const InterfaceInfo& each) { return each.number == interface_number; });
  info.active_alternate = index_of(interfaces[info.active_interface].alternates,
                                   [&](const AlternateSetting& each) { return each.number == alternate; });
}

Status open_board(libusb_device* device, HandlePtr& handle) {
  libusb_device_handle* opened = nullptr;
  if (const int error = libusb_open(device, &opened)) return error;
  const int error = libusb_claim_interface(opened, board_interface);
  if (error != LIBUSB_SUCCESS) {
    libusb_close(opened);
    return error;
  }
  handle.reset(opened);
  return success;
}

}  // namespace boards::usb
