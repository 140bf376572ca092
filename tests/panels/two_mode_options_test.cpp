// The option controls of the two-mode panels: what each puts on the bus and into the boxes, idle and in a
// running loop.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

// One option, clicked on a panel as it has loaded: register 0 is 0x00, register 1 is 0x70.
//
// Idle, by letter: T reads the time base, C writes the command and K the control register; behind each write
// both are read back. In a loop, which measures infrared (0xC0), nothing goes out at once; the loop writes
// what is pending, control before command.
struct OptionRow {
  const char* control;
  int index;
  int register_number;  // whose field it is
  int value;            // of that register then
  const char* idle;
  const char* pending;
  int value_in_loop;
};

constexpr OptionRow rows[]{
    {"OptGain", 0, 1, 0x70, "KC", "KC", 0x70},
    {"OptGain", 1, 1, 0x71, "KC", "KC", 0x71},
    {"OptGain", 2, 1, 0x72, "KC", "KC", 0x72},
    {"OptGain", 3, 1, 0x73, "KC", "KC", 0x73},
    // A width goes back to internal timing, and that to the converter: each writes on its own.
    {"OptITime", 0, 1, 0x70, "TCCTCK", "KC", 0x70},
    {"OptITime", 1, 1, 0x74, "TCCTCK", "KC", 0x74},
    {"OptITime", 2, 1, 0x78, "TCCTCK", "KC", 0x78},
    {"OptITime", 3, 1, 0x7C, "TCCTCK", "KC", 0x7C},
    {"OptMFreq", 0, 1, 0x40, "KC", "KC", 0x40},
    {"OptMFreq", 1, 1, 0x50, "KC", "KC", 0x50},
    {"OptMFreq", 2, 1, 0x60, "KC", "KC", 0x60},
    {"OptMFreq", 3, 1, 0x70, "KC", "KC", 0x70},
    {"OptPSrc", 0, 1, 0x30, "KC", "KC", 0x30},
    {"OptPSrc", 1, 1, 0x70, "KC", "KC", 0x70},
    {"OptPSrc", 2, 1, 0xB0, "KC", "KC", 0xB0},
    {"OptPSrc", 3, 1, 0xF0, "KC", "KC", 0xF0},
    {"OptIRMode", 0, 0, 0x00, "C", "C", 0xC0},
    {"OptIRMode", 1, 0, 0x01, "C", "C", 0xC1},
    {"OptMeasMode", 0, 0, 0x00, "TC", "C", 0xC0},
    {"OptMeasMode", 1, 0, 0x08, "TC", "C", 0xC8},
    {"OptExtTime", 0, 0, 0x00, "TCC", "C", 0xC0},
    {"OptExtTime", 1, 0, 0x10, "C", "C", 0xD0},
    {"OptMeasure", 0, 0, 0x00, "C", "C", 0x00},
    {"OptMeasure", 1, 0, 0x20, "C", "C", 0x20},
    {"OptMeasure", 2, 0, 0x40, "C", "C", 0x40},
    {"OptMeasure", 3, 0, 0x60, "C", "C", 0x60},
    {"OptMeasure", 4, 0, 0x60, "C", "C", 0x60},
    {"OptMeasure", 5, 0, 0xA0, "C", "C", 0xA0},
    {"OptMeasure", 6, 0, 0xC0, "C", "C", 0xC0},
    {"OptMeasure", 7, 0, 0xE0, "C", "C", 0xE0},
    {"OptMeasure", 8, 0, 0x60, "C", "C", 0x60},
    {"OptMeasure", 9, 0, 0x60, "C", "C", 0x60},
};

struct TwoModeOptions : TwoModeTest {
  // Calls `test` for each option that the model has, on a panel as it has loaded.
  void for_each(const std::function<void(const OptionRow&, forms::Control&)>& test) {
    int missing = 0;
    for (const OptionRow& row : rows) {
      SCOPED_TRACE(std::string(row.control) + " " + std::to_string(row.index));
      forms::Control* control = panel->find(row.control, row.index);
      if (!control) {
        ++missing;
        EXPECT_TRUE(std::string(row.control) == "OptMeasure" && (row.index == 1 || row.index == 5));
        continue;
      }
      test(row, *control);
      EXPECT_TRUE(user.errors.empty());
      program.forms.unload(*panel, 0);
      open(GetParam());
    }
    EXPECT_EQ(missing, GetParam() == "frmKVT71376" ? 2 : 0);
  }
};

