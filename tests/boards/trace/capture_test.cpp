// A saved bus trace as Wireshark's own reader sees it.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "boards/trace/pcapng.h"
#include "support/fake_driver.h"
#include "support/simulated_board_fixture.h"
#include "support/temporary_folder.h"

namespace boards {
namespace {

class BusTraceCapture : public SimulatedBoardTest {
 protected:
  BusTraceCapture() {
    board.mount("KVT71346/7");
    connect();
    trace.start();
  }
  void SetUp() override {
    if (std::system("tshark --version >/dev/null 2>&1") != 0) GTEST_SKIP() << "tshark is not installed";
  }
  std::string tshark(const std::string& options) { return tshark(trace, options); }
  // What tshark prints of the saved trace, its complaints included. "FAILED" in the last line: it did.
  std::string tshark(const BusTrace& saved, const std::string& options) {
    std::ofstream file(folder.path("trace.pcapng"), std::ios::binary);
    write_pcapng(file, saved, "Varzelin ALS Demonstration");
    file.close();
    const std::string command = "HOME=" + folder.path() + " TZ=UTC tshark -r " + folder.path("trace.pcapng") +
                                " --log-level warning " + options + " 2>&1";
    std::FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return "FAILED";
    std::string text;
    std::array<char, 4096> part;
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe))
      text.append(part.data(), count);
    const int status = ::pclose(pipe);
    // The newer ones write the backslash of a zero byte twice.
    for (std::size_t at; (at = text.find(R"('\\0')")) != std::string::npos;) text.erase(at + 1, 1);
    // tshark tells root so, whatever it reads.
    if (text.starts_with("Running as user")) text.erase(0, text.find('\n') + 1);
    return status == 0 ? text : text + "FAILED";
  }
  varzelin::testing::TemporaryFolder folder;
  BusTrace trace{board, clock};
};

TEST_F(BusTraceCapture, EveryFieldComesBack) {
  clock.pass(std::chrono::microseconds(1500));
  i2c({0, 0x88, 0x01, 0x05});
  i2c({2, 0x89, 0});
  i2c_reply(3);
  send(pipe_gpio_out, {0x0F, 0, 0xFF, 0});
  EXPECT_EQ(
      tshark("-T fields -E separator=' ' -e frame.number -e frame.time_epoch -e usb.urb_id -e usb.urb_type "
             "-e usb.transfer_type -e usb.endpoint_address -e usb.urb_status -e usb.urb_len -e usb.data_len "
             "-e usb.capdata"),
      "1 1227621787.001500000 0x0000000000000001 'S' 0x03 0x02 -115 4 4 00880105\n"
      "2 1227621787.001870000 0x0000000000000001 'C' 0x03 0x02 0 4 0 \n"
      "3 1227621787.001870000 0x0000000000000002 'S' 0x03 0x02 -115 3 3 028900\n"
      "4 1227621787.002240000 0x0000000000000002 'C' 0x03 0x02 0 3 0 \n"
      "5 1227621787.002240000 0x0000000000000003 'S' 0x03 0x82 -115 3 0 \n"
      "6 1227621787.002520000 0x0000000000000003 'C' 0x03 0x82 0 3 3 020000\n"
      "7 1227621787.002520000 0x0000000000000004 'S' 0x03 0x01 -115 4 4 0f00ff00\n"
      "8 1227621787.002620000 0x0000000000000004 'C' 0x03 0x01 0 4 0 \n");
}

TEST_F(BusTraceCapture, SubmissionAndCompletionFindEachOther) {
  i2c({2, 0x89, 0});
  i2c_reply(3);
  EXPECT_EQ(tshark("-T fields -E separator=' ' -e frame.number -e usb.request_in -e usb.time"),
            "1  \n2 1 0.000370000\n3  \n4 3 0.000280000\n");
}

TEST_F(BusTraceCapture, TimeDirectionAndDataAreAsUsbmonSaysThem) {
  clock.pass(std::chrono::microseconds(1500));
  i2c({2, 0x89, 0});
  i2c_reply(3);
  EXPECT_EQ(tshark("-T fields -E separator=' ' -e usb.urb_ts_sec -e usb.urb_ts_usec -e usb.data_flag "
                   "-e usb.setup_flag -e usb.copy_of_transfer_flags"),
            "1227621787 1500 '\\0' '-' 0x00000000\n1227621787 1870 '>' '-' 0x00000000\n"
            "1227621787 1870 '<' '-' 0x00000200\n1227621787 2150 '\\0' '-' 0x00000200\n");
}

TEST_F(BusTraceCapture, WhatWasNeverOnTheUsbIsNotInIt) {
  receive(pipe_i2c_out, 2);
  i2c({0, 0x88, 1});
  device = 0;
  i2c_reply(2);
  EXPECT_EQ(tshark("-T fields -e usb.urb_id"), "0x0000000000000002\n0x0000000000000002\n");
}

TEST_F(BusTraceCapture, FailuresKeepTheirStatus) {
  i2c_reply(2);
  board.fail_transfers(1, statuses::transfer_failed);
  i2c({0, 0x88, 0x55});
  EXPECT_EQ(
      tshark("-T fields -E separator=' ' -e usb.urb_type -e usb.urb_status -e usb.urb_len -e usb.capdata"),
      "'S' -115 2 \n'C' -2 0 \n'S' -115 3 008855\n'C' -71 0 \n");
}

TEST_F(BusTraceCapture, NothingIsMalformed) {
  for (std::uint8_t length = 0; length < 20; ++length) send(pipe_i2c_out, Bytes(length, 0));
  receive(pipe_gpio_in, 25);
  EXPECT_EQ(tshark("-Y '_ws.malformed || _ws.expert'"), "");
}

TEST_F(BusTraceCapture, TheFileSaysWhereItIsFrom) {
  i2c({0, 0x88, 0x55});
  EXPECT_EQ(tshark("-T fields -e frame.interface_name -e frame.encap_type"),
            "simulated board\t115\nsimulated board\t115\n");
}

TEST_F(BusTraceCapture, TheBoardIsWhereLsusbShowsIt) {
  varzelin::testing::FakeDriver placed;
  placed.place = UsbPlace{.bus = 3, .device = 17};
  BusTrace of_placed(placed, clock);
  of_placed.start();
  std::uint8_t packet[] = {0, 0x88, 1};
  std::size_t transferred = 0;
  placed.WDU_Transfer(placed.device_handle, pipe_i2c_out, false, packet, transferred);
  EXPECT_EQ(tshark(of_placed, "-T fields -e usb.bus_id -e usb.device_address"), "3\t17\n3\t17\n");
}

TEST_F(BusTraceCapture, AnEmptyTraceIsAFileWithoutPackets) {
  EXPECT_EQ(tshark("-T fields -e frame.number"), "");
}

}  // namespace
}  // namespace boards
