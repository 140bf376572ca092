// The option controls of the panels over eight registers: what each puts on the bus and into the boxes, idle
// and in a running loop.
#include "support/eight_register_fixture.h"
#include "workbench/gpio_panel.h"

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

// --- how they have loaded ---

TEST_F(Kvt71344Options, LoadWithoutTrafficOnTheSensor) {
  program.forms.unload(*panel, 0);
  forget_traffic();
  program.forms.touch("frmKVT71344");
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(Kvt71344Options, LoadTheirDefaults) {
  EXPECT_EQ(panel->Caption, "KVT71344/5  Ambient Light Sensor Evaluation Software");
  for (const auto& [number, text] : {std::pair{0, "80"}, {1, "00"}, {2, "FF"}, {3, "00"}}) {
    EXPECT_EQ(box(number), text);
    EXPECT_EQ(forms::Hex2(store.RegImage[static_cast<std::size_t>(number)]), text);
  }
  EXPECT_EQ(panel->txtInterval.Text, "100");
  EXPECT_EQ(panel->txtScale.Text, "25000");
  EXPECT_EQ(store.Scale_Max, 25000);
  EXPECT_EQ(store.Label_Time[10], "40.00");
  EXPECT_EQ(panel->limits.txtIUpperLimit.Text, "65280");
  EXPECT_EQ(panel->limits.txtILowerLimit.Text, "0");
  EXPECT_FALSE(panel->txtReading3.Visible);
  EXPECT_TRUE(panel->OptGraph(0).Value);
  EXPECT_FALSE(panel->OptGraph(1).Visible);
  EXPECT_FALSE(panel->OptGraph(2).Visible);
  EXPECT_TRUE(panel->OptMeasure(0).Value);
  EXPECT_TRUE(panel->OptITime(0).Value);
  EXPECT_TRUE(panel->OptGain(0).Value);
  EXPECT_TRUE(panel->OpInt(0).Value);
  EXPECT_TRUE(panel->OptTimeBase(0).Value);
  EXPECT_FALSE(panel->watch.TimerIPol.Enabled);
  EXPECT_EQ(panel->watch.TimerIPol.Interval, 250);
  EXPECT_EQ(panel->LstMode2.List(), (std::vector<std::string>{"Diode 1", "Diode 2", "Difference"}));
}

TEST_F(Kvt71356Options, LoadTheirDefaultsAndWriteThem) {
  program.forms.unload(*panel, 0);
  forget_traffic();
  store.MsbLimit = 7;
  open("frmKVT71356");
  program.forms.unload(*panel, 0);
  forget_traffic();
  panel = dynamic_cast<EightRegisterPanel*>(&program.forms.touch("frmKVT71356"));
  EXPECT_EQ(sent(), joined({written(0, 0x88), written(1, 0x00), written(2, 0xFF), written(3, 0x00)}));
  EXPECT_EQ(store.MsbLimit, 127);
  EXPECT_EQ(store.AbortRequested, 0);
  EXPECT_EQ(panel->Caption, "KVT71356  Ambient Light Sensor Evaluation Software");
  EXPECT_EQ(panel->limits.txtIUpperLimit.Text, "32512");
  EXPECT_EQ(panel->LstMode2.List(), std::vector<std::string>{"Light Count"});
  EXPECT_FALSE(panel->OptMeasure(0).Visible);
  EXPECT_FALSE(panel->OptMeasure(1).Visible);
  EXPECT_EQ(panel->OptMeasure(2).Caption, "Light Count");
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_FALSE(panel->ChkCommand.has(3));
}

TEST_F(Kvt71344Options, TheirCaptions) {
  EXPECT_EQ(panel->frmMeasure.Caption, "Measurement");
  EXPECT_EQ(panel->OptMeasure(0).Caption, "D1-Only");
  EXPECT_EQ(panel->OptMeasure(1).Caption, "D2-Only");
  EXPECT_EQ(panel->OptMeasure(2).Caption, "D1-D2");
  EXPECT_EQ(panel->frItime.Caption, "AD Resolution");
  EXPECT_EQ(panel->frGain.Caption, "Range");
  EXPECT_EQ(panel->frGain.ToolTipText, "Set the Lux Sensitivity Gain  / Level.");
  EXPECT_EQ(panel->OptGain(2).Caption, "16k");
  EXPECT_EQ(panel->OptGain(2).ToolTipText, "Set the Lux Sensitivity Gain  / Level.");
  EXPECT_EQ(panel->frControl.Caption, "Interrupt Control");
  EXPECT_EQ(panel->OpInt(0).ToolTipText,
            "Interrupt High / Low threshold level must exist for 1 integration cycle before Interrupt Signal "
            "will be asserted.");
  EXPECT_EQ(
      panel->OpInt(3).ToolTipText,
      "Interrupt High / Low threshold level must exist for 16 integration cycles before Interrupt Signal "
      "will be asserted.");
  EXPECT_EQ(panel->ChkCommand(0).Caption, "Reset ADC");
  EXPECT_EQ(panel->ChkCommand(1).Caption, "Pwr Down");
  EXPECT_EQ(panel->ChkCommand(2).Caption, "Ext Time");
  EXPECT_EQ(panel->ChkCommand(3).Caption, "ADC &&  Device Power Down");
  EXPECT_EQ(panel->cmdSetCommand.Caption, "Write Command Register R0");
  EXPECT_EQ(panel->cmdSetControl.Caption, "Write  Control Register R1");
  EXPECT_EQ(panel->cmdSetIntHigh.Caption, "Write High Int Limit R2");
  EXPECT_EQ(panel->cmdSetIntLow.Caption, "Write Low Int Limit R3");
  EXPECT_EQ(panel->cmdRead_All.Caption, "Read Regs R0-R3");
  EXPECT_EQ(panel->cmdRead_Measurements.Caption, "Read Lux && ICycle R4-R7");
  EXPECT_EQ(panel->cmdSync.Caption, "Send EOC");
  EXPECT_EQ(panel->cmdSync.ToolTipText, "Send Start Integration to ADC. Used when in External Timing");
  EXPECT_EQ(panel->cbReset.Caption, "Reset  KVT7134x");
}

TEST_F(Kvt71356Options, TheirCaptions) {
  EXPECT_EQ(panel->OptITime(0).Caption, "15");
  EXPECT_EQ(panel->OptITime(3).Caption, "3");
  EXPECT_EQ(panel->OptGain(3).Caption, "128000");
  EXPECT_EQ(panel->ChkCommand(1).Caption, "Power Down");
  EXPECT_EQ(panel->ChkCommand(2).Caption, "External Time");
  EXPECT_EQ(panel->cmdSetCommand.Caption, "Write Command Register b000");
  EXPECT_EQ(panel->cmdSetControl.Caption, "Write  Control Register b001");
  EXPECT_EQ(panel->cmdSetIntHigh.Caption, "Write High Int Limit b010");
  EXPECT_EQ(panel->cmdSetIntLow.Caption, "Write Low Int Limit b011");
  EXPECT_EQ(panel->cmdRead_All.Caption, "Read Regs b000-011");
  EXPECT_EQ(panel->cmdRead_Measurements.Caption, "Read Lux && ICycle b100-111");
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

// --- modes ---

TEST_F(Kvt71344Options, EachModeTogglesTheLeds) {
  auto& gpio = form<frmGPIO>();
  for (const int mode : {0, 1, 2, 0}) {
    const int led = gpio.ChKLedData(0).Value;
    forget_traffic();
    click(panel->OptMode(mode));
    EXPECT_EQ(gpio.ChKLedData(0).Value, 1 - led);
    EXPECT_EQ(gpio.ChKLedData(1).Value, 1 - led);
    ASSERT_GE(recorder.packets.size(), 2u);
    EXPECT_EQ(recorder.packets[0].pipe, 1);
    EXPECT_EQ(recorder.packets[1].pipe, 0x81);
  }
}

TEST_F(Kvt71344Options, MeasureShowsTheDiodesAndPowerDownTicksItsBox) {
  panel->LstMode2.Visible = false;
  click(panel->OptMode(0));
  EXPECT_TRUE(panel->LstMode2.Visible);
  EXPECT_TRUE(sent().empty());
  click(panel->OptMode(1));
  EXPECT_EQ(panel->ChkCommand(1).Value, 1);
  EXPECT_EQ(sent(), written(0, 0xC0));
}

TEST_F(Kvt71344Options, TheDiodeListSelectsTheMeasurement) {
  for (const auto& [row, value] : {std::pair{2, 0x88}, {1, 0x84}, {0, 0x80}}) {
    forget_traffic();
    choose(panel->LstMode2, row);
    EXPECT_TRUE(panel->OptMeasure(row).Value);
    EXPECT_EQ(sent(), written(0, value));
  }
}

TEST_F(Kvt71344Options, TheDiodeListStopsARunningCollection) {
  at_yield(count_reaches(12), [&] {
    forms::user::click_row(panel->LstMode2, 1);
    EXPECT_EQ(store.Sample_Run, 0);
  });
  click(panel->cmdCollectData);
  EXPECT_EQ(box(0), "84");
  EXPECT_EQ(board.register_value(0), 0x84);
  EXPECT_TRUE(std::ranges::all_of(recorder.packets, [](const Packet& packet) { return packet.status == 0; }));
  EXPECT_EQ(store.Usb_Open, 0);
}

TEST_F(Kvt71344Options, TheCommunicationsTestComparesRegisterZero) {
  panel->LstMode2.Visible = true;
  click(panel->OptMode(2));
  EXPECT_FALSE(panel->LstMode2.Visible);
  EXPECT_EQ(sent(), joined({written(0, 0x80), {{2, 0x89, 2}, {2, 0x89, 0}}}));
  EXPECT_EQ(panel->LblCommTest.Caption, "Good");
  EXPECT_EQ(panel->LblCommTest.BackColor.get().value, 32768u);
  EXPECT_EQ(panel->LblCommTest.ForeColor.get().value, 0x80000012u);
  EXPECT_TRUE(panel->LblCommTest.Visible);
  EXPECT_TRUE(panel->OptMode(2).Value);
  board.unmount();
  click(panel->OptMode(2));
  EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  EXPECT_EQ(panel->LblCommTest.BackColor.get().value, 255u);
  EXPECT_EQ(panel->LblCommTest.ForeColor.get().value, 0xFFFFFFu);
}

// In a loop it compares what is known before the loop has done the work.
TEST_F(Kvt71344Options, InALoopTheCommunicationsTestComparesTheLastKnownTexts) {
  panel->txtRegRd(0).Text = "80";
  collect(12, [&] {
    forget_traffic();
    forms::user::click(panel->OptMode(2));
    EXPECT_TRUE(sent().empty());
    EXPECT_EQ(panel->LblCommTest.Caption, "Good");
    EXPECT_EQ(store.PendingWriteR0, -1);
    panel->txtRegRd(0).Text = "";
    forms::user::click(panel->OptMode(2));
    EXPECT_EQ(panel->LblCommTest.Caption, "Fail");
  });
}

TEST_F(Kvt71356Options, ResetUnselectsTheMeasurement) {
  panel->OptMode(0).select_quietly();
  click(panel->ChkCommand(0));
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_FALSE(panel->OptMode(0).Value);
  EXPECT_EQ(sent(), written(0, 0x08));
  panel->OptMode(0).select_quietly();
  panel->OptMeasure(2).select_quietly();
  forget_traffic();
  click(panel->ChkCommand(0));
  EXPECT_TRUE(panel->OptMode(0).Value);
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
}

TEST_F(Kvt71356Options, PowerDownSelectsItsMode) {
  click(panel->ChkCommand(1));
  EXPECT_TRUE(panel->OptMode(1).Value);
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0xC8));
  panel->OptMeasure(2).select_quietly();
  forget_traffic();
  click(panel->ChkCommand(1));
  EXPECT_FALSE(panel->OptMode(1).Value);
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
}

