// The KVT71346/7 panel on the simulated board: its modes, its own read, its communications test.
#include "support/kvt71346_fixture.h"

namespace varzelin::testing {
namespace {

struct Kvt71346 : Kvt71346Fixture {
  Packet mode_write(int byte) { return {2, {0x00, 0x88, byte, 0x00}, 0, 4}; }
  // The transfers on the sensor's pipes: a mode write is all there is.
  void expect_mode_write(int byte) {
    std::vector<Packet> packets;
    std::ranges::copy_if(recorder.packets, std::back_inserter(packets),
                         [](const Packet& packet) { return (packet.pipe & 0x7F) == 2; });
    EXPECT_EQ(packets, std::vector<Packet>{mode_write(byte)});
  }
};

TEST_F(Kvt71346, ChoosingTheModelShowsThePanel) {
  EXPECT_TRUE(panel.visible());
  EXPECT_FALSE(form<frmStartup>().visible());
  EXPECT_FALSE(workbench().visible());
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(Kvt71346, LoadsItsDefaults) {
  EXPECT_EQ(panel.Caption, "KVT7134X Ambient Light Sensor Evaluation Software");
  EXPECT_EQ(panel.txtInterval.Text, "120");
  EXPECT_EQ(store.IntervalMs, 120);
  EXPECT_EQ(panel.txtScale.Text, "15000");
  EXPECT_EQ(store.Scale_Max, 15000);
  EXPECT_EQ(panel.lblRegSet.Caption, "Control Register Not Initialized");
  EXPECT_EQ(panel.ShpAttach.FillColor.get(), lamp(12));
  EXPECT_EQ(panel.LstMode2.ListIndex, 0);
  EXPECT_EQ(panel.ModeIndex, 0);
  // The time labels count samples.
  EXPECT_EQ(store.Label_Time, (std::array<std::string, 11>{"0", "40", "80", "120", "160", "200", "240", "280",
                                                           "320", "360", "400"}));
  EXPECT_EQ(store.Label_Left[1], "1500");
  EXPECT_EQ(store.Label_Left[10], "15000");
}

TEST_F(Kvt71346, TheDeviceListSendsItsOwnAddresses) {
  const std::vector<std::string> rows{"KVT71346 ADR-44", "KVT71347 ADR-40", "KVT71347 ADR-41",
                                      "KVT71347 ADR-42", "KVT71347 ADR-43", "KVT71347 ADR-44",
                                      "KVT71347 ADR-45", "KVT71347 ADR-46", "KVT71347 ADR-47"};
  EXPECT_EQ(panel.LstDeviceSel.List(), rows);
  const std::array written{0x88, 0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x87, 0x88};
  // Half of an odd address is rounded to the even number.
  const std::array halves{"44", "40", "40", "41", "42", "42", "42", "44", "44"};
  for (std::size_t row = 0; row < written.size(); ++row) {
    choose(panel.LstDeviceSel, static_cast<int>(row));
    EXPECT_EQ(store.I2C_WrAdr, written[row]) << row;
    EXPECT_EQ(store.I2C_RdAdr, written[row] + 1) << row;
    EXPECT_EQ(panel.txtI2CAddr.Text, halves[row]) << row;
    EXPECT_EQ(panel.txtI2cXmitAdr.Text, forms::Hex(written[row])) << row;
  }
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(Kvt71346, ClosingTheWindowClosesAnOpenDriverSession) {
  click(workbench().cmdUSBConnect);
  ASSERT_EQ(store.Usb_Open, -1);
  forget_traffic();
  int yields_before_closed = 0;
  user.at_yield = [&] { yields_before_closed += !recorder.calls.empty() && store.Usb_Open != 0; };
  program.forms.unload(panel, 0);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{"WDU_VB_Uninit"});
  EXPECT_EQ(yields_before_closed, 2);
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(workbench().txthDriver.Text, "");
}

TEST_F(Kvt71346, ClosingTheWindowWithoutADriverHandleCallsNothing) {
  store.Drv_Handle = 0;
  store.Usb_Open = -1;
  program.forms.unload(panel, 0);
  EXPECT_TRUE(recorder.calls.empty());
  EXPECT_EQ(store.Usb_Open, -1);
}

TEST_F(Kvt71346, ItsListsAreTheModes) {
  EXPECT_EQ(panel.Lst71346_Mode.List(),
            (std::vector<std::string>{"ADC Power Down  -8C", "ADC Reset       -0C", "Diode1 - 100mS  -00",
                                      "Diode2 - 100mS  -04", "D1-D2  - 200mS  -08", "Loop Bk Com Test-xx"}));
  EXPECT_EQ(panel.LstMode2.List(), (std::vector<std::string>{"Diode 1", "Diode 2", "Difference"}));
}

TEST_F(Kvt71346, EachModeIsItsByte) {
  const std::array bytes{0x8C, 0x0C, 0x00, 0x04, 0x08, 0xA5};
  const std::array texts{"8C", "0C", "00", "04", "08", "A5"};
  for (int row = 0; row < 6; ++row) {
    forget_traffic();
    set_mode(row);
    store.SingleReading = 0;
    store.I2C_RdCnt = 4;
    panel.Label17.Visible = panel.txtReading2.Visible = true;
    panel.lblRegSet.ForeColor = forms::clr_white;
    click(panel.cmdSetMode);
    const auto i = static_cast<std::size_t>(row);
    EXPECT_EQ(recorder.packets, std::vector<Packet>{mode_write(bytes[i])});
    EXPECT_EQ(panel.txtModeByte.Text, texts[i]);
    EXPECT_EQ(panel.lblRegSet.Caption, std::string("Control Register set to ") + texts[i] + " Hex");
    EXPECT_EQ(panel.lblRegSet.ForeColor.get(), forms::clr_black);
    EXPECT_EQ(panel.txtInterval.Text, row == 4 ? "240" : "120");
    EXPECT_EQ(store.IntervalMs, 120);
    EXPECT_EQ(store.SingleReading, -1);
    EXPECT_EQ(store.I2C_RdCnt, 2);
    EXPECT_FALSE(panel.Label17.Visible);
    EXPECT_FALSE(panel.txtReading2.Visible);
  }
}

TEST_F(Kvt71346, SettingTheModeOpensAndClosesTheSessionUnlessItIsHeld) {
  click(panel.cmdSetMode);
  EXPECT_EQ(recorder.calls,
            (std::vector<std::string>{"WDU_VB_Init", "WDU_SetInterface", "WDU_GetDeviceInfo", "WDU_Transfer",
                                      "WDU_ResetDevice", "CloseHandle", "WDU_VB_Uninit"}));
  click(workbench().ChKManUsbConn);
  click(workbench().cmdUSBConnect);
  forget_traffic();
  click(panel.cmdSetMode);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{"WDU_Transfer"});
}

TEST_F(Kvt71346, TheChosenDeviceIsAddressed) {
  choose(panel.LstDeviceSel, 2);
  click(panel.cmdSetMode);
  EXPECT_EQ(recorder.packets[0].bytes, (std::vector{0x00, 0x81, 0x8C, 0x00}));
}

TEST_F(Kvt71346, TheModeListSetsModeTwinAndTimeBase) {
  struct Row {
    int row, byte, twin;
    bool internal;
  };
  panel.LstMode2.ListIndex = 1;
  for (const Row& r :
       {Row{0, 0x8C, 1, true}, Row{1, 0x0C, 1, true}, Row{2, 0x00, 0, true}, Row{3, 0x04, 1, true},
        Row{4, 0x08, 2, true}, Row{5, 0xA5, 0, false}, Row{1, 0x0C, 0, false}, Row{3, 0x04, 1, true}}) {
    forget_traffic();
    choose(panel.Lst71346_Mode, r.row);
    EXPECT_EQ(panel.ModeIndex, r.row);
    expect_mode_write(r.byte);
    EXPECT_EQ(panel.LstMode2.ListIndex, r.twin) << r.row;
    EXPECT_EQ(panel.OptTimeBase(0).Value.get(), r.internal) << r.row;
    EXPECT_EQ(panel.OptTimeBase(1).Value.get(), !r.internal) << r.row;
    EXPECT_EQ(store.EventsEnabled, -1);
  }
}

TEST_F(Kvt71346, TheSecondListIsTwoRowsBehind) {
  for (const int row : {0, 1, 2}) {
    forget_traffic();
    choose(panel.LstMode2, row);
    EXPECT_EQ(panel.ModeIndex, row + 2);
    EXPECT_EQ(panel.Lst71346_Mode.ListIndex, row + 2);
    expect_mode_write(4 * row);
  }
  EXPECT_EQ(store.Sample_Run, 0);
}

TEST_F(Kvt71346, TheExternalTimeBaseSendsTheLoopBackByteOrIsRefused) {
  choose(panel.Lst71346_Mode, 2);
  forget_traffic();
  click(panel.OptTimeBase(1));
  EXPECT_EQ(panel.ModeIndex, 5);
  EXPECT_EQ(panel.LstMode2.ListIndex, 0);
  expect_mode_write(0xA5);
  forget_traffic();
  click(panel.OptTimeBase(0));
  EXPECT_EQ(panel.ModeIndex, 2);
  expect_mode_write(0x00);
  for (const int row : {3, 4}) {
    choose(panel.Lst71346_Mode, row);
    forget_traffic();
    user.errors.clear();
    click(panel.OptTimeBase(1));
    EXPECT_EQ(user.errors, std::vector<int>{forms::invalid_property_value});
    EXPECT_TRUE(recorder.calls.empty());
    EXPECT_EQ(panel.Lst71346_Mode.ListIndex, row);
  }
}

TEST_F(Kvt71346, ATimeBaseThatChangesNothingRepeatsTheMode) {
  set_mode(1);
  click(panel.OptTimeBase(1));
  EXPECT_EQ(panel.ModeIndex, 1);
  expect_mode_write(0x0C);
}

// The second list leaves the time base's option as it is, so the option may be changed to what the mode is.
TEST_F(Kvt71346, TheInternalTimeBaseKeepsAnInternalMode) {
  for (const int row : {2, 3, 4}) {
    choose(panel.Lst71346_Mode, 5);
    choose(panel.LstMode2, row - 2);
    ASSERT_TRUE(panel.OptTimeBase(1).Value);
    forget_traffic();
    click(panel.OptTimeBase(0));
    EXPECT_EQ(panel.ModeIndex, row);
    EXPECT_EQ(panel.LstMode2.ListIndex, row - 2);
    expect_mode_write(4 * (row - 2));
  }
}

TEST_F(Kvt71346, TheMainOptionsShowOneFrameOfThree) {
  struct Row {
    int row;
    bool device, mode, time_base;
  };
  for (const Row& r : {Row{0, true, false, false}, Row{1, false, true, false}, Row{2, false, false, true},
                       Row{3, false, false, true}, Row{4, false, false, true}, Row{5, false, false, true},
                       Row{0, true, false, false}}) {
    choose(panel.lst_MainOptions, r.row);
    EXPECT_EQ(panel.FrmDevice.Visible.get(), r.device) << r.row;
    EXPECT_EQ(panel.frmMode.Visible.get(), r.mode) << r.row;
    EXPECT_EQ(panel.frmTimeBase.Visible.get(), r.time_base) << r.row;
  }
}

// Both LEDs are on at the start of the program; each click toggles both and writes the ports.
TEST_F(Kvt71346, EveryModeOptionTogglesTheLeds) {
  auto& gpio = form<frmGPIO>();
  store.Gpio_Image[3] = 0xF3;
  for (const int option : {0, 1, 0}) {
    const int led = gpio.ChKLedData(0).Value;
    forget_traffic();
    click(panel.OptMode(option));
    EXPECT_EQ(gpio.ChKLedData(0).Value, 1 - led);
    EXPECT_EQ(gpio.ChKLedData(1).Value, 1 - led);
    EXPECT_EQ(store.Gpio_Image[3], led == 1 ? 0xF0 : 0xF3);
    ASSERT_EQ(recorder.packets.size(), 3u);
    EXPECT_EQ(recorder.packets[0], (Packet{1, {0xFF, store.Gpio_Image[3], 0x00, 0x00}, 0, 4}));
    EXPECT_EQ(recorder.packets[1].pipe, 0x81);
    EXPECT_EQ(recorder.packets[1].size, 25u);
    expect_mode_write(option == 0 ? 0x00 : 0x8C);
  }
}

TEST_F(Kvt71346, TheLedsToggleEachByItself) {
  auto& gpio = form<frmGPIO>();
  gpio.ChKLedData(0).Value = 0;
  click(panel.OptMode(1));
  EXPECT_EQ(gpio.ChKLedData(0).Value, 1);
  EXPECT_EQ(gpio.ChKLedData(1).Value, 0);
  EXPECT_EQ(store.Gpio_Image[3] & 3, 1);
}

TEST_F(Kvt71346, CollectDataFromReturnsToTheRowOfTheSecondList) {
  panel.LstMode2.ListIndex = 2;
  click(panel.OptMode(1));
  EXPECT_FALSE(panel.LstMode2.Visible);
  EXPECT_EQ(panel.ModeIndex, 0);
  EXPECT_EQ(panel.Lst71346_Mode.ListIndex, 0);
  click(panel.OptMode(0));
  EXPECT_TRUE(panel.LstMode2.Visible);
  EXPECT_EQ(panel.ModeIndex, 4);
  EXPECT_EQ(panel.txtModeByte.Text, "08");
}

TEST_F(Kvt71346, TheCommunicationsTestSendsTheLoopBackByte) {
  panel.txtADHex.Text = "old";
  const double start = clock.milliseconds();
  click(panel.OptMode(2));
  const auto out = sent_on(2);
  EXPECT_EQ(
      out,
      (std::vector<std::vector<int>>{
          {0x00, 0x88, 0xA5, 0x00}, {0x00, 0x88, 0xA5}, {0x02, 0x89}, {0x00, 0x88, 0xA5}, {0x02, 0x89}}));
  EXPECT_EQ(sent_on(130), (std::vector<std::vector<int>>{{2, 0xA5, 0xA5}, {2, 0xA5, 0xA5}}));
  EXPECT_GT(clock.milliseconds() - start, 400);  // twice a wait of 100 ms, twice the slow read's
  EXPECT_EQ(panel.txtADHex.Text, "A5A5");
  EXPECT_EQ(panel.LblCommTest.Caption, "Good");
  EXPECT_EQ(panel.LblCommTest.BackColor.get().value, 32768u);
  EXPECT_EQ(panel.LblCommTest.ForeColor.get().value, 0x80000012u);
  EXPECT_TRUE(panel.LblCommTest.Visible);
  EXPECT_FALSE(panel.OptMode(2).Value);
  EXPECT_FALSE(panel.LstMode2.Visible);
  EXPECT_EQ(panel.ModeIndex, 5);
  expect_idle();
  // One session for the ports, one for the test.
  EXPECT_EQ(std::ranges::count(recorder.calls, "WDU_VB_Init"), 2);
}

TEST_F(Kvt71346, TheCommunicationsTestFailsWithoutASensorOrABoard) {
  for (const bool board_there : {true, false}) {
    if (board_there)
      board.unmount();
    else
      board.unplug();
    click(panel.OptMode(2));
    EXPECT_EQ(panel.LblCommTest.Caption, "Fail");
    EXPECT_EQ(panel.LblCommTest.BackColor.get().value, 255u);
    EXPECT_EQ(panel.LblCommTest.ForeColor.get().value, 0xFFFFFFu);
    EXPECT_TRUE(panel.LblCommTest.Visible);
    EXPECT_TRUE(user.errors.empty());
    expect_idle();
    panel.LblCommTest.Caption = "";
  }
}

TEST_F(Kvt71346, AfterTheCommunicationsTestATriggerRepeatsTheLoopBackByte) {
  click(panel.OptMode(2));
  forget_traffic();
  sample(1);
  EXPECT_EQ(recorder.packets[0].bytes, (std::vector{0x00, 0x88, 0xA5}));
}

TEST_F(Kvt71346, InPowerDownTheOldCountIsReadAgain) {
  board.set_register(1, 0xCD);
  board.set_register(2, 0xAB);
  board.scene().light_lux = 1;
  sample(3);
  EXPECT_EQ(recorder.packets[0].bytes, (std::vector{0x00, 0x88, 0x8C}));
  EXPECT_EQ(store.Sample_Value[3], 0xABCD);
  EXPECT_EQ(panel.txtReading.Text, " 43981");
}

TEST_F(Kvt71346, TheSlowReadShowsItsBytes) {
  set_mode(2);
  board.queue_reply({2, 0x05, 0x0C, 0x77, 0x66, 0x55});
  at_yield([&] { return store.Sample_Count == 1 && panel.txtADDec.Text != ""; },
           clicking(panel.cmdEndSampling));
  click(panel.cmdSample);
  EXPECT_EQ(store.Sample_Value[1], 0x0C05);
  EXPECT_EQ(store.Sample_Value2[1], 1);
  EXPECT_EQ(panel.txtReading.Text, " 3077");
  EXPECT_EQ(panel.txtReading2.Text, " 1");
  EXPECT_EQ(panel.txtSampleByte(0).Text, "2");
  EXPECT_EQ(panel.txtSampleByte(1).Text, "05");
  EXPECT_EQ(panel.txtSampleByte(2).Text, "C");
  EXPECT_EQ(panel.txtADHex.Text, "C05");
  EXPECT_EQ(panel.txtADDec.Text, "3077");
}

TEST_F(Kvt71346, TwoReadingsAreStoredAndShownWhenTheyAreAskedFor) {
  set_mode(2);
  at_yield([&] { return store.Sample_Run == -1 && store.Man_Usb_Conn == -1; },
           [&] {
             store.SingleReading = 0;
             store.I2C_RdCnt = 4;
             board.queue_reply({4, 1, 2, 3, 4});
             at_yield(count_reaches(1), clicking(panel.cmdStopData));
           });
  click(panel.cmdCollectData);
  EXPECT_EQ(recorder.packets[0].bytes, (std::vector{0x04, 0x89}));
  EXPECT_EQ(store.Sample_Value[0], 0x0201);
  EXPECT_EQ(store.Sample_Value2[0], 0x0403);
  EXPECT_EQ(panel.txtReading2.Text, "1027");
}

TEST_F(Kvt71346, WithoutATriggerNothingIsRead) {
  panel.txtADDec.Text = "5";
  panel.txtReading.Text = "old";
  // Another stop than the button's, behind a trigger that a handler took away.
  at_yield([&] { return store.Man_Usb_Conn == -1 && store.TriggerDone == -1; },
           [&] {
             store.TriggerDone = 0;
             forms::user::click(panel.cmdEndSampling);
           });
  click(panel.cmdSample);
  EXPECT_EQ(panel.txtADDec.Text, "No Trig");
  EXPECT_EQ(panel.txtReading.Text, "old");
  EXPECT_TRUE(sent_on(130).empty());
}

TEST_F(Kvt71346, ResetWaitsMoreThanASecondTwice) {
  double first = 0;
  double second = 0;
  std::string caption;
  recorder.before_call = [&] {
    if (store.Xfer_Size != 4 || store.Pipe_Num != 2 || store.Usb_Open == 0) return;
    if (store.Xfer_Buf[2] == 0x0C && first == 0) {
      first = clock.milliseconds();
      caption = panel.cbReset.Caption;
    }
    if (store.Xfer_Buf[2] == 0x00 && second == 0) second = clock.milliseconds();
  };
  click(panel.cbReset);
  EXPECT_EQ(sent_on(2), (std::vector<std::vector<int>>{{0, 0x88, 0x0C, 0}, {0, 0x88, 0x00, 0}}));
  EXPECT_EQ(caption, "Resetting ADC");
  EXPECT_EQ(panel.cbReset.Caption, "Reset");
  EXPECT_GT(second - first, 1025);
  EXPECT_LT(second - first, 1075);
  EXPECT_GT(clock.milliseconds() - second, 1025);
  EXPECT_EQ(store.IntegrationMs, 1025);
  EXPECT_FALSE(panel.Tmr_Integration.Enabled);
  EXPECT_EQ(panel.ModeIndex, 2);
  EXPECT_EQ(panel.Lst71346_Mode.ListIndex, -1);
}

}  // namespace
}  // namespace varzelin::testing
