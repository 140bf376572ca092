// The real-time loop of the panels over eight registers.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

using Kvt71344Collection = Kvt71344;
using Kvt71356Collection = Kvt71356;

// --- real time ---

TEST_F(Kvt71344Collection, APassUnderInternalTimingOnlyReads) {
  collect(3);
  const ByteLists out = sent();
  EXPECT_TRUE(std::ranges::all_of(out, [](const auto& bytes) { return bytes == std::vector{2, 0x89, 4}; }));
  EXPECT_EQ(recorder.packets[1].size, 5u);
  EXPECT_GE(out.size(), 3u);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(store.TriggerDone, -1);
}

TEST_F(Kvt71344Collection, TheMarginsAreFourAndThreeMilliseconds) {
  board.set_timing(false);
  std::vector<double> requests;
  recorder.before_call = [&] {
    if (store.Xfer_Size == 3 && store.Sample_Run == -1) requests.push_back(clock.milliseconds());
  };
  collect(4);
  ASSERT_GE(requests.size(), 4u);
  // The wait sleeps up to 3 ms before the due time, which is past the 4 ms at which it may leave.
  for (std::size_t i = 1; i < 4; ++i) EXPECT_NEAR(requests[i] - requests[i - 1], 97, 0.6);
}

TEST_F(Kvt71344Collection, StoresTheCountAndShowsIt) {
  replying({2, 0x34, 0x12, 0x78, 0x56});
  collect(14);
  EXPECT_EQ(store.Sample_Value[13], 0x1234);
  EXPECT_EQ(store.Sample_Value2[13], 1);
  EXPECT_EQ(store.RawReading, 0x1234);
  EXPECT_EQ(store.Reading, 0x1234);
  EXPECT_EQ(panel->txtReading.Text, "4660");
  EXPECT_EQ(panel->txtReading3.Text, "");
  EXPECT_EQ(store.Trace_Y[403], 304 - 57);  // 56.66 rows up: the whole part of 247.33
}

TEST_F(Kvt71344Collection, ACollectionDoesNotShowTheRawCountOfTheOneBefore) {
  external_timing();
  replying({4, 0x34, 0x12, 0x78, 0x56});
  collect(2);
  EXPECT_EQ(panel->txtReading3.Text, "4660");
  click(panel->ChkCommand(2));
  EXPECT_EQ(panel->txtReading3.Text, "4660");
  collect(2);
  EXPECT_EQ(panel->txtReading3.Text, "");
}

struct Ratio {
  int graph;
  int count, cycles;
  std::int32_t reading;
};

TEST_F(Kvt71344Collection, UnderExternalTimingTheGraphOptionChoosesTheReading) {
  external_timing();
  for (const Ratio& c : {Ratio{0, 1000, 2000, 1000},
                         {1, 1000, 2000, 2000},
                         {2, 1000, 2000, 16384},
                         {2, 1000, 3000, 10923},
                         {2, 3, 65536 - 1, 2},
                         {2, 1000, 0, 1000},
                         {1, 1000, 0, 0},
                         {2, 65535, 1, 2147450880}}) {
    panel->OptGraph(c.graph).select_quietly();
    replying({4, static_cast<std::uint8_t>(c.count), static_cast<std::uint8_t>(c.count >> 8),
              static_cast<std::uint8_t>(c.cycles), static_cast<std::uint8_t>(c.cycles >> 8)});
    collect(2);
    EXPECT_EQ(store.Reading, c.reading) << c.graph << " " << c.count << "/" << c.cycles;
    EXPECT_EQ(panel->txtReading.Text, std::to_string(c.reading));
    EXPECT_EQ(panel->txtReading2.Text, std::to_string(c.cycles));
    EXPECT_EQ(panel->txtReading3.Text, std::to_string(c.count));
    EXPECT_EQ(store.RawReading, c.count);
    EXPECT_EQ(store.RawReading2, c.cycles);
    // The file gets what was read, not the ratio.
    EXPECT_EQ(store.Sample_Value[1], c.count);
    EXPECT_EQ(store.Sample_Value2[1], c.cycles);
    board.clear();
  }
}

