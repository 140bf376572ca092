// The stability wait of the two-mode panels: a pair's difference is taken once two in a row differ by little.
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeStability : TwoModeTest {
  int pairs = 0;  // commanded so far

  void SetUp() override {
    TwoModeTest::SetUp();
    select(measure::pair);
    panel->ChStab.Value = 1;
    panel->txtStabDelay.Text = "0";
    infrared_count = 0;
  }
  // Each pair brings the next of these counts, the last one for good.
  void differences(std::vector<int> counts) {
    replying_pairs();
    pairs = 0;
    recorder.before_call = [this, counts = std::move(counts), reply = recorder.before_call] {
      if (in_loop() && reply_is_due() && commanded() == 0x60) {
        proximity_count = counts[std::min(static_cast<std::size_t>(pairs), counts.size() - 1)];
        ++pairs;
      }
      reply();
    };
  }
  std::function<bool()> waits() {
    return [this] { return in_loop() && store.Stab_Wait != 0 && lamp_of(2) == 12; };
  }
};

TEST_P(TwoModeStability, TwoThatDifferByLittleAreEnough) {
  panel->ShpInd(2).Visible = false;
  differences({1000, 951});
  // Before the next pass waits.
  collect_and(
      1, [&] { EXPECT_EQ(store.Stab_Wait, 0); }, 0);
  EXPECT_EQ(store.Sample_Value[0], 951);
  EXPECT_EQ(lamp_of(2), 10);
  EXPECT_TRUE(panel->ShpInd(2).Visible);
  EXPECT_EQ(store.Reading, 951);
}

TEST_P(TwoModeStability, AWaitShowsItsLamp) {
  differences({1000, 951});
  recorder.before_call = [this, reply = recorder.before_call] {
    if (in_loop() && pairs == 0) panel->ShpInd(2).Visible = false;
    reply();
  };
  run(1);
  EXPECT_TRUE(panel->ShpInd(2).Visible);
}

TEST_P(TwoModeStability, ItGoesOnUntilTwoInARowDo) {
  differences({1000, 900, 800, 700, 600, 595});
  bool red = false;
  store.Sample_Count = 0;
  auto stop = [&] { return in_loop() && store.Sample_Count >= 1; };
  at_yield(waits(), [&] {
    red = true;
    at_yield(stop, clicking(panel->cmdStopData));
  });
  click(panel->cmdCollectData);
  EXPECT_TRUE(red);
  EXPECT_EQ(store.Sample_Value[0], 595);
  EXPECT_EQ(panel->txtADCRaw.Text, "595");
  EXPECT_EQ(store.TripReading, 595);
  EXPECT_EQ(lamp_of(2), 10);
}

// On the tolerance isn't within it; a second one that is larger always is.
TEST_P(TwoModeStability, TheLimit) {
  for (const auto& [counts, used] :
       {std::pair{std::vector{1000, 950, 500, 480}, 480}, std::pair{std::vector{1000, 951}, 951},
        std::pair{std::vector{1000, 60000}, 60000}}) {
    differences(counts);
    run(1);
    EXPECT_EQ(store.Sample_Value[0], used);
  }
}

TEST_P(TwoModeStability, ZeroNeverSettles) {
  differences({0, 0, 0, 500, 400, 390});
  run(1);
  EXPECT_EQ(store.Sample_Value[0], 390);
}

TEST_P(TwoModeStability, ItWaitsBetweenTheTwo) {
  panel->txtStabDelay.Text = "3000";
  differences({1000, 900, 800, 790});
  const double begun = clock.milliseconds();
  run(1);
  EXPECT_NEAR(clock.milliseconds() - begun, 3000, 60);
}

TEST_P(TwoModeStability, WithoutItsTickThereIsNoWait) {
  panel->ChStab.Value = 0;
  differences({1000, 500});
  run(1);
  EXPECT_EQ(store.Sample_Value[0], 1000);
}

TEST_P(TwoModeStability, TheFilterHasNone) {
  select(measure::filtered);
  differences({1000, 500, 1000, 500, 1000, 500, 1000, 500});
  run(3);
  EXPECT_LE(pairs, 4);
}

TEST_P(TwoModeStability, AnOptionInTheWaitIsLeftToTheLoop) {
  differences({1000, 0, 1000, 0, 1000, 0, 1000, 0, 1000, 999});
  bool clicked = false;
  at_yield(waits(), [&] {
    clicked = true;
    forms::user::click(panel->OptGain(1));
    EXPECT_EQ(store.PendingWriteR1, -1);
    at_yield([&] { return store.Sample_Count >= 1; }, clicking(panel->cmdStopData));
  });
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  EXPECT_TRUE(clicked);
  EXPECT_EQ(std::ranges::count(sent(), write(1, 0x71)), 1);
}

TEST_P(TwoModeStability, StoppedInTheWaitItTakesWhatTheLastPairShows) {
  differences({1000, 0, 77, 0, 88, 0, 99, 0});
  at_yield(waits(), clicking(panel->cmdStopData));
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  expect_ended();
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(store.Sample_Value[0], std::stoi(panel->txtProx_IR(6).Text.get()));
  EXPECT_EQ(store.Reading, store.Sample_Value[0]);
}

TEST_P(TwoModeStability, APlugPulledInTheWaitEndsIt) {
  differences({1000, 0});
  at_yield(waits(), [&] { board.unplug(); });
  store.Sample_Count = 0;
  const double begun = clock.milliseconds();
  click(panel->cmdCollectData);
  EXPECT_LT(clock.milliseconds() - begun, 3000);
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_EQ(store.Sample_Run, 0);
  board.plug();
  expect_idle();
  EXPECT_TRUE(user.errors.empty());
}

TEST_P(TwoModeStability, ADelayThatIsNoIntegerIsNone) {
  panel->txtStabDelay.Text = "99999999999";
  differences({1000, 900, 800, 700, 600, 595});
  run(1);
  EXPECT_EQ(store.Sample_Value[0], 595);
  EXPECT_TRUE(user.errors.empty());
}

ON_BOTH_MODELS(TwoModeStability);

}  // namespace
}  // namespace varzelin::testing
