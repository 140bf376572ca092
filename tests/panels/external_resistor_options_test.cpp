// The options of the KVT71338 panel: what each puts on the bus and into the boxes, idle and in a running
// loop.
#include "support/kvt71338_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

using Kvt71338Options = Kvt71338;

struct Option {
  const char* control;
  int index;
  int value;        // of the command register then
  bool pending_r0;  // in a loop
  bool pending_r1;
};
constexpr Option options[]{
    {"OptPwr", 0, 0x04, true, false},     {"OptPwr", 1, 0x84, true, false},
    {"OptMeasQty", 0, 0x44, true, true},  {"OptMeasQty", 1, 0x04, true, true},
    {"OptMeasure", 1, 0x04, true, false}, {"OptMeasure", 2, 0x24, true, false},
    {"OptITime", 0, 0x00, true, false},   {"OptITime", 1, 0x04, true, false},
    {"OptITime", 2, 0x08, true, false},   {"OptITime", 3, 0x0C, true, false},
    {"OptITime", 4, 0x10, true, false},   {"OptITime", 5, 0x14, true, false},
    {"OptGain", 0, 0x04, false, true},    {"OptGain", 1, 0x05, false, true},
    {"OptGain", 2, 0x06, false, true},    {"OptGain", 3, 0x07, false, true},
};

forms::Control& find(frmKVT71338& panel, const Option& option) {
  return *panel.find(option.control, option.index);
}

TEST_F(Kvt71338Options, IdleEachWritesTheCommandRegisterAndReadsBack) {
  for (const Option& option : options) {
    SCOPED_TRACE(std::string(option.control) + " " + std::to_string(option.index));
    open_anew();
    click(find(*panel, option));
    EXPECT_EQ(sent(), written(option.value));
    EXPECT_EQ(box(), forms::Hex2(option.value));
    EXPECT_EQ(panel->txtRegRd(0).Text, forms::Hex2(option.value));
    EXPECT_EQ(board.register_value(0), option.value);
    EXPECT_EQ(store.RegImage[0], option.value);
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_EQ(store.PendingWriteR0, 0);
    EXPECT_EQ(store.PendingWriteR1, 0);
    EXPECT_TRUE(user.errors.empty());
  }
}

// The loop looks at the flag of the range alone: without it a change stays in the box.
TEST_F(Kvt71338Options, InALoopEachIsLeftToTheLoop) {
  for (const Option& option : options) {
    SCOPED_TRACE(std::string(option.control) + " " + std::to_string(option.index));
    open_anew();
    make_ready();
    const int value = (option.value & ~0xC0) | (store.RegImage[0] & 0xC0);
    const int wanted = std::string_view(option.control) == "OptPwr"       ? option.value | 0x40
                       : std::string_view(option.control) == "OptMeasQty" ? option.value | 0x80
                                                                          : value;
    collect(12, [&] {
      forget_traffic();
      forms::user::click(find(*panel, option));
      EXPECT_TRUE(sent().empty());
      EXPECT_EQ(box(), forms::Hex2(wanted));
      EXPECT_EQ(store.PendingUpdate, -1);
      EXPECT_EQ(store.PendingWriteR0, flag(option.pending_r0));
      EXPECT_EQ(store.PendingWriteR1, flag(option.pending_r1));
      panel->ChkOneShot.Value = 0;
      for (const int i : {0, 1}) panel->ChkSync(i).Value = 0;
    });
    EXPECT_EQ(writes(), option.pending_r1 ? ByteLists({{0, 0x88, 0, wanted}}) : ByteLists{});
    EXPECT_EQ(store.PendingUpdate, 0);
    EXPECT_EQ(store.PendingWriteR1, flag(option.pending_r1));
    EXPECT_EQ(store.PendingWriteR0, flag(option.pending_r0 && !option.pending_r1));
    EXPECT_TRUE(user.errors.empty());
  }
}

