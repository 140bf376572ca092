#include "usb/emulated_usb.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace usb_testing {
namespace {

constexpr const char* hub_path = "/devices/emulated/usb1";

std::string hexadecimal(const std::vector<std::uint8_t>& bytes) {
  std::string result;
  char digits[3];
  for (const std::uint8_t byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02X", byte);
    result += digits;
  }
  return result;
}

std::string device(const std::string& path, int number, const std::vector<std::uint8_t>& descriptors) {
  char node[16];
  std::snprintf(node, sizeof node, "001/%03d", number);
  const std::string bytes = hexadecimal(descriptors);
  return "P: " + path + "\nN: bus/usb/" + node + "=" + bytes + "\nE: DEVNAME=/dev/bus/usb/" + node +
         "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: BUSNUM=001\nA: busnum=1\\n\nA: devnum=" +
         std::to_string(number) +
         "\\n\nA: bConfigurationValue=1\\n\nA: speed=12\\n\nH: descriptors=" + bytes + "\n";
}

const std::vector<std::uint8_t> hub_descriptors{
    18, 1, 0x00, 0x02, 9, 0, 0, 64,   0x6B, 0x1D, 0x01, 0,    0, 1, 0, 0, 0, 1,  //
    9,  2, 25,   0,    1, 1, 0, 0xE0, 0,                                         //
    9,  4, 0,    0,    1, 9, 0, 0,    0,    7,    5,    0x81, 3, 4, 0, 12};

void check(gboolean done, GError* error) {
  if (done) return;
  const std::string text = error->message;
  g_error_free(error);
  throw std::runtime_error("umockdev: " + text);
}

gboolean on_ioctl(UMockdevIoctlBase*, UMockdevIoctlClient* client, gpointer board) {
  return static_cast<EmulatedBoard*>(board)->handle(client);
}

}  // namespace

EmulatedUsb::EmulatedUsb() : testbed_(umockdev_testbed_new()) {
  add(device(hub_path, 1, hub_descriptors));
}

EmulatedUsb::~EmulatedUsb() {
  while (!places_.empty()) unplug(*places_.front().board);
  g_object_unref(testbed_);
}

bool EmulatedUsb::possible() const {
  return access((std::string("/sys") + hub_path).c_str(), F_OK) == 0;
}

void EmulatedUsb::add(const std::string& text) {
  GError* error = nullptr;
  const gboolean added = umockdev_testbed_add_from_string(testbed_, text.c_str(), &error);
  check(added, error);
}

void EmulatedUsb::plug(EmulatedBoard& board) {
  const Place& place = places_.emplace_back(&board, ++last_device_number_, umockdev_ioctl_base_new());
  board.power(true);
  g_signal_connect(place.ioctls, "handle-ioctl", G_CALLBACK(on_ioctl), &board);
  GError* error = nullptr;
  const gboolean attached =
      umockdev_testbed_attach_ioctl(testbed_, node(place).c_str(), place.ioctls, &error);
  check(attached, error);
  add(device(system_path(place), place.device_number, BridgeDevice::descriptors()));
}

void EmulatedUsb::unplug(EmulatedBoard& board) {
  board.power(false);
  const Place place = place_of(board);
  const std::string path = "/sys" + system_path(place);
  umockdev_testbed_uevent(testbed_, path.c_str(), "remove");
  umockdev_testbed_detach_ioctl(testbed_, node(place).c_str(), nullptr);
  g_object_unref(place.ioctls);
  umockdev_testbed_remove_device(testbed_, path.c_str());
  std::erase_if(places_, [&](const Place& each) { return each.board == &board; });
}

void EmulatedUsb::deny_access(const EmulatedBoard& board) {
  using std::filesystem::perms;
  gchar* path = umockdev_testbed_get_root_dir(testbed_);
  const std::string root = path;
  g_free(path);
  std::filesystem::permissions(root, perms::all);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    if (!entry.is_symlink()) std::filesystem::permissions(entry, perms::all);
  }
  std::filesystem::permissions(root + node(place_of(board)), perms::none);
}

const EmulatedUsb::Place& EmulatedUsb::place_of(const EmulatedBoard& board) const {
  return *std::ranges::find(places_, &board, &Place::board);
}

std::string EmulatedUsb::system_path(const Place& place) {
  return std::string(hub_path) + "/1-" + std::to_string(place.device_number);
}

std::string EmulatedUsb::node(const Place& place) {
  char text[32];
  std::snprintf(text, sizeof text, "/dev/bus/usb/001/%03d", place.device_number);
  return text;
}

}  // namespace usb_testing
