// What every sensor panel is like when it has loaded.
#include "support/panel_fixture.h"
#include "waveform/trace.h"

namespace varzelin::testing {
namespace {

struct PanelLoad : PanelTest {};

TEST_P(PanelLoad, SetsTheSharedVariables) {
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x89);
  EXPECT_EQ(store.I2C_Pipe, 2);
  EXPECT_EQ(store.I2C_RdCnt, 2);
  EXPECT_EQ(store.Board_Rev, 2);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.EventsEnabled, -1);
  EXPECT_EQ(store.TriggerDone, 0);
  EXPECT_EQ(store.Active_Form, &panel);
  EXPECT_EQ(std::to_string(store.IntervalMs), panel.model.interval);
  EXPECT_EQ(store.Scale_Min, 0);
  EXPECT_EQ(store.Scale_Max,
            static_cast<int>(std::stod(panel.txtScale.Text.get()) + panel.model.scale_addition));
  EXPECT_EQ(store.Scale_Span, store.Scale_Max);
}

TEST_P(PanelLoad, HidesWhatShowsItselfLater) {
  for (forms::Control* hidden : std::initializer_list<forms::Control*>{
           &panel.Label17, &panel.txtReading2, &panel.LblCommTest, &panel.Label6, &panel.Label14,
           &panel.txtTime1, &panel.txtTime3, &panel.shpSample}) {
    EXPECT_FALSE(hidden->Visible) << hidden->name();
  }
  for (const forms::CommandButton* stop : {&panel.cmdStopData, &panel.cmdEndSampling}) {
    EXPECT_FALSE(offered(*stop)) << stop->name();
  }
  for (forms::Frame* frame : {&panel.frmMode, &panel.frmTimeBase, &panel.FrmDevice}) {
    // A short layout keeps the mode, and on some panels the device.
    const bool kept =
        frame == &panel.frmMode || (frame == &panel.FrmDevice && dynamic_cast<const TwoModePanel*>(&panel));
    EXPECT_EQ(frame->Visible, store.LayoutCompact == 0 || kept) << frame->name();
  }
  EXPECT_EQ(panel.ShpHandleStatus.FillColor.get(), lamp(10));
  EXPECT_TRUE(panel.visible());
}

TEST_P(PanelLoad, StartsNoTimer) {
  EXPECT_EQ(panel.TmrSample.Interval, 1000);
  EXPECT_EQ(panel.Tmr_Integration.Interval, 25);
  for (const forms::Control* control : panel.controls()) {
    if (control->kind() != forms::Kind::Timer) continue;
    EXPECT_FALSE(control->Enabled) << control->name();
  }
}

TEST_P(PanelLoad, SharedControlsSayWhatTheyDo) {
  const WordsOfControls shared{
      {"frmAbout", {"About"}},
      {"FrmDevice", {"Device"}},
      {"lblI2CAddr", {"I2C Address (7 bit)"}},
      {"lblI2cXmitAdr", {"Transmitted (8 bit)"}},
      {"frmMode", {"Mode & Status"}},
      {"frmTimeBase", {"Sampling Time Base Control"}},
      {"Label13", {"USB Comm"}},
      {"lblHandleStatus", {"Panel Loaded"}},
      {"lblCapturedReadings", {"Captured Readings"}},
      {"cmdSample", {has_converter() ? "Start" : "Trigger / Read Light Sensor with Selected Delay Time"}},
      {"cmdEndSampling", {"Stop Sampling"}},
      {"cmdCollectData", {"Collect / Graph Real Time Data"}},
      {"cmdStopData", {"Stop Data Acquisition"}},
      {"cmdAbort", {"Terminate"}},
      {"lblDelay", {"Delay Trigger to Read (mS)"}},
      {"lblInterval", {"Sample Interval (mS)"}},
      {"Label17", {"Reading 2"}},
      {"Label6", {"Command to Record Time (mS)"}},
      {"Label14", {"Command to Command Time (mS)"}},
      {"lblSampleByte", {"Reply Bytes"}},
      {"lblADHex", {"AD Count Hex"}},
      {"lblADDec", {"AD Count Dec"}},
      {"cmdWaveformINit", {"Init Waveform"}},
      {"cmdDrawTrace", {"DrawTrace"}},
      {"cmdScale", {"Manual Re-Scale"}},
      {"cmdAutoScale", {"Automatic Re-Scale"}},
      {"cmdSaveScreen", {"Save Screen"}},
      {"cmdRestoreScreen", {"Clear Graph"}},
      {"lblScale", {"Scale Max"}},
      {"txtScale",
       {"", "Enter a number here followed by the \"Enter\" key to set the Max range toa specific number."}},
      {"lblScaleMin", {"Scale Min"}},
      {"frmDataRecord", {"Save Measurements to File"}},
      {"chkAppend",
       {"Append",
        "If check, data is appended to end of Measurement file, if uncheck file is overwritten with present "
        "data only."}},
      {"cmdBrowse", {"Browse", "Use this to select file where measurement data will be written."}},
      {"cmdStartRec(0)", {"Write to Disk", "Click here to save measurement to disk file."}},
      {"txtFilePath", {"", "Contains Path + File name where measurement data will be written."}}};
  expect_words(panel, shared);
  EXPECT_EQ(panel.Command4.Caption, "Exit");
  EXPECT_EQ(panel.Command4.ToolTipText, "Click here when you wish to exit the program.");
}

