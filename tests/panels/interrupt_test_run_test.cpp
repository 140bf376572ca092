// The course of the interrupt test.
#include "support/interrupt_test_fixture.h"

namespace varzelin::testing {
namespace {

// --- the whole course ---

TEST_F(InterruptTestRun, SolutionOneShowsWhatItComparedAndHowTheLightWent) {
  run({9000, 9000, 1000}, {500, 450});
  expect_released("Test Completed");
  EXPECT_TRUE(test->cmdAbort1.Visible);
  EXPECT_EQ(texts(test->lblProx), (Texts{"9000", "1000"}));
  EXPECT_EQ(texts(test->lblRecordedLux), (Texts{"500", "450"}));
  EXPECT_EQ(texts(test->lblCase21), (Texts{"500", "400", "500", "450"}));
  EXPECT_EQ(texts(test->lblCase22_Delta), Texts(4));
  EXPECT_EQ(steps(), (std::vector{10, 10, 10, 10, 10, 0}));
  EXPECT_EQ(comparisons(), (std::vector{10, 0, 0, 0}));
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(InterruptTestRun, ALightThatDidntFallIsNotBelow) {
  for (const auto& [at_low, shown] :
       {std::pair{499, std::vector{10, 0, 0, 0}}, {500, {0, 10, 0, 0}}, {501, {0, 10, 0, 0}}}) {
    run({9000, 9000, 1000}, {500, at_low});
    EXPECT_EQ(comparisons(), shown) << at_low;
  }
}

TEST_F(InterruptTestRun, SolutionTwoShowsHowFarTheProximityMovedInItsDelay) {
  test->txtCase2Sol1Lux.Text = "501";
  run({9000, 9000, 1000, 700}, {500, 450});
  expect_released("Test Completed");
  EXPECT_EQ(texts(test->lblProx), (Texts{"9000", "1000"}));
  EXPECT_EQ(texts(test->Label2), (Texts{"9000", "1000", "700"}));
  EXPECT_EQ(texts(test->lblCase21), (Texts{"500", "501", "", ""}));
  EXPECT_EQ(texts(test->lblCase22_Delta), (Texts{"1000", "700", "300", "100"}));
  EXPECT_EQ(steps(), (std::vector{10, 10, 10, 10, 0, 10}));
  EXPECT_EQ(comparisons(), (std::vector{0, 0, 0, 10}));
}

TEST_F(InterruptTestRun, TheDelayIsTheUsers) {
  test->txtCase2Sol1Lux.Text = "501";
  const auto time_of = [this](const char* delay) {
    test->txtDeltaTime.Text = delay;
    const double before = clock.milliseconds();
    run({9000, 9000, 1000, 700}, {500, 450});
    return clock.milliseconds() - before;
  };
  time_of("0");  // the first run finds another measurement than the ones behind it
  const double without = time_of("0");
  EXPECT_NEAR(time_of("400") - without, 400, 1);
  EXPECT_NEAR(time_of("2000.5") - without, 2000, 1);
  EXPECT_NEAR(time_of("-1") - without, 0, 1);
}

// --- thresholds ---

TEST_F(InterruptTestRun, TheHighInterruptCountsAboveTwelveTenthsOfTheLowLimit) {
  run({1798, 1799, 9000, 1000}, {500, 450});
  EXPECT_EQ(texts(test->lblProx), (Texts{"1799", "1000"}));
  test->txtILow.Text = "1500";
  run({1800, 1801, 9000, 1000}, {500, 450});
  EXPECT_EQ(texts(test->lblProx), (Texts{"1801", "1000"}));
}

TEST_F(InterruptTestRun, TheLowInterruptCountsUpToThreeHalvesOfTheLowLimit) {
  run({9000, 9000, 2249, 9000, 2248}, {500, 450});
  EXPECT_EQ(texts(test->lblProx), (Texts{"9000", "2248"}));
  test->txtILow.Text = "1500";
  run({9000, 9000, 2251, 9000, 2250}, {500, 450});
  EXPECT_EQ(texts(test->lblProx), (Texts{"9000", "2250"}));
}

TEST_F(InterruptTestRun, ALightEqualToItsLimitIsEnough) {
  for (const auto& [light, solution] : {std::pair{399, std::vector{0, 10}}, {400, {10, 0}}, {401, {10, 0}}}) {
    run({9000, 9000, 1000, 700}, {light, 300});
    const auto shown = steps();
    EXPECT_EQ((std::vector{shown[4], shown[5]}), solution) << light;
  }
}

TEST_F(InterruptTestRun, ADifferenceEqualToItsLimitIsBelow) {
  for (const auto& [behind, moved, shown] : {std::tuple{1099, "99", std::vector{0, 0, 10, 0}},
                                             {1100, "100", {0, 0, 10, 0}},
                                             {1101, "101", {0, 0, 0, 10}},
                                             {900, "100", {0, 0, 10, 0}},
                                             {899, "101", {0, 0, 0, 10}}}) {
    run({9000, 9000, 1000, behind}, {399, 300});
    EXPECT_EQ(test->lblCase22_Delta(2).Caption, moved);
    EXPECT_EQ(comparisons(), shown) << behind;
  }
}

// --- what is shown on the way ---

TEST_F(InterruptTestRun, EachStepShowsWhereTheTestIs) {
  std::vector<std::pair<std::string, std::vector<int>>> course;
  user.at_yield = [&] {
    if (store.Man_Usb_Conn == 0) return;
    std::pair<std::string, std::vector<int>> now{test->lblMessage.Caption, steps()};
    if (course.empty() || course.back() != now) course.push_back(std::move(now));
  };
  run({9000, 9000, 1000}, {500, 450});
  user.at_yield = nullptr;
  using Lamps = std::vector<int>;
  EXPECT_EQ(course, (decltype(course){{"", Lamps{0, 0, 0, 0, 0, 0}},
                                      {"Waiting for Interrupt High", Lamps{0, 0, 0, 0, 0, 0}},
                                      {"Waiting for Interrupt High", Lamps{12, 0, 0, 0, 0, 0}},
                                      {"Waiting for Interrupt High", Lamps{10, 10, 0, 0, 0, 0}},
                                      {"Clearing High Interrupt", Lamps{10, 10, 12, 0, 0, 0}},
                                      {"Waiting for Interrupt Low", Lamps{10, 10, 12, 0, 0, 0}},
                                      {"Waiting for Interrupt Low", Lamps{10, 10, 10, 0, 0, 0}},
                                      {"Received Interrupt Low", Lamps{10, 10, 10, 10, 10, 0}}}));
}

TEST_F(InterruptTestRun, EachTurnOfTheWaitForTheHighInterruptClearsItFirst) {
  const auto flags_read = [this](std::deque<int> proximity) {
    forget_traffic();
    run(std::move(proximity), {500, 450});
    return std::ranges::count(sent_on(boards::pipe_i2c_out), std::vector{2, 0x89, 0});
  };
  flags_read({9000, 9000, 1000});  // the first run finds another measurement than the ones behind it
  const auto in_one_turn = flags_read({9000, 9000, 1000});
  EXPECT_EQ(flags_read({1000, 1001, 9000, 9000, 1000}), in_one_turn + 2);
}

TEST_F(InterruptTestRun, BeginsWithoutAnInterrupt) {
  store.IntPinAsserted = -1;
  bool looked = false;
  at_yield(message_is("Waiting for Interrupt High"), [&] {
    looked = true;
    EXPECT_EQ(store.IntPinAsserted, 0);
  });
  run({9000, 9000, 1000}, {500, 450});
  EXPECT_TRUE(looked);
}

TEST_F(InterruptTestRun, AnotherRunForgetsTheResultsOfTheOneBefore) {
  run({9000, 9000, 1000, 700}, {399, 300});
  bool looked = false;
  later([this] { return store.Man_Usb_Conn != 0; }, 0,
        [&] {
          looked = true;
          for (const auto* labels : {&test->lblProx, &test->lblRecordedLux})
            EXPECT_EQ(texts(*labels), Texts(2));
          for (const auto* labels : {&test->lblCase21, &test->lblCase22_Delta})
            EXPECT_EQ(texts(*labels), Texts(4));
          EXPECT_EQ(steps(), std::vector<int>(6));
          EXPECT_EQ(comparisons(), std::vector<int>(4));
        });
  run({9000, 9000, 1000}, {500, 450});
  EXPECT_TRUE(looked);
  EXPECT_EQ(texts(test->lblCase22_Delta), Texts(4));
  EXPECT_EQ(comparisons(), (std::vector{10, 0, 0, 0}));
}

TEST_F(InterruptTestRun, TheSessionIsOneAndTheButtonsTakeTurns) {
  bool looked = false;
  later(message_is("Waiting for Interrupt Low"), 0, [&] {
    looked = true;
    EXPECT_EQ(store.Man_Usb_Conn, -1);
    EXPECT_EQ(store.Usb_Open, -1);
    EXPECT_FALSE(test->cmdRunCase1.Visible);
    EXPECT_TRUE(test->cmdAbort1.Visible);
  });
  test->cmdAbort1.Visible = false;
  forget_traffic();
  run({9000, 9000, 1000}, {500, 450});
  EXPECT_TRUE(looked);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_EQ(calls("WDU_VB_Uninit"), 1u);
}

TEST_F(InterruptTestRun, PrimingRecordsAndClearsTwiceAndWaitsBetween) {
  pin_is_low = [] { return false; };
  std::vector<int> order;  // registers that are read, and the board's ports
  double last = 0;
  double longest_pause = 0;
  later([this] { return test->ShpIndrd(0).FillColor.get() == lamp(12); }, 0,
        [&] {
          for (const Packet& packet : recorder.packets) {
            if (packet.pipe == boards::pipe_i2c_out && packet.bytes.size() == 3)
              order.push_back(packet.bytes[2]);
            if (packet.pipe == boards::pipe_gpio_out) order.push_back(-1);
          }
          forms::user::click(test->cmdAbort1);
        });
  user.yields_left = 5'000'000;
  sensor->OptMeasure(7).Value = true;
  proximities = {1};
  forget_traffic();
  const auto answers = recorder.before_call;
  recorder.before_call = [&] {
    answers();
    longest_pause = std::max(longest_pause, clock.milliseconds() - last);
    last = clock.milliseconds();
  };
  last = clock.milliseconds();
  click(test->cmdRunCase1);
  expect_aborted();
  order.resize(6);
  EXPECT_EQ(order, (std::vector{2, 0, -1, 2, 0, -1}));
  EXPECT_GE(longest_pause, 120);
  EXPECT_LT(longest_pause, 121);
}

// --- the bench ---

// A target that comes near and leaves, in front of the sensor's own limits. The first reading of another
// measurement is still one of the measurement before: nothing waits for its conversion.
struct InterruptTestBench : InterruptTest {
  void SetUp() override {
    InterruptTest::SetUp();
    test->txtILow.Text = "400";
    test->txtIHigh.Text = "1500";
    click(test->cmdWriteLimits);
    board.scene() = {.light_lux = 300, .ir_counts = 0, .distance_mm = 40};
    constexpr int for_some_conversions = 500;
    later(message_is("Waiting for Interrupt High"), for_some_conversions, [this] {
      EXPECT_EQ(store.IntPinAsserted, 0);
      board.scene().distance_mm = 5;
      later(message_is("Waiting for Interrupt Low"), for_some_conversions, [this] {
        EXPECT_EQ(texts(test->lblProx).front(), "2047");
        board.scene().distance_mm = 100;
      });
    });
  }
};

TEST_F(InterruptTestBench, ATargetComesAndLeavesInLightEnough) {
  execute();
  expect_released("Test Completed");
  EXPECT_EQ(texts(test->lblProx), (Texts{"2047", "308"}));
  EXPECT_EQ(texts(test->lblRecordedLux), (Texts{"2047", "308"}));
  EXPECT_EQ(texts(test->lblCase21), (Texts{"2047", "400", "2047", "308"}));
  EXPECT_EQ(steps(), (std::vector{10, 10, 10, 10, 10, 0}));
  EXPECT_EQ(comparisons(), (std::vector{10, 0, 0, 0}));
}

TEST_F(InterruptTestBench, ATargetComesAndLeavesInTheDark) {
  test->txtCase2Sol1Lux.Text = "4000";
  execute();
  expect_released("Test Completed");
  EXPECT_EQ(texts(test->lblProx), (Texts{"2047", "308"}));
  EXPECT_EQ(texts(test->lblCase22_Delta), (Texts{"308", "1229", "921", "100"}));
  EXPECT_EQ(steps(), (std::vector{10, 10, 10, 10, 0, 10}));
  EXPECT_EQ(comparisons(), (std::vector{0, 0, 0, 10}));
}

}  // namespace
}  // namespace varzelin::testing
