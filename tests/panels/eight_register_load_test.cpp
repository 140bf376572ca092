// How the panels over eight registers have loaded, and their devices.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

using Kvt71344Load = Kvt71344;
using Kvt71356Load = Kvt71356;

TEST_F(Kvt71344Load, LoadWithoutTrafficOnTheSensor) {
  program.forms.unload(*panel, 0);
  forget_traffic();
  program.forms.touch("frmKVT71344");
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_F(Kvt71344Load, LoadTheirDefaults) {
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

TEST_F(Kvt71356Load, LoadTheirDefaultsAndWriteThem) {
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

// --- the device list ---

TEST_F(Kvt71344Load, TheDeviceListStepsByTwo) {
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

TEST_F(Kvt71344Load, ATenthDeviceRowHasTheLightCountAlone) {
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

TEST_F(Kvt71356Load, ItsOneDeviceHasTheLightCountAlone) {
  panel->OptMeasure(0).select_quietly();
  panel->OptMeasure(0).Visible = true;
  choose(panel->LstDeviceSel, 0);
  EXPECT_FALSE(panel->OptMeasure(0).Visible);
  EXPECT_TRUE(panel->OptMeasure(2).Value);
  EXPECT_EQ(sent(), written(0, 0x88));
}

// --- timers ---

TEST_F(Kvt71344Load, TheIntegrationTimerHasNoHandler) {
  EXPECT_FALSE(panel->Tmr_Integration.handles(forms::Event::Timer));
}
TEST_F(Kvt71356Load, TheIntegrationTimerCounts) {
  EXPECT_TRUE(panel->Tmr_Integration.handles(forms::Event::Timer));
}

}  // namespace
}  // namespace varzelin::testing