// Once a range was chosen in a collection, every later change brings the write with it.
TEST_F(Kvt71338Options, TheFlagOfTheRangeStays) {
  make_ready();
  collect(12, [&] { forms::user::click(panel->OptGain(1)); });
  EXPECT_EQ(store.PendingWriteR1, -1);
  forget_traffic();
  collect(12, [&] {
    forget_traffic();
    forms::user::click(panel->OptITime(2));
  });
  const ByteLists out = sent();
  const auto write = std::ranges::find(out, (std::vector{0, 0x88, 0, 0xC9}));
  ASSERT_NE(write, out.end());
  EXPECT_EQ(*(write + 1), (std::vector{1, 0x89, 0}));  // and it reads the register back
  EXPECT_EQ(store.PendingWriteR0, 0);
  open_anew();
  EXPECT_EQ(store.PendingWriteR1, 0);
}

// --- how it has loaded ---

TEST_F(Kvt71338Options, LoadsAtTwelveBitsWithVisibleLightAndCompact) {
  click(panel->calculator.OptREXT(2));
  click(panel->OptGain(2));
  program.forms.unload(*panel, 0);
  forget_traffic();
  panel = &program.forms.touch<frmKVT71338>();
  EXPECT_EQ(sent(), joined({written(0x00), written(0x04), written(0x04)}));
  EXPECT_EQ(panel->Caption, "KVT71338  Ambient Light Sensor Evaluation Software");
  EXPECT_EQ(box(), "04");
  EXPECT_EQ(store.RegImage[2], 0xFF);
  EXPECT_EQ(store.RextOhms, 500000);
  EXPECT_EQ(store.FullCount, 4095);
  EXPECT_EQ(store.RangeIndex, 0);
  EXPECT_EQ(store.LuxMode, -1);
  EXPECT_EQ(store.ReadAdc, -1);
  EXPECT_EQ(store.ReadTimeBase, 0);
  EXPECT_EQ(store.LayoutCompact, -1);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.GraphUnit1, "Lux");
  EXPECT_EQ(store.GraphUnit2, "AD Cnt");
  EXPECT_EQ(panel->txtInterval.Text, "7");
  EXPECT_EQ(store.IntervalMs, 100);
  EXPECT_EQ(store.Label_Time[10], "40.00");
  EXPECT_EQ(panel->txtScale.Text, "1000");
  EXPECT_EQ(panel->txtScale2.Text, "4095");
  EXPECT_EQ(panel->txtScaleMin2.Text, "0");
  EXPECT_EQ(store.Scale_Max, 1001);
  EXPECT_TRUE(panel->OptGraph(0).Value);
  EXPECT_FALSE(panel->OptGraph(2).Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "ADC-Visible Light");
  EXPECT_FALSE(panel->TimerIPol.Enabled);
  EXPECT_EQ(panel->TimerIPol.Interval, 250);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Kvt71338Options, ItsCaptions) {
  const std::map<std::string, std::string> captions{{"OptPwr(0)", "Power Down"},
                                                    {"OptPwr(1)", "Enable ADC-Core"},
                                                    {"OptMeasQty(0)", "Continuous"},
                                                    {"OptMeasQty(1)", "One Shot"},
                                                    {"OptMeasure(1)", "Visible Light"},
                                                    {"OptMeasure(2)", "IR Sensing"},
                                                    {"OptITime(0)", "16"},
                                                    {"OptITime(3)", "4"},
                                                    {"OptITime(4)", "ADC Value"},
                                                    {"OptITime(5)", "Time Base"},
                                                    {"OptREXT(0)", "500k "},
                                                    {"OptREXT(1)", "250k "},
                                                    {"OptREXT(2)", "100k "},
                                                    {"OptGain(0)", "1000"},
                                                    {"OptGain(3)", "64000"},
                                                    {"OptGraph(1)", "Calculated Lux"},
                                                    {"OptGraph(2)", "Time Base Counter"},
                                                    {"OptMode(2)", "Test Comm"},
                                                    {"ChkOneShot", "Xmit One Shot Cmd"},
                                                    {"ChkSync(0)", "1st Sync"},
                                                    {"ChkSync(1)", "2nd Sync"},
                                                    {"frItime", "Integration Time"},
                                                    {"frGain", "Range - LUX Sensitivity Select"},
                                                    {"cmdSetCommand", "Write Command Register b000"},
                                                    {"cmdSetControl", "Read Command Register b000"},
                                                    {"cmdRead_All", "Read Regs b000-011"},
                                                    {"cmdRead_ADC", "Read ADC "},
                                                    {"cmdReadTB", "Read T.B. Counter"},
                                                    {"cmdSync", "Send Sync"},
                                                    {"lblSync", "Sync &&h80"},
                                                    {"Label16", "Time Base Counter"}};
  const WordsOfControls words = words_of(*panel);
  for (const auto& [name, caption] : captions) {
    ASSERT_TRUE(words.contains(name)) << name;
    EXPECT_EQ(words.at(name).caption, caption) << name;
  }
  EXPECT_EQ(panel->cmdSync.ToolTipText, "Send Start /Stop Integration to ADC. Used when in External Timing");
  EXPECT_FALSE(panel->OptMode.has(0));
  EXPECT_FALSE(panel->txtRegHex.has(1));
  EXPECT_FALSE(panel->txtSampleByte.has(5));
  EXPECT_EQ(panel->txtOneShotDelay.Text, "5");
  EXPECT_EQ(panel->txtDelaySync(0).Text, "5");
  EXPECT_EQ(panel->txtDelaySync(1).Text, "5");
  EXPECT_EQ(panel->calculator.txtRREF.Text, "500000");
}

