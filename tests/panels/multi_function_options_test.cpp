// The options of the multi-function panels: what each puts on the bus and what it leaves to a loop, and which
// texts and flags go with it.
#include "support/multi_function_fixture.h"

namespace varzelin::testing {
namespace {

using MultiFunctionOptions = EachMultiFunctionPanel;
using Kvt71385Options = Kvt71385Panel;

// One option, clicked on a panel as it has loaded: r0 is 00 and r1 is 64 then.
struct Row {
  const char* control;
  int index;
  const char* idle;     // what goes out while no loop runs
  const char* pending;  // what is left to a loop
};
// Once for the scheme that an operation begins with, once for its own, once more for light; the test register
// before the operation, also in a loop. Proximity selects its scheme, and runs the handler of it again.
constexpr Row operations[]{
    {"OptMeasure", 0, "r1=64 r1=64 r8=00 r0=00", "Update R0 R1"},
    {"OptMeasure", 1, "r1=64 r1=64 r8=00 r1=64 r0=20", "Update R0 R1"},
    {"OptMeasure", 2, "r1=64 r1=64 r8=00 r0=40", "Update R0 R1"},
    {"OptMeasure", 3, "r1=64 r1=E4 r8=00 r1=E4 r0=61", "Update R0 R1"},
    {"OptMeasure", 4, "r1=64 r1=64 r8=00 r0=60", "Update R0 R1"},
    {"OptMeasure", 5, "r1=64 r1=64 r8=00 r1=64 r0=A0", "Update R0 R1"},
    {"OptMeasure", 6, "r1=64 r1=64 r8=00 r0=C0", "Update R0 R1"},
    {"OptMeasure", 7, "r1=64 r1=E4 r8=00 r1=E4 r0=E1", "Update R0 R1"},
};
constexpr Row options[]{
    {"OptIRMode", 0, "r1=64", "Update R1"},
    {"OptIRMode", 1, "r1=E4", "Update R1"},
    {"OptITime", 0, "r0=00 r1=60", "Update R0 R1"},
    {"OptITime", 1, "r0=00 r1=64", "Update R0 R1"},
    {"OptITime", 2, "r0=00 r1=68", "Update R0 R1"},
    {"OptITime", 3, "r0=00 r1=6C", "Update R0 R1"},
    {"OptGain", 0, "r1=64 r0=00", "Update R0 R1"},
    {"OptGain", 1, "r1=65 r0=00", "Update R0 R1"},
    {"OptGain", 2, "r1=66 r0=00", "Update R0 R1"},
    {"OptGain", 3, "r1=67 r0=00", "Update R0 R1"},
    {"OptExtTime", 0, "r0=00 r0=00", "Update R0"},  // the first of the ADC, which it selects
    {"OptExtTime", 1, "r0=10", "Update R0"},
    {"OptMeasMode", 0, "r0=00", "Update R0"},
    {"OptMeasMode", 1, "r0=08", "Update R0"},
    {"OptMFreq", 0, "r1=24 r0=00", "Update R0 R1"},
    {"OptMFreq", 3, "r1=64 r0=00", "Update R0 R1"},
    {"OptPSrc", 0, "r1=74 r0=00", "Update R0 R1"},
    {"OptPSrc", 1, "r1=64 r0=00", "Update R0 R1"},
    {"OptPSrc", 2, "r1=54 r0=00", "Update R0 R1"},
    {"OptPSrc", 3, "r1=44 r0=00", "Update R0 R1"},
    {"optINTP", 0, "r1=64 r0=00", "Update R0 R1"},
    {"optINTP", 1, "r1=64 r0=01", "Update R0 R1"},
    {"optINTP", 2, "r1=64 r0=02", "Update R0 R1"},
    {"optINTP", 3, "r1=64 r0=03", "Update R0 R1"},
    {"OptGainMode", 0, "", ""},
    {"OptGainMode", 1, "", ""},
    {"OptIRDRMode", 0, "", ""},
    {"OptIRDRMode", 1, "", ""},
    {"OptTimeBase", 0, "", ""},
    {"OptTimeBase", 1, "", ""},
    {"OptGraph", 0, "", ""},
};

struct OptionsOfEach : EachMultiFunctionPanel {
  // The rows that the panel has, each on a panel anew.
  void for_each(const std::function<void(const Row&)>& check) {
    for (const std::span<const Row> table :
         {std::span<const Row>(operations), std::span<const Row>(options)}) {
      for (const Row& row : table) {
        if (!panel->find(row.control, row.index)) continue;
        SCOPED_TRACE(std::string(row.control) + " " + std::to_string(row.index));
        open_anew();
        check(row);
      }
    }
  }
  // The last value that the words give a register; `otherwise` when they give none.
  static std::string last(const Row& row, int number, const char* otherwise) {
    const std::string words = row.idle;
    const auto at = words.rfind("r" + std::to_string(number) + "=");
    return at == std::string::npos ? otherwise : words.substr(at + 3, 2);
  }
  void expect_boxes(const Row& row) {
    const std::string r0 = last(row, 0, "00");
    const std::string r1 = last(row, 1, "64");
    EXPECT_EQ(box(0), r0);
    EXPECT_EQ(box(1), r1);
    EXPECT_EQ(forms::Hex2(store.RegImage[0]), r0);
    EXPECT_EQ(forms::Hex2(store.RegImage[1]), r1);
    EXPECT_TRUE(user.errors.empty());
  }
};

TEST_P(OptionsOfEach, IdleTheyWriteAndReadBack) {
  for_each([this](const Row& row) {
    choose_option(row.control, row.index);
    EXPECT_EQ(sent(), writes(row.idle));
    expect_boxes(row);
    for (const int i : {0, 1}) {
      EXPECT_EQ(forms::Hex2(*board.register_value(static_cast<std::uint8_t>(i))), box(i));
      EXPECT_EQ(read_box(i), box(i));
    }
    EXPECT_EQ(pending(), "");
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_EQ(store.EventsEnabled, -1);
  });
}

TEST_P(OptionsOfEach, InALoopTheyAreLeftToItButForTheTestRegister) {
  for_each([this](const Row& row) {
    if (std::string_view(row.control) == "OptTimeBase") return;
    in_a_loop([&] { choose_option(row.control, row.index); });
    const bool operation = std::string_view(row.control) == "OptMeasure";
    EXPECT_EQ(sent(), writes(operation ? "r8=00" : ""));
    EXPECT_EQ(pending(), row.pending);
    expect_boxes(row);
  });
}

TEST_P(OptionsOfEach, BehindAStopTheyAreLeftToTheLoop) {
  for_each([this](const Row& row) {
    store.AbortRequested = true_flag;
    choose_option(row.control, row.index);
    EXPECT_EQ(pending(), row.pending);
  });
}

// Without events no option reaches r0 or r1; the boxes take it all the same.
TEST_P(OptionsOfEach, WithoutEventsTheyStayInTheBoxes) {
  for_each([this](const Row& row) {
    store.EventsEnabled = false_flag;
    choose_option(row.control, row.index);
    const bool operation = std::string_view(row.control) == "OptMeasure";
    EXPECT_EQ(sent(), writes(operation ? "r8=00" : ""));
    EXPECT_EQ(pending(), "");
    EXPECT_EQ(store.EventsEnabled, 0);
    expect_boxes(row);
  });
}

// The range multiplies on the panels that show light as it is, on the others it doesn't.
TEST_P(OptionsOfEach, TheRangeHasItsFactor) {
  const bool multiplies = GetParam() == "frmKVT71385" || GetParam() == "frmKVT71388";
  const std::vector<int> factors = multiplies ? std::vector{1, 4, 16, 64} : std::vector{1, 1, 1, 1};
  for (const int position : {3, 2, 1, 0}) {
    choose_option("OptGain", position);
    EXPECT_EQ(store.GainMultiplier, factors[static_cast<std::size_t>(position)]);
    EXPECT_EQ(panel->lblKfactor.Caption, std::to_string(store.GainMultiplier));
    EXPECT_EQ(store.GainIndex, position);
    EXPECT_EQ(store.RangeIndex, position);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, OptionsOfEach, ::testing::ValuesIn(multi_function_panels), panel_name);

// --- captions ---

TEST_P(MultiFunctionOptions, HaveTheirCaptions) {
  const auto captions = [this](const char* array, std::initializer_list<int> indices) {
    std::vector<std::string> result;
    for (const int i : indices) {
      result.push_back(dynamic_cast<forms::OptionButton&>(*panel->find(array, i)).Caption);
    }
    return result;
  };
  using Captions = std::vector<std::string>;
  EXPECT_EQ(captions("OptITime", {0, 1, 2, 3}), (Captions{"16", "12", "8 ", "4"}));
  EXPECT_EQ(captions("OptGain", {0, 1, 2, 3}), (Captions{"1000", "4000", "16000", "64000"}));
  EXPECT_EQ(captions("OptIRMode", {0, 1}), (Captions{"Scheme0", "Scheme1"}));
  EXPECT_EQ(captions("OptExtTime", {0, 1}), (Captions{"Internal", "External"}));
  EXPECT_EQ(captions("OptMeasMode", {0, 1}), (Captions{"ADC", "Time Base"}));
  EXPECT_EQ(captions("OptMFreq", {0, 3}), (Captions{"DC", "327.7"}));
  EXPECT_EQ(captions("OptPSrc", {0, 1, 2, 3}), (Captions{"100mA", "50mA", "25mA", "12.5mA"}));
  EXPECT_EQ(captions("optINTP", {0, 1, 2, 3}), (Captions{"1", "4", "8", "16"}));
  EXPECT_EQ(captions("OptGainMode", {0, 1}), (Captions{"Manual", "Auto"}));
  EXPECT_EQ(captions("OptIRDRMode", {0, 1}), (Captions{"Manual", "Auto"}));
  EXPECT_EQ(captions("OptTimeBase", {0, 1}), (Captions{"Int", "Ext"}));
  EXPECT_FALSE(panel->OptMFreq.has(1));
  EXPECT_EQ(panel->frmMeasure.Caption, "Operation");
  EXPECT_EQ(panel->frItime.Caption, "Integration Time");
  EXPECT_EQ(panel->lblBits.Caption, "N-bit A/D Converter");
  EXPECT_EQ(panel->frGain.Caption, "Sensitivity - Range Select");
  EXPECT_EQ(panel->frGain.ToolTipText, "Set the Lux Sensitivity Gain  / Level.");
  EXPECT_EQ(panel->Frame8.Caption, "Proximity Sensing");
  EXPECT_EQ(panel->Frame5.Caption, "Timing Internal - External Sync");
  EXPECT_EQ(panel->Frame4.Caption, "Measurement Select");
  EXPECT_EQ(panel->Frame7.Caption, "IR Modulation Frequency kHz");
  EXPECT_EQ(panel->Frame6.Caption, "IRDR Pin Source Current");
  EXPECT_EQ(panel->Frame14.Caption, "Auto-Gain Switch%");
  EXPECT_EQ(panel->frmGainMode.Caption, "Gain Mode");
  EXPECT_EQ(panel->frmIRDRMode.Caption, "IRDR");
  EXPECT_EQ(panel->fraINT.Caption, "Interrupt Persistance");
  EXPECT_EQ(panel->cmdSetCommand.Caption, "Write Operation r0");
  EXPECT_EQ(panel->cmdSetControl.Caption, "Write Configuration  r1");
  EXPECT_EQ(panel->cmdSampleIIIntr.Caption, "Read / Clear I-Status");
  EXPECT_EQ(panel->cmdSampleIIIntr.ToolTipText,
            "Reads Register 0 and checks bit 2 for Interrupt Status. Click twice to verify Interrupt Clear");
  EXPECT_EQ(panel->lblSync.Caption, "Sync &&h80");
  EXPECT_EQ(panel->lblINt.Caption, "R0-B2");
}

INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionOptions, ::testing::ValuesIn(multi_function_panels), panel_name);

// --- timing ---

TEST_F(Kvt71385Options, ExternalTimingShowsItsControls) {
  store.ReadAdc = false_flag;
  store.ReadTimeBase = true_flag;
  panel->cmdRead_ADC.Enabled = false;
  panel->cmdReadTB.Enabled = true;
  choose_option("OptExtTime", 1);
  EXPECT_EQ(store.ExtTiming, -1);
  EXPECT_EQ(store.InternalTiming, 0);
  EXPECT_TRUE(panel->ChkEOC1(0).Visible);
  EXPECT_TRUE(panel->txtSync1Delay(0).Visible);
  EXPECT_TRUE(panel->OptMeasMode(1).Enabled);
  EXPECT_EQ(store.ReadAdc, -1);
  EXPECT_EQ(store.ReadTimeBase, 0);
  EXPECT_TRUE(panel->cmdRead_ADC.Enabled);
  EXPECT_FALSE(panel->cmdReadTB.Enabled);

  choose_option("OptMeasMode", 1);
  forget_traffic();
  choose_option("OptExtTime", 0);
  EXPECT_EQ(sent(), writes("r0=00 r0=00"));
  EXPECT_EQ(store.ExtTiming, 0);
  EXPECT_EQ(store.InternalTiming, -1);
  EXPECT_FALSE(panel->ChkEOC1(0).Visible);
  EXPECT_FALSE(panel->txtSync1Delay(0).Visible);
  EXPECT_FALSE(panel->OptMeasMode(1).Enabled);
  EXPECT_TRUE(panel->OptMeasMode(0).Value);
  EXPECT_EQ(panel->Label3(0).Caption, "ADC");
  EXPECT_EQ(store.ReadAdc, -1);
  EXPECT_EQ(store.ReadTimeBase, 0);
}

TEST_F(Kvt71385Options, TheTimeBaseHasItsTextsAndItsReadButton) {
  panel->OptMeasMode(1).Enabled = false;
  panel->OptMeasMode_Click(1);
  EXPECT_EQ(panel->Label3(0).Caption, "Time Base");
  EXPECT_EQ(panel->OptGraph(0).Caption, "TB Count");
  EXPECT_EQ(store.InternalTiming, 0);
  EXPECT_TRUE(panel->OptMeasMode(1).Enabled);
  EXPECT_EQ(store.ReadAdc, 0);
  EXPECT_EQ(store.ReadTimeBase, -1);
  EXPECT_FALSE(panel->cmdRead_ADC.Enabled);
  EXPECT_TRUE(panel->cmdReadTB.Enabled);
  choose_option("OptMeasMode", 0);
  EXPECT_EQ(panel->Label3(0).Caption, "ADC");
  EXPECT_EQ(panel->OptGraph(0).Caption, "ADC Count");
  EXPECT_EQ(store.InternalTiming, -1);
  EXPECT_TRUE(panel->OptMeasMode(1).Enabled);  // stays
  EXPECT_EQ(store.ReadAdc, -1);
  EXPECT_EQ(store.ReadTimeBase, 0);
  EXPECT_TRUE(panel->cmdRead_ADC.Enabled);
  EXPECT_FALSE(panel->cmdReadTB.Enabled);
}

// A running loop keeps what it shows.
TEST_F(Kvt71385Options, InALoopTheKindOfReadingStays) {
  in_a_loop([&] { choose_option("OptMeasMode", 1); });
  EXPECT_EQ(store.ReadAdc, -1);
  EXPECT_EQ(store.InternalTiming, 0);
  choose_option("OptMeasMode", 1);
  in_a_loop([&] {
    for (const auto& [control, index] :
         {std::pair{"OptITime", 0}, {"OptExtTime", 1}, {"OptExtTime", 0}, {"OptMeasMode", 0}}) {
      choose_option(control, index);
      EXPECT_EQ(store.ReadTimeBase, -1) << control;
      EXPECT_EQ(store.ReadAdc, 0) << control;
      EXPECT_TRUE(panel->cmdReadTB.Enabled) << control;
    }
  });
  choose_option("OptITime", 0);
  EXPECT_EQ(store.ReadAdc, -1);
}

TEST_F(Kvt71385Options, AWidthBringsInternalTimingBackAlsoInALoop) {
  for (const Flag loop : {false_flag, true_flag}) {
    for (const int width : {0, 1, 2, 3}) {
      store.InternalTiming = false_flag;
      store.Sample_Run = loop;
      choose_option("OptITime", width);
      EXPECT_EQ(store.InternalTiming, -1) << width;
    }
  }
}

// Idle it changes nothing. A running collection begins anew, whichever of both was clicked.
TEST_F(Kvt71385Options, TheTimeBaseOfSamplingBeginsACollectionAnew) {
  const std::int32_t before = store.Collections;
  click(panel->OptTimeBase(1));
  EXPECT_EQ(store.Collections, before);
  for (const int position : {1, 0}) {
    make_measure();
    const std::int32_t begun = store.Collections;
    std::int32_t count_behind_it = -1;
    store.Sample_Count = 0;
    at_yield(count_reaches(20), [&] {
      forms::user::click(panel->OptTimeBase(position));
      at_yield([&] { return store.Collections == begun + 2 && store.Sample_Count >= 5; },
               [&] {
                 count_behind_it = store.Sample_Count;
                 forms::user::click(panel->cmdStopData);
               });
    });
    click(panel->cmdCollectData);
    EXPECT_EQ(store.Collections, begun + 2);
    EXPECT_EQ(count_behind_it, 5);
    EXPECT_EQ(store.Sample_Run, 0);
  }
}

// --- what follows by itself ---

TEST_F(Kvt71385Options, TheTwoAutomaticModesExcludeEachOther) {
  choose_option("OptIRDRMode", 1);
  EXPECT_EQ(store.IrdrAuto, -1);
  EXPECT_EQ(store.GainAuto, 0);
  EXPECT_TRUE(panel->Frame14.Visible);
  choose_option("OptGainMode", 1);
  EXPECT_EQ(store.GainAuto, -1);
  EXPECT_EQ(store.IrdrAuto, 0);
  EXPECT_TRUE(panel->OptIRDRMode(0).Value);
  EXPECT_TRUE(panel->Frame14.Visible);
  choose_option("OptIRDRMode", 1);
  EXPECT_EQ(store.IrdrAuto, -1);
  EXPECT_EQ(store.GainAuto, 0);
  EXPECT_TRUE(panel->OptGainMode(0).Value);
  EXPECT_TRUE(panel->Frame14.Visible);
  choose_option("OptIRDRMode", 0);
  EXPECT_EQ(store.IrdrAuto, 0);
  EXPECT_FALSE(panel->Frame14.Visible);
}

// The automatic current goes on from where the persistence was put.
TEST_F(Kvt71385Options, ThePersistenceTakesThePlaceOfTheCurrent) {
  choose_option("OptPSrc", 3);
  EXPECT_EQ(store.IrdrIndex, 3);
  choose_option("optINTP", 2);
  EXPECT_EQ(store.IrdrIndex, 2);
  EXPECT_TRUE(panel->OptPSrc(3).Value);
  choose_option("OptPSrc", 0);
  EXPECT_EQ(store.IrdrIndex, 0);
}

}  // namespace
}  // namespace varzelin::testing
