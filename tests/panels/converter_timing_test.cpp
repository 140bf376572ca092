// Real-time collection on the multi-function panels where the host times the conversions: by one-shot
// commands, by syncs, or by both; and what the loop makes of texts that are no numbers.
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct ConverterTiming : MultiFunctionLoop, ::testing::WithParamInterface<std::string> {
  void SetUp() override {
    open(GetParam());
    measure_by(ir_continuous);
    results(500);
  }
  // What a handler of the loop could not take.
  const std::string beyond = "99999999999";
  // The traffic of a pass behind the entry of `text`.
  std::string traffic_with(forms::TextBox& box, const std::string& text) {
    const std::string words = traffic_behind([&] { box.Text = text; });
    EXPECT_TRUE(user.errors.empty());
    return words;
  }
  // Between what went out first and what went out behind it, each time.
  void expect_between(const std::string& first, const std::string& second, double milliseconds) {
    const std::vector<double> from = times_of(first);
    const std::vector<double> to = times_of(second);
    ASSERT_FALSE(from.empty());
    ASSERT_FALSE(to.empty());
    for (const double time : from) {
      const auto next = std::ranges::upper_bound(to, time);
      if (next != to.end()) {
        EXPECT_NEAR(*next - time, milliseconds, 0.2) << first;
      }
    }
  }
};

// --- one-shot ---

TEST_P(ConverterTiming, AOneShotPassCommandsItsConversion) {
  measure_by(ir_once);
  EXPECT_EQ(traffic_of_a_pass(2), "r0=40 read2 r0=40 read2");
  EXPECT_EQ(store.Reading, 500);
}

TEST_P(ConverterTiming, AOneShotPassWaitsForItsDelayAlone) {
  measure_by(ir_once);
  panel->txtInterval.Text = "5000";
  panel->txtSampling_Delay.Text = "33";
  collect(
      4, [&] { forget_traffic(); }, 3);
  expect_between("r0=40", "read2", 33);
  EXPECT_EQ(panel->txtTime1.Text, "33");
  // From the trigger before to the end of the wait, which there is none of.
  EXPECT_EQ(panel->txtTime3.Text, "0");
}

TEST_P(ConverterTiming, AContinuousPassDoesNotWaitForTheDelay) {
  panel->txtInterval.Text = "20";
  panel->txtSampling_Delay.Text = "900";
  collect(4);
  EXPECT_EQ(panel->txtTime1.Text, pace_text(20));
}

// --- external timing ---

TEST_P(ConverterTiming, UnderExternalTimingSyncsBeforeTheReadingAndTriggersBehindIt) {
  choose(panel->OptExtTime(1));
  EXPECT_EQ(traffic_of_a_pass(2), "sync read2 sync sync read2 sync");
}

TEST_P(ConverterTiming, TheSyncGoesAsOtherWritesAndTheTriggerAlwaysAsAReading) {
  choose(panel->OptExtTime(1));
  collect(
      2, [&] { forget_traffic(); }, 1);
  std::vector<int> addresses;
  for (const auto& bytes : sent_on(boards::pipe_i2c_out)) {
    if (bytes.size() == 3 && bytes[0] == 0) addresses.push_back(bytes[1]);
  }
  ASSERT_GE(addresses.size(), 2u);
  EXPECT_EQ(addresses[0], GetParam() == "frmKVT71390" ? 0x88 : 0x89);
  EXPECT_EQ(addresses[1], 0x89);
}

TEST_P(ConverterTiming, TheTriggerBlinksItsLamp) {
  panel->txtInterval.Text = "30";
  choose(panel->OptExtTime(1));
  const auto untick = [&] { panel->ChkEOC1(0).Value = 0; };
  std::vector<forms::Color> colours;
  const auto act = [&] {
    untick();
    user.at_yield = [&] {
      const auto passes = static_cast<std::size_t>(store.Sample_Count);
      if (store.Sample_Run == -1 && passes >= 4 && colours.size() < passes - 3)
        colours.push_back(panel->ShpInd(12).FillColor);
      if (passes == 6 && store.Sample_Run == -1) program.runtime.post(clicking(panel->cmdStopData));
    };
  };
  collect(2, act, -1);
  ASSERT_EQ(colours.size(), 3u);
  EXPECT_NE(colours[0], colours[1]);
  EXPECT_EQ(colours[0], colours[2]);
  EXPECT_TRUE(colours[0] == lamp(10) || colours[0] == lamp(2));
}

