// What the user types into the register boxes of the multi-function panels, and the communications test.
#include "support/multi_function_fixture.h"
#include "workbench/gpio_panel.h"

namespace varzelin::testing {
namespace {

using Kvt71385Boxes = Kvt71385Panel;

struct Entry {
  int register_number;
  const char* typed;
  const char* text;  // that stands there then
  const char* sent;  // as the fixture's words
};
constexpr Entry entries[]{
    {0, "A", "A", "r0=0A"},    {0, "a3", "A3", "r0=A3"},   {0, "ff", "FF", "r0=FF"},
    {0, "100", "00", "r0=00"}, {0, "ffff", "00", "r0=00"},  // below 0
    {0, "", "", "r0=00"},      {0, "g1", "G1", "r0=00"},   {0, "0ff", "0FF", "r0=FF"},
    {1, "7f", "7F", "r1=7F"},  {1, "1ab", "00", "r1=00"},  {2, "1c", "1C", ""},
    {2, "1ff", "00", ""},      {3, "1c", "1C", ""},        {3, "fff", "00", ""},
    {4, "c", "C", "r4=0C"},    {5, "100", "00", "r5=00"},  {7, "fe", "FE", "r7=FE"},
    {8, "1", "1", "r8=01"},
};

TEST_F(Kvt71385Boxes, EnterWritesTheRegister) {
  for (const Entry& entry : entries) {
    SCOPED_TRACE(std::to_string(entry.register_number) + " " + entry.typed);
    forget_traffic();
    enter_text(panel->txtRegHex(entry.register_number), entry.typed);
    EXPECT_EQ(box(entry.register_number), entry.text);
    EXPECT_EQ(sent(), writes(entry.sent));
  }
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Kvt71385Boxes, EnterInTheCommandSaysWhetherItConvertsOnce) {
  for (const auto& [text, once] :
       {std::pair{"A", -1}, {"4F", -1}, {"50", 0}, {"FF", 0}, {"1FF", -1}, {"a0", 0}}) {
    store.OneShotMode = flag(once == 0);
    enter_text(panel->txtRegHex(0), text);
    EXPECT_EQ(store.OneShotMode, once) << text;
  }
  store.OneShotMode = false_flag;
  enter_text(panel->txtRegHex(1), "00");
  EXPECT_EQ(store.OneShotMode, 0);
}

TEST_F(Kvt71385Boxes, ANumberBeyondSixteenBitsOverflowsAndStays) {
  enter_text(panel->txtRegHex(0), "abcde");
  EXPECT_EQ(user.errors, (std::vector<int>{forms::overflow}));
  EXPECT_EQ(box(0), "ABCDE");
  EXPECT_TRUE(sent().empty());
}

TEST_F(Kvt71385Boxes, OtherKeysDoNothing) {
  panel->txtRegHex(0).Text = "a";
  for (const int key : {int{'b'}, 8, 9, 27}) EXPECT_EQ(forms::user::press_key(panel->txtRegHex(0), key), key);
  EXPECT_EQ(box(0), "a");
  EXPECT_TRUE(sent().empty());
}

TEST_F(Kvt71385Boxes, WithoutEventsEnterWritesTheLimitsAlone) {
  store.EventsEnabled = false_flag;
  enter_text(panel->txtRegHex(0), "60");
  enter_text(panel->txtRegHex(1), "60");
  EXPECT_TRUE(sent().empty());
  EXPECT_EQ(store.OneShotMode, 0);
  enter_text(panel->txtRegHex(4), "60");
  EXPECT_EQ(sent(), writes("r4=60"));
}

TEST_F(Kvt71385Boxes, LeavingCutsToTwoCapitals) {
  for (const auto& [typed, text] : {std::pair{"abc", "AB"}, {"a", "A"}, {"", ""}, {"xyz1", "XY"}}) {
    for (const int i : {0, 3, 8}) {
      panel->txtRegHex(i).Text = typed;
      leave(panel->txtRegHex(i));
      EXPECT_EQ(box(i), text);
    }
  }
  EXPECT_TRUE(sent().empty());
}

TEST_F(Kvt71385Boxes, AReadThatFailsShowsTheEmptyBuffer) {
  enter_text(panel->txtRegHex(5), "AB");
  click(panel->cmdRDReg(5));
  ASSERT_EQ(read_box(5), "AB");
  board.fail_transfers(1, boards::statuses::time_out, 1);
  store.Sample_Run = true_flag;
  click(panel->cmdRDReg(5));
  EXPECT_EQ(read_box(5), "00");
  EXPECT_EQ(store.BridgeStatus, 0);
  EXPECT_EQ(store.Sample_Run, 0);
  EXPECT_EQ(panel->ShpAttach.FillColor, red());
  EXPECT_EQ(panel->ShpIndrd(5).FillColor, red());
}

// --- the communications test ---

TEST_F(Kvt71385Boxes, TheTestTurnsTheEnablesOverAndSaysGood) {
  auto& gpio = form<frmGPIO>();
  gpio.chkOutEnc(1).Value = 1;
  forget_traffic();
  click(panel->OptMode(2));
  EXPECT_EQ(gpio.chkOutEnc(0).Value, 1);
  EXPECT_EQ(gpio.chkOutEnc(1).Value, 0);
  const auto ports = sent_on(boards::pipe_gpio_out);
  ASSERT_EQ(ports.size(), 1u);
  EXPECT_EQ(ports[0][3], 0x10);  // the enables of port C
  EXPECT_EQ(recorder.packets.front().pipe, boards::pipe_gpio_out);
  EXPECT_EQ(sent(), writes("r0=00"));
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
  EXPECT_EQ(panel->LblCommTest.BackColor, forms::Color{32768});
  EXPECT_TRUE(panel->LblCommTest.Visible);
  EXPECT_FALSE(panel->OptMode(2).Value);
  click(panel->OptMode(2));
  EXPECT_EQ(gpio.chkOutEnc(0).Value, 0);
  EXPECT_EQ(gpio.chkOutEnc(1).Value, 1);
}

TEST_F(Kvt71385Boxes, TheTestFailsWhenTheStatusIsBelowOne) {
  replying({0, 0, 0});
  click(panel->OptMode(2));
  EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  EXPECT_EQ(panel->LblCommTest.BackColor, forms::Color{255});
  EXPECT_EQ(panel->LblCommTest.ForeColor, forms::Color{0xFFFFFF});
  EXPECT_TRUE(panel->LblCommTest.Visible);
  replying({1, 0, 0});
  click(panel->OptMode(2));
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
}

// The words are of the last read then.
TEST_F(Kvt71385Boxes, InALoopTheTestLeavesItsWriteToTheLoop) {
  store.BridgeStatus = 0;
  in_a_loop([&] { click(panel->OptMode(2)); });
  EXPECT_TRUE(sent().empty());
  EXPECT_EQ(sent_on(boards::pipe_gpio_out).size(), 1u);
  EXPECT_EQ(pending(), "Update R0");
  EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  EXPECT_FALSE(panel->OptMode(2).Value);
}

TEST_F(Kvt71385Boxes, TheTestIsTheOnlyButtonOfItsGroup) {
  EXPECT_EQ(panel->OptMode(2).Caption, "Test Comm");
  for (const int i : {0, 1, 3}) EXPECT_FALSE(panel->OptMode.has(i));
}

}  // namespace
}  // namespace varzelin::testing
