// The constant of a proximity reading: which one fits the emitter, and when it is looked up.
#include "panels/multi_function/proximity_offset.h"
#include "support/multi_function_fixture.h"

namespace varzelin::testing {
namespace {

struct ProximityOffset : Kvt71385Panel {
  ProximitySubtraction& part() { return *panel->subtraction; }
  std::string shown() { return part().lblOffset.Caption; }
  frmProxOff& constants() { return form<frmProxOff>(); }
};

TEST_F(ProximityOffset, HasItsTexts) {
  EXPECT_EQ(constants().Caption, "Proximity Offset Subtraction Constants");
  EXPECT_EQ(constants().FrmOffsets.Caption, "Prox. OffSet Constants (12 Bit A/D)");
  const std::vector<std::pair<std::string, std::string>> expected{
      {"100mA / DC", "700"}, {"100mA /  327kHz", "330"}, {"50mA / DC", "320"},  {"50mA /  327kHz", "150"},
      {"25mA / DC", "140"},  {"25mA /  327kHz", "60"},   {"12.5mA / DC", "60"}, {"12.5mA / 327kHz", "30"}};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(constants().LblOffsetLables(i).Caption, expected[static_cast<std::size_t>(i)].first);
    EXPECT_EQ(constants().txtProxOff(i).Text, expected[static_cast<std::size_t>(i)].second);
  }
  EXPECT_EQ(part().frmProxOffset.Caption, "Prox Offset");
  EXPECT_EQ(part().ChkSubract.Caption, "Subtract");
  EXPECT_EQ(part().ChkSubract.ToolTipText, "Check to Enable Offset Subtraction");
  EXPECT_EQ(part().lblOffset.ToolTipText, "Double Click to Edit Offset Constants.");
}

TEST_F(ProximityOffset, FitsTheEmitterAtTwelveBits) {
  for (int i = 0; i < 8; ++i) constants().txtProxOff(i).Text = "constant " + std::to_string(i);
  for (const int width : {0, 2, 3, 1}) {
    choose_option("OptITime", width);
    for (int current = 0; current < 4; ++current) {
      for (const int modulation : {0, 3}) {
        choose_option("OptPSrc", current);
        choose_option("OptMFreq", modulation);
        const std::string constant = "constant " + std::to_string(2 * current + (modulation == 3 ? 1 : 0));
        EXPECT_EQ(shown(), width == 1 ? constant : "0") << width << current << modulation;
      }
    }
  }
}

TEST_F(ProximityOffset, IsThatOfTheLoadAtFirst) {
  EXPECT_EQ(shown(), "150");
}

TEST_F(ProximityOffset, WithoutACurrentThereIsNone) {
  for (int current = 0; current < 4; ++current) panel->OptPSrc(current).Value = false;
  part().Tally_Prox_Offset();
  EXPECT_EQ(shown(), "0");
}

// Each of them looks the constant up again, nothing else does.
TEST_F(ProximityOffset, FollowsAnEditedConstantWithTheNextOption) {
  const std::vector<std::function<void()>> others{
      [this] { choose_option("OptGain", 1); }, [this] { choose_option("optINTP", 1); },
      [this] { choose_option("OptExtTime", 0); }, [this] { choose_option("OptIRMode", 1); },
      [this] { click(constants().txtProxOff(3)); }};
  const std::vector<std::function<void()>> following{
      [this] { choose_option("OptITime", 1); }, [this] { choose_option("OptMFreq", 3); },
      [this] { choose_option("OptPSrc", 1); }, [this] { click(part().ChkSubract); },
      [this] { click(part().ChkSubract); }};
  for (std::size_t i = 0; i < following.size(); ++i) {
    SCOPED_TRACE(i);
    const std::string before = shown();
    const std::string edited = std::to_string(200 + i);
    constants().txtProxOff(3).Text = edited;
    for (const auto& other : others) other();
    EXPECT_EQ(shown(), before);
    following[i]();
    EXPECT_EQ(shown(), edited);
  }
  EXPECT_EQ(part().ChkSubract.Value, 0);
}

TEST_F(ProximityOffset, ADoubleClickShowsTheConstantsAndTheyStay) {
  EXPECT_FALSE(constants().visible());
  program.runtime.dispatch([&] { forms::user::double_click(part().lblOffset); });
  EXPECT_TRUE(constants().visible());
  constants().txtProxOff(3).Text = "9";
  constants().Hide();
  EXPECT_EQ(constants().txtProxOff(3).Text, "9");
}

// Ticked, a positive constant is taken off; a text that is none takes nothing.
TEST_F(ProximityOffset, IsTakenOffWhenTicked) {
  EXPECT_EQ(part().offset(), 0);
  click(part().ChkSubract);
  EXPECT_EQ(part().offset(), 150);
  choose_option("OptITime", 0);
  EXPECT_EQ(part().offset(), 0);
  for (const auto& [text, offset] : {std::pair{"-5", 0.0}, {"0", 0.0}, {"2.5", 2.5}, {"word", 0.0}}) {
    part().lblOffset.Caption = text;
    EXPECT_EQ(part().offset(), offset) << text;
  }
}

}  // namespace
}  // namespace varzelin::testing
