#include "boards/driver.h"

#include <cerrno>
#include <utility>

namespace boards {
namespace {

// Runs one call between the observer's two notes.
template <class Call>
Status observed(Driver::Observer* observer, const char* name, Call&& call) {
  if (observer) observer->call_begins();
  const Status status = call();
  if (observer) observer->call_ended({name, status});
  return status;
}

template <class T>
const T* element(const std::vector<T>& list, std::size_t index) {
  return index < list.size() ? &list[index] : nullptr;
}

}  // namespace

const AlternateSetting& active_setting(const DeviceInfo& info) {
  static const AlternateSetting none{};
  const auto* configuration = element(info.configurations, info.active_configuration);
  const auto* interface = configuration ? element(configuration->interfaces, info.active_interface) : nullptr;
  const auto* setting = interface ? element(interface->alternates, info.active_alternate) : nullptr;
  return setting ? *setting : none;
}

std::int32_t Driver::urb_status(Status status) const {
  return status == success ? 0 : -EPROTO;
}

Status Driver::WDU_VB_Init(Handle& session, const MatchRow& match, EventTable events) {
  return observed(observer, "WDU_VB_Init", [&] { return do_init(session, match, std::move(events)); });
}

Status Driver::WDU_VB_Uninit(Handle session) {
  return observed(observer, "WDU_VB_Uninit", [&] { return do_uninit(session); });
}

Status Driver::CloseHandle(Handle session) {
  return observed(observer, "CloseHandle", [&] { return do_close_handle(session); });
}

Status Driver::WDU_GetDeviceInfo(Handle device, DeviceInfo& info) {
  return observed(observer, "WDU_GetDeviceInfo", [&] { return do_get_device_info(device, info); });
}

Status Driver::WDU_SetInterface(Handle device, std::int32_t interface_number, std::int32_t alternate) {
  return observed(observer, "WDU_SetInterface",
                  [&] { return do_set_interface(device, interface_number, alternate); });
}

Status Driver::WDU_ResetDevice(Handle device) {
  return observed(observer, "WDU_ResetDevice", [&] { return do_reset_device(device); });
}

Status Driver::WDU_ResetPipe(Handle device, std::int32_t pipe) {
  return observed(observer, "WDU_ResetPipe", [&] { return do_reset_pipe(device, pipe); });
}

Status Driver::WDU_Transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                            std::size_t& transferred) {
  transferred = 0;
  if (observer) observer->call_begins();
  const Status status = do_transfer(device, pipe, read, buffer, transferred);
  if (observer) {
    observer->call_ended({"WDU_Transfer", status, true, pipe, read, buffer, buffer.first(transferred)});
  }
  return status;
}

}  // namespace boards