TEST_F(Kvt71344Collection, TheRatioIsRoundedToTheNearest) {
  external_timing();
  for (const auto& [count, cycles, reading] :
       {std::tuple{1, 65535, 1}, {1, 0xFFFE, 1}, {3, 65535, 2}, {1, 3, 10923}, {2, 3, 21845}}) {
    replying({4, static_cast<std::uint8_t>(count), static_cast<std::uint8_t>(count >> 8),
              static_cast<std::uint8_t>(cycles), static_cast<std::uint8_t>(cycles >> 8)});
    collect(2);
    EXPECT_EQ(store.Reading, reading) << count << "/" << cycles;
    board.clear();
  }
}

TEST_F(Kvt71344Collection, TheRowIsTheWholePartWithinThePlot) {
  struct Row {
    int reading;
    const char* scale;
    int row;
  };
  for (const Row& c :
       {Row{0, "25000", 304}, Row{1, "25000", 303}, Row{12500, "25000", 152}, Row{24917, "25000", 1},
        Row{25000, "25000", 1}, Row{65535, "25000", 1}, Row{100, "-25000", 304}}) {
    panel->txtScale.Text = c.scale;
    replying({2, static_cast<std::uint8_t>(c.reading), static_cast<std::uint8_t>(c.reading >> 8), 0, 0});
    collect(2);
    EXPECT_EQ(store.Trace_Y[403], c.row) << c.reading << " of " << c.scale;
    board.clear();
  }
}

TEST_F(Kvt71344Collection, HidesWhatIsOutOfTheWay) {
  collect(5, [&] {
    EXPECT_FALSE(panel->Command4.Visible);
    EXPECT_TRUE(panel->cbReset.Visible);
    EXPECT_FALSE(panel->cmdSample.Enabled);
    EXPECT_EQ(panel->Label18.Caption, "Data Collection In Process");
  });
  EXPECT_TRUE(panel->Command4.Visible);
  EXPECT_TRUE(panel->cmdSample.Enabled);
}

// The sensor counts light and cycles for as long as the host lets it: their ratio is the light.
TEST_F(Kvt71344Collection, TheRatioDoesNotMoveWithTheIntegrationTime) {
  external_timing();
  board.scene().light_lux = 300;
  board.scene().ir_counts = 0;
  std::int32_t counts = 0;
  for (const char* interval : {"100", "250", "1000"}) {
    panel->txtInterval.Text = interval;
    collect(6);
    EXPECT_NEAR(store.Reading, 0.3 * 32768, 25) << interval;
    EXPECT_GT(store.RawReading, counts) << interval;
    counts = store.RawReading;
  }
}

// --- guards ---

TEST_F(Kvt71344Collection, ACollectionResetsByItselfAndStarts) {
  for (const int box : {0, 1}) {
    click(panel->ChkCommand(box));
    forget_traffic();
    collect(3);
    EXPECT_TRUE(user.boxes.empty());
    EXPECT_EQ(store.RegImage[0], 0x80);
    EXPECT_EQ(sent()[0], (std::vector{0, 0x88, 0, 0x40}));
    EXPECT_EQ(store.Sample_Count, 3);
    panel->ChkCommand(box).Value = 0;
  }
}

// The box that powers the device down is ticked already: only taking it off writes.
TEST_F(Kvt71344Collection, FromAPoweredDownDeviceACollectionStartsByItself) {
  click(panel->ChkCommand(3));
  EXPECT_EQ(box(0), "40");
  forget_traffic();
  collect(3);
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_EQ(sent()[0], (std::vector{0, 0x88, 0, 0x80}));
  EXPECT_EQ(panel->ChkCommand(3).Value, 0);
  EXPECT_EQ(panel->cbReset.Caption, "Reset");
  EXPECT_EQ(board.register_value(0), 0x80);
  EXPECT_EQ(store.Sample_Count, 3);
}

