// The layer for panels with registers, in the variants that families choose from: on a panel of the test's
// own.
#include "panels/common/register_panel.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/test_program.h"

namespace varzelin::testing {
namespace {

constexpr registers::Field low_half{0, 0, 4, "low half"};
constexpr registers::Field bit_seven{1, 7, 1, "bit 7"};

const PanelModel rehearsal{.form_name = "frmRehearsal",
                           .title = "Rehearsal",
                           .interval = "100",
                           .scale = "1000",
                           .scale_addition = 0,
                           .devices = {{"one", 0x88}},
                           .write_address = AddressForm::read};

constexpr std::array<RegisterWrite, 3> rehearsal_writes{
    {{.pending = &Store::PendingWriteR0,
      .disconnect = RegisterWrite::Disconnect::before_read_back,
      .yields_before = 2},
     {.pending = &Store::PendingWriteR1, .yields_before = 3, .only_with_events = true},
     {.pending = &Store::PendingIntHigh, .disconnect = RegisterWrite::Disconnect::never}}};

class Rehearsal final : public RegisterPanel {
 public:
  explicit Rehearsal(Program& owner)
      : RegisterPanel(owner, rehearsal, rehearsal_writes,
                      {.written = {0, 1, 2}, .read = {0, 1, 2}, .lamps = {0, 1, 2, 4}}) {}

  using RegisterPanel::test_communications;
  bool answers = true;
  int read_backs = 0;
  Flag open_at_read_back = 0;
  std::string steps;  // of a timed run, each with a blank behind it

  void Read_Registers() override {
    ++read_backs;
    open_at_read_back = store.Usb_Open;
  }

 protected:
  Measurement measure() override { return {.value = 500, .raw = 7, .reading = 250}; }
  void Trig_KVT7134X() override { steps += "trigger "; }
  void Record_Triggered_Light_Count() override { steps += "read "; }
  bool sensor_answered() override { return answers; }
};

struct Registers : ::testing::Test, TestProgram {
  Rehearsal* panel = nullptr;

