// The option controls of the panels over eight registers: what each puts on the bus and into the boxes, idle
// and in a running loop.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

// One option, clicked on a panel as it has loaded.
struct Option {
  const char* control;
  int index;
  int register_number;
  int value;  // what the register is then
};

constexpr Option kvt71344_options[]{
    {"OptMeasure", 0, 0, 0x80}, {"OptMeasure", 1, 0, 0x84}, {"OptMeasure", 2, 0, 0x88},
    {"OptITime", 0, 0, 0x80},   {"OptITime", 1, 0, 0x81},   {"OptITime", 2, 0, 0x82},
    {"OptITime", 3, 0, 0x83},   {"OptGain", 0, 1, 0x00},    {"OptGain", 1, 1, 0x04},
    {"OptGain", 2, 1, 0x08},    {"OptGain", 3, 1, 0x0C},    {"OpInt", 0, 1, 0x00},
    {"OpInt", 1, 1, 0x01},      {"OpInt", 2, 1, 0x02},      {"OpInt", 3, 1, 0x03},
    {"ChkCommand", 0, 0, 0x00}, {"ChkCommand", 1, 0, 0xC0}, {"ChkCommand", 3, 0, 0x40},
};
constexpr Option kvt71356_options[]{
    {"OptMeasure", 2, 0, 0x88}, {"OptITime", 0, 0, 0x88},   {"OptITime", 1, 0, 0x89},
    {"OptITime", 2, 0, 0x8A},   {"OptITime", 3, 0, 0x8B},   {"OptGain", 0, 1, 0x00},
    {"OptGain", 1, 1, 0x04},    {"OptGain", 2, 1, 0x08},    {"OptGain", 3, 1, 0x0C},
    {"OpInt", 0, 1, 0x00},      {"OpInt", 1, 1, 0x01},      {"OpInt", 2, 1, 0x02},
    {"OpInt", 3, 1, 0x03},      {"ChkCommand", 0, 0, 0x08},
};

template <class Fixture>
struct Options : Fixture {
  using Fixture::panel;

  void click_option(const Option& option) {
    forms::Control* control = panel->find(option.control, option.index);
    ASSERT_TRUE(control) << option.control << option.index;
    this->click(*control);
  }
  void expect_idle_writes(const char* form_name, std::span<const Option> options) {
    for (const Option& option : options) {
      SCOPED_TRACE(std::string(option.control) + " " + std::to_string(option.index));
      this->program.forms.unload(*panel, 0);
      this->open(form_name);
      click_option(option);
      EXPECT_EQ(this->sent(), this->written(option.register_number, option.value));
      EXPECT_EQ(this->box(option.register_number), forms::Hex2(option.value));
      EXPECT_EQ(panel->txtRegRd(option.register_number).Text, forms::Hex2(option.value));
      EXPECT_EQ(this->board.register_value(static_cast<std::uint8_t>(option.register_number)), option.value);
      EXPECT_EQ(this->store.RegImage[static_cast<std::size_t>(option.register_number)], option.value);
      EXPECT_EQ(this->store.Usb_Open, 0);
      EXPECT_TRUE(this->user.errors.empty());
    }
  }
  // In a loop the box changes at once, the sensor by the loop, once, and without a read-back.
  void expect_deferred_writes(const char* form_name, std::span<const Option> options) {
    for (const Option& option : options) {
      SCOPED_TRACE(std::string(option.control) + " " + std::to_string(option.index));
      this->program.forms.unload(*panel, 0);
      this->open(form_name);
      ByteLists at_once;
      this->collect(12, [&] {
        this->forget_traffic();
        click_option(option);
        at_once = this->sent();
        EXPECT_EQ(this->box(option.register_number), forms::Hex2(option.value));
        EXPECT_EQ(this->store.PendingUpdate, -1);
        EXPECT_EQ(option.register_number == 0 ? this->store.PendingWriteR0 : this->store.PendingWriteR1, -1);
        EXPECT_EQ(option.register_number == 0 ? this->store.PendingWriteR1 : this->store.PendingWriteR0, 0);
      });
      EXPECT_TRUE(at_once.empty());
      ByteLists writes = this->sent();
      std::erase_if(writes, [](const auto& bytes) { return bytes[0] != 0; });
      EXPECT_EQ(writes, (ByteLists{{0, 0x88, option.register_number, option.value}}));
      EXPECT_EQ(this->store.PendingUpdate, 0);
      EXPECT_EQ(this->store.PendingWriteR0, 0);
      EXPECT_EQ(this->store.PendingWriteR1, 0);
    }
  }
};

