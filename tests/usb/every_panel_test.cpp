// Every sensor panel on the USB board, on the real libusb and in real time: chosen, collecting, pulled,
// plugged in again.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/panel_fixture.h"
#include "usb/program_on_usb.h"

namespace varzelin::testing {
namespace {

struct PanelOnTheUsb : ::testing::TestWithParam<std::string>, ProgramOnTheUsb {
  SensorPanel* panel = nullptr;

  void SetUp() override {
    start_program();
    if (IsSkipped()) return;
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
  // Collects until `enough`, or until the collection ends by itself.
  void collect(std::function<bool()> enough) {
    recorder.packets.clear();
    store.Sample_Count = 0;
    user.at_yield = [this, enough = std::move(enough)] {
      if (store.Sample_Run == 0 || !enough()) return;
      program.runtime.post([this] { forms::user::click(panel->cmdStopData); });
      const auto kept_alive = std::exchange(user.at_yield, nullptr);
    };
    click(panel->cmdCollectData);
    user.at_yield = nullptr;
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
