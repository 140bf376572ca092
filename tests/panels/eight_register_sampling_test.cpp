// The timed loop of the panels over eight registers, and what their sessions do around it.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

using Kvt71344Sampling = Kvt71344;
using Kvt71356Sampling = Kvt71356;

TEST_F(Kvt71344Sampling, ATimedReadingShowsItsBytes) {
  external_timing();
  replying({4, 0x05, 0x0C, 0x07, 0x01});
  sample(1);
  EXPECT_EQ(store.Sample_Value[1], 0x0C05);
  EXPECT_EQ(store.Sample_Value2[1], 0x0107);
  EXPECT_EQ(panel->txtReading.Text, " 3077");
  EXPECT_EQ(panel->txtReading2.Text, " 263");
  EXPECT_EQ(panel->txtSampleByte(0).Text, "4");
  EXPECT_EQ(panel->txtSampleByte(1).Text, "05");
  EXPECT_EQ(panel->txtSampleByte(2).Text, "C");
  EXPECT_EQ(panel->txtSampleByte(3).Text, "07");
  EXPECT_EQ(panel->txtSampleByte(4).Text, "1");
  EXPECT_EQ(panel->txtADHex.Text, "C05");
  EXPECT_EQ(panel->txtADDec.Text, "3077");
  EXPECT_EQ(panel->cycle_reading.txtICycHex.Text, "107");
  EXPECT_EQ(panel->cycle_reading.txtICYCDec.Text, "263");
  EXPECT_EQ(panel->txtRegRd(5).Text, "0C");
  EXPECT_EQ(store.TriggerDone, 0);
}

TEST_F(Kvt71344Sampling, ACycleCountOfZeroShowsTwoDigits) {
  replying({2, 0x05, 0x0C, 0, 0});
  sample(1);
  EXPECT_EQ(panel->cycle_reading.txtICycHex.Text, "00");
  EXPECT_EQ(panel->cycle_reading.txtICYCDec.Text, "0");
  EXPECT_EQ(store.Sample_Value2[1], 1);
}

TEST_F(Kvt71344Sampling, ATimedRunHidesResetAndExit) {
  at_yield(count_reaches(3), [&] {
    EXPECT_FALSE(panel->cbReset.Visible);
    EXPECT_FALSE(panel->Command4.Visible);
    EXPECT_FALSE(panel->cmdSample.Visible);
    forms::user::click(panel->cmdEndSampling);
  });
  click(panel->cmdSample);
  EXPECT_TRUE(panel->cbReset.Visible);
  EXPECT_TRUE(panel->Command4.Visible);
  EXPECT_TRUE(panel->cmdSample.Visible);
}

TEST_F(Kvt71344Sampling, ATimedRunConnectsAgainAtItsEnd) {
  sample(3);
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_NE(log().find("Already Opened"), std::string::npos);
  click(panel->cmdSync);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71356Sampling, ATimedRunOpensTheSessionFirstAndLeavesItOpen) {
  bool open_before_text = false;
  panel->Label18.Caption = "";
  at_yield([&] { return store.Usb_Open != 0; }, [&] { open_before_text = panel->Label18.Caption == ""; });
  std::int32_t count = 0;
  recorder.before_call = [&] {
    if (store.Sample_Count >= 4 && count++ == 0) program.runtime.post(clicking(panel->cmdEndSampling));
  };
  const std::string before = log();
  click(panel->cmdSample);
  EXPECT_TRUE(open_before_text);
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(log().find("Already Opened", before.size()), std::string::npos);
  EXPECT_EQ(calls("WDU_VB_Uninit"), 0u);
}

TEST_F(Kvt71356Sampling, StopSamplingClosesASessionThatIsNotHeld) {
  click(workbench().cmdUSBConnect);
  program.runtime.dispatch([&] { panel->cmdEndSampling_Click(); });
  EXPECT_EQ(store.Usb_Open, 0);
}
TEST_F(Kvt71344Sampling, StopSamplingLeavesASessionThatIsNotHeld) {
  click(workbench().cmdUSBConnect);
  program.runtime.dispatch([&] { panel->cmdEndSampling_Click(); });
  EXPECT_EQ(store.Usb_Open, -1);
}

// --- a session that the user let go in the middle of a run ---

struct LetGo : EightRegisterFixture {
  // The first steps of the session from the letting go on, under external timing.
  std::vector<std::string> way_of_session(const char* form_name, std::size_t steps) {
    open(form_name);
    external_timing();
    panel->CboIntTime(5).ListIndex = 0;
    at_yield(count_reaches(3), [&] {
      workbench().ChKManUsbConn.Value = 1;
      workbench().ChKManUsbConn.Value = 0;
      forms::user::click(workbench().cmdUSBDisconnect);
      forget_traffic();
      at_yield(count_reaches(5), clicking(panel->cmdEndSampling));
    });
    click(panel->cmdSample);
    std::vector<std::string> way;
    std::size_t transfers = 0;
    for (const std::string& call : recorder.calls) {
      if (call == "WDU_VB_Init") way.emplace_back("open");
      if (call == "WDU_VB_Uninit") way.emplace_back("close");
      if (call != "WDU_Transfer") continue;
      const Packet& packet = recorder.packets[transfers++];
      way.emplace_back(packet.status != 0 ? "failed" : packet.pipe < 0x80 ? "request" : "reply");
    }
    way.resize(steps);
    return way;
  }
};