  void SetUp() override {
    program.forms.add("frmRehearsal",
                      [this](const std::string&) { return std::make_unique<Rehearsal>(program); });
    board.mount("KVT71385");
    workbench();
    panel = dynamic_cast<Rehearsal*>(&program.forms.touch("frmRehearsal"));
    recorder.packets.clear();
    recorder.calls.clear();
  }
  std::vector<std::vector<int>> sent() const {
    std::vector<std::vector<int>> result;
    for (const Packet& packet : recorder.packets) result.push_back(packet.bytes);
    return result;
  }
  int yields_before_connect(int register_number) {
    int count = 0;
    int at_connect = -1;
    user.at_yield = [&] { ++count; };
    recorder.before_call = [&] {
      if (at_connect < 0) at_connect = count;
    };
    program.runtime.dispatch([&] { panel->write_register(register_number); });
    user.at_yield = nullptr;
    recorder.before_call = nullptr;
    return at_connect;
  }
};

TEST_F(Registers, AFieldChangesItsBitsOfTheImageAndTheBox) {
  store.RegImage[0] = 0xA5;
  panel->set_field(low_half, 0x0C);
  EXPECT_EQ(store.RegImage[0], 0xAC);
  EXPECT_EQ(panel->txtRegHex(0).Text, "AC");
  EXPECT_EQ(panel->field(low_half), 0x0C);
  panel->set_field(low_half, 0x1F);
  EXPECT_EQ(panel->txtRegHex(0).Text, "AF");
  store.RegImage[1] = 0x0F;
  panel->set_field(bit_seven, 1);
  panel->set_field(bit_seven, 0);
  EXPECT_EQ(panel->txtRegHex(1).Text, "0F");
  EXPECT_EQ(panel->txtRegHex(0).Text, "AF");
}

TEST_F(Registers, TheWriteTakesItsByteFromTheBoxAndItsAddressFromTheFamily) {
  store.RegImage[0] = 0x11;
  panel->txtRegHex(0).Text = "5c";
  store.PendingWriteR0 = store.PendingWriteR1 = -1;
  panel->write_register(0);
  EXPECT_EQ(sent(), (std::vector<std::vector<int>>{{0, 0x89, 0, 0x5C}}));
  EXPECT_EQ(store.RegImage[0], 0x5C);
  EXPECT_EQ(store.PendingWriteR0, 0);
  EXPECT_EQ(store.PendingWriteR1, -1);
  EXPECT_EQ(panel->ShpInd(0).FillColor.get(), forms::QBColor(10));
}

TEST_F(Registers, AWriteMayCarryTheOtherFormOfTheAddress) {
  panel->connect();
  recorder.packets.clear();
  panel->register_write(3, 0x44, AddressForm::write);
  panel->register_write(3, 0x44);
  panel->command_write(0x80, AddressForm::write);
  panel->command_write(0x80);
  EXPECT_EQ(sent(), (std::vector<std::vector<int>>{
                        {0, 0x88, 3, 0x44}, {0, 0x89, 3, 0x44}, {0, 0x88, 0x80}, {0, 0x89, 0x80}}));
}

TEST_F(Registers, TheSessionClosesBeforeTheReadBackBehindItOrNot) {
  store.EventsEnabled = -1;
  panel->write_register(0);
  EXPECT_EQ(panel->open_at_read_back, 0);
  panel->write_register(1);
  EXPECT_EQ(panel->open_at_read_back, -1);
  EXPECT_EQ(store.Usb_Open, 0);
  panel->write_register(2);
  EXPECT_EQ(panel->open_at_read_back, -1);
  EXPECT_EQ(store.Usb_Open, -1);
  EXPECT_EQ(panel->read_backs, 3);
}

TEST_F(Registers, InACollectionThereIsNoReadBack) {
  store.Sample_Run = -1;
  panel->write_register(0);
  EXPECT_EQ(panel->read_backs, 0);
  EXPECT_EQ(store.PendingReadRegs, 0);
}

TEST_F(Registers, AStopThatWasAskedForPutsTheReadBackOff) {
  store.AbortRequested = -1;
  panel->write_register(0);
  EXPECT_EQ(panel->read_backs, 0);
  EXPECT_EQ(store.PendingReadRegs, -1);
  EXPECT_EQ(store.PendingUpdate, -1);
}

TEST_F(Registers, AWriteYieldsBeforeItConnects) {
  const int without = yields_before_connect(2);
  panel->disconnect();
  EXPECT_EQ(yields_before_connect(0), without + 2);
  panel->disconnect();
  EXPECT_EQ(yields_before_connect(1), without + 3);
}

TEST_F(Registers, AWriteThatWantsEventsDoesNothingWithoutThem) {
  store.EventsEnabled = 0;
  store.PendingWriteR1 = -1;
  panel->txtRegHex(1).Text = "77";
  panel->write_register(1);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.PendingWriteR1, -1);
  EXPECT_EQ(store.RegImage[1], 0);
  EXPECT_EQ(panel->ShpInd(1).FillColor.get(), forms::QBColor(0));
  panel->write_register(0);
  EXPECT_EQ(sent().size(), 1u);
}

TEST_F(Registers, ACommitWritesInItsOrderOrSetsItsFlags) {
  store.EventsEnabled = -1;
  for (int i = 0; i < 3; ++i) panel->txtRegHex(i).Text = "0" + std::to_string(i);
  panel->commit({.pending = {&Store::PendingWriteR1}, .registers = {2, 0, 1}});
  EXPECT_EQ(sent(), (std::vector<std::vector<int>>{{0, 0x89, 2, 2}, {0, 0x89, 0, 0}, {0, 0x89, 1, 1}}));
  recorder.packets.clear();
  for (Flag Store::*loop : {&Store::Sample_Run, &Store::AbortRequested}) {
    store.PendingUpdate = store.PendingWriteR0 = store.PendingWriteR1 = 0;
    store.*loop = -1;
    panel->commit({.pending = {&Store::PendingWriteR1}, .registers = {2, 0, 1}});
    store.*loop = 0;
    EXPECT_EQ(store.PendingWriteR1, -1);
    EXPECT_EQ(store.PendingWriteR0, 0);
    EXPECT_EQ(store.PendingUpdate, -1);
  }
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(Registers, TheComparisonIsOfTexts) {
  Shape& lamp = panel->ShpInd(4);
  panel->txtRegHex(1).Text = "0A";
  panel->show_read_back(1, 0x0A);
  panel->compare_read_back(1, lamp);
  EXPECT_EQ(panel->txtRegRd(1).Text, "0A");
  EXPECT_EQ(lamp.FillColor.get(), forms::QBColor(0));
  panel->txtRegHex(1).Text = "0a";
  panel->compare_read_back(1, lamp);
  EXPECT_EQ(lamp.FillColor.get(), forms::QBColor(12));
}

TEST_F(Registers, TheCommunicationsTestWritesOrDefersAndShowsTheVerdict) {
  panel->test_communications();
  EXPECT_EQ(sent().size(), 1u);
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
  EXPECT_TRUE(panel->LblCommTest.Visible);
  panel->answers = false;
  store.Sample_Run = -1;
  recorder.packets.clear();
  panel->test_communications();
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(store.PendingWriteR0, -1);
  EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
}

TEST_F(Registers, AMeasurementIsCommittedByTheLoop) {
  std::int32_t passes = 0;
  user.at_yield = [&] {
    if (store.Sample_Count >= 3 && passes++ == 0)
      program.runtime.post([&] { forms::user::click(panel->cmdStopData); });
  };
  click(panel->cmdCollectData);
  EXPECT_EQ(store.Sample_Value[2], 500);
  EXPECT_EQ(store.Sample_Value2[2], 1);
  EXPECT_EQ(store.RawReading, 7);
  EXPECT_EQ(store.Reading, 250);
  EXPECT_EQ(panel->txtReading.Text, "250");
  // The chart's own rule: half to even between both ends of the scale.
  EXPECT_EQ(store.Trace_Y[403], 304 - 76);
}

// Controls have their turn behind the delay and around the read, so that each acts on a whole step.
TEST_F(Registers, ATimedPassYieldsBehindItsDelayAndAroundItsRead) {
  const auto steps_of_second_pass = [&](int delay_row) {
    panel->CboIntTime(5).ListIndex = delay_row;
    panel->steps.clear();
    store.Sample_Count = 0;
    user.at_yield = [&] {
      panel->steps += "yield ";
      if (store.Sample_Count == 3 && store.AbortRequested == 0) {
        program.runtime.post([&] { forms::user::click(panel->cmdEndSampling); });
      }
    };
    click(panel->cmdSample);
    user.at_yield = nullptr;
    const std::size_t second = panel->steps.find("trigger", panel->steps.find("trigger") + 1);
    return panel->steps.substr(second, panel->steps.find("trigger", second + 1) - second);
  };
  EXPECT_EQ(steps_of_second_pass(0), "trigger yield read yield ");
  EXPECT_EQ(steps_of_second_pass(1), "trigger yield yield read yield ");
}

TEST_F(Registers, TheFilesHeadShowsTheFirstTwoBoxes) {
  panel->txtRegHex(0).Text = "A0";
  panel->txtRegHex(1).Text = "0c";
  store.Sample_Count = 20;
  const std::string path = ::testing::TempDir() + "registers_head.txt";
  panel->txtFilePath.Text = path;
  click(panel->cmdStartRec(0));
  std::ifstream file(path);
  std::string head;
  std::getline(file, head);
  EXPECT_EQ(head.substr(0, 51), "Seq,Lux,Integration,Reg0:&hA0 :Reg1 &h0c,Interval 1");
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace varzelin::testing
