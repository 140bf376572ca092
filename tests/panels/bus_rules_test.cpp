// The rules by which every panel reaches the bus: when it opens and closes the session, and when a control
// leaves its work to a loop.
#include "support/panel_fixture.h"

namespace varzelin::testing {
namespace {

struct PanelBusRules : PanelTest {
  void SetUp() override { make_measure(); }
};

TEST_P(PanelBusRules, WorkIsLeftToALoopWhileOneRunsOrIsAskedToStop) {
  struct Case {
    Flag Sample_Run;
    Flag AbortRequested;
    bool deferred;
  };
  for (const Case& c : {Case{0, 0, false}, Case{-1, 0, true}, Case{0, -1, true}, Case{-1, -1, true}}) {
    store.Sample_Run = c.Sample_Run;
    store.AbortRequested = c.AbortRequested;
    store.PendingUpdate = store.PendingReadRegs = store.PendingWriteR1 = store.PendingClearInt = 0;
    EXPECT_EQ(panel.deferred({&Store::PendingReadRegs, &Store::PendingWriteR1}), c.deferred)
        << c.Sample_Run << c.AbortRequested;
    for (const auto pending : {&Store::PendingUpdate, &Store::PendingReadRegs, &Store::PendingWriteR1}) {
      EXPECT_EQ(store.*pending, flag(c.deferred));
    }
    EXPECT_EQ(store.PendingClearInt, 0);
  }
  EXPECT_TRUE(recorder.calls.empty());
}

TEST_P(PanelBusRules, WhatIsPendingIsDoneOnceInTheOrderOfTheList) {
  std::string done;
  const std::vector<BusPanel::DeferredWork> work{
      {&Store::PendingIntLow, [&] { done += "low "; }},
      {&Store::PendingWriteR0, [&] { done += "R0 "; }},
      {&Store::PendingWriteR1, [&] { done += "R1 "; }},
  };
  store.PendingWriteR0 = store.PendingIntLow = -1;
  panel.run_deferred(work);
  EXPECT_EQ(done, "");  // without the main flag nothing is looked at
  store.PendingUpdate = -1;
  panel.run_deferred(work);
  panel.run_deferred(work);
  EXPECT_EQ(done, "low R0 ");
  EXPECT_EQ(store.PendingUpdate, 0);
}

TEST_P(PanelBusRules, AnActionOpensAndClosesTheSessionWithAYieldBehindEach) {
  int open = 0;
  int closed = 0;
  user.at_yield = [&] {
    open += !workbench().cmdexit.Enabled;
    closed += workbench().cmdexit.Enabled && store.Usb_Open == 0;
  };
  program.runtime.dispatch([&] { panel.connect_by_rule(); });
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(open, 1);
  closed = 0;
  program.runtime.dispatch([&] { panel.disconnect_by_rule(); });
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(closed, 1);
}

TEST_P(PanelBusRules, AnActionLeavesAHeldSessionAlone) {
  program.runtime.dispatch([&] { panel.hold_session(); });
  EXPECT_EQ(store.Man_Usb_Conn, -1);
  forget_traffic();
  int yields = 0;
  user.at_yield = [&] { ++yields; };
  program.runtime.dispatch([&] {
    panel.connect_by_rule();
    panel.disconnect_by_rule();
  });
  EXPECT_EQ(yields, 0);
  EXPECT_TRUE(recorder.calls.empty());
  program.runtime.dispatch([&] { panel.release_session(); });
  EXPECT_EQ(store.Man_Usb_Conn, 0);
  EXPECT_EQ(store.Usb_Open, 0);
}

INSTANTIATE_TEST_SUITE_P(Each, PanelBusRules, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