// --- the integration time ---

struct IntegrationTime {
  int index;
  const char* full_count_text;
  std::int32_t full_count;
  const char* interval;
  const char* integration_ms;
  const char* scale;  // of the counts
  const char* step;   // of the right-hand labels
};
constexpr IntegrationTime integration_times[]{
    {0, "65535", 65535, "100", "100.053", "65535", "6553"},
    {1, "4095", 4095, "7", "6.252", "4095", "409"},
    {2, "255", 255, "2", ".389", "255", "25"},
    {3, "15", 15, "2", ".023", "15", "1"},
    {4, "TB", 65535, "55", "100.053", "65535", "6553"},
    {5, "TB", 0, "55", ".000", "0", "0"},
};

TEST_F(Kvt71338Options, TheIntegrationTimeSetsCountsIntervalAndScales) {
  for (const IntegrationTime& time : integration_times) {
    SCOPED_TRACE(time.index);
    panel->txtInterval.Text = "55";
    store.GraphUnit1 = store.GraphUnit2 = "Scaled";
    click(panel->OptITime(time.index));
    EXPECT_EQ(panel->calculator.txt2N.Text, time.full_count_text);
    EXPECT_EQ(store.FullCount, time.full_count);
    EXPECT_EQ(panel->txtInterval.Text, time.interval);
    EXPECT_EQ(panel->calculator.txtClockCounts2.Text,
              time.full_count == 0 ? "" : std::to_string(time.full_count));
    EXPECT_EQ(panel->calculator.txtCalcITIme.Text, time.integration_ms);
    EXPECT_EQ(panel->txtScale2.Text, time.scale);
    EXPECT_EQ(panel->txtScale.Text, "1000");
    EXPECT_EQ(store.Scale_Max, 1001);
    EXPECT_EQ(store.Label_Right[0], "0");
    EXPECT_EQ(store.Label_Right[1], time.step);
    EXPECT_EQ(store.Label_Right[10], std::to_string(10 * std::stoi(time.step)));
    EXPECT_EQ(store.Label_Left[10], "1000");  // by the re-scale at the end
    EXPECT_EQ(store.GraphUnit1, "Lux");
    EXPECT_EQ(store.GraphUnit2, "AD Cnt");
  }
}