TEST_P(TwoModeOptions, IdleEachWritesAtOnceAndReadsBack) {
  for_each([&](const OptionRow& row, forms::Control& control) {
    click(control);
    const int command = row.register_number == 0 ? row.value : 0x00;
    const int configuration = row.register_number == 1 ? row.value : 0x70;
    ByteLists expected;
    for (const char step : std::string_view(row.idle)) {
      const ByteLists next = step == 'T'   ? ByteLists{{2, 0x89, 4}}
                             : step == 'C' ? written(0, command)
                                           : written(1, configuration);
      expected.insert(expected.end(), next.begin(), next.end());
    }
    EXPECT_EQ(sent(), expected);
    for (const auto& [number, value] : {std::pair{0, command}, std::pair{1, configuration}}) {
      EXPECT_EQ(box(number), forms::Hex2(value));
      EXPECT_EQ(panel->txtRegRd(number).Text, forms::Hex2(value));
      EXPECT_EQ(board.register_value(static_cast<std::uint8_t>(number)), value);
      EXPECT_EQ(store.RegImage[static_cast<std::size_t>(number)], value);
    }
    EXPECT_EQ(store.PendingUpdate, 0);
    EXPECT_EQ(store.Usb_Open, 0);
  });
}

TEST_P(TwoModeOptions, InALoopEachIsLeftToTheLoop) {
  for_each([&](const OptionRow& row, forms::Control& control) {
    select(measure::infrared);
    ByteLists at_once;
    const std::string_view pending = row.pending;
    collect_and(12, [&] {
      forget_traffic();
      forms::user::click(control);
      at_once = sent();
      EXPECT_EQ(box(row.register_number), forms::Hex2(row.value_in_loop));
      EXPECT_EQ(store.PendingUpdate, -1);
      EXPECT_EQ(store.PendingWriteR0, -1);
      EXPECT_EQ(store.PendingWriteR1, flag(pending == "KC"));
    });
    EXPECT_TRUE(at_once.empty());
    ByteLists expected;
    if (pending == "KC") expected.push_back(write(1, row.value_in_loop));
    expected.push_back(write(0, row.register_number == 0 ? row.value_in_loop : 0xC0));
    ByteLists first = writes();
    ASSERT_GE(first.size(), expected.size());
    first.resize(expected.size());
    EXPECT_EQ(first, expected);
    // And that once, where the loop has nothing of its own to write.
    if (row.register_number == 1) {
      EXPECT_EQ(writes().size(), expected.size());
    }
    EXPECT_EQ(store.PendingWriteR0, 0);
    EXPECT_EQ(store.PendingWriteR1, 0);
    // A single conversion is commanded behind the stop, too, and its read-back left waiting.
    if (store.OneShotMode == 0) {
      EXPECT_EQ(store.PendingUpdate, 0);
    }
  });
}

// A stop that isn't served yet defers as well.
TEST_P(TwoModeOptions, BehindAStopEachIsLeftWaiting) {
  for_each([&](const OptionRow& row, forms::Control& control) {
    store.AbortRequested = -1;
    forget_traffic();
    click(control);
    EXPECT_TRUE(writes().empty());
    EXPECT_EQ(box(row.register_number), forms::Hex2(row.value));
    EXPECT_EQ(store.PendingUpdate, -1);
    EXPECT_EQ(store.PendingWriteR0, -1);
    EXPECT_EQ(store.PendingWriteR1, flag(row.pending == std::string_view("KC")));
    store.AbortRequested = 0;
  });
}

// --- fields and their neighbours ---

TEST_P(TwoModeOptions, AFieldLeavesTheOthersOfItsRegisterAlone) {
  click(panel->OptPSrc(2));
  click(panel->OptMFreq(1));
  click(panel->OptITime(1));
  click(panel->OptGain(3));
  EXPECT_EQ(box(1), "97");
  click(panel->OptITime(0));
  EXPECT_EQ(box(1), "93");
  click(panel->OptGain(0));
  click(panel->OptMFreq(0));
  EXPECT_EQ(box(1), "80");
}

TEST_P(TwoModeOptions, AnOperationKeepsTimingAndTimeBaseAndDropsTheScheme) {
  enter_text(panel->txtRegHex(0), "1f");
  click(panel->OptMeasure(measure::infrared));
  EXPECT_EQ(box(0), "DE");
  scheme1();
  EXPECT_EQ(box(0), "DF");
  click(panel->OptMeasure(measure::infrared_once));
  EXPECT_EQ(box(0), "5E");
  click(panel->OptMeasure(measure::proximity_once));
  EXPECT_EQ(box(0), "7F");
}

