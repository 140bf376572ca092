// The chart's scale that follows the readings by itself, on the multi-function panels.
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct ScaleFollower : MultiFunctionLoop {
  void SetUp() override {
    open("frmKVT71385");
    measure_by(ir_continuous);
    panel->chkAutoAuto.Value = 1;
    panel->txtScale.Text = "4000";
    click(panel->cmdScale);
    forget_traffic();
  }
  // Collects until `done`, or so many passes of all collections; gives the collections that were begun.
  std::int32_t collections(const std::function<bool()>& done, int passes = 100) {
    const std::int32_t before = store.Collections;
    int count = 0;
    std::int32_t seen = 0;
    user.yields_left = TestFrontEnd().yields_left;
    user.at_yield = [&] {
      if (store.Sample_Run != -1) return;
      if (store.Sample_Count != seen) count += store.Sample_Count > seen ? 1 : 0;
      seen = store.Sample_Count;
      if (done() || count >= passes) program.runtime.post(clicking(panel->cmdStopData));
    };
    click(panel->cmdCollectData);
    user.at_yield = nullptr;
    return store.Collections - before;
  }
  std::int32_t collections() {
    return collections([this] { return store.Sample_Count == 20; });
  }
};

// 1.15 x 5000 is more than the scale, which becomes that: then it fits.
TEST_F(ScaleFollower, GoesUpOnce) {
  results(5000);
  EXPECT_EQ(collections(), 2);
  EXPECT_EQ(panel->txtScale.Text, "4096");  // of the rest that the sensor was put to
  EXPECT_EQ(store.PeakReading, 5000);
  expect_ended();
}

TEST_F(ScaleFollower, TheNewScaleIsThatOfThePeak) {
  results(5000);
  std::string scale;
  collections([&] {
    scale = panel->txtScale.Text;
    return store.Sample_Count == 20;
  });
  EXPECT_EQ(scale, "5750");
}

TEST_F(ScaleFollower, GoesDownOnce) {
  panel->txtScale.Text = "20000";
  results(1000);
  std::string scale;
  EXPECT_EQ(collections([&] {
              scale = panel->txtScale.Text;
              return store.Sample_Count == 20;
            }),
            2);
  EXPECT_EQ(scale, "1150");
}

TEST_F(ScaleFollower, AScaleThatFitsStays) {
  for (const int count : {400, 2000, 3478}) {  // from a tenth of it on, to it by 1.15
    measure_by(ir_continuous);
    panel->txtScale.Text = "4000";
    results(count);
    EXPECT_EQ(collections(), 1) << count;
  }
  for (const int count : {399, 3479}) {
    measure_by(ir_continuous);
    panel->txtScale.Text = "4000";
    results(count);
    EXPECT_GE(collections(), 2) << count;
  }
}

// A few counts are no reason to go down.
TEST_F(ScaleFollower, GoesDownForMoreThanTenOnly) {
  for (const auto& [count, down] : {std::pair{10, false}, {11, true}}) {
    measure_by(ir_continuous);
    panel->txtScale.Text = "4000";
    results(count);
    EXPECT_EQ(collections() > 1, down) << count;
  }
}

TEST_F(ScaleFollower, WithoutItsTickItDoesNothing) {
  panel->chkAutoAuto.Value = 0;
  results(5000);
  EXPECT_EQ(collections(), 1);
}

// The peak stands for the reading while the new scale is looked for, and not any longer.
TEST_F(ScaleFollower, TheReadingIsKept) {
  result = [this](int) { return store.Sample_Count == 3 ? 5000 : 4900; };
  bool peak_seen = false;
  std::int32_t behind = 0;
  const std::int32_t first = store.Collections + 1;
  collections([&] {
    if (store.Collections == first && store.Sample_Count == 6) peak_seen = peak_seen || store.Reading == 5000;
    if (store.Collections == first + 1 && store.Sample_Count == 0 && behind == 0 &&
        store.Man_Usb_Conn == -1 && program.runtime.handlers_on_stack() == 1)
      behind = store.Reading;
    return store.Collections > first && store.Sample_Count == 3;
  });
  EXPECT_TRUE(peak_seen);
  EXPECT_EQ(behind, 4900);
}

// A scale beyond the platform's integers ends the search, not the loop; the reading is put back all the same.
TEST_F(ScaleFollower, TheReadingIsKeptThoughTheScaleFails) {
  measure_by(als_continuous);
  store.RangeLux[0] = 2147483647;
  result = [this](int) { return store.Sample_Count == 3 ? 4096 : 4000; };
  std::int32_t reading = 0;
  const auto done = [&] {
    if (store.Sample_Count == 8) reading = store.Reading;  // at last in the wait behind the search
    return store.Sample_Count == 9;
  };
  EXPECT_EQ(collections(done), 1);
  EXPECT_GT(store.PeakReading, 2146000000);
  EXPECT_EQ(reading, 2096640124);  // of the 4000
  EXPECT_TRUE(user.errors.empty());
}

// It is the search's own stop that the collection hears.
TEST_F(ScaleFollower, AStopDuringTheSearchIsLost) {
  results(5000);
  bool stopped = false;
  const std::int32_t first = store.Collections + 1;
  collections([&] {
    if (store.Collections == first && store.Sample_Count == 6 && panel->txtScale.Text == "5750" && !stopped) {
      stopped = true;
      program.runtime.post(clicking(panel->cmdStopData));
    }
    return store.Collections > first && store.Sample_Count == 5;
  });
  EXPECT_TRUE(stopped);
  EXPECT_EQ(store.Collections, first + 1);
  EXPECT_EQ(store.Sample_Count, 5);
  expect_ended();
}

TEST_F(ScaleFollower, TheRestartIsTheSameLoopInTheSameSession) {
  results(5000);
  EXPECT_EQ(collections(), 2);
  EXPECT_EQ(calls("WDU_VB_Init"), sessions_of_a_collection());
  EXPECT_TRUE(user.errors.empty());
  expect_ended();
}

// A peak whose scale is not a whole number is above the scale that it gets: it goes on like that.
TEST_F(ScaleFollower, ManyRestartsDoNotGrowTheStack) {
  results(4111);
  int deepest = 0;
  const char* lowest = nullptr;
  const char* highest = nullptr;
  const auto measure_stack = [&] {
    const char here = 0;
    const char* address = &here;
    deepest = std::max(deepest, program.runtime.handlers_on_stack());
    if (!lowest || address < lowest) lowest = address;
    if (!highest || address > highest) highest = address;
    return false;
  };
  EXPECT_GT(collections(measure_stack, 6000), 900);
  EXPECT_LE(deepest, 3);
  EXPECT_LT(highest - lowest, 64 * 1024);
  EXPECT_TRUE(user.errors.empty());
  expect_ended();
}

}  // namespace
}  // namespace varzelin::testing
