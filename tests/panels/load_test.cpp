// What a sensor panel is like when it has loaded, and how it leaves.
#include "support/kvt71346_fixture.h"

#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

struct PanelLoad : Kvt71346Fixture {};

TEST_F(PanelLoad, SetsTheSharedVariables) {
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x89);
  EXPECT_EQ(store.I2C_Pipe, 2);
  EXPECT_EQ(store.I2C_RdCnt, 2);
  EXPECT_EQ(store.Board_Rev, 2);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.EventsEnabled, -1);
  EXPECT_EQ(store.TriggerDone, 0);
  EXPECT_EQ(store.AbortRequested, 0);
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_EQ(store.IntervalMs, 120);
  EXPECT_EQ(store.Scale_Max, 15000);
  EXPECT_EQ(store.Active_Form, panel);
  EXPECT_EQ(panel->ModeIndex, 0);
}

TEST_F(PanelLoad, ShowsItsDefaults) {
  EXPECT_EQ(panel->Caption, "KVT7134X Ambient Light Sensor Evaluation Software");
  EXPECT_EQ(panel->txtInterval.Text, "120");
  EXPECT_EQ(panel->txtScale.Text, "15000");
  EXPECT_EQ(panel->lblRegSet.Caption, "Control Register Not Initialized");
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(12));
  EXPECT_EQ(panel->ShpHandleStatus.FillColor.get(), lamp(10));
  EXPECT_EQ(panel->LstMode2.ListIndex, 0);
  for (forms::Frame* frame : {&panel->frmMode, &panel->frmTimeBase, &panel->FrmDevice}) {
    EXPECT_TRUE(frame->Visible);
  }
  for (forms::Control* hidden :
       {static_cast<forms::Control*>(&panel->Label17), static_cast<forms::Control*>(&panel->txtReading2),
        static_cast<forms::Control*>(&panel->LblCommTest), static_cast<forms::Control*>(&panel->Label6),
        static_cast<forms::Control*>(&panel->Label14), static_cast<forms::Control*>(&panel->txtTime1),
        static_cast<forms::Control*>(&panel->txtTime3), static_cast<forms::Control*>(&panel->cmdStopData),
        static_cast<forms::Control*>(&panel->cmdEndSampling)}) {
    EXPECT_FALSE(hidden->Visible) << hidden->name();
  }
  EXPECT_FALSE(panel->TmrSample.Enabled);
  EXPECT_EQ(panel->TmrSample.Interval, 1000);
  EXPECT_FALSE(panel->Tmr_Integration.Enabled);
  EXPECT_EQ(panel->Tmr_Integration.Interval, 25);
}

TEST_F(PanelLoad, TheDelayListGoesUpInFives) {
  auto& delays = panel->CboIntTime(5);
  ASSERT_EQ(delays.ListCount(), 101);
  EXPECT_EQ(delays.List(0), "0");
  EXPECT_EQ(delays.List(1), "5");
  EXPECT_EQ(delays.List(100), "500");
  EXPECT_EQ(delays.ListIndex, 8);
  EXPECT_EQ(delays.Text, "40");
}

TEST_F(PanelLoad, TheTimeLabelsCountSamples) {
  EXPECT_EQ(store.Label_Time, (std::array<std::string, 11>{"0", "40", "80", "120", "160", "200", "240", "280",
                                                           "320", "360", "400"}));
  EXPECT_EQ(store.Label_Left[0], "0");
  EXPECT_EQ(store.Label_Left[1], "1500");
  EXPECT_EQ(store.Label_Left[10], "15000");
}

