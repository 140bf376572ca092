// The timed loop of the two-mode panels, and the single reading behind a trigger.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeSampling : TwoModeTest {
  void external_timing(int operation) {
    click(panel->OptExtTime(1));
    select(operation);
  }
};

// --- a pass ---

TEST_P(TwoModeSampling, AContinuousPassOnlyReads) {
  select(measure::infrared);
  board.queue_reply({3, 0x05, 0x0C, 0, 0});
  sample(1);
  EXPECT_EQ(sent(), (ByteLists{{2, 0x89, 2}}));
  EXPECT_EQ(recorder.packets.back().size, 5u);
  EXPECT_EQ(store.Sample_Value[1], 0x0C05);
  EXPECT_EQ(panel->txtSampleByte(0).Text, "3");
  EXPECT_EQ(panel->txtSampleByte(1).Text, "05");
  EXPECT_EQ(panel->txtSampleByte(2).Text, "C");
  EXPECT_EQ(panel->txtADHex.Text, "C05");
  EXPECT_EQ(panel->txtADDec.Text, "3077");
  EXPECT_EQ(panel->lblLoop_Count.Caption, "-9");
}

TEST_P(TwoModeSampling, ASinglePassCommandsAnew) {
  select(measure::infrared_once);
  panel->Label9(0).Caption = "";
  sample(2);
  const ByteLists pass = joined({written(0, 0x40), {{2, 0x89, 2}}});
  EXPECT_EQ(sent(), joined({pass, pass}));
  EXPECT_EQ(panel->Label9(0).Caption, "Delay Command to Sample");
}

TEST_P(TwoModeSampling, UnderExternalTimingItWaitsAndSyncsUpToTwice) {
  for (const bool twice : {false, true}) {
    external_timing(measure::infrared_once);
    panel->ChkEOC1(0).Value = 0;
    panel->ChkEOC1(1).Value = twice;
    panel->txtSync1Delay(0).Text = "30";
    panel->txtSync1Delay(1).Text = "400";
    panel->txtSampling_Delay.Text = "5000";
    const double begun = clock.milliseconds();
    sample(1);
    const std::vector<int> sync{0, 0x89, 0x80};
    EXPECT_EQ(writes(), twice ? (ByteLists{write(0, 0x50), sync, sync}) : (ByteLists{write(0, 0x50), sync}));
    EXPECT_NEAR(clock.milliseconds() - begun, twice ? 5430 : 5030, 25);
    EXPECT_EQ(panel->ChkEOC1(0).Value, 1);  // the run ticks it
  }
}

TEST_P(TwoModeSampling, UnderInternalTimingATickedStepDoesNothing) {
  select(measure::infrared);
  panel->ChkEOC1(0).Value = panel->ChkEOC1(1).Value = 1;
  sample(2);
  EXPECT_TRUE(writes().empty());
}

TEST_P(TwoModeSampling, InPowerDownItMovesToContinuousLightWhereThereIsThat) {
  panel->Label18.Caption = "before";
  forget_traffic();
  if (GetParam() == "frmKVT71376") {
    click(panel->cmdSample);
    EXPECT_EQ(user.errors, std::vector<int>{forms::no_such_element});
    EXPECT_EQ(panel->Label18.Caption, "before");
    EXPECT_TRUE(recorder.calls.empty());
    EXPECT_TRUE(panel->cmdSample.Enabled);
    return;
  }
  sample(2);
  EXPECT_TRUE(panel->OptMeasure(measure::light).Value);
  EXPECT_EQ(writes(), (ByteLists{write(0, 0xA0)}));
  EXPECT_EQ(store.LuxMode, -1);
  EXPECT_EQ(store.Sample_Count, 2);
}

// Bits of the register that aren't the operation's don't count.
TEST_P(TwoModeSampling, PowerDownIsEverythingBelowTheFirstOperation) {
  select(measure::infrared);
  store.RegImage[0] = 0x20;
  sample(1);
  EXPECT_TRUE(panel->OptMeasure(measure::infrared).Value);
  store.RegImage[0] = 0x1F;
  user.errors.clear();
  sample(1);
  EXPECT_FALSE(GetParam() == "frmKVT71374" && panel->OptMeasure(measure::infrared).Value);
}

// --- start and end ---

TEST_P(TwoModeSampling, ItSetsThePanelUpAndPutsItBack) {
  select(measure::infrared);
  store.Sample_Value.fill(9);
  store.Sample_Value2.fill(9);
  panel->txtADHex.Text = "old";
  store.PendingUpdate = -1;
  at_yield([&] { return store.Sample_Count == 1; },
           [&] {
             EXPECT_EQ(panel->Label18.Caption, "Data Collection In Process");
             EXPECT_EQ(panel->Label3(0).Caption, "ADC");
             for (const forms::Control* off : std::initializer_list<forms::Control*>{
                      &panel->cmdSample, &panel->Command4, &panel->cmdCollectData}) {
               EXPECT_TRUE(off->Visible && !off->Enabled) << off->name();
             }
             EXPECT_TRUE(panel->cmdEndSampling.Enabled);
             EXPECT_EQ(store.Man_Usb_Conn, -1);
             EXPECT_EQ(store.PendingUpdate, 0);
             EXPECT_EQ(panel->txtADHex.Text, "");
             EXPECT_EQ(store.Sample_Value[7], 1);
             EXPECT_EQ(store.Sample_Value2[7], 1);
             forms::user::click(panel->cmdEndSampling);
           });
  store.Sample_Count = 0;
  click(panel->cmdSample);
  expect_idle();
  EXPECT_FALSE(panel->cmdAbort.Enabled);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(calls("WDU_VB_Uninit"), 1u);
}