TEST_F(Kvt71338Options, UnderInfraredBothScalesAreCounts) {
  click(panel->OptMeasure(2));
  for (const IntegrationTime& time : integration_times) {
    SCOPED_TRACE(time.index);
    click(panel->OptITime(time.index));
    EXPECT_EQ(panel->txtScale.Text, time.scale);
    EXPECT_EQ(panel->txtScale2.Text, time.scale);
    EXPECT_EQ(store.Scale_Max, time.full_count + 1);
    EXPECT_EQ(store.GraphUnit1, "AD Cnt");
    EXPECT_EQ(store.GraphUnit2, "AD Cnt");
  }
}

TEST_F(Kvt71338Options, ExternalTimingBringsTheSyncs) {
  for (const int index : {4, 5, 0}) {
    SCOPED_TRACE(index);
    click(panel->OptITime(index));
    const bool external = index >= 4;
    EXPECT_EQ(store.SingleReading, flag(!external));
    EXPECT_EQ(panel->ChkExternalTime(2).Value, external);
    for (const int i : {0, 1}) {
      EXPECT_EQ(panel->ChkSync(i).Visible, external);
      EXPECT_EQ(panel->ChkSync(i).Value, external);
      EXPECT_EQ(panel->txtDelaySync(i).Visible, external);
    }
    EXPECT_EQ(store.ReadTimeBase, flag(index == 5));
    EXPECT_EQ(store.ReadAdc, flag(index != 5));
    EXPECT_EQ(panel->cmdRead_ADC.Enabled, index != 5);
    EXPECT_EQ(panel->cmdReadTB.Enabled, index == 5);
    EXPECT_EQ(panel->txtTimeBaseReading.Visible, index == 5);
    EXPECT_EQ(panel->Label16.Visible, index == 5);
    EXPECT_EQ(panel->OptGraph(2).Visible, index == 5);
  }
}

TEST_F(Kvt71338Options, TheHostsTimingLeavesTheTimeBaseGraphAsItIs) {
  click(panel->OptITime(5));
  click(panel->OptITime(4));
  EXPECT_TRUE(panel->OptGraph(2).Visible);
  EXPECT_FALSE(panel->txtTimeBaseReading.Visible);
  EXPECT_EQ(store.ReadAdc, -1);
}

TEST_F(Kvt71338Options, InACollectionTheHostsTimingLeavesWhatTriggeredReadingsShow) {
  make_ready();
  click(panel->OptITime(5));
  collect(3, [&] {
    forms::user::click(panel->OptITime(4));
    EXPECT_EQ(store.ReadTimeBase, -1);
    EXPECT_EQ(store.ReadAdc, 0);
    EXPECT_FALSE(panel->cmdRead_ADC.Enabled);
    forms::user::click(panel->OptITime(1));
    EXPECT_EQ(store.ReadAdc, -1);
    EXPECT_TRUE(panel->cmdRead_ADC.Enabled);
  });
}

TEST_F(Kvt71338Options, TheTimeBaseKeepsTheLastLuxOfACount) {
  click(panel->OptITime(0));
  const double factor = store.LuxFactor;
  EXPECT_EQ(factor, 0.0152590218966964);
  click(panel->OptITime(5));
  EXPECT_EQ(store.FullCount, 0);
  EXPECT_EQ(store.LuxFactor, factor);
  EXPECT_EQ(panel->calculator.txtLFactor.Text, "1.52590218966964E-02");
  EXPECT_EQ(panel->calculator.txtClockCounts2.Text, "");
  EXPECT_EQ(panel->calculator.txtCalcITIme.Text, ".000");
}

// --- the range and the resistor ---

