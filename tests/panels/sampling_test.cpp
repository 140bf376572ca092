// Timed sampling: trigger, delay, slow read.
#include "support/kvt71346_fixture.h"

namespace varzelin::testing {
namespace {

struct Sampling : Kvt71346Fixture {
  void SetUp() override {
    Kvt71346Fixture::SetUp();
    board.set_timing(false);  // what passes is the program's own time
    set_mode(2);
  }
};

TEST_F(Sampling, SendsTriggerRequestAndReplyInEachPass) {
  board.set_register(1, 0x34);
  board.set_register(2, 0x12);
  sample(2);
  ASSERT_EQ(recorder.packets.size(), 6u);
  for (const std::size_t pass : {0u, 3u}) {
    EXPECT_EQ(recorder.packets[pass], (Packet{2, {0x00, 0x88, 0x00}, 0, 3}));
    EXPECT_EQ(recorder.packets[pass + 1], (Packet{2, {0x02, 0x89}, 0, 2}));
    EXPECT_EQ(recorder.packets[pass + 2].pipe, 130);
    EXPECT_EQ(recorder.packets[pass + 2].size, 6u);
    EXPECT_EQ(recorder.packets[pass + 2].bytes[0], 2);
  }
}

TEST_F(Sampling, TheDelayIsTheRowsIndex) {
  for (const int row : {0, 1, 8, 100}) {
    panel->CboIntTime(5).ListIndex = row;
    std::vector<double> triggers;
    recorder.before_call = [&] { triggers.push_back(clock.milliseconds()); };
    recorder.calls.clear();
    sample(3);
    recorder.before_call = nullptr;
    const auto first =
        static_cast<std::size_t>(std::ranges::find(recorder.calls, "WDU_Transfer") - recorder.calls.begin());
    // Three transfers a pass; the slow read waits 100 ms between the request and the reply.
    EXPECT_NEAR(triggers[first + 1] - triggers[first], row, 0.1) << row;
    EXPECT_NEAR(triggers[first + 2] - triggers[first + 1], 100, 0.1) << row;
    EXPECT_NEAR(triggers[first + 3] - triggers[first], 100 + row, 0.1) << row;
  }
}

TEST_F(Sampling, TheDelayFollowsTheListWhileItRuns) {
  std::vector<double> passes;
  user.at_yield = [&] {
    if (static_cast<std::int32_t>(passes.size()) == store.Sample_Count) return;
    passes.push_back(clock.milliseconds());
    if (store.Sample_Count == 2) panel->CboIntTime(5).ListIndex = 50;
    if (store.Sample_Count == 4) program.runtime.post(clicking(panel->cmdEndSampling));
  };
  store.Sample_Count = 0;
  click(panel->cmdSample);
  ASSERT_GE(passes.size(), 4u);
  EXPECT_NEAR(passes[1] - passes[0], 108, 0.1);
  EXPECT_NEAR(passes[2] - passes[1], 150, 0.1);
}

TEST_F(Sampling, ShowsAndHidesItsButtons) {
  at([&] { return store.Sample_Count == 3; },
     [&] {
       EXPECT_EQ(panel->Label18.Caption, "Data Collection In Process");
       EXPECT_FALSE(panel->cmdSample.Visible);
       EXPECT_FALSE(panel->cbReset.Visible);
       EXPECT_FALSE(panel->frmTimeBase.Visible);
       EXPECT_TRUE(panel->shpSample.Visible);
       EXPECT_FALSE(panel->cmdCollectData.Enabled);
       EXPECT_TRUE(panel->cmdEndSampling.Visible);
       EXPECT_EQ(store.Man_Usb_Conn, -1);
       EXPECT_EQ(store.Usb_Open, -1);
       EXPECT_FALSE(panel->Tmr_Integration.Enabled);
       forms::user::click(panel->cmdEndSampling);
       EXPECT_FALSE(panel->shpSample.Visible);
       EXPECT_EQ(panel->Label18.Caption, "Data Collection Halted");
     });
  panel->Tmr_Integration.Enabled = true;
  click(panel->cmdSample);
  expect_idle();
  EXPECT_FALSE(panel->cmdAbort.Visible);
  EXPECT_EQ(panel->Label18.Caption, "Data Collection Halted");
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Sampling, TerminateEndsItAndLeavesTheStatusAndTheHeartbeatAlone) {
  at(count_reaches(3), clicking(panel->cmdAbort));
  click(panel->cmdSample);
  expect_idle();
  EXPECT_EQ(panel->Label18.Caption, "Data Collection In Process");
  EXPECT_TRUE(panel->shpSample.Visible);
}

TEST_F(Sampling, ItsSamplesBeginAtSlotOne) {
  board.queue_reply({2, 7, 1});
  sample(3);
  EXPECT_EQ(store.Sample_Value[0], 1);
  EXPECT_EQ(store.Sample_Value[1], 263);
  EXPECT_EQ(store.Sample_Value[store.Sample_Count + 1], 1);
  EXPECT_EQ(store.Sample_Value2[1], 1);
  EXPECT_EQ(panel->txtReading2.Text, " 1");
}

TEST_F(Sampling, ShowsTheCountLessTheSettlingSamples) {
  std::vector<std::string> shown;
  user.at_yield = [&] {
    const std::string& text = panel->lblLoop_Count.Caption.get();
    if (shown.empty() || shown.back() != text) shown.push_back(text);
    if (store.Sample_Count == 12 && store.AbortRequested == 0) {
      program.runtime.post(clicking(panel->cmdEndSampling));
    }
  };
  click(panel->cmdSample);
  EXPECT_EQ(shown[1], "-9");
  EXPECT_EQ(shown[10], "0");
  EXPECT_EQ(shown[11], "1");
}

TEST_F(Sampling, TheHeartbeatGoesBetweenBlackAndLightGreen) {
  panel->shpSample.FillColor = lamp(0);
  sample(1);
  EXPECT_EQ(panel->shpSample.FillColor.get(), lamp(10));
  sample(1);
  EXPECT_EQ(panel->shpSample.FillColor.get(), lamp(0));
}

TEST_F(Sampling, TheCountStaysAt1010AndTheLastSlotIsOverwritten) {
  int passes = 0;
  recorder.before_call = [&] {
    // A reply of its own for every pass, by the count of requests that went out.
    if (store.Sample_Count == 1010 && store.Xfer_Size == 6) {
      board.queue_reply({2, static_cast<std::uint8_t>(++passes), 0});
    }
  };
  at([&] { return passes == 5; }, clicking(panel->cmdEndSampling));
  click(panel->cmdSample);
  EXPECT_EQ(store.Sample_Count, 1010);
  EXPECT_EQ(panel->lblLoop_Count.Caption, "1000");
  EXPECT_EQ(store.Sample_Value[1010], 5);
  EXPECT_TRUE(user.errors.empty());
}

// By itself the loop ends behind its read; a trigger left open there is one that a handler made.
TEST_F(Sampling, ATriggerThatIsStillOpenAtTheEndIsFetched) {
  at([&] { return store.Sample_Count == 2 && store.TriggerDone == 0; },
     [&] {
       store.TriggerDone = -1;
       forms::user::click(panel->cmdEndSampling);
     });
  click(panel->cmdSample);
  EXPECT_EQ(store.TriggerDone, 0);
  EXPECT_EQ(store.Sample_Count, 2);
  EXPECT_EQ(sent_on(130).size(), 3u);
  EXPECT_EQ(sent_on(2).size(), 2u + 3u);
}

TEST_F(Sampling, AFailedTransferDoesNotStopIt) {
  board.set_timing(true);
  board.fail_transfers(4, 0x20000015, 3);
  sample(8);
  EXPECT_GE(store.Sample_Count, 8);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(10));
}

TEST_F(Sampling, WritingTheModeInItGoesOutAtOnce) {
  at(count_reaches(2), [&] {
    set_mode(3);
    forget_traffic();
    forms::user::click(panel->cmdSetMode);
    ASSERT_EQ(recorder.packets.size(), 1u);
    EXPECT_EQ(recorder.packets[0], (Packet{2, {0x00, 0x88, 0x04, 0x00}, 0, 4}));
    EXPECT_EQ(recorder.calls, std::vector<std::string>{"WDU_Transfer"});
    program.runtime.post(clicking(panel->cmdEndSampling));
  });
  click(panel->cmdSample);
  expect_idle();
}

}  // namespace
}  // namespace varzelin::testing