TEST_F(PanelLoad, TheChartIsTheEmptyGridAndSaved) {
  for (std::size_t i = 0; i <= 403; ++i) ASSERT_EQ(store.Trace_Y[i], 1);
  EXPECT_EQ(panel->Picture1.GetPixel(40, 5), 0);
  EXPECT_EQ(panel->Picture1.GetPixel(41, 5), 0xFFFFFF);
  for (int x = 0; x < 403; ++x) {
    for (int y = 0; y < 304; ++y) {
      ASSERT_EQ(store.Screen_Pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(y)],
                panel->Picture1.GetPixel(x, y));
    }
  }
  EXPECT_EQ(panel->Picture2.printed().size(), 36u);
}

TEST_F(PanelLoad, TheDataFileIsProposedBehindTheApplicationsFolder) {
  EXPECT_EQ(panel->txtFilePath.Text, program.application_folder + "/Data.txt");
  EXPECT_EQ(panel->CommonDialog2.FileName, program.application_folder + "/Data.txt");
}

TEST_F(PanelLoad, TheDeviceListSendsItsOwnAddresses) {
  const std::vector<std::string> rows{"KVT71346 ADR-44", "KVT71347 ADR-40", "KVT71347 ADR-41",
                                      "KVT71347 ADR-42", "KVT71347 ADR-43", "KVT71347 ADR-44",
                                      "KVT71347 ADR-45", "KVT71347 ADR-46", "KVT71347 ADR-47"};
  EXPECT_EQ(panel->LstDeviceSel.List(), rows);
  EXPECT_EQ(panel->LstDeviceSel.ListIndex, 0);
  const std::array written{0x88, 0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x87, 0x88};
  // Half of an odd address is rounded to the even number.
  const std::array halves{"44", "40", "40", "41", "42", "42", "42", "44", "44"};
  for (std::size_t row = 0; row < written.size(); ++row) {
    choose(panel->LstDeviceSel, static_cast<int>(row));
    EXPECT_EQ(store.I2C_WrAdr, written[row]) << row;
    EXPECT_EQ(store.I2C_RdAdr, written[row] + 1) << row;
    EXPECT_EQ(panel->txtI2CAddr.Text, halves[row]) << row;
    EXPECT_EQ(panel->txtI2cXmitAdr.Text, forms::Hex(written[row])) << row;
  }
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(PanelLoad, ExitEndsTheProgram) {
  panel->Label18.Caption = "before";
  store.PendingUpdate = store.PendingClearInt = store.PendingReadRegs = -1;
  EXPECT_TRUE(ends([&] { forms::user::click(panel->Command4); }));
  EXPECT_EQ(store.PendingUpdate, 0);
  EXPECT_EQ(store.PendingClearInt, 0);
  EXPECT_EQ(store.PendingReadRegs, 0);
  EXPECT_EQ(panel->Label18.Caption, "before");
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(PanelLoad, TheTerminateButtonHidesItselfAndLeavesTheStatusAlone) {
  panel->Label18.Caption = "before";
  click(panel->cmdAbort);
  EXPECT_EQ(store.AbortRequested, -1);
  EXPECT_FALSE(panel->cmdAbort.Visible);
  EXPECT_EQ(panel->Label18.Caption, "before");
}

TEST_F(PanelLoad, TheDormantTimerSamplesWhenItTicks) {
  at(count_reaches(2), clicking(panel->cmdEndSampling));
  program.runtime.dispatch([&] { panel->TmrSample.raise(Event::Timer); });
  EXPECT_GE(store.Sample_Count, 2);
}

TEST_F(PanelLoad, ClosingTheWindowClosesAnOpenDriverSession) {
  click(workbench().cmdUSBConnect);
  ASSERT_EQ(store.Usb_Open, -1);
  forget_traffic();
  program.forms.unload(*panel, 0);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{"WDU_VB_Uninit"});
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(workbench().txthDriver.Text, "");
}

TEST_F(PanelLoad, ClosingTheWindowWithoutADriverHandleCallsNothing) {
  store.Drv_Handle = 0;
  store.Usb_Open = -1;
  program.forms.unload(*panel, 0);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.Usb_Open, -1);
}

}  // namespace
}  // namespace varzelin::testing
