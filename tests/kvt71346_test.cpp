// The KVT71346/7 panel on the simulated board.
#include <gtest/gtest.h>

#include "panels/single_channel/kvt71346.h"
#include "shell/start_panel.h"
#include "support/test_program.h"

namespace varzelin::testing {
namespace {

struct Kvt71346 : ::testing::Test, TestProgram {
  frmKVT71346* panel = nullptr;

  void SetUp() override {
    choose(form<frmStartup>().cboDeviceSelect, 0);
    panel = &form<frmKVT71346>();
    recorder.packets.clear();
  }
};

TEST_F(Kvt71346, ChoosingTheModelShowsThePanel) {
  EXPECT_TRUE(panel->visible());
  EXPECT_FALSE(form<frmStartup>().visible());
  EXPECT_FALSE(workbench().visible());
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(panel->txtInterval.Text, "120");
  EXPECT_EQ(store.Scale_Max, 15000);
}

TEST_F(Kvt71346, CollectsInRealTimeUntilStopped) {
  panel->Lst71346_Mode.ListIndex = 2;
  panel->ModeIndex = 2;
  at_yield([&] { return store.Sample_Count >= 40; }, [&] { forms::user::click(panel->cmdStopData); });
  click(panel->cmdCollectData);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_GE(store.Sample_Count, 40);
  EXPECT_EQ(store.Sample_Value[30], 5100);
  EXPECT_EQ(panel->txtTime1.Text, "113");
}

}  // namespace
}  // namespace varzelin::testing
