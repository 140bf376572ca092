// The interrupt test's panel: its controls, and what each does by itself.
#include "panels/multi_function/proximity_offset.h"
#include "support/interrupt_test_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

TEST_F(InterruptTest, IsOpenedByTheHiddenButtonOfTwoModelsWhichStopsACollection) {
  for (const auto& [panel, opens] : {std::pair{"frmKVT71385", true},
                                     {"frmKVT71388", false},
                                     {"frmKVT71390", true},
                                     {"frmKVT71392", false}}) {
    PanelProgram other;
    auto& model = dynamic_cast<MultiFunctionPanel&>(other.open(panel));
    EXPECT_FALSE(model.cmdIntr1.Visible);
    EXPECT_EQ(model.cmdIntr1.Caption, "Interrupt Batch");
    other.store.Sample_Run = true_flag;
    const std::int64_t yields = other.user.yields_left;
    other.click(model.cmdIntr1);
    EXPECT_EQ(other.store.Sample_Run, 0);
    EXPECT_GE(yields - other.user.yields_left, 100) << panel;
    const forms::Form* reached = other.program.forms.loaded("frm71385INTR");
    EXPECT_EQ(reached && reached->visible(), opens) << panel;
    EXPECT_EQ(reached && other.program.forms.front() == reached, opens) << panel;
  }
}

TEST_F(InterruptTest, WorksThePanelOfKvt71385FromTheOtherModelToo) {
  PanelProgram other;
  auto& model = dynamic_cast<MultiFunctionPanel&>(other.open("frmKVT71390"));
  EXPECT_FALSE(other.program.forms.loaded("frmKVT71385"));
  other.click(model.cmdIntr1);
  ASSERT_TRUE(other.program.forms.loaded("frmKVT71385"));
  EXPECT_FALSE(other.program.forms.loaded("frmKVT71385")->visible());
}

TEST_F(InterruptTest, TheOffsetLabelOpensTheConstants) {
  EXPECT_FALSE(form<frmProxOff>().visible());
  program.runtime.dispatch([&] { forms::user::double_click(sensor->subtraction->lblOffset); });
  EXPECT_TRUE(form<frmProxOff>().visible());
}

// --- controls ---

TEST_F(InterruptTest, ItsControlsSayWhatTheyAreFor) {
  EXPECT_EQ(test->Caption, "KVT71385 Interrupt Development");
  const std::pair<const Frame&, const char*> frames[] = {{test->Frame1, "Case 1: Setting Threshold"},
                                                         {test->Frame2, "Measurements: Register Save Values"},
                                                         {test->Frame3, "Interrupt Status"},
                                                         {test->Frame4, "Resolution / Time Base"},
                                                         {test->Frame5, "Calculate Case"},
                                                         {test->Frame6, "Case 2 Parameters"}};
  for (const auto& [frame, caption] : frames) EXPECT_EQ(frame.Caption, caption);

  struct Box {
    const TextBox& box;
    const char* text;
    const char* tip;
    const Frame& frame;
  };
  for (const Box& each :
       {Box{test->txtIHigh, "25000", "High Proximity Threshold", test->Frame1},
        {test->txtILow, "1499", "Low Proximity Threshold", test->Frame1},
        {test->txtLuxThreshold, "1000", "", test->Frame1},
        {test->txtDeltaTime, "400", "Case 2, Solution Time Deta Time in mSec.", test->Frame6},
        {test->txtDeltaADC, "100", "Case 2, Solution2, Delta ALS Change User Input", test->Frame6},
        {test->txtCase2Sol1Lux, "400", "Case 2 Solution 1, Minimum ALS reading at High Threshold",
         test->Frame6}}) {
    EXPECT_EQ(each.box.Text, each.text);
    EXPECT_EQ(each.box.ToolTipText, each.tip);
    EXPECT_EQ(each.box.container(), &each.frame) << each.text;
  }
  EXPECT_EQ(test->cmdRunCase1.ToolTipText, "Click Here to start Interrupt Sequence");
  EXPECT_EQ(test->cmdAbort1.ToolTipText, "Stops Execution of Interrupt Sequence");
}

