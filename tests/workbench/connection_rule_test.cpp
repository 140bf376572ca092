// The connection rule in its forms: what is done, and how often it yields.
#include "workbench/connection_rule.h"
#include "bridge/session.h"
#include "support/workbench_fixture.h"

namespace varzelin::testing {
namespace {

struct ConnectionRule : WorkbenchTest {
  int closing_yields(const std::function<void()>& close) {
    bench.Connect_Usb();
    forget();
    return yields_of(close);
  }
  int opening_yields(const std::function<void()>& open) {
    bench.Disconnect_USB();
    forget();
    return yields_of(open);
  }
};

TEST_F(ConnectionRule, OpensWithTheButtonAndThenYields) {
  const int button = opening_yields([&] { bench.cmdUSBConnect_Click(); });
  bench.cmdexit.Enabled = true;
  EXPECT_EQ(opening_yields([&] { connect_by_rule(program); }), button + 1);
  EXPECT_NE(store.Usb_Open, 0);
  EXPECT_FALSE(bench.cmdexit.Enabled) << "as the button does";
  EXPECT_EQ(opening_yields([&] { connect_by_rule(program, 0); }), button);
}

TEST_F(ConnectionRule, ClosesWithTheButtonAndThenYields) {
  const int button = closing_yields([&] { bench.cmdUSBDisconnect_Click(); });
  EXPECT_EQ(closing_yields([&] { disconnect_by_rule(program); }), button + 1);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(bench.txthDriver.Text, "Closed") << "as the button does";
  EXPECT_EQ(closing_yields([&] { disconnect_by_rule(program, 0); }), button);
}

TEST_F(ConnectionRule, UnseenItLeavesTheWorkbenchAloneAndYieldsTwice) {
  const int opening = opening_yields([&] { Mod_Connect_Usb(program); });
  const int closing = closing_yields([&] { Mod_Disconnect_USB(program); });
  bench.txthDriver.Text = "as it was";
  EXPECT_EQ(opening_yields([&] { connect_unseen_by_rule(program); }), opening + 2);
  EXPECT_NE(store.Usb_Open, 0);
  EXPECT_EQ(yields_of([&] { disconnect_unseen_by_rule(program); }), closing + 2);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(bench.txthDriver.Text, "as it was");
}

TEST_F(ConnectionRule, AHeldSessionIsNeitherOpenedNorClosed) {
  store.Man_Usb_Conn = true_flag;
  EXPECT_EQ(opening_yields([&] { connect_by_rule(program); }), 0);
  EXPECT_EQ(opening_yields([&] { connect_unseen_by_rule(program); }), 1);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(closing_yields([&] { disconnect_by_rule(program); }), 0);
  EXPECT_EQ(closing_yields([&] { disconnect_unseen_by_rule(program); }), 1);
  EXPECT_NE(store.Usb_Open, 0);
  EXPECT_EQ(log(), "");
}

}  // namespace
}  // namespace varzelin::testing