// The write takes the byte from the box.
TEST_P(TwoModeOptions, AnOptionOfTheOtherRegisterWritesWhatTheBoxesShow) {
  panel->txtRegHex(0).Text = "4";
  click(panel->OptGain(1));
  EXPECT_EQ(sent(), joined({written(1, 0x71), written(0, 0x04)}));
  EXPECT_EQ(store.RegImage[0], 0x04);
}

// --- what goes with them ---

TEST_P(TwoModeOptions, TheRangeIsKeptTwiceAndItsFactorIsOne) {
  for (const int position : {3, 0, 2, 1}) {
    store.GainMultiplier = 9;
    panel->lblKfactor.Caption = "9";
    click(panel->OptGain(position));
    EXPECT_EQ(store.GainIndex, position);
    EXPECT_EQ(store.RangeIndex, position);
    EXPECT_EQ(store.GainMultiplier, 1);
    EXPECT_EQ(panel->lblKfactor.Caption, "1");
  }
}

TEST_P(TwoModeOptions, TheCurrentIsKept) {
  EXPECT_EQ(store.IrdrIndex, 1);
  for (const int position : {3, 0, 2, 1}) {
    click(panel->OptPSrc(position));
    EXPECT_EQ(store.IrdrIndex, position);
  }
}

TEST_P(TwoModeOptions, TheMeasuredThing) {
  click(panel->OptMeasMode(1));
  EXPECT_EQ(panel->Label3(0).Caption, "Time Base");
  EXPECT_EQ(panel->OptGraph(0).Caption, "TB Count");
  EXPECT_EQ(store.SingleReading, 0);
  EXPECT_EQ(store.ReadAdc, 0);
  EXPECT_EQ(store.ReadTimeBase, -1);
  click(panel->OptMeasMode(0));
  EXPECT_EQ(panel->Label3(0).Caption, "ADC");
  EXPECT_EQ(panel->OptGraph(0).Caption, "ADC Count");
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.ReadAdc, -1);
  EXPECT_EQ(store.ReadTimeBase, 0);
}

TEST_P(TwoModeOptions, InALoopTheReadingStaysWhatItBeganWith) {
  select(measure::infrared);
  collect_and(3, [&] {
    forget_traffic();
    forms::user::click(panel->OptMeasMode(1));
    EXPECT_EQ(store.ReadAdc, -1);
    EXPECT_EQ(store.ReadTimeBase, 0);
    EXPECT_EQ(store.SingleReading, 0);
  });
  EXPECT_EQ(std::ranges::count(sent(), std::vector<int>{2, 0x89, 4}), 0);
}

TEST_P(TwoModeOptions, ExternalTimingShowsItsStepsAndInternalTimingHidesThem) {
  const auto expect_steps = [&](bool shown) {
    for (const int step : {0, 1}) {
      EXPECT_EQ(panel->ChkEOC1(step).Visible, shown);
      EXPECT_EQ(panel->txtSync1Delay(step).Visible, shown);
    }
  };
  expect_steps(false);
  click(panel->OptMeasMode(1));
  click(panel->OptExtTime(1));
  expect_steps(true);
  EXPECT_EQ(store.ExtTiming, -1);
  EXPECT_EQ(store.SingleReading, 0);
  EXPECT_EQ(box(0), "18");
  click(panel->OptExtTime(0));
  expect_steps(false);
  EXPECT_EQ(store.ExtTiming, 0);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_TRUE(panel->OptMeasMode(0).Value);
  EXPECT_EQ(panel->Label3(0).Caption, "ADC");
  EXPECT_EQ(box(0), "00");
}

TEST_P(TwoModeOptions, AWidthGoesBackToInternalTiming) {
  click(panel->OptExtTime(1));
  click(panel->OptITime(1));
  EXPECT_TRUE(panel->OptExtTime(0).Value);
  EXPECT_EQ(store.ExtTiming, 0);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_FALSE(panel->ChkEOC1(0).Visible);
  EXPECT_EQ(box(0), "00");
}

TEST_P(TwoModeOptions, TheGraphOptionOnlyRestoresTheReadCount) {
  store.I2C_RdCnt = 9;
  click(panel->OptGraph(0));
  EXPECT_EQ(store.I2C_RdCnt, 2);
  store.SingleReading = 0;
  click(panel->OptGraph(0));
  EXPECT_EQ(store.I2C_RdCnt, 4);
  EXPECT_TRUE(recorder.packets.empty());
}

ON_BOTH_MODELS(TwoModeOptions);

}  // namespace
}  // namespace varzelin::testing