TEST_F(InterruptTest, ItsButtonsAndLabelsHaveTheirCaptions) {
  const std::pair<const CommandButton&, const char*> buttons[] = {
      {test->cmdWriteLimits, "Write Limits"},
      {test->cmdSampleII, "Sample"},
      {test->cmdClearIntr, "Clear Interrupt"},
      {test->cmdRunCase1, "Execute"},
      {test->cmdAbort1, "Abort"},
      {test->cmdRecordLux(0), "Record Lux1"},
      {test->cmdRecordLux(1), "Record Lux2"},
      {test->cmdRecordLux(2), "Record Lux3"},
      {test->mcdRecordProx(0), "Record Prox1"},
      {test->mcdRecordProx(1), "Record Prox2"},
      {test->mcdRecordProx(2), "Record Prox3"},
  };
  for (const auto& [button, caption] : buttons) EXPECT_EQ(button.Caption, caption);
  EXPECT_EQ(test->OptResolution(0).Caption, "16 Bit");
  EXPECT_EQ(test->OptResolution(1).Caption, "12 Bit");
  EXPECT_EQ(test->lblLuxThreshold.Caption, "ALS Too Low Limit");
  EXPECT_EQ(texts(test->lblLux1), (Texts{"000000", "000000", "000000"}));
  EXPECT_EQ(texts(test->Label2), (Texts{"00000", "00000", "00000"}));
  EXPECT_EQ(texts(test->lblRecordedLux), (Texts{"000000", "000000"}));
  EXPECT_EQ(texts(test->lblProx), (Texts{"0000", "0000"}));
  EXPECT_EQ(texts(test->lblCase21), (Texts(4)));
  EXPECT_EQ(texts(test->lblCase22_Delta), (Texts(4)));
  EXPECT_EQ(test->lblMessage.Caption, "");
  EXPECT_EQ(texts(test->lblALSCompare), (Texts{"ALS<X", "ALS>X", "Slope <X", "Slope > X"}));
  EXPECT_EQ(texts(test->lblStep),
            (Texts{"Wait for High Interrupt, Then Record  ALS @ 0 mm:", "High Interrupt Cleared",
                   "Wait for Low Interrupt, Then Record ALS @ Low Int:", "Received Interrupt Low ",
                   "Case2 Solution 1 Detect (ALS@ 0mm > User Limit)", "Case2 Solution 2 Detect"}));
}

TEST_F(InterruptTest, ItsControlsStandInTheirFrames) {
  const auto expect_in = [this](const Frame& frame, std::initializer_list<const char*> names) {
    for (const forms::Control* control : test->controls()) {
      if (std::ranges::find(names, control->name()) == names.end()) continue;
      const bool of_pin = control->name() == "ShpIndrd" && control->index() == 10;
      EXPECT_EQ(control->container(), of_pin ? &test->Frame3 : &frame) << control->full_name();
    }
  };
  expect_in(test->Frame1, {"lblLuxThreshold", "cmdWriteLimits"});
  expect_in(test->Frame2, {"cmdRecordLux", "mcdRecordProx", "lblLux1", "Label2"});
  expect_in(test->Frame3, {"cmdSampleII", "cmdClearIntr", "ShpINTexternal"});
  expect_in(test->Frame4, {"OptResolution"});
  expect_in(test->Frame5, {"cmdRunCase1", "cmdAbort1", "lblMessage", "lblRecordedLux", "lblProx", "lblCase21",
                           "lblCase22_Delta", "ShpALSCompare", "ShpIndrd", "lblStep", "lblALSCompare"});
}

TEST_F(InterruptTest, ItsLampShowsTheTransfers) {
  EXPECT_EQ(store.Active_Form, test);
  click(test->cmdSampleII);
  click(test->mcdRecordProx(0));
  EXPECT_EQ(test->ShpAttach.FillColor.get(), lamp(10));
  board.fail_transfers(1000);
  click(test->mcdRecordProx(0));
  EXPECT_EQ(test->ShpAttach.FillColor.get(), lamp(12));
}

// --- the limits ---

TEST_F(InterruptTest, TheLimitsGoToTheSensorByItsPanel) {
  test->txtILow.Text = "400";
  test->txtIHigh.Text = "1500";
  click(test->cmdWriteLimits);
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_EQ(
      sent_on(2),
      (ByteLists{
          {0, 0x89, 4, 0x90, 0x01, 0xDC, 0x05}, {1, 0x89, 4}, {1, 0x89, 5}, {1, 0x89, 6}, {1, 0x89, 7}}));
  EXPECT_EQ(sensor->limits.txtILow.Text, "400");
  EXPECT_EQ(sensor->limits.txtIHigh.Text, "1500");
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(InterruptTest, ALimitBeyondTheBoundsIsRefusedAndTheSensorsOwnReadBack) {
  click(test->cmdWriteLimits);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "High Limit must be within  0 Min and  4096 Max. Re-enter High Limt");
  EXPECT_EQ(sent_on(2), (ByteLists{{1, 0x89, 4}, {1, 0x89, 5}, {1, 0x89, 6}, {1, 0x89, 7}}));
  EXPECT_EQ(sensor->limits.txtILow.Text, "100");
  EXPECT_EQ(sensor->limits.txtIHigh.Text, "1500");
  EXPECT_EQ(test->txtIHigh.Text, "25000");
  test->txtILow.Text = "-1";
  click(test->cmdWriteLimits);
  ASSERT_EQ(user.boxes.size(), 2u);
  EXPECT_EQ(user.boxes[1].text, "Low Limit must be within  0 Min and  4096 Max. Re-enter Low Limit");
}

// --- the width ---