TEST_F(Kvt71356Options, ThePowerDownModeTicksItsBox) {
  click(panel->OptMode(1));
  EXPECT_EQ(panel->ChkCommand(1).Value, 1);
  EXPECT_TRUE(panel->OptMode(1).Value);
  EXPECT_FALSE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0xC8));
}

TEST_F(Kvt71356Options, TheMeasureModeUndoesResetAndPowerDown) {
  click(panel->ChkCommand(0));
  click(panel->ChkCommand(1));
  store.RegImage[0] = 0x40;
  forget_traffic();
  click(panel->OptMode(0));
  EXPECT_EQ(panel->ChkCommand(0).Value, 0);
  EXPECT_EQ(panel->ChkCommand(1).Value, 0);
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), joined({written(0, 0xC8), written(0, 0x88), written(0, 0x88)}));
}

TEST_F(Kvt71356Options, TheResolutionLimitsTheTopByte) {
  click(panel->OptITime(1));
  EXPECT_EQ(store.MsbLimit, 7);
  click(panel->OptITime(2));
  EXPECT_EQ(store.MsbLimit, 7);
  click(panel->OptITime(0));
  EXPECT_EQ(store.MsbLimit, 127);
}

TEST_F(Kvt71344Options, TheResolutionHasNoLimit) {
  click(panel->OptITime(1));
  EXPECT_EQ(store.MsbLimit, 127);
}