TEST_P(ConverterTiming, WithoutTheTickItTriggersAlone) {
  choose(panel->OptExtTime(1));
  const std::string words = traffic_behind([&] { panel->ChkEOC1(0).Value = 0; }, 2);
  EXPECT_EQ(words, "read2 sync read2 sync");
}

TEST_P(ConverterTiming, TheSyncComesBehindItsDelay) {
  choose(panel->OptExtTime(1));
  panel->txtInterval.Text = "0";
  panel->txtSync1Delay(0).Text = "24.5";
  collect(
      4, [&] { forget_traffic(); }, 4);
  // Two a pass: the trigger, and the sync that comes so much later.
  const std::vector<double> syncs = times_of("sync");
  ASSERT_GE(syncs.size(), 6u);
  EXPECT_NEAR(syncs[1] - syncs[0], 0, 0.2);
  EXPECT_NEAR(syncs[2] - syncs[1], 24, 0.2);
  EXPECT_EQ(panel->txtTime1.Text, "24");
}

TEST_P(ConverterTiming, OneShotUnderExternalTimingCommandsWaitsSyncsWaitsAndReads) {
  measure_by(ir_once);
  choose(panel->OptExtTime(1));
  panel->txtInterval.Text = "5000";
  panel->txtSync1Delay(0).Text = "20";
  panel->txtSampling_Delay.Text = "7";
  std::string words;
  collect(
      3,
      [&] {
        forget_traffic();
        at_yield(count_reaches(4), [&] {
          words = traffic();
          forms::user::click(panel->cmdStopData);
        });
      },
      -1);
  EXPECT_EQ(words, "r0=50 sync read2 sync");
  expect_between("r0=50", "sync", 20);
  expect_between("r0=50", "read2", 20 + 7);
  EXPECT_EQ(panel->txtTime1.Text, "27");
}

TEST_P(ConverterTiming, UnderInternalTimingNothingSyncs) {
  panel->ChkEOC1(0).Value = 1;
  EXPECT_EQ(traffic_of_a_pass(), "read2");
}

// --- what can't be read ---

TEST_P(ConverterTiming, AnUnreadableSyncDelayIsNotWaitedFor) {
  choose(panel->OptExtTime(1));
  EXPECT_EQ(traffic_with(panel->txtSync1Delay(0), beyond), "sync read2 sync");
}

TEST_P(ConverterTiming, AnUnreadableSamplingDelayIsNotWaitedFor) {
  measure_by(ir_once);
  EXPECT_EQ(traffic_with(panel->txtSampling_Delay, beyond), "r0=40 read2");
  EXPECT_EQ(panel->txtTime1.Text, "0");
}

TEST_P(ConverterTiming, AnUnreadableRegisterIsNotWritten) {
  measure_by(ir_once);
  EXPECT_EQ(traffic_with(panel->txtRegHex(0), "FFFFF"), "read2");
  EXPECT_EQ(store.RegImage[0], 0x00);  // at rest by now
}

TEST_P(ConverterTiming, ADeferredWriteThatCannotBeReadLeavesTheOthers) {
  const std::string words = traffic_behind(
      [&] {
        forms::user::click(panel->OptGain(2));
        panel->txtRegHex(1).Text = "FFFFF";
        panel->history.txtADMax(4).Text = "kept";
        ASSERT_FALSE(history(0).empty());
      },
      1,
      [&] {
        EXPECT_EQ(history(0), "");
        EXPECT_EQ(history(4), "kept");
        EXPECT_EQ(store.PendingWriteR1, -1);
      });
  EXPECT_EQ(words, "read2 r0=C0");
  EXPECT_TRUE(user.errors.empty());
}

// A text without a number is 0.
TEST_P(ConverterTiming, WordsAreNoDelay) {
  measure_by(ir_once);
  choose(panel->OptExtTime(1));
  panel->txtSync1Delay(0).Text = "soon";
  panel->txtSampling_Delay.Text = "later";
  collect(4);
  EXPECT_EQ(panel->txtTime1.Text, "0");
  EXPECT_TRUE(user.errors.empty());
}

INSTANTIATE_TEST_SUITE_P(Each, ConverterTiming,
                         ::testing::Values("frmKVT71385", "frmKVT71388", "frmKVT71390", "frmKVT71392"),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