TEST_F(Kvt71356Collection, ACollectionIsRefusedInResetAndInPowerDown) {
  click(panel->ChkCommand(0));
  forget_traffic();
  click(panel->cmdCollectData);
  click(panel->ChkCommand(0));
  click(panel->ChkCommand(1));
  forget_traffic();
  click(panel->cmdCollectData);
  click(panel->cmdSample);
  ASSERT_EQ(user.boxes.size(), 3u);
  EXPECT_EQ(user.boxes[0].text, "Device Reset Control bit is active");
  EXPECT_EQ(user.boxes[1].text, "Device ADC Core Power Down Control bit is active");
  EXPECT_EQ(user.boxes[2].text, "Device ADC Core Power Down Control bit is active");
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.Sample_Run, 0);
}

// --- deferred work ---

TEST_F(Kvt71344Collection, WithoutTheMainFlagNothingIsDone) {
  collect(12, [&] {
    forget_traffic();
    store.PendingWriteR1 = -1;
  });
  EXPECT_TRUE(std::ranges::none_of(sent(), [](const auto& bytes) { return bytes[0] == 0; }));
}

// --- what one of them has alone ---

TEST_F(Kvt71356Collection, ACountAboveItsTopByteFallsBackToTheLowByte) {
  struct Count {
    int limit, high, low;
    std::int32_t value;
  };
  for (const Count& c : {Count{127, 0x7F, 0x12, 0x7F12}, Count{127, 0x80, 0x12, 0x12},
                         Count{7, 7, 0xFF, 0x7FF}, Count{7, 8, 0, 0}, Count{7, 0xFF, 0x34, 0x34}}) {
    store.MsbLimit = static_cast<std::int16_t>(c.limit);
    replying({2, static_cast<std::uint8_t>(c.low), static_cast<std::uint8_t>(c.high), 0, 0});
    collect(2);
    EXPECT_EQ(store.Sample_Value[1], c.value);
    EXPECT_EQ(store.Reading, c.value);
    EXPECT_EQ(panel->txtSampleByte(1).Text, forms::Hex2(c.low));
    EXPECT_EQ(panel->txtSampleByte(2).Text, forms::Hex2(c.high));
    EXPECT_EQ(panel->txtADHex.Text, forms::Hex2(c.high) + forms::Hex2(c.low));
    board.clear();
  }
}

TEST_F(Kvt71344Collection, ACountHasNoLimit) {
  store.MsbLimit = 7;
  replying({2, 0x12, 0x80, 0, 0});
  panel->txtADHex.Text = "old";
  collect(2);
  EXPECT_EQ(store.Sample_Value[1], 0x8012);
  EXPECT_EQ(panel->txtADHex.Text, "old");
}

TEST_F(Kvt71356Collection, TheEndOfACollectionYieldsBeforeItCloses) {
  double stopped = 0;
  double closed = 0;
  bool enabled_at_close = false;
  recorder.before_call = [&] {
    if (stopped == 0 || closed != 0) return;
    closed = clock.milliseconds();
    enabled_at_close = panel->cmdCollectData.Enabled;
  };
  store.Sample_Count = 0;
  at_yield(count_reaches(3), [&] {
    forms::user::click(panel->cmdStopData);
    at_yield([&] { return panel->cmdCollectData.Enabled.get(); }, [&] { stopped = clock.milliseconds(); });
  });
  click(panel->cmdCollectData);
  EXPECT_GT(closed - stopped, 9.9);  // ten thousand yields of a microsecond
  EXPECT_LT(closed - stopped, 10.2);
  EXPECT_TRUE(enabled_at_close);
  EXPECT_EQ(store.Usb_Open, 0);
}

}  // namespace
}  // namespace varzelin::testing