TEST_F(Kvt71356Options, TheListSelectsTheFirstMeasurementHiddenOrNot) {
  choose(panel->LstMode2, 0);
  EXPECT_TRUE(panel->OptMeasure(0).Value);
  EXPECT_EQ(sent(), written(0, 0x80));
}

// --- the device list ---

TEST_F(Kvt71344Options, TheDeviceListStepsByTwo) {
  const std::vector<int> addresses{0x88, 0x80, 0x82, 0x84, 0x86, 0x88, 0x8A, 0x8C, 0x8E};
  ASSERT_EQ(panel->LstDeviceSel.ListCount(), 9);
  EXPECT_EQ(panel->LstDeviceSel.List(0), "KVT71344 ADR-44");
  EXPECT_EQ(panel->LstDeviceSel.List(1), "KVT71345 ADR-40");
  EXPECT_EQ(panel->LstDeviceSel.List(8), "KVT71345 ADR-47");
  for (std::size_t row = 0; row < addresses.size(); ++row) {
    choose(panel->LstDeviceSel, static_cast<int>(row));
    EXPECT_EQ(store.I2C_WrAdr, addresses[row]);
    EXPECT_EQ(store.I2C_RdAdr, addresses[row] + 1);
    EXPECT_EQ(panel->txtI2CAddr.Text, forms::Hex(addresses[row] / 2));
    EXPECT_TRUE(panel->OptMeasure(0).Visible);
    EXPECT_EQ(panel->OptMeasure(2).Caption, "D1-D2");
  }
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(Kvt71344Options, ATenthDeviceRowHasTheLightCountAlone) {
  panel->LstDeviceSel.AddItem("tenth");
  choose(panel->LstDeviceSel, 1);
  choose(panel->LstDeviceSel, 9);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_FALSE(panel->OptMeasure(0).Visible);
  EXPECT_FALSE(panel->OptMeasure(1).Visible);
  EXPECT_EQ(panel->OptMeasure(2).Caption, "Light Count");
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
  choose(panel->LstDeviceSel, 0);
  EXPECT_TRUE(panel->OptMeasure(0).Visible);
  EXPECT_TRUE(panel->OptMeasure(1).Visible);
  EXPECT_EQ(panel->OptMeasure(2).Caption, "D1-D2");
}

TEST_F(Kvt71356Options, ItsOneDeviceHasTheLightCountAlone) {
  panel->OptMeasure(0).select_quietly();
  panel->OptMeasure(0).Visible = true;
  choose(panel->LstDeviceSel, 0);
  EXPECT_FALSE(panel->OptMeasure(0).Visible);
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
}

// --- reset ---

TEST_F(Kvt71344Options, ResetGoesByThePowerDownBox) {
  click(panel->ChkCommand(0));
  forget_traffic();
  const double start = clock.milliseconds();
  store.IntegrationMs = 77;
  std::string caption;
  recorder.before_call = [&] { caption = panel->cbReset.Caption; };
  click(panel->cbReset);
  EXPECT_EQ(sent(), joined({written(0, 0x40), written(0, 0x80)}));
  EXPECT_EQ(caption, "Resetting ADC");
  EXPECT_EQ(panel->cbReset.Caption, "Reset");
  EXPECT_EQ(panel->ChkCommand(3).Value, 0);
  EXPECT_EQ(store.IntegrationMs, 0);
  EXPECT_GT(clock.milliseconds() - start, 300);
  EXPECT_LT(clock.milliseconds() - start, 400);
}

TEST_F(Kvt71356Options, ResetGoesByTheResetBoxAndWaitsASecondTwice) {
  const double start = clock.milliseconds();
  click(panel->cbReset);
  EXPECT_EQ(sent(), joined({written(0, 0x08), written(0, 0x88)}));
  EXPECT_EQ(panel->ChkCommand(0).Value, 0);
  EXPECT_EQ(panel->cbReset.Caption, "Reset");
  EXPECT_GT(clock.milliseconds() - start, 2050);
  EXPECT_FALSE(panel->Tmr_Integration.Enabled);
}

TEST_F(Kvt71344Options, TheIntegrationTimerHasNoHandler) {
  EXPECT_FALSE(panel->Tmr_Integration.handles(forms::Event::Timer));
}
TEST_F(Kvt71356Options, TheIntegrationTimerCounts) {
  EXPECT_TRUE(panel->Tmr_Integration.handles(forms::Event::Timer));
}

}  // namespace
}  // namespace varzelin::testing
