// A board without hardware behind the driver interface: bridge, ports, a socket for a sensor, and the
// scene that the sensor looks at. A bench (the console, a window, a test) sets it up by the methods
// below; the program knows it as a Driver only.
//
// Everything runs on the interface thread. The bus time of transfers passes on the clock.
#pragma once

#include "boards/driver.h"
#include "boards/simulated/failures.h"
#include "boards/simulated/i2c_bridge.h"
#include "boards/simulated/i2c_bus.h"
#include "boards/simulated/in_pipe.h"
#include "boards/simulated/ports.h"
#include "boards/simulated/sensors/scene.h"
#include "boards/simulated/session.h"
#include "boards/simulated/statuses.h"

namespace boards {

class SimulatedBoard final : public Driver {
 public:
  explicit SimulatedBoard(forms::Clock& clock) : clock_(clock) {}
  SimulatedBoard(const SimulatedBoard&) = delete;
  SimulatedBoard& operator=(const SimulatedBoard&) = delete;

  // The socket. `model` is a name of the start list, the address in its 8-bit write form. False: no
  // such model, and the socket is as it was.
  bool mount(std::string_view model, std::uint8_t write_address = default_write_address);
  void unmount();
  const std::string& mounted_model() const { return model_; }  // empty: an empty socket
  std::uint8_t mounted_address() const { return bus_.write_address(); }
  // False: what is mounted doesn't acknowledge. True at start.
  void set_sensor_answers(bool answers) { bus_.answers = answers; }
  bool sensor_answers() const { return bus_.answers; }

  // A register of the mounted sensor, past the bus. No value, or false: there is none.
  std::optional<std::uint8_t> register_value(std::uint8_t address);
  bool set_register(std::uint8_t address, std::uint8_t value);

  // To change the scene: fetched anew for each change, so that a sensor's conversions up to now count by the
  // scene as it was.
  Scene& scene() {
    catch_up();
    return scene_;
  }
  const Scene& scene() const { return scene_; }
  // Full width of the noise on readings, in counts; 0 at start.
  void set_noise(double counts) {
    catch_up();
    noise_.width = counts;
  }
  double noise() const { return noise_.width; }

  // Level of the input pins of port 'B' or 'C'. False, or no value: no such port.
  bool set_port(char port, std::uint8_t level) { return ports_.set_level(port, level); }
  std::optional<std::uint8_t> port(char port) { return ports_.level(port, interrupts()); }

  // The next good transfer on pipe 0x82, or 0x81, brings these bytes in place of the board's answer.
  void queue_reply(std::vector<std::uint8_t> bytes) { i2c_in_.queue(std::move(bytes)); }
  void queue_port_reply(std::vector<std::uint8_t> bytes) { gpio_in_.queue(std::move(bytes)); }
  std::size_t queued_replies() const { return i2c_in_.queued() + gpio_in_.queued(); }

  // See Failures.
  bool fail_call(std::string_view call, Status status = statuses::call_failed) {
    return failures_.fail_call(call, status);
  }
  bool fail_transfers(std::size_t count, Status status = statuses::time_out, std::size_t after = 0) {
    return failures_.fail_transfers(count, status, after);
  }
  std::size_t transfers_to_fail() const { return failures_.transfers_to_fail(); }
  void unplug_after(std::size_t good_transfers) { failures_.unplug_after(good_transfers); }
  // Forgets queued replies and ordered failures; returns how many replies were still queued.
  std::size_t clear();

  // The plug gives the board its power: without it the bridge, the ports and the sensor forget their
  // state. What is mounted and what the bench set stays.
  void plug();
  void unplug();
  bool plugged() const { return session_.plugged(); }
  // False: the driver is missing, and no session can be opened.
  void set_driver_present(bool present) { driver_present_ = present; }
  bool driver_present() const { return driver_present_; }
  // False: transfers take no time.
  void set_timing(bool bus_time) { time_.taken = bus_time; }
  bool timing() const { return time_.taken; }

  std::string VB_Stat2Str(Status status) const override { return statuses::text(status); }
  std::optional<UsbPlace> transfer_place() const override { return transfer_place_; }
  std::int32_t urb_status(Status status) const override { return statuses::urb_status(status); }
  void deliver_notifications() override;
  void model_chosen(std::string_view model) override;
  std::string board_name() const override { return "simulated board"; }

 private:
  static constexpr std::uint8_t default_write_address = 0x88;

  Status do_init(Handle& session, const MatchRow& match, EventTable events) override;
  Status do_uninit(Handle session) override;
  Status do_close_handle(Handle session) override;
  Status do_get_device_info(Handle device, DeviceInfo& info) override;
  Status do_set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate) override;
  Status do_reset_device(Handle device) override;
  Status do_reset_pipe(Handle device, std::int32_t pipe) override;
  Status do_transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                     std::size_t& transferred) override;

  // Success when the operation may go on with this device.
  Status admit(const char* call, Handle device);
  Status receive(InPipe& pipe, std::span<std::uint8_t> buffer, std::size_t& transferred);
  void send(std::int32_t pipe, std::span<const std::uint8_t> packet);
  void drop_answers();
  void power_sensor_on();
  void catch_up() {
    if (bus_.sensor()) bus_.sensor()->catch_up();
  }
  bool interrupts() { return bus_.sensor() && bus_.sensor()->interrupts(); }

  forms::Clock& clock_;
  Scene scene_;
  NoiseSource noise_;
  BusTime time_{clock_};
  I2cBus bus_{time_};
  I2cBridge bridge_{bus_};
  Ports ports_;
  InPipe i2c_in_;
  InPipe gpio_in_;
  Failures failures_;
  std::optional<UsbPlace> transfer_place_;
  Session session_;
  std::string model_;
  bool driver_present_ = true;
};

}  // namespace boards