using Kvt71344Options = Options<Kvt71344>;
using Kvt71356Options = Options<Kvt71356>;

TEST_F(Kvt71344Options, IdleEachWritesItsRegisterAndReadsBack) {
  expect_idle_writes("frmKVT71344", kvt71344_options);
}
TEST_F(Kvt71356Options, IdleEachWritesItsRegisterAndReadsBack) {
  expect_idle_writes("frmKVT71356", kvt71356_options);
}
TEST_F(Kvt71344Options, InALoopEachIsLeftToTheLoop) {
  expect_deferred_writes("frmKVT71344", kvt71344_options);
}
TEST_F(Kvt71356Options, InALoopEachIsLeftToTheLoop) {
  expect_deferred_writes("frmKVT71356", kvt71356_options);
}

// --- fields keep their neighbours ---

TEST_F(Kvt71344Options, AFieldLeavesTheOthersOfItsRegisterAlone) {
  click(panel->OptMeasure(2));
  click(panel->OptITime(3));
  click(panel->ChkCommand(1));
  EXPECT_EQ(box(0), "CB");
  click(panel->OptMeasure(1));
  EXPECT_EQ(box(0), "C7");
  click(panel->ChkCommand(1));
  EXPECT_EQ(box(0), "87");
  click(panel->OptGain(3));
  click(panel->OpInt(2));
  EXPECT_EQ(box(1), "0E");
  click(panel->OptGain(1));
  EXPECT_EQ(box(1), "06");
}

TEST_F(Kvt71344Options, TheDevicePowerBoxSetsBothBits) {
  click(panel->ChkCommand(3));
  EXPECT_EQ(box(0), "40");
  click(panel->ChkCommand(3));
  EXPECT_EQ(box(0), "80");
  click(panel->ChkCommand(0));
  EXPECT_EQ(box(0), "00");
  click(panel->ChkCommand(0));
  EXPECT_EQ(box(0), "80");
}

// --- timing ---

// The time base follows the box and writes on its own: the first write still has the bit as it was.
TEST_F(Kvt71344Options, ExternalTimingByItsBox) {
  click(panel->ChkCommand(2));
  EXPECT_EQ(sent(), joined({written(0, 0x80), written(0, 0xA0)}));
  EXPECT_EQ(store.SingleReading, 0);
  EXPECT_EQ(store.I2C_RdCnt, 4);
  EXPECT_EQ(panel->Label16.Caption, "Calc. Reading");
  EXPECT_TRUE(panel->Label17.Visible);
  EXPECT_TRUE(panel->txtReading2.Visible);
  EXPECT_TRUE(panel->txtReading3.Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "Raw Lux Count");
  EXPECT_TRUE(panel->OptGraph(2).Value);
  for (const int i : {0, 1, 2}) EXPECT_TRUE(panel->OptGraph(i).Visible);
  EXPECT_TRUE(panel->OptTimeBase(1).Value);
  EXPECT_FALSE(panel->frItime.Visible);
  EXPECT_EQ(store.EventsEnabled, -1);
}

