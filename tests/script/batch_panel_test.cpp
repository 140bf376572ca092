// The batch panel's fixed sequence.
#include "script/batch_panel.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "boards/simulated/light_sources.h"
#include "support/test_program.h"

namespace varzelin::testing {
namespace {

struct BatchPanel : ::testing::Test, TestProgram {
  ALS_Batch* panel = nullptr;

  void SetUp() override {
    board.mount("KVT71374");
    workbench();
    panel = &form<ALS_Batch>();
    recorder.packets.clear();
    recorder.calls.clear();
  }
  // Answers of the board to the sequence: each write's status and each reading.
  void run(int als, int ir, int prox) {
    board.queue_reply({4});
    for (const int reading : {als, ir, prox}) {
      board.queue_reply({4});
      board.queue_reply(
          {2, static_cast<std::uint8_t>(reading & 0xFF), static_cast<std::uint8_t>(reading >> 8)});
    }
    board.queue_reply({4});
    click(panel->cmdScript1);
  }
  std::string label(int index) const { return panel->lblALS(index).Caption; }
  int source() const {
    for (int i = 0; i < 3; ++i) {
      if (panel->OptSource(i).Value) return i;
    }
    return -1;
  }
};

TEST_F(BatchPanel, FirstLook) {
  EXPECT_EQ(panel->Caption, "ALS, IR, Prox Sequence");
  for (int i = 0; i < 6; ++i) EXPECT_EQ(label(i), "000000");
  EXPECT_EQ(source(), -1);
  EXPECT_EQ(panel->OptSource(1).Caption, "Flourescent");
  EXPECT_EQ(panel->OptPrxADJ(1).Caption, "Constant");
}

TEST_F(BatchPanel, PacketsOfTheSequence) {
  store.I2C_WrAdr = 0x44;  // the sequence has its own address
  const auto before = clock.now();
  run(50, 100, 300);
  const std::vector<std::vector<int>> requests{{2, 0x88, 0, 0x00, 0x00},
                                               {2, 0x88, 0, 0x20, 0x76},
                                               {2, 0x89, 2},
                                               {2, 0x88, 0, 0x40, 0x76},
                                               {2, 0x89, 2},
                                               {2, 0x88, 0, 0x60, 0x76},
                                               {2, 0x89, 2},
                                               {2, 0x88, 0, 0x00, 0x00}};
  ASSERT_EQ(recorder.packets.size(), 16u);
  for (std::size_t i = 0; i < requests.size(); ++i) {
    EXPECT_EQ(recorder.packets[2 * i].pipe, boards::pipe_i2c_out);
    EXPECT_EQ(recorder.packets[2 * i].bytes, requests[i]) << i;
    EXPECT_EQ(recorder.packets[2 * i + 1].pipe, boards::pipe_i2c_in);
    EXPECT_EQ(recorder.packets[2 * i + 1].size, 3u);
  }
  EXPECT_GE(clock.now() - before, std::chrono::milliseconds(360));
  EXPECT_LT(clock.now() - before, std::chrono::milliseconds(400));
}

TEST_F(BatchPanel, ReadingsAreLowByteFirst) {
  run(0x0102, 0x0304, 0x0506);
  EXPECT_EQ(label(0), "258");
  EXPECT_EQ(label(1), "772");
  EXPECT_EQ(label(2), "1286");
}

TEST_F(BatchPanel, Fluorescent) {
  run(50, 100, 300);
  EXPECT_EQ(label(3), "2.000");
  EXPECT_EQ(label(4), "222.222");
  EXPECT_EQ(label(5), "245.000");
  EXPECT_EQ(source(), 1);
}

TEST_F(BatchPanel, Incandescent) {
  run(50, 1400, 300);
  EXPECT_EQ(label(3), "28.000");
  EXPECT_EQ(label(4), "35.012");
  EXPECT_EQ(source(), 0);
}

TEST_F(BatchPanel, SunLight) {
  run(50, 750, 300);
  EXPECT_EQ(label(3), "15.000");
  EXPECT_EQ(label(4), "69.444");
  EXPECT_EQ(source(), 2);
}

TEST_F(BatchPanel, SourceByTheRoundedRatio) {
  const std::vector<std::pair<int, int>> sources{{94, 1}, {95, 2}, {105, 2}, {264, 2}, {265, 2}, {266, 0}};
  for (const auto& [ir, expected] : sources) {
    run(10, ir, 300);
    EXPECT_EQ(source(), expected) << "9.5 rounds to 10, 26.5 to 26: " << ir;
  }
}

// From here on the simulated sensor answers by itself.
TEST_F(BatchPanel, NamesEachLightSourceOfTheBench) {
  int expected = 0;
  for (const boards::LightSource& one : boards::light_sources) {
    for (const char* model : {"KVT71374", "KVT71376"}) {
      board.mount(model);
      board.scene().light_lux = one.light_lux;
      board.scene().ir_counts = one.ir_counts;
      click(panel->cmdScript1);
      EXPECT_EQ(source(), expected) << one.name << ": " << label(3);
    }
    ++expected;
  }
  EXPECT_EQ(expected, 3);
}

TEST_F(BatchPanel, MoreInfraredInTheSameLightIsAnotherSource) {
  board.scene() = {.light_lux = 500, .ir_counts = 0, .distance_mm = 1e9};  // 128 counts in this range
  const std::vector<std::pair<int, int>> sources{{0, 1},     {19440, 1}, {19472, 2},
                                                 {54240, 2}, {54304, 0}, {65535, 0}};
  for (const auto& [infrared, expected] : sources) {
    board.scene().ir_counts = infrared;
    click(panel->cmdScript1);
    EXPECT_EQ(label(0), "128");
    EXPECT_EQ(source(), expected) << infrared << ": " << label(3);
  }
}

TEST_F(BatchPanel, TakesTheThreeReadingsOfTheBench) {
  board.scene() = {.light_lux = 1000, .ir_counts = 800, .distance_mm = 20};
  click(panel->cmdScript1);
  EXPECT_EQ(label(0), "256");
  EXPECT_EQ(label(1), "50");
  // At 50 mA and 327.7 kHz: package, target, infrared.
  EXPECT_EQ(label(2), std::to_string(150 + 2048 * 4 / 2 / 2 / 16 + 50));
}

TEST_F(BatchPanel, CorrectionChangesAtSeventy) {
  run(50, 69, 100);
  EXPECT_EQ(label(5), "48.250");
  EXPECT_TRUE(panel->OptPrxADJ(0).Value);
  run(50, 70, 100);
  EXPECT_EQ(label(5), "45.000");
  EXPECT_TRUE(panel->OptPrxADJ(1).Value);
  EXPECT_FALSE(panel->OptPrxADJ(0).Value);
}

TEST_F(BatchPanel, LargestRatioDoesNotOverflow) {
  run(1, 65535, 65535);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(label(3), "65535.000");
  EXPECT_EQ(source(), 0);
}

TEST_F(BatchPanel, NoAmbientLightDividesByZero) {
  run(0, 100, 300);
  EXPECT_EQ(user.errors, std::vector<int>{forms::division_by_zero});
  EXPECT_EQ(label(2), "300");
  EXPECT_EQ(label(3), "000000");
  EXPECT_NE(store.Usb_Open, 0) << "the handler ended before it closed the session";
}

TEST_F(BatchPanel, OpensAndClosesTheSessionWithoutLamps) {
  const auto lamp_before = workbench().shpUSBCon(1).FillColor.get();
  run(50, 100, 300);
  EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Init"), 1);
  EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Uninit"), 1);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(workbench().shpUSBCon(1).FillColor, lamp_before);
}

TEST_F(BatchPanel, LeavesAHeldSessionAlone) {
  click(workbench().cmdUSBConnect);
  store.Man_Usb_Conn = true_flag;
  recorder.calls.clear();
  run(50, 100, 300);
  EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Init"), 0);
  EXPECT_NE(store.Usb_Open, 0);
}

TEST_F(BatchPanel, ReadAndWriteOnlyOpenAndClose) {
  for (CommandButton* button : {&panel->cmdReadi2c, &panel->cmdWriteI2C}) {
    recorder.calls.clear();
    click(*button);
    EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Init"), 1);
    EXPECT_EQ(store.Usb_Open, 0);
  }
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(BatchPanel, PlugPulledAtEveryTransfer) {
  for (std::size_t after = 0; after < 16; ++after) {
    TestProgram bench;
    bench.workbench();
    auto& batch = bench.form<ALS_Batch>();
    bench.board.mount("KVT71374");
    bench.board.unplug_after(after);
    bench.click(batch.cmdScript1);
    EXPECT_FALSE(bench.board.plugged());
    if (!bench.user.errors.empty()) {
      EXPECT_EQ(bench.user.errors, std::vector<int>{forms::division_by_zero}) << after;
      bench.program.runtime.dispatch([&] { bench.workbench().cmdUSBDisconnect_Click(); });
    }
    bench.board.plug();
    bench.user.errors.clear();
    bench.click(batch.cmdScript1);
    EXPECT_TRUE(bench.user.errors.empty()) << after;
    EXPECT_EQ(batch.lblALS(0).Caption, "128") << after;
  }
}

}  // namespace
}  // namespace varzelin::testing