TEST_F(Kvt71338Options, TheRangeSetsTheScaleAndTheLuxOfACount) {
  click(panel->OptGain(2));
  EXPECT_EQ(store.RangeIndex, 2);
  EXPECT_EQ(store.FsrLux, 16000);
  EXPECT_EQ(panel->calculator.txtFSR.Text, "16000");
  EXPECT_EQ(panel->calculator.txtFSR2.Text, "16000");
  EXPECT_EQ(store.LuxFactor, 3.90720390720391);
  EXPECT_EQ(panel->calculator.txtLFactor.Text, "3.90720390720391");
  EXPECT_EQ(panel->txtScale.Text, "16000");
  EXPECT_EQ(store.Scale_Max, 16001);
  EXPECT_EQ(store.Label_Left[10], "16000");
  click(panel->OptMeasure(2));
  click(panel->OptGain(1));
  EXPECT_EQ(panel->txtScale.Text, "4095");
}

TEST_F(Kvt71338Options, TheResistorWidensTheRanges) {
  struct Resistor {
    int index;
    std::int32_t ohms;
    const char* khz;
    const char* period_ms;
    std::array<const char*, 4> captions;
  };
  click(panel->OptGain(1));
  for (const Resistor& resistor :
       {Resistor{1, 250000, "1310.000", ".000763", {"2000", "8000", "32000", "128000"}},
        {2, 100000, "3275.000", ".000305", {"5000", "20000", "80000", "320000"}},
        {0, 500000, "655.000", ".001527", {"1000", "4000", "16000", "64000"}}}) {
    SCOPED_TRACE(resistor.ohms);
    forget_traffic();
    click(panel->calculator.OptREXT(resistor.index));
    EXPECT_EQ(store.RextOhms, resistor.ohms);
    EXPECT_EQ(panel->calculator.txtREXT.Text, std::to_string(resistor.ohms));
    EXPECT_EQ(panel->calculator.txtRREF.Text, "500000");
    EXPECT_EQ(panel->calculator.txtFOSC_Freq.Text, resistor.khz);
    EXPECT_EQ(panel->calculator.txtFoscPeriod.Text, resistor.period_ms);
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(panel->OptGain(i).Caption, resistor.captions[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(panel->txtScale.Text, resistor.captions[1]);
    EXPECT_EQ(store.FsrLux, std::stoi(resistor.captions[1]));
    EXPECT_EQ(sent(), written(0x05));  // the range's handler runs
  }
}

TEST_F(Kvt71338Options, ACalculatorWithoutAResistorTakesTheReference) {
  store.RextOhms = 0;
  click(panel->OptITime(0));
  EXPECT_EQ(store.RextOhms, 500000);
  store.RextOhms = 0;
  click(panel->calculator.Frame7);
  EXPECT_EQ(store.RextOhms, 500000);
}

// The range's caption has the resistor's factor already: the measurement's scale counts it twice.
TEST_F(Kvt71338Options, TheMeasurementCountsTheResistorTwice) {
  click(panel->calculator.OptREXT(1));
  click(panel->OptMeasure(1));
  EXPECT_EQ(panel->txtScale.Text, "4000");
  click(panel->OptITime(1));
  EXPECT_EQ(panel->txtScale.Text, "2000");
}

// --- the measurement ---

TEST_F(Kvt71338Options, InfraredHasNoLux) {
  click(panel->OptMeasure(2));
  EXPECT_EQ(store.LuxMode, 0);
  EXPECT_FALSE(panel->txtCaclulated_Lux.Visible);
  EXPECT_FALSE(panel->Label28.Visible);
  EXPECT_FALSE(panel->OptGraph(1).Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "ADC-IR");
  EXPECT_EQ(store.GraphUnit1, "AD Cnt");
  EXPECT_EQ(store.GraphUnit2, "AD Cnt");
  EXPECT_EQ(panel->txtScale.Text, "4095");
  EXPECT_EQ(store.Scale_Max, 4096);
  EXPECT_EQ(store.Label_Left[1], "409");
  click(panel->OptMeasure(1));
  EXPECT_EQ(store.LuxMode, -1);
  EXPECT_TRUE(panel->txtCaclulated_Lux.Visible);
  EXPECT_TRUE(panel->Label28.Visible);
  EXPECT_TRUE(panel->OptGraph(1).Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "ADC-Visible Light");
  EXPECT_EQ(store.GraphUnit1, "Lux");
  EXPECT_EQ(store.GraphUnit2, "AD Cnt");
  EXPECT_EQ(panel->txtScale.Text, "1000");
  // Not re-scaled: these are steps of the counts.
  EXPECT_EQ(store.Scale_Max, 4096);
  EXPECT_EQ(store.Label_Left[10], "4090");
}

TEST_F(Kvt71338Options, OneShotBringsItsCommand) {
  click(panel->OptMeasQty(0));
  EXPECT_EQ(store.OneShotMode, 0);
  EXPECT_FALSE(panel->ChkOneShot.Visible);
  EXPECT_EQ(panel->ChkOneShot.Value, 0);
  EXPECT_FALSE(panel->txtOneShotDelay.Visible);
  EXPECT_EQ(panel->txtOneShotDelay.Text, "");
  panel->txtOneShotDelay.Text = "9";
  click(panel->OptMeasQty(1));
  EXPECT_EQ(store.OneShotMode, -1);
  EXPECT_TRUE(panel->ChkOneShot.Visible);
  EXPECT_EQ(panel->ChkOneShot.Value, 1);
  EXPECT_TRUE(panel->txtOneShotDelay.Visible);
  EXPECT_EQ(panel->txtOneShotDelay.Text, "9");
}

TEST_F(Kvt71338Options, AFieldLeavesTheOthersAlone) {
  click(panel->OptPwr(1));
  click(panel->OptMeasQty(0));
  click(panel->OptMeasure(2));
  click(panel->OptITime(5));
  click(panel->OptGain(3));
  EXPECT_EQ(box(), "F7");
  click(panel->OptITime(2));
  EXPECT_EQ(box(), "EB");
  click(panel->OptGain(1));
  EXPECT_EQ(box(), "E9");
  click(panel->OptMeasure(1));
  EXPECT_EQ(box(), "C9");
}

// --- graph, communications test, devices ---

TEST_F(Kvt71338Options, TheGraphChoosesItsScaleAndRestoresTheReadCount) {
  panel->txtScale2.Text = "300.7";
  panel->txtScale.Text = "800.9";
  for (const auto& [index, scale] : {std::pair{0, 300}, {1, 800}, {2, 800}}) {
    store.I2C_RdCnt = 9;
    click(panel->OptGraph(index));
    EXPECT_EQ(store.Scale_Max, scale);
    EXPECT_EQ(store.I2C_RdCnt, 2);
  }
  store.SingleReading = 0;
  click(panel->OptGraph(0));
  EXPECT_EQ(store.I2C_RdCnt, 4);
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(Kvt71338Options, TheCommunicationsTestAsksForTwoBytes) {
  const int led = form<frmGPIO>().ChKLedData(0).Value;
  click(panel->OptMode(2));
  EXPECT_EQ(form<frmGPIO>().ChKLedData(0).Value, 1 - led);
  EXPECT_EQ(sent(), written(0x04));
  EXPECT_EQ(store.BridgeStatus, 2);
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
  EXPECT_TRUE(panel->LblCommTest.Visible);
  EXPECT_FALSE(panel->OptMode(2).Value);
  board.set_sensor_answers(false);
  click(panel->OptMode(2));
  EXPECT_EQ(store.BridgeStatus, 0);
  EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  EXPECT_FALSE(panel->OptMode(2).Value);
}

// In a loop it shows what the last read-back said.
TEST_F(Kvt71338Options, InALoopTheCommunicationsTestIsOfTheLastReadBack) {
  make_ready();
  collect(12, [&] {
    forget_traffic();
    forms::user::click(panel->OptMode(2));
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(panel->LblCommTest.Caption, "Good");
    EXPECT_EQ(store.PendingWriteR0, -1);
    store.BridgeStatus = 1;
    forms::user::click(panel->OptMode(2));
    EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  });
}

TEST_F(Kvt71338Options, TheDeviceListHasTwoAddresses) {
  ASSERT_EQ(panel->LstDeviceSel.ListCount(), 2);
  EXPECT_EQ(panel->LstDeviceSel.List(0), "KVT71338 ADR-44");
  EXPECT_EQ(panel->LstDeviceSel.List(1), "KVT71338 ADR-45");
  for (const auto& [row, address, text] : {std::tuple{1, 0x8A, "45"}, {0, 0x88, "44"}}) {
    choose(panel->LstDeviceSel, row);
    EXPECT_EQ(store.I2C_WrAdr, address);
    EXPECT_EQ(store.I2C_RdAdr, address + 1);
    EXPECT_EQ(panel->txtI2CAddr.Text, text);
    EXPECT_EQ(panel->txtI2cXmitAdr.Text, forms::Hex(address));
  }
  EXPECT_TRUE(recorder.packets.empty());
}

// --- the two layouts ---

TEST_F(Kvt71338Options, ADoubleClickTurnsBetweenTheLayouts) {
  const std::vector<std::string> coming_and_going{"FrmDevice",     "Frame2",        "Frame3",
                                                  "Frame5",        "Frame7",        "Frame6",
                                                  "cmdSetCommand", "cmdSetControl", "cmdReadTB",
                                                  "frmTimeBase",   "frmDataRecord", "ChkExternalTime(2)",
                                                  "cmdRead_ADC",   "cmdSync",       "frmGraphSelect",
                                                  "OptITime(2)",   "OptITime(3)"};
  const std::vector<std::string> only_going{"cmdSetIntHigh", "cmdSetIntLow", "cmdRead_All",
                                            "txtTimeBaseReading", "Label16"};
  const auto expect = [&](const std::vector<std::string>& names, bool visible) {
    std::size_t found = 0;
    for (const forms::Control* control : panel->controls()) {
      if (std::ranges::find(names, control->full_name()) == names.end()) continue;
      ++found;
      EXPECT_EQ(control->Visible, visible) << control->full_name();
    }
    EXPECT_EQ(found, names.size());
  };
  const auto toggle = [&] { program.runtime.dispatch([&] { forms::user::double_click(panel->Label13); }); };
  expect(coming_and_going, false);
  expect(only_going, false);
  toggle();
  EXPECT_EQ(store.LayoutCompact, 0);
  expect(coming_and_going, true);
  expect(only_going, false);
  click(panel->OptITime(5));
  for (forms::Control* hidden : std::initializer_list<forms::Control*>{
           &panel->cmdRead_All, &panel->cmdSetIntHigh, &panel->cmdSetIntLow}) {
    hidden->Visible = true;
  }
  toggle();
  EXPECT_EQ(store.LayoutCompact, -1);
  expect(coming_and_going, false);
  expect(only_going, false);
  toggle();
  expect(only_going, false);
  toggle();
  // What the short layout was given meanwhile stays.
  click(panel->OptITime(5));
  toggle();
  EXPECT_TRUE(panel->Label16.Visible);
  EXPECT_TRUE(panel->txtTimeBaseReading.Visible);
  EXPECT_EQ(panel->Label13.Caption, "USB Comm");
}

TEST_F(Kvt71338Options, ExitTakesThePanelsOfTheEightRegistersWithIt) {
  EXPECT_EQ(
      std::vector<std::string>(panel->model.unloaded_panels.begin(), panel->model.unloaded_panels.end()),
      (std::vector<std::string>{"frmKVT71356", "frmKVT71344"}));
  EXPECT_TRUE(ends([&] { forms::user::click(panel->Command4); }));
}

}  // namespace
}  // namespace varzelin::testing