TEST_P(TwoModeSampling, OfTheTimeBaseItSaysSo) {
  click(panel->OptMeasMode(1));
  select(measure::infrared);
  sample(1);
  EXPECT_EQ(panel->Label3(0).Caption, "TB");
}

TEST_P(TwoModeSampling, ItYieldsOnceWithTheSessionHeldBeforeItSaysSo) {
  select(measure::infrared);
  panel->Label18.Caption = "";
  int yields = 0;
  user.at_yield = [&] {
    yields += store.Man_Usb_Conn == -1 && panel->Label18.Caption == "";
    if (store.Sample_Count == 1 && store.Man_Usb_Conn == -1 && store.AbortRequested == 0) {
      program.runtime.post(clicking(panel->cmdEndSampling));
    }
  };
  store.Sample_Count = 0;
  click(panel->cmdSample);
  user.at_yield = nullptr;
  EXPECT_EQ(yields, 1);
}

// Until a yield behind the close the stop is in force.
TEST_P(TwoModeSampling, AnOptionBehindTheCloseOfTheSessionStillWaits) {
  select(measure::infrared);
  bool clicked = false;
  user.at_yield = [&] {
    if (store.Sample_Count == 2 && store.Man_Usb_Conn == -1 && store.AbortRequested == 0) {
      program.runtime.post(clicking(panel->cmdEndSampling));
    }
    if (clicked || store.Sample_Count < 2 || calls("WDU_VB_Uninit") == 0) return;
    clicked = true;
    forget_traffic();
    program.runtime.post(clicking(panel->OptGain(1)));
  };
  store.Sample_Count = 0;
  click(panel->cmdSample);
  user.at_yield = nullptr;
  EXPECT_TRUE(clicked);
  EXPECT_TRUE(sent().empty());
  EXPECT_EQ(store.PendingWriteR1, -1);
  EXPECT_EQ(store.AbortRequested, 0);
}

TEST_P(TwoModeSampling, ItYieldsOnceMoreBehindTheCloseWithTheStopInForce) {
  click(workbench().cmdUSBConnect);
  const int of_the_close = yields_behind_close(clicking(workbench().cmdUSBDisconnect));
  select(measure::infrared);
  at_yield(count_reaches(2), [&] {
    program.runtime.post([&] { count_yields_behind_close(); });
    forms::user::click(panel->cmdEndSampling);
  });
  store.Sample_Count = 0;
  click(panel->cmdSample);
  user.at_yield = nullptr;
  EXPECT_EQ(yields_counted, of_the_close + 1);
}

// What is changed between the stop and the last pass's end: control, command, read-back.
TEST_P(TwoModeSampling, TheLastPassDoesWhatWaits) {
  select(measure::infrared);
  at_yield(count_reaches(2), [&] {
    forms::user::click(panel->cmdEndSampling);
    forget_traffic();
    forms::user::click(panel->cmdRead_All);
    forms::user::click(panel->OptGain(1));
  });
  store.Sample_Count = 0;
  click(panel->cmdSample);
  ByteLists last = sent();
  std::erase(last, std::vector<int>{2, 0x89, 2});
  EXPECT_EQ(last, (ByteLists{write(1, 0x71), write(0, 0xC0), {2, 0x89, 0}}));
  EXPECT_EQ(store.PendingReadRegs, 0);
}

TEST_P(TwoModeSampling, WithoutAKindOfReadingNothingIsKept) {
  select(measure::infrared);
  store.ReadAdc = store.ReadTimeBase = 0;
  reading(500);
  sample(3);
  EXPECT_EQ(store.Sample_Value[2], 1);
  EXPECT_EQ(panel->txtADHex.Text, "");
}

// --- the reading behind a trigger ---

TEST_P(TwoModeSampling, AReadingWithoutATriggerIsRefused) {
  click(panel->cmdRead);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Light Sensor Needs to be Triggered First");
  EXPECT_TRUE(recorder.calls.empty());
  store.TriggerDone = -1;
  board.queue_reply({2, 0x34, 0x12, 0, 0});
  click(panel->cmdRead);
  EXPECT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(panel->txtADDec.Text, "4660");
  EXPECT_EQ(store.TriggerDone, 0);
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_P(TwoModeSampling, OfTheTimeBaseASecondValueIsKept) {
  store.Sample_Count = 4;
  store.Sample_Value[4] = store.Sample_Value2[4] = 1;
  store.ReadAdc = 0;
  store.ReadTimeBase = -1;
  board.queue_reply({2, 0x34, 0x12, 0, 0});
  program.runtime.dispatch([&] { panel->Record_Prox_IR(); });
  EXPECT_EQ(store.Sample_Value[4], 1);
  EXPECT_EQ(store.Sample_Value2[4], 0x1234);
  EXPECT_EQ(panel->txtSampleByte(1).Text, "34");
  EXPECT_EQ(panel->txtSampleByte(2).Text, "12");
}

ON_BOTH_MODELS(TwoModeSampling);

}  // namespace
}  // namespace varzelin::testing
