// The whole program on the USB board: the KVT71346/7 panel, on the real libusb and in real time.
#include <gtest/gtest.h>

#include "panels/single_channel/kvt71346.h"
#include "shell/start_panel.h"
#include "usb/program_on_usb.h"

namespace varzelin::testing {
namespace {

struct UsbJourney : ::testing::Test, ProgramOnTheUsb {
  frmKVT71346* panel = nullptr;

  void SetUp() override { start_program(); }
  void plug() { ProgramOnTheUsb::plug("KVT71346/7"); }
  void choose_the_model() {
    auto& list = program.forms.touch<frmStartup>().cboDeviceSelect;
    program.runtime.dispatch([&] { forms::user::click_row(list, 0); });
    panel = &program.forms.touch<frmKVT71346>();
  }
  // Runs `action` once, as an event of the first yield at which `when` holds.
  void at_yield(std::function<bool()> when, std::function<void()> action) {
    user.at_yield = [this, when = std::move(when), action = std::move(action)] {
      if (!when()) return;
      program.runtime.post(action);
      const auto kept_alive = std::exchange(user.at_yield, nullptr);
    };
  }
  // The first readings are zero: the sensor's conversion takes its real time.
  void collect_until_a_reading() {
    const auto last = [&] { return store.Sample_Value[static_cast<std::size_t>(store.Sample_Count - 1)]; };
    store.Sample_Count = 0;  // of the collection before
    at_yield([&] { return store.Sample_Count > 1 && last() > 1; }, [&] { click(panel->cmdStopData); });
    click(panel->cmdCollectData);
    EXPECT_GT(store.Sample_Count, 1);
    EXPECT_EQ(last(), 5100);
  }
  bool log_has(std::string_view text) {
    return program.forms.touch<frmI2C_General>().Txtlog.Text.get().find(text) != std::string::npos;
  }
  // Lets the program run until it does, for five seconds at most.
  bool attached_becomes(bool attached) {
    const double give_up = clock.milliseconds() + 5000;
    while ((store.Usb_Attached != 0) != attached && clock.milliseconds() < give_up)
      program.runtime.DoEvents();
    return (store.Usb_Attached != 0) == attached;
  }
};

TEST_F(UsbJourney, CollectsStopsAndReadsAgainAfterAReplug) {
  plug();
  choose_the_model();
  EXPECT_TRUE(panel->visible());
  EXPECT_TRUE(
      log_has("DeviceAttach: Received and accepted attach for \r\nvendor ID &H7A53 product ID &H2005"));
  EXPECT_FALSE(log_has("failed"));
  const int resets = board.counts().resets;
  EXPECT_GT(resets, 0);

  panel->Lst71346_Mode.ListIndex = 2;
  panel->ModeIndex = 2;
  recorder.packets.clear();
  collect_until_a_reading();
  EXPECT_FALSE(recorder.packets.empty());
  EXPECT_TRUE(all_good());
  EXPECT_EQ(board.counts().resets, resets + 1);
  EXPECT_EQ(board.counts().claims, 2 * board.counts().resets);

  // Pulled within a collection: it stops, and the log has the detach.
  board.pull_within_transfer(2);
  click(panel->cmdCollectData);
  EXPECT_FALSE(store.Sample_Run);
  EXPECT_TRUE(log_has("DeviceDetach: Received detach for device handle &H"));

  usb.unplug(board);
  plug();
  recorder.packets.clear();
  collect_until_a_reading();
  EXPECT_TRUE(all_good());
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(UsbJourney, ABoardInOtherHandsIsInTheLogWithTheReason) {
  board.refuse_claims(EBUSY);
  plug();
  choose_the_model();
  EXPECT_TRUE(panel->visible());
  EXPECT_TRUE(log_has("DeviceAttach: WDU_SetInterface failed\r\n(num. 0 alternate 0)"));
  EXPECT_TRUE(log_has("error &HFFFFFFFA\r\n(Resource busy. Another program holds the board"));
  EXPECT_FALSE(log_has("No such device"));
}

// The system tells of a board before it has configured it.
TEST_F(UsbJourney, AConnectWaitsForABoardThatIsNotConfiguredYet) {
  board.refuse_claims(ENOENT, 3);
  plug();
  choose_the_model();
  EXPECT_TRUE(log_has("DeviceAttach: Received and accepted attach"));
  EXPECT_FALSE(log_has("failed"));
}

TEST_F(UsbJourney, AfterAReplugInAManualConnectionThePanelNeedsANewOne) {
  plug();
  choose_the_model();
  auto& workbench = program.forms.touch<frmI2C_General>();
  workbench.ChKManUsbConn.Value = 1;
  click(workbench.cmdUSBConnect);
  usb.unplug(board);
  EXPECT_TRUE(attached_becomes(false));
  plug();
  EXPECT_TRUE(attached_becomes(true));
  recorder.packets.clear();
  click(panel->cmdSetMode);
  EXPECT_FALSE(recorder.packets.empty());
  EXPECT_FALSE(all_good());
  click(workbench.cmdUSBDisconnect);
  click(workbench.cmdUSBConnect);
  recorder.packets.clear();
  click(panel->cmdSetMode);
  EXPECT_FALSE(recorder.packets.empty());
  EXPECT_TRUE(all_good());
}

TEST_F(UsbJourney, AConnectWithoutABoardDoesNotWait) {
  choose_the_model();
  forms::Control& connect = program.forms.touch<frmI2C_General>().cmdUSBConnect;
  const double begin = clock.milliseconds();
  click(connect);
  EXPECT_LT(clock.milliseconds() - begin, 900.0);
  EXPECT_TRUE(log_has("WriteGPIOPipe: WDU_GetDeviceInfo() failed:\r\nerror &H-4 (No such device"));
}

}  // namespace
}  // namespace varzelin::testing