TEST_F(InterruptTest, ShowsTheWidthOfTheSensorPanelWithoutTouchingIt) {
  for (const auto& [width, wide, narrow] :
       {std::tuple{0, true, false}, {1, false, true}, {2, false, false}, {3, false, false}}) {
    program.forms.unload("frm71385INTR");
    program.forms.sweep();
    sensor->OptITime(width).select_quietly();
    forget_traffic();
    reopen();
    EXPECT_EQ(test->OptResolution(0).Value, wide) << width;
    EXPECT_EQ(test->OptResolution(1).Value, narrow) << width;
    EXPECT_TRUE(recorder.packets.empty());
  }
}

TEST_F(InterruptTest, AWidthIsChosenOnTheSensorPanel) {
  set_width(0);
  EXPECT_TRUE(sensor->OptITime(0).Value);
  EXPECT_EQ(store.AdcBits, 16);
  EXPECT_EQ(*board.register_value(1) & 0x0C, 0x00);
  EXPECT_EQ(std::ranges::count_if(sent_on(2), [](const auto& bytes) { return bytes[0] == 0; }), 2);
  set_width(1);
  EXPECT_TRUE(sensor->OptITime(1).Value);
  EXPECT_EQ(store.AdcBits, 12);
  forget_traffic();
  set_width(1);
  EXPECT_EQ(std::ranges::count_if(sent_on(2), [](const auto& bytes) { return bytes[0] == 0; }), 2);
}

// --- the pin ---

TEST_F(InterruptTest, ASampleShowsThePin) {
  for (const auto& [level, color, low, blink] :
       {std::tuple{0x7F, 12, -1, 10}, {0x80, 0, 0, 2}, {0x00, 12, -1, 10}}) {
    board.set_port('B', static_cast<std::uint8_t>(level));
    forget_traffic();
    click(test->cmdSampleII);
    EXPECT_EQ(test->ShpINTexternal.FillColor.get(), lamp(color));
    EXPECT_EQ(test->ShpIndrd(10).FillColor.get(), lamp(blink));
    EXPECT_EQ(store.IntPinAsserted, low);
    EXPECT_EQ(sent_on(1).size(), 1u);
    EXPECT_TRUE(sent_on(2).empty());
    EXPECT_EQ(store.Usb_Open, 0);
  }
  EXPECT_NE(sensor->pin.ShpINTexternal.FillColor.get(), lamp(12));
}

TEST_F(InterruptTest, ClearingReadsTheFlagAndSamplesThePin) {
  board.set_port('B', 0x7F);
  click(test->cmdClearIntr);
  EXPECT_EQ(sent_on(2), (ByteLists{{2, 0x89, 0}}));
  EXPECT_EQ(sent_on(1).size(), 1u);
  EXPECT_EQ(recorder.packets.back().pipe, 129);
  EXPECT_EQ(test->ShpINTexternal.FillColor.get(), lamp(12));
}

// --- the record buttons ---

TEST_F(InterruptTest, ARecordSelectsItsMeasurementOnceAndKeepsTheCount) {
  lights = {300, 301};
  proximities = {700, 701};
  const std::vector<int> result_read{2, 0x89, 2};
  const auto chosen = [&](std::vector<int> register_0) { return std::ranges::count(sent_on(2), register_0); };
  click(test->cmdRecordLux(0));
  EXPECT_TRUE(sensor->OptMeasure(5).Value);
  EXPECT_EQ(chosen({0, 0x89, 8, 0x00}), 1);
  EXPECT_EQ(chosen({0, 0x89, 0, 0xA0}), 1);
  EXPECT_EQ(sent_on(2).back(), result_read);
  EXPECT_EQ(store.Sample_Count, 1);
  EXPECT_EQ(store.Sample_Value[1], 300);

  forget_traffic();
  store.Sample_Count = 5;
  click(test->cmdRecordLux(2));
  EXPECT_EQ(sent_on(2), (ByteLists{result_read}));
  EXPECT_EQ(store.Sample_Value[1], 301);
  EXPECT_EQ(texts(test->lblLux1), (Texts{"300", "000000", "301"}));

  forget_traffic();
  click(test->mcdRecordProx(1));
  EXPECT_TRUE(sensor->OptMeasure(7).Value);
  EXPECT_EQ(chosen({0, 0x89, 8, 0x00}), 1);
  EXPECT_EQ(chosen({0, 0x89, 0, 0xE1}), 1);
  EXPECT_EQ(sent_on(2).back(), result_read);

  forget_traffic();
  click(test->mcdRecordProx(0));
  EXPECT_EQ(sent_on(2), (ByteLists{result_read}));
  EXPECT_EQ(texts(test->Label2), (Texts{"701", "700", "00000"}));
  EXPECT_EQ(texts(test->lblLux1), (Texts{"300", "000000", "301"}));
  EXPECT_EQ(store.Usb_Open, 0);
}

}  // namespace
}  // namespace varzelin::testing
