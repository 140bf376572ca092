// What stands behind the driver interface where there is no driver: every operation fails.
#pragma once

#include "boards/driver.h"

namespace boards {

class MissingDriver final : public Driver {
 public:
  static constexpr Status no_driver = 0x20000001;

  std::string VB_Stat2Str(Status /*status*/) const override;
  void deliver_notifications() override {}
  std::string board_name() const override { return "no driver"; }

 private:
  Status do_init(Handle&, const MatchRow&, EventTable) override { return no_driver; }
  Status do_uninit(Handle) override { return no_driver; }
  Status do_close_handle(Handle) override { return no_driver; }
  Status do_get_device_info(Handle, DeviceInfo&) override { return no_driver; }
  Status do_set_interface(Handle, std::int32_t, std::int32_t) override { return no_driver; }
  Status do_reset_device(Handle) override { return no_driver; }
  Status do_reset_pipe(Handle, std::int32_t) override { return no_driver; }
  Status do_transfer(Handle, std::int32_t, bool, std::span<std::uint8_t>, std::size_t& transferred) override {
    transferred = 0;
    return no_driver;
  }
};

}  // namespace boards