using Way = std::vector<std::string>;

TEST_F(LetGo, TriggerAndReadingOpenAndCloseItByThemselves) {
  EXPECT_EQ(way_of_session("frmKVT71356", 19),
            (Way{"open", "request", "reply", "close", "open", "request", "reply", "close", "open", "request",
                 "close", "open", "request", "reply", "close", "open", "request", "reply", "close"}));
}

TEST_F(LetGo, OtherwiseOnlyTheRegistersReadOpensIt) {
  EXPECT_EQ(way_of_session("frmKVT71344", 13),
            (Way{"failed", "failed", "open", "request", "reply", "close", "failed", "failed", "failed",
                 "open", "request", "reply", "close"}));
}

// A collection leaves a trigger whose reading nobody fetched.
TEST_F(Kvt71344Sampling, ATriggerThatWaitsIsReadThoughTheRunIsStoppedBeforeItsFirstPass) {
  collect(3);
  ASSERT_EQ(store.TriggerDone, -1);
  forget_traffic();
  at_yield([&] { return panel->cmdEndSampling.Visible.get(); }, clicking(panel->cmdEndSampling));
  click(panel->cmdSample);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 4}}));
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_NE(store.Sample_Value[0], 1);
  EXPECT_EQ(store.TriggerDone, 0);
}

// --- guards ---

TEST_F(Kvt71344Sampling, SamplingIsRefusedInResetAndInPowerDown) {
  panel->Label18.Caption = "before";
  click(panel->ChkCommand(0));
  forget_traffic();
  click(panel->cmdSample);
  click(panel->ChkCommand(0));
  click(panel->ChkCommand(1));
  forget_traffic();
  click(panel->cmdSample);
  ASSERT_EQ(user.boxes.size(), 2u);
  EXPECT_EQ(user.boxes[0].text, "Device Reset Control bit is active");
  EXPECT_EQ(user.boxes[1].text, "Device ADC Core Power Down Control bit is active");
  EXPECT_EQ(panel->Label18.Caption, "before");
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_TRUE(panel->cmdSample.Visible);
}

// --- options ---

// The timed loop sets no run flag: controls write at once in it, with their read-back.
TEST_F(Kvt71344Sampling, InATimedRunAnOptionWritesAtOnce) {
  at_yield(count_reaches(4), [&] {
    forget_traffic();
    forms::user::click(panel->OptGain(1));
    EXPECT_EQ(sent(), written(1, 0x04));
    at_yield(count_reaches(6), clicking(panel->cmdEndSampling));
  });
  click(panel->cmdSample);
}

// --- checked transfers ---

TEST_F(Kvt71356Sampling, ItsTransfersAreCheckedAndLogged) {
  forget_traffic();
  click(panel->cmdSync);
  EXPECT_EQ(recorder.calls, (std::vector<std::string>{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo",
                                                      "WDU_GetDeviceInfo", "WDU_Transfer", "WDU_ResetDevice",
                                                      "CloseHandle", "WDU_VB_Uninit"}));
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(10));
  board.fail_transfers(1, boards::statuses::transfer_failed);
  click(panel->cmdSync);
  EXPECT_NE(log().find("WritePipe: WDU_Transfer() failed: error &H"), std::string::npos);
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(12));
  EXPECT_EQ(store.AbortRequested, 0);
  board.fail_transfers(1, boards::statuses::transfer_failed, 1);
  click(panel->cmdRead_Measurements);
  EXPECT_NE(log().find("ReadPipe: WDU_Transfer() failed: error &H"), std::string::npos);
  EXPECT_EQ(store.AbortRequested, -1);
}

TEST_F(Kvt71356Sampling, AFailedReadStopsATimedRun) {
  at_yield(count_reaches(3), [&] { board.fail_transfers(1, boards::statuses::time_out, 1); });
  click(panel->cmdSample);
  EXPECT_EQ(store.AbortRequested, 0);
  EXPECT_TRUE(panel->cmdSample.Visible);
  EXPECT_LE(store.Sample_Count, 5);
  EXPECT_NE(log().find("ReadPipe: WDU_Transfer() failed: error &H"), std::string::npos);
}

TEST_F(Kvt71344Sampling, AFailedReadDoesNotStopATimedRun) {
  at_yield(count_reaches(3), [&] {
    board.fail_transfers(1, boards::statuses::time_out, 1);
    at_yield(count_reaches(9), clicking(panel->cmdEndSampling));
  });
  click(panel->cmdSample);
  EXPECT_GE(store.Sample_Count, 9);
}

}  // namespace
}  // namespace varzelin::testing
