// What one register read costs on the USB board, beside the two bare libusb transfers that it is made of.
// Two emulated boards are on the USB: the program works with one, bare libusb with the other, in turns, so
// that whatever else the machine does falls on both alike. It needs umockdev's library preloaded.
#include <benchmark/benchmark.h>
#include <libusb.h>
#include <sys/prctl.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <vector>

#include "boards/usb/usb_board.h"
#include "bridge/transfer.h"
#include "forms/user.h"
#include "no_front_end.h"
#include "shell/application.h"
#include "shell/start_panel.h"
#include "usb/emulated_usb.h"
#include "workbench/workbench.h"

namespace varzelin::benchmarks {
namespace {

constexpr int register_number = 0;

class BareBoard {
 public:
  explicit BareBoard(std::uint8_t device_number) {
    if (libusb_init(&context_) != LIBUSB_SUCCESS) throw std::runtime_error("libusb can't be initialised");
    libusb_device** list = nullptr;
    const auto count = libusb_get_device_list(context_, &list);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      if (libusb_get_device_address(list[i]) == device_number) libusb_open(list[i], &handle_);
    }
    libusb_free_device_list(list, 1);
    if (!handle_ || libusb_claim_interface(handle_, 0) != LIBUSB_SUCCESS)
      throw std::runtime_error("no board");
  }
  ~BareBoard() {
    libusb_close(handle_);
    libusb_exit(context_);
  }
  BareBoard(const BareBoard&) = delete;
  BareBoard& operator=(const BareBoard&) = delete;

  void read_register() {
    unsigned char request[] = {1, 0x89, register_number};
    unsigned char reply[2];
    transfer(boards::pipe_i2c_out, request, sizeof request);
    transfer(boards::pipe_i2c_in, reply, sizeof reply);
  }

 private:
  void transfer(std::int32_t pipe, unsigned char* buffer, int size) {
    int count = 0;
    if (libusb_bulk_transfer(handle_, static_cast<unsigned char>(pipe), buffer, size, &count,
                             boards::transfer_timeout_ms) != LIBUSB_SUCCESS) {
      throw std::runtime_error("a bare transfer failed");
    }
  }
  libusb_context* context_ = nullptr;
  libusb_device_handle* handle_ = nullptr;
};

struct ProgramOnUsb {
  ProgramOnUsb() {
    program.runtime.poll = [this] { driver.deliver_notifications(); };
    add_forms(program);
    start(program);
    forms::user::click_row(program.forms.touch<frmStartup>().cboDeviceSelect, 0);
    program.store.Man_Usb_Conn = true_flag;
    workbench().cmdUSBConnect_Click();
    workbench().txtUserRegAdr.Text = "0";
  }
  frmI2C_General& workbench() { return program.forms.touch<frmI2C_General>(); }
  void check() const {
    if (program.store.Usb_Status != boards::success) throw std::runtime_error("a transfer failed");
  }
  void panel_read() {
    Store& store = program.store;
    set_request(store, store.I2C_Pipe, {1, store.I2C_RdAdr, register_number});
    Fast_Write(program);
    check();
    set_reply(store, store.I2C_Pipe + in_pipe_offset, 2);
    Fast_Read(program);
    check();
  }
  void workbench_read() {
    workbench().cmdRead_Click();
    check();
  }

  NoFrontEnd front_end;
  forms::SystemClock clock;
  boards::UsbBoard driver;
  Program program{clock, driver, front_end};
};

class Times {
 public:
  template <class Action>
  void take(Action&& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    times_.push_back(
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count());
  }
  double median() {
    const auto middle = times_.begin() + static_cast<std::ptrdiff_t>(times_.size() / 2);
    std::ranges::nth_element(times_, middle);
    return *middle;
  }

 private:
  std::vector<double> times_;
};

// An iteration reads three times: bare, as the panels do, as the workbench does with its boxes and lamps.
void UsbRegisterRead(benchmark::State& state) {
  prctl(PR_SET_TIMERSLACK, 1);  // umockdev sleeps after each ioctl
  usb_testing::EmulatedBoard programs_board;
  usb_testing::EmulatedBoard bare_board;
  usb_testing::EmulatedUsb usb;
  if (!usb.possible()) {
    state.SkipWithError("umockdev's library is not preloaded (./bench does that)");
    return;
  }
  for (auto* board : {&programs_board, &bare_board}) {
    usb.plug(*board);
    board->brain([](boards::SimulatedBoard& brain) {
      brain.mount("KVT71346/7");
      brain.set_timing(false);
    });
  }
  ProgramOnUsb subject;
  constexpr int emulated_devices_before = 2;  // the hub and the program's board
  BareBoard bare(emulated_devices_before + 1);
  Times bare_times;
  Times panel_times;
  Times workbench_times;
  for (auto _ : state) {
    bare_times.take([&] { bare.read_register(); });
    panel_times.take([&] { subject.panel_read(); });
    workbench_times.take([&] { subject.workbench_read(); });
  }
  state.counters["bare us"] = bare_times.median();
  state.counters["panel us"] = panel_times.median();
  state.counters["workbench us"] = workbench_times.median();
  state.counters["panel ratio"] = panel_times.median() / bare_times.median();
  state.counters["workbench ratio"] = workbench_times.median() / bare_times.median();
}
BENCHMARK(UsbRegisterRead)->Iterations(3000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace varzelin::benchmarks

BENCHMARK_MAIN();
