#include "boards/usb/context.h"

#include <libusb.h>

#include <algorithm>
#include <utility>

#include "boards/usb/device.h"
#include "boards/usb/statuses.h"

namespace boards::usb {
namespace {

constexpr std::chrono::milliseconds scan_interval{500};

}  // namespace

Context::~Context() {
  if (hotplug_ != 0) libusb_hotplug_deregister_callback(context_.get(), hotplug_);
}

Status Context::open(Watch watch) {
  libusb_context* context = nullptr;
  if (const int error = libusb_init(&context)) return init_failed(error);
  context_ = ContextPtr(context, libusb_exit);
  if (watch == Watch::Rescan || !libusb_has_capability(LIBUSB_CAP_HAS_HOTPLUG)) return success;

  // The callback runs inside libusb, also in the middle of a transfer, so it only leaves a note.
  const auto note = [](libusb_context*, libusb_device*, libusb_hotplug_event, void* flag) -> int {
    *static_cast<bool*>(flag) = true;
    return 0;
  };
  libusb_hotplug_register_callback(
      context, LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED | LIBUSB_HOTPLUG_EVENT_DEVICE_LEFT, 0, match_.vendor_id,
      match_.product_id, LIBUSB_HOTPLUG_MATCH_ANY, note, &changed_, &hotplug_);
  return success;
}

bool Context::changed(TimePoint now) {
  timeval no_wait{};
  libusb_handle_events_timeout_completed(context_.get(), &no_wait, nullptr);
  if (hotplug_ == 0 && now >= next_scan_) {
    next_scan_ = now + scan_interval;
    changed_ = true;
  }
  return std::exchange(changed_, false);
}

std::vector<DevicePtr> Context::boards() const {
  std::vector<DevicePtr> result;
  libusb_device** list = nullptr;
  const auto count = libusb_get_device_list(context_.get(), &list);
  for (std::ptrdiff_t i = 0; i < count; ++i) {
    libusb_device_descriptor descriptor;
    if (libusb_get_device_descriptor(list[i], &descriptor) != LIBUSB_SUCCESS) continue;
    if (descriptor.idVendor != match_.vendor_id || descriptor.idProduct != match_.product_id) continue;
    result.emplace_back(libusb_ref_device(list[i]),
                        [keeps = context_](libusb_device* device) { libusb_unref_device(device); });
  }
  if (count >= 0) libusb_free_device_list(list, 1);
  // libusb's order is that of no one.
  std::ranges::sort(result, {}, [](const DevicePtr& device) {
    const UsbPlace place = place_of(device.get());
    return std::pair(place.bus, place.device);
  });
  return result;
}

}  // namespace boards::usb