TEST_P(PanelLoad, TheDelayListGoesUpInFives) {
  auto& delays = panel.CboIntTime(5);
  ASSERT_EQ(delays.ListCount(), 101);
  for (int row = 0; row <= 100; ++row) ASSERT_EQ(delays.List(row), std::to_string(5 * row));
  EXPECT_EQ(delays.ListIndex, 8);
  EXPECT_EQ(delays.Text, "40");
}

TEST_P(PanelLoad, TheDeviceListHasItsRowsAndTheFirstIsChosen) {
  ASSERT_EQ(panel.LstDeviceSel.List().size(), panel.model.devices.size());
  for (std::size_t row = 0; row < panel.model.devices.size(); ++row) {
    EXPECT_EQ(panel.LstDeviceSel.List()[row], panel.model.devices[row].text);
  }
  EXPECT_EQ(panel.LstDeviceSel.ListIndex, 0);
  EXPECT_EQ(panel.txtI2CAddr.Text, "44");
  EXPECT_EQ(panel.txtI2cXmitAdr.Text, "88");
}

TEST_P(PanelLoad, TheValueLabelsAreTenthsOfTheScale) {
  for (std::size_t i = 0; i <= 10; ++i) {
    EXPECT_EQ(store.Label_Left[i], std::to_string(static_cast<int>(i) * forms::CLng(store.Scale_Max / 10.0)));
  }
}

TEST_P(PanelLoad, TheChartIsTheEmptyGridAndSaved) {
  for (std::size_t i = 0; i <= 403; ++i) ASSERT_EQ(store.Trace_Y[i], 1);
  EXPECT_EQ(panel.Picture1.GetPixel(40, 5), 0);
  EXPECT_EQ(panel.Picture1.GetPixel(41, 5), 0xFFFFFF);
  for (int x = 0; x < plot_columns; ++x) {
    for (int y = 0; y < plot_rows; ++y) {
      ASSERT_EQ(store.Screen_Pixels[static_cast<std::size_t>(x)][static_cast<std::size_t>(y)],
                panel.Picture1.GetPixel(x, y));
    }
  }
  EXPECT_EQ(panel.Picture2.printed().size(), 36u);
}

TEST_P(PanelLoad, TheDataFileIsProposedBehindTheApplicationsFolder) {
  EXPECT_EQ(panel.txtFilePath.Text, program.application_folder + "/Data.txt");
  EXPECT_EQ(panel.CommonDialog2.FileName, program.application_folder + "/Data.txt");
}

// A panel that is chosen in a program that has worked already.
struct PanelLoadInAUsedStore : ::testing::TestWithParam<std::string>, TestProgram {
  const std::map<std::string, Flag Store::*> flags{
      {"AbortRequested", &Store::AbortRequested},   {"Sample_Run", &Store::Sample_Run},
      {"TriggerDone", &Store::TriggerDone},         {"PendingUpdate", &Store::PendingUpdate},
      {"PendingClearInt", &Store::PendingClearInt}, {"PendingReadRegs", &Store::PendingReadRegs},
      {"PendingWriteR0", &Store::PendingWriteR0},   {"PendingWriteR1", &Store::PendingWriteR1},
      {"PendingIntHigh", &Store::PendingIntHigh},   {"PendingIntLow", &Store::PendingIntLow}};

  void SetUp() override {
    workbench();
    for (const auto& [name, member] : flags) store.*member = -1;
    store.EventsEnabled = 0;
    store.SingleReading = 0;
    store.I2C_WrAdr = 0x12;
    store.I2C_RdAdr = 0x13;
    store.I2C_RdCnt = 4;
    store.I2C_Pipe = 1;
    store.Board_Rev = 1;
    store.Scale_Min = -7;
    store.Trace_Y.fill(9);
  }
  bool loading() const { return store.Active_Form && store.Active_Form->name() == GetParam(); }
};

TEST_P(PanelLoadInAUsedStore, NoFlagOfTheRunBeforeIsLeft) {
  choose_panel(*this, GetParam());
  for (const auto& [name, member] : flags) EXPECT_EQ(store.*member, 0) << name;
  EXPECT_EQ(store.EventsEnabled, -1);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x89);
  EXPECT_EQ(store.I2C_RdCnt, 2);
  EXPECT_EQ(store.I2C_Pipe, 2);
  EXPECT_EQ(store.Board_Rev, 2);
  EXPECT_EQ(store.Scale_Min, 0);
  EXPECT_EQ(store.Trace_Y[403], 1);
}

// Nothing that runs while the panel loads takes a loop of another panel for its own.
TEST_P(PanelLoadInAUsedStore, TheLoopsAreOffBeforeItsFirstYieldAndAfterIt) {
  int seen = 0;
  at_yield([&] { return loading(); },
           [&] {
             ++seen;
             EXPECT_EQ(store.Sample_Run, 0);
             EXPECT_EQ(store.AbortRequested, 0);
             EXPECT_EQ(store.I2C_WrAdr, 0x88);
             EXPECT_EQ(store.I2C_RdAdr, 0x89);
             EXPECT_EQ(store.I2C_Pipe, 2);
             EXPECT_EQ(store.Board_Rev, 2);
             auto* attached = dynamic_cast<forms::Shape*>(store.Active_Form->find("ShpAttach"));
             ASSERT_NE(attached, nullptr);
             EXPECT_EQ(attached->FillColor.get(), forms::QBColor(10));
             store.Sample_Run = -1;
             store.TriggerDone = -1;
           });
  choose_panel(*this, GetParam());
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_EQ(store.TriggerDone, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, PanelLoad, ::testing::ValuesIn(every_panel()), panel_name);
INSTANTIATE_TEST_SUITE_P(Each, PanelLoadInAUsedStore, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