TEST_F(Kvt71344Options, InternalTimingByItsBox) {
  click(panel->ChkCommand(2));
  forget_traffic();
  click(panel->ChkCommand(2));
  EXPECT_EQ(sent(), joined({written(0, 0x80), written(0, 0x80)}));
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.I2C_RdCnt, 2);
  EXPECT_EQ(panel->Label16.Caption, "Lux Reading");
  EXPECT_FALSE(panel->Label17.Visible);
  EXPECT_FALSE(panel->txtReading2.Visible);
  EXPECT_FALSE(panel->txtReading3.Visible);
  EXPECT_EQ(panel->OptGraph(0).Caption, "Lux Count");
  EXPECT_TRUE(panel->OptGraph(0).Value);
  EXPECT_FALSE(panel->OptGraph(1).Visible);
  EXPECT_FALSE(panel->OptGraph(2).Visible);
  EXPECT_TRUE(panel->OptTimeBase(0).Value);
  EXPECT_TRUE(panel->frItime.Visible);
  EXPECT_EQ(store.EventsEnabled, -1);
}

TEST_F(Kvt71344Options, TheTimeBaseMovesTheBoxAndWritesTwice) {
  click(panel->OptTimeBase(1));
  EXPECT_EQ(panel->ChkCommand(2).Value, 1);
  EXPECT_EQ(sent(), joined({written(0, 0xA0), written(0, 0xA0)}));
  forget_traffic();
  click(panel->OptTimeBase(0));
  EXPECT_EQ(panel->ChkCommand(2).Value, 0);
  EXPECT_EQ(sent(), joined({written(0, 0x80), written(0, 0x80)}));
}

TEST_F(Kvt71344Options, ATimeBaseThatIsSetAlreadyOnlyWrites) {
  click(panel->OptTimeBase(0));
  EXPECT_EQ(sent(), written(0, 0x80));
}

TEST_F(Kvt71344Options, WithEventsOffTheTimeBaseOnlyWrites) {
  store.EventsEnabled = 0;
  click(panel->OptTimeBase(1));
  EXPECT_EQ(panel->ChkCommand(2).Value, 0);
  EXPECT_EQ(sent(), written(0, 0x80));
}

TEST_F(Kvt71344Options, TheTimeBaseBeginsARunningCollectionAnew) {
  store.Sample_Count = 0;
  std::int32_t collections = 0;
  at_yield(count_reaches(15), [&] {
    collections = store.Collections;
    forms::user::click(panel->OptTimeBase(1));
    EXPECT_EQ(store.Sample_Run, -1);
    EXPECT_EQ(store.Sample_Count, 0);
    at_yield(count_reaches(5), clicking(panel->cmdStopData));
  });
  click(panel->cmdCollectData);
  EXPECT_EQ(store.Collections, collections + 1);
  EXPECT_EQ(store.Sample_Count, 5);
  EXPECT_EQ(calls("WDU_VB_Init"), 1u);
  EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& packet) { return packet.status == 0; }));
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Kvt71344Options, TheGraphOptionOnlyRestoresTheReadCount) {
  store.I2C_RdCnt = 9;
  click(panel->OptGraph(0));
  EXPECT_EQ(store.I2C_RdCnt, 2);
  store.SingleReading = 0;
  click(panel->OptGraph(0));
  EXPECT_EQ(store.I2C_RdCnt, 4);
  EXPECT_TRUE(recorder.packets.empty());
}

// --- the limit of the top byte ---

TEST_F(Kvt71356Options, TheResolutionLimitsTheTopByte) {
  click(panel->OptITime(1));
  EXPECT_EQ(store.MsbLimit, 7);
  click(panel->OptITime(2));
  EXPECT_EQ(store.MsbLimit, 7);
  click(panel->OptITime(0));
  EXPECT_EQ(store.MsbLimit, 127);
}

TEST_F(Kvt71344Options, TheResolutionHasNoLimit) {
  for (const int resolution : {1, 0}) {
    store.MsbLimit = 99;
    click(panel->OptITime(resolution));
    EXPECT_EQ(store.MsbLimit, 99);
  }
}

}  // namespace
}  // namespace varzelin::testing
