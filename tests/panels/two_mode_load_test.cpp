// The two-mode panels as they have loaded, and their two layouts.
#include "support/temporary_folder.h"
#include "support/two_mode_fixture.h"

namespace varzelin::testing {
namespace {

struct TwoModeLoad : TwoModeTest {
  void SetUp() override {}  // each test loads
  void load() {
    PanelProgram::opened = &choose_panel(*this, GetParam());
    panel = dynamic_cast<TwoModePanel*>(opened);
  }
  std::string model() const { return GetParam().substr(3); }
};

TEST_P(TwoModeLoad, CarriesItsModelInItsWords) {
  load();
  EXPECT_EQ(panel->Caption, model() + "  Multi-Function  Sensor Evaluation Software");
  ASSERT_EQ(panel->LstDeviceSel.ListCount(), 1);
  EXPECT_EQ(panel->LstDeviceSel.List(0), model() + " ADR-44");
  EXPECT_EQ(panel->txtRegHex(0).ToolTipText, "Display actual hex value of KVT71344 control Register. ");
  EXPECT_EQ(panel->txtRegHex(1).ToolTipText, "Hex  Write value of KVT71344 control Register. ");
}

TEST_P(TwoModeLoad, OnlyOneOfThemMeasuresLightByChoice) {
  load();
  const bool has_light = model() == "KVT71374";
  for (int position = 0; position < 10; ++position) {
    const bool light = position == measure::light_once || position == measure::light;
    EXPECT_EQ(panel->find("OptMeasure", position) != nullptr, has_light || !light) << position;
  }
}

TEST_P(TwoModeLoad, HasItsCaptions) {
  load();
  WordsOfControls words{{"OptMeasure(0)", {"Power Down"}},
                        {"OptMeasure(2)", {"IR Once"}},
                        {"OptMeasure(3)", {"Prox. Once"}},
                        {"OptMeasure(4)", {"(Prox-IR) Calculated"}},
                        {"OptMeasure(6)", {"IR Cont"}},
                        {"OptMeasure(7)", {"Prox. Cont"}},
                        {"OptMeasure(8)", {"(Prox - IR)Cont"}},
                        {"OptMeasure(9)", {"(Prox-IR) ADJ"}},
                        {"OptITime(0)", {"16"}},
                        {"OptITime(1)", {"12"}},
                        {"OptITime(2)", {"8 "}},
                        {"OptITime(3)", {"4"}},
                        {"OptPSrc(0)", {"100mA"}},
                        {"OptPSrc(1)", {"50mA"}},
                        {"OptPSrc(2)", {"25mA"}},
                        {"OptPSrc(3)", {"12.5mA"}},
                        {"OptMFreq(0)", {"DC"}},
                        {"OptMFreq(1)", {"1311"}},
                        {"OptMFreq(2)", {"655.3"}},
                        {"OptMFreq(3)", {"327.7"}},
                        {"OptIRMode(0)", {"Scheme0"}},
                        {"OptIRMode(1)", {"Scheme1"}},
                        {"OptExtTime(0)", {"Internal"}},
                        {"OptExtTime(1)", {"External"}},
                        {"OptMeasMode(0)", {"ADC"}},
                        {"OptMeasMode(1)", {"Time Base"}},
                        {"OptMode(2)", {"Test Comm"}},
                        {"cmdSetCommand", {"Write Command b000"}},
                        {"cmdSetControl", {"Write Command II  b001"}},
                        {"cmdRead_All", {"Read Regs b000-01"}},
                        {"cmdRead_ADC", {"Read ADC "}},
                        {"cmdReadTB", {"Read T.B."}},
                        {"cmdSync", {"Send Sync"}},
                        {"lblSync", {"Sync &&h80"}},
                        {"cmdProx_IR", {"Prox-IR"}},
                        {"cmdBatchShow", {"Run Script"}},
                        {"ChStab", {"Stability Enable"}},
                        {"chkAutoAuto", {"Auto-Auto"}},
                        {"lblRegister(0)", {"b000"}},
                        {"lblRegister(1)", {"b001"}},
                        {"lblRegister(2)", {"ADC"}},
                        {"lblRegister(4)", {"TB"}},
                        {"txtRegRd(2)", {"", "ADC Readback LSB (7:0)"}},
                        {"txtRegRd(3)", {"", "ADC Readback MSB (15:8)"}},
                        {"txtRegRd(4)", {"", "Integration Counter LSB Value"}},
                        {"txtRegRd(5)", {"", "Integration Counter MSB Value"}}};
  if (model() == "KVT71374") {
    words.insert({{"OptMeasure(1)", {"ALS Once"}}, {"OptMeasure(5)", {"ALS Cont."}}});
  }
  expect_words(*panel, words);
}

TEST_P(TwoModeLoad, WritesBothRegistersByItsOptions) {
  load();
  const ByteLists internal{{2, 0x89, 4}, write(0, 0x00), {2, 0x89, 0}, write(0, 0x00), {2, 0x89, 0}};
  EXPECT_EQ(sent(), joined({internal,
                            {{2, 0x89, 4}},
                            written(0, 0x00),
                            written(1, 0x00),
                            written(1, 0x40),
                            written(0, 0x00),
                            written(1, 0x70),
                            written(0, 0x00),
                            written(0, 0x00),
                            written(1, 0x70)}));
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_EQ(store.Man_Usb_Conn, 0);
}

TEST_P(TwoModeLoad, StartsWithTheseValues) {
  // Those of the panel before.
  store.ProxMode = store.ProxIRMode = store.LuxMode = store.ProxAdjMode = -1;
  store.GainAuto = store.IrdrAuto = store.ExtTiming = -1;
  store.ProxScheme = 1;
  store.GainIndex = store.RangeIndex = 3;
  load();
  for (const Flag mode : {store.ProxMode, store.ProxIRMode, store.LuxMode, store.ProxAdjMode, store.GainAuto,
                          store.IrdrAuto, store.ExtTiming}) {
    EXPECT_EQ(mode, 0);
  }
  EXPECT_EQ(store.ProxScheme, 0);
  EXPECT_EQ(store.RangeLux, (std::array<std::int32_t, 4>{1000, 4000, 16000, 64000}));
  EXPECT_EQ(store.ResistorScale, 500000);
  EXPECT_EQ(store.GainMultiplier, 1);
  EXPECT_EQ(store.GainIndex, 0);
  EXPECT_EQ(store.RangeIndex, 0);
  EXPECT_EQ(store.IrdrIndex, 1);
  EXPECT_EQ(store.AdcBits, 16);
  EXPECT_EQ(store.FullCount, 65535);
  EXPECT_EQ(store.SampleDelayMs, 118);
  EXPECT_EQ(store.SingleReading, -1);
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(store.I2C_RdAdr, 0x89);
  EXPECT_EQ(store.GraphUnit1, "AD Cnt");
  EXPECT_EQ(store.GraphUnit2, "AD Cnt");
  EXPECT_EQ(store.RegImage[0], 0x00);
  EXPECT_EQ(store.RegImage[1], 0x70);
  EXPECT_EQ(store.RegImage[2], 0xFF);
  EXPECT_EQ(store.RegImage[3], 0x00);
  EXPECT_EQ(store.Trace_Y[403], 1);
}

TEST_P(TwoModeLoad, ShowsThem) {
  load();
  EXPECT_EQ(box(0), "00");
  EXPECT_EQ(box(1), "70");
  EXPECT_EQ(panel->txtI2CAddr.Text, "44");
  EXPECT_EQ(panel->txtI2cXmitAdr.Text, "88");
  EXPECT_EQ(panel->txtInterval.Text, "120");
  EXPECT_EQ(panel->txtSampling_Delay.Text, "118");
  EXPECT_EQ(panel->txtScale.Text, "65535");
  EXPECT_EQ(panel->txtScale2.Text, "65535");
  EXPECT_EQ(panel->lblKfactor.Caption, "1");
  EXPECT_EQ(store.Label_Time[10], "48.00");
  EXPECT_TRUE(panel->OptITime(0).Value);
  EXPECT_TRUE(panel->OptPSrc(1).Value);
  EXPECT_TRUE(panel->OptMFreq(3).Value);
  EXPECT_TRUE(panel->OptIRMode(0).Value);
  EXPECT_TRUE(panel->OptExtTime(0).Value);
  EXPECT_TRUE(panel->OptMeasMode(0).Value);
  for (const forms::Control* hidden : std::initializer_list<forms::Control*>{
           &panel->Frame14, &panel->Frame12, &panel->FrProxIRStab, &panel->lblRange, &panel->ChkEOC1(0),
           &panel->txtSync1Delay(1), &panel->txtStabDif, &panel->txtStabDelay, &panel->LblCommTest}) {
    EXPECT_FALSE(hidden->Visible) << hidden->full_name();
  }
  EXPECT_EQ(panel->txtGainTrip(0).Text, ".90");
  EXPECT_EQ(panel->txtGainTrip(1).Text, ".20");
  EXPECT_TRUE(panel->cmdEndSampling.Visible && panel->cmdStopData.Visible);
  EXPECT_FALSE(panel->cmdEndSampling.Enabled || panel->cmdStopData.Enabled);
}

// --- layouts ---

struct TwoModeLayout : TwoModeTest {
  std::vector<forms::Control*> advanced() {
    return {&panel->Frame4,      &panel->Frame5,      &panel->Frame11,       &panel->Frame2,
            &panel->Frame8,      &panel->Frame3,      &panel->frmTimeBase,   &panel->frmDataRecord,
            &panel->OptITime(2), &panel->OptITime(3), &panel->cmdSetCommand, &panel->cmdSetControl,
            &panel->cmdRead_All, &panel->cmdRead_ADC, &panel->cmdReadTB,     &panel->cmdSync};
  }
  int hidden_operations() {
    int hidden = 0;
    for (int position = 0; position < 10; ++position) {
      const forms::Control* option = panel->find("OptMeasure", position);
      hidden += option && !option->Visible;
    }
    return hidden;
  }
  void turn() {
    program.runtime.dispatch([&] { forms::user::double_click(panel->Label13); });
  }
};

TEST_P(TwoModeLayout, ItLoadsInTheShortOneAndADoubleClickTurnsIt) {
  for (const bool full : {false, true, false}) {
    EXPECT_EQ(store.LayoutCompact, flag(!full));
    for (const forms::Control* control : advanced()) {
      EXPECT_EQ(control->Visible, full) << control->full_name();
    }
    EXPECT_EQ(hidden_operations(), full ? 0 : 2);
    EXPECT_TRUE(panel->OptITime(0).Visible && panel->OptITime(1).Visible);
    turn();
  }
  EXPECT_TRUE(recorder.packets.empty());
}

TEST_P(TwoModeLayout, TheFullOneShowsThePairInItsPositionsOnly) {
  for (int position = 0; position < 10; ++position) {
    if (!panel->find("OptMeasure", position)) continue;
    SCOPED_TRACE(position);
    const bool pair = position == 4 || position >= 8;
    click(panel->OptMeasure(position));
    EXPECT_EQ(panel->Frame10.Visible, pair);
    EXPECT_FALSE(panel->Frame9.Visible);
    turn();
    EXPECT_EQ(panel->Frame10.Visible, pair);
    EXPECT_EQ(panel->Frame9.Visible, pair);
    click(panel->OptMeasure(position));
    EXPECT_EQ(panel->Frame9.Visible, pair);
    turn();
    EXPECT_FALSE(panel->Frame10.Visible);
    EXPECT_FALSE(panel->Frame9.Visible);
  }
}

// --- beside the workbench ---

// They share the address: the panel's packets go where the file says. Its registers stay its own.
struct TwoModeSetupFiles : TwoModeTest {
  const TemporaryFolder folder;
};

TEST_P(TwoModeSetupFiles, ASetupFileMovesThePanelsAddressAndNothingElse) {
  user.file_answers.push_back(
      folder.make("setup.kvt", "Two modes, 8E\r\n00,command,A0,11\r\n01,command II,7F,22\r\n"));
  click(workbench().mnuSetup_Open);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_EQ(workbench().Reg_Desc(1).Text, "command II");
  EXPECT_EQ(workbench().Reg_Adr(2).Text, "");
  EXPECT_EQ(box(0), "00");
  EXPECT_EQ(box(1), "70");
  click(panel->cmdSetControl);
  EXPECT_EQ(sent(), (ByteLists{{0, 0x8F, 1, 0x70}, {2, 0x8F, 0}}));
}

TEST_P(TwoModeSetupFiles, ASavedOneIsEmptyWithThePanelToo) {
  const std::string path = folder.path("saved.kvt");
  user.file_answers.push_back(path);
  click(workbench().mnuSetup_Save);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(TemporaryFolder::content(path), "");
  EXPECT_TRUE(recorder.packets.empty());
}

ON_BOTH_MODELS(TwoModeSetupFiles);
ON_BOTH_MODELS(TwoModeLoad);
ON_BOTH_MODELS(TwoModeLayout);

}  // namespace
}  // namespace varzelin::testing
