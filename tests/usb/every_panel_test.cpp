// Every sensor panel on the USB board, on the real libusb and in real time: chosen, collecting, pulled,
// plugged in again.
#include <gtest/gtest.h>

#include <algorithm>

#include "boards/usb/usb_board.h"
#include "support/panel_fixture.h"
#include "usb/emulated_usb.h"

namespace varzelin::testing {
namespace {

struct PanelOnTheUsb : ::testing::TestWithParam<std::string> {
  usb_testing::EmulatedBoard board;
  usb_testing::EmulatedUsb usb;
  forms::SystemClock clock;
  boards::UsbBoard driver;
  TestFrontEnd user;
  Recorder recorder;
  Program program{clock, driver, user};
  Store& store = program.store;
  SensorPanel* panel = nullptr;

  void SetUp() override {
    if (!usb.possible()) GTEST_SKIP() << "umockdev's library is not preloaded (run this test through ctest)";
    driver.observer = &recorder;
    add_forms(program);
    start(program);
    const auto row = std::ranges::find(model_list, GetParam(), &ModelRow::panel);
    plug(row->text);
    auto& list = program.forms.touch<frmStartup>().cboDeviceSelect;
    program.runtime.dispatch(
        [&] { forms::user::click_row(list, static_cast<int>(row - model_list.begin())); });
    panel = dynamic_cast<SensorPanel*>(&program.forms.touch(GetParam()));
    const auto entry = measuring_by_panel.find(GetParam());
    if (entry != measuring_by_panel.end()) entry->second(*panel);
    panel->txtInterval.Text = "5";
  }
  void plug(const char* model) {
    usb.plug(board);
    board.brain([&](boards::SimulatedBoard& brain) { ASSERT_TRUE(brain.mount(model)); });
  }
  // Collects until `enough`, or until the collection ends by itself.
  void collect(std::function<bool()> enough) {
    recorder.packets.clear();
    store.Sample_Count = 0;
    user.at_yield = [this, enough = std::move(enough)] {
      if (store.Sample_Run == 0 || !enough()) return;
      program.runtime.post([this] { forms::user::click(panel->cmdStopData); });
      const auto kept_alive = std::exchange(user.at_yield, nullptr);
    };
    program.runtime.dispatch([&] { forms::user::click(panel->cmdCollectData); });
    user.at_yield = nullptr;
  }
  bool all_good() const {
    return !recorder.packets.empty() &&
           std::ranges::all_of(recorder.packets, [](const Packet& each) { return each.status == 0; });
  }
};

TEST_P(PanelOnTheUsb, CollectsStopsWhenPulledAndCollectsAgain) {
  collect([this] { return store.Sample_Count > 1 && store.RawReading > 1; });
  EXPECT_TRUE(all_good());
  EXPECT_GT(store.Sample_Count, 1);
  EXPECT_EQ(store.Usb_Open, 0);

  board.pull_within_transfer(4);
  collect([] { return false; });
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_FALSE(all_good());
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), forms::QBColor(12));

  usb.unplug(board);
  plug(std::ranges::find(model_list, GetParam(), &ModelRow::panel)->text);
  collect([this] { return store.Sample_Count > 5; });
  EXPECT_TRUE(all_good());
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), forms::QBColor(10));
  EXPECT_TRUE(user.errors.empty());
}

INSTANTIATE_TEST_SUITE_P(Each, PanelOnTheUsb, ::testing::ValuesIn(every_panel()), panel_name);

}  // namespace
}  // namespace varzelin::testing
