// How the multi-function panels load: what goes to the sensor, and how the panel stands then.
#include "support/multi_function_fixture.h"

namespace varzelin::testing {
namespace {

using MultiFunctionLoad = EachMultiFunctionPanel;
using Kvt71385Load = Kvt71385Panel;

TEST_P(MultiFunctionLoad, PutsTheSensorIntoItsFirstState) {
  program.forms.unload(*panel, 0);
  open_with_traffic(GetParam());
  ByteLists expected = writes("r0=00 r1=04 r1=24 r0=00 r1=64 r0=00 r0=00 r1=64");
  expected.push_back({0, write_address(), 4, 0x64, 0x00, 0xDC, 0x05});
  for (const int limit : {4, 5, 6, 7}) expected.push_back({1, 0x89, limit});
  EXPECT_EQ(sent(), expected);
  EXPECT_EQ(reply_sizes(), (std::vector<std::size_t>{3, 3, 3, 3, 3, 3, 3, 3, 6, 6, 6, 6}));
  EXPECT_EQ(store.Usb_Open, 0);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_TRUE(user.boxes.empty());
}

TEST_P(MultiFunctionLoad, ShowsTheImageAndWhatWasReadBack) {
  EXPECT_EQ(std::vector<std::uint8_t>(store.RegImage.begin(), store.RegImage.begin() + 4),
            (std::vector<std::uint8_t>{0x00, 0x64, 0xFF, 0x00}));
  const std::vector<std::string> written{"00", "64", "00", "00", "64", "00", "DC", "05", "00"};
  const std::vector<std::string> read{"00", "64", "XX", "XX", "64", "00", "DC", "05", "XX"};
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(box(i), written[static_cast<std::size_t>(i)]) << i;
    EXPECT_EQ(read_box(i), read[static_cast<std::size_t>(i)]) << i;
  }
  EXPECT_EQ(panel->limits.txtILow.Text, "100");
  EXPECT_EQ(panel->limits.txtIHigh.Text, "1500");
}

TEST_P(MultiFunctionLoad, NumbersTheTipsOfBoxesAndButtons) {
  for (int i = 0; i < 9; ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(panel->txtRegHex(i).ToolTipText,
              "Enter Hex value, click Wr Button below to write to register" + number);
    EXPECT_EQ(panel->txtRegRd(i).ToolTipText,
              "Rd Hex Value, click RD Button below to read from register" + number);
    EXPECT_EQ(panel->cmdWrtReg(i).ToolTipText, "Click to Write to Register " + number);
    EXPECT_EQ(panel->cmdRDReg(i).ToolTipText, "Click to Read from Register " + number);
    EXPECT_EQ(panel->cmdWrtReg(i).Caption, "Wr");
    EXPECT_EQ(panel->cmdRDReg(i).Caption, "Rd");
  }
  EXPECT_FALSE(panel->txtRegHex.has(9));
  EXPECT_EQ(panel->lblRegister(0).Caption,
            "  R0        R1         R2        R3        R4        R5         R6         R7         R8");
  EXPECT_EQ(panel->lblRegister(1).Caption,
            "Opr       Con       AD LSB  ADMSB  ILLSB   ILMSB   IHLSB    IHMSB     RSVD");
}

// Each action turned its lamp over: light green after an odd number of them. The lamp of r1 was red at first,
// when the box had the width already and the sensor hadn't.
TEST_P(MultiFunctionLoad, ItsLampsShowEvenAndOdd) {
  EXPECT_EQ(panel->ShpIndwr(0).FillColor, lamp(2));  // written four times
  EXPECT_EQ(panel->ShpIndwr(1).FillColor, lamp(2));
  EXPECT_EQ(panel->ShpIndwr(8).FillColor, black());
  for (const int i : {0, 10}) EXPECT_EQ(panel->ShpIndrd(i).FillColor, lamp(2)) << i;
  for (const int i : {1, 4, 5, 6, 7}) EXPECT_EQ(panel->ShpIndrd(i).FillColor, lamp(10)) << i;
  for (const int i : {2, 3, 8, 9}) EXPECT_EQ(panel->ShpIndrd(i).FillColor, black()) << i;
  for (const int i : {2, 3, 4, 12}) EXPECT_EQ(panel->ShpInd(i).FillColor, black()) << i;
  EXPECT_EQ(panel->ShpINt.FillColor, black());
  EXPECT_EQ(panel->pin.ShpINTexternal.FillColor, black());
}

TEST_P(MultiFunctionLoad, SetsTheFlagsAndNumbersOfTheConverter) {
  EXPECT_EQ(store.OneShotMode, -1);
  EXPECT_EQ(store.InternalTiming, -1);
  EXPECT_EQ(store.SinglePolarity, -1);
  EXPECT_EQ(store.LayoutCompact, -1);
  EXPECT_EQ(store.EventsEnabled, -1);
  EXPECT_EQ(store.ReadAdc, -1);
  for (const Flag mode : {store.ProxMode, store.ProxIRMode, store.LuxMode, store.CoverMode, store.ExtTiming,
                          store.GainAuto, store.IrdrAuto, store.ReadTimeBase}) {
    EXPECT_EQ(mode, 0);
  }
  EXPECT_EQ(pending(), "");
  EXPECT_EQ(store.ProxScheme, 0);
  EXPECT_EQ(store.AdcBits, 12);
  EXPECT_EQ(store.FullCount, 4096);
  EXPECT_EQ(bounds(), "0 4096");
  EXPECT_EQ(store.GainIndex, 0);
  EXPECT_EQ(store.RangeIndex, 0);
  EXPECT_EQ(store.IrdrIndex, 1);
  EXPECT_EQ(store.GainMultiplier, 1);
  EXPECT_EQ(store.RangeLux, (std::array<std::int32_t, 4>{1000, 4000, 16000, 64000}));
  EXPECT_EQ(store.ResistorScale, 500000);
  EXPECT_EQ(store.SampleDelayMs, 8);
  EXPECT_EQ(store.GraphUnit1, "AD Cnt");
  EXPECT_EQ(store.GraphUnit2, "AD Cnt");
}

TEST_P(MultiFunctionLoad, ForgetsWhatThePanelBeforeHadSet) {
  store.LuxMode = store.CoverMode = store.ProxMode = store.ProxIRMode = store.ExtTiming = true_flag;
  store.GainAuto = store.IrdrAuto = true_flag;
  store.InternalTiming = store.SinglePolarity = store.OneShotMode = store.EventsEnabled = false_flag;
  store.ProxScheme = 1;
  store.GainIndex = store.RangeIndex = 3;
  store.GainMultiplier = 64;
  store.LimitMax = 7;
  store.GraphUnit1 = store.GraphUnit2 = "Lux";
  store.RegImage.fill(0xFF);
  open_anew();
  EXPECT_EQ(scales(), "4096 4096 0 0");
  EXPECT_EQ(bounds(), "0 4096");
  EXPECT_EQ(box(0) + box(1), "0064");
  EXPECT_EQ(store.GainMultiplier, 1);
  EXPECT_EQ(store.GainIndex + store.RangeIndex, 0);
  EXPECT_EQ(store.GraphUnit1 + store.GraphUnit2, "AD CntAD Cnt");
  EXPECT_EQ(store.OneShotMode, -1);
  EXPECT_EQ(store.InternalTiming, -1);
  EXPECT_EQ(store.LuxMode + store.CoverMode + store.ProxMode + store.ProxIRMode + store.ExtTiming, 0);
  EXPECT_EQ(store.GainAuto + store.IrdrAuto, 0);
}

TEST_P(MultiFunctionLoad, ShowsTwelveBitsWithoutASign) {
  EXPECT_EQ(limits_format(0), "Single Polarity");
  EXPECT_EQ(limits_format(1), "12 Bits");
  EXPECT_EQ(limits_format(2), "4096 Max");
  EXPECT_EQ(limits_format(3), "0 Min");
  EXPECT_EQ(scales(), "4096 4096 0 0");
  EXPECT_EQ(store.Scale_Max, 4097);
  EXPECT_EQ(store.Label_Right[1], "410");
  EXPECT_EQ(panel->txtInterval.Text, "10");
  EXPECT_EQ(panel->txtSampling_Delay.Text, "8");
  EXPECT_TRUE(panel->OptITime(1).Value);
  EXPECT_TRUE(panel->OptPSrc(1).Value);
  EXPECT_TRUE(panel->OptMFreq(3).Value);
  EXPECT_TRUE(panel->OptGain(0).Value);
  EXPECT_TRUE(panel->OptIRMode(0).Value);
  EXPECT_FALSE(panel->OptIRMode(1).Enabled);
  EXPECT_TRUE(panel->cmdRead_ADC.Enabled);
  EXPECT_FALSE(panel->cmdReadTB.Enabled);
  EXPECT_FALSE(panel->TimerIPol.Enabled);
}

TEST_P(MultiFunctionLoad, StandsInTheShortLayout) {
  for (const char* hidden :
       {"Frame2",        "Frame3",        "Frame4",      "Frame5",        "Frame8",    "Frame9",
        "Frame10",       "Frame11",       "frmTimeBase", "frmDataRecord", "FrmDevice", "Label17",
        "cmdSetCommand", "cmdSetControl", "cmdRead_All", "cmdRead_ADC",   "cmdReadTB", "cmdSync",
        "cmdProx_IR",    "txtReading2",   "txtReading3", "cmdIntr1"}) {
    EXPECT_FALSE(panel->find(hidden)->Visible) << hidden;
  }
  for (const int width : {2, 3}) EXPECT_FALSE(panel->OptITime(width).Visible);
  for (const char* shown : {"frmMeasure", "Frame1", "frmadccontrol", "fraINT", "frmMode"}) {
    EXPECT_TRUE(panel->find(shown)->Visible) << shown;
  }
}

INSTANTIATE_TEST_SUITE_P(Each, MultiFunctionLoad, ::testing::ValuesIn(multi_function_panels), panel_name);

// --- what differs ---

struct Model {
  const char* form_name;
  const char* title;
  const char* title_at_load;
  const char* device;
  std::vector<std::string> measurements;  // captions by position; an empty one isn't there
  std::vector<int> hidden;                // of them, in the short layout
  bool shows_pair;                        // in the full layout
  bool has_cover;
  bool has_offset;
};
const std::vector<Model> models{
    {"frmKVT71385",
     "KVT71385  Multi-Function  Sensor Evaluation Software",
     "KVT71385  Multi-Function  Sensor Evaluation Software : Revision ",
     "KVT71385 ADR-44",
     {"Power Down", "ALS Once", "IR Once", "Prox. Once", "Prox-IR External Calculated", "ALS Cont.",
      "IR Cont", "Prox. Cont"},
     {1, 2, 3},
     false,
     true,
     true},
    {"frmKVT71388",
     "KVT71388  Multi-Function  Sensor Evaluation Software",
     "KVT71388  Multi-Function  Sensor Evaluation Software : Revision ",
     "KVT71388 ADR-44",
     {"Power Down", "ALS Once", "IR Once", "Prox. Once", "Prox-IR External Calculated", "ALS Cont.",
      "IR Cont", "Prox. Cont"},
     {1, 2, 3},
     false,
     true,
     false},
    {"frmKVT71390",
     "KVT71390  Proximity  Sensor Evaluation Software",
     "KVT71390  Sensor Evaluation Software : Revision ",
     "KVT71390 ADR-44",
     {"Power Down", "", "IR Once", "Prox. Once", "Prox-IR External Calculated", "", "IR Cont", "Prox. Cont"},
     {2, 3},
     true,
     false,
     false},
    {"frmKVT71392",
     "KVT71392  Multi-Function  Sensor Evaluation Software",
     "KVT71392 Sensor Evaluation Software : Revision ",
     "KVT71392 ADR-44",
     {"Power Down", "ALS Once", "IR Once", "", "", "ALS Cont.", "IR Cont", ""},
     {1, 2},
     true,
     false,
     false}};

struct MultiFunctionModels : MultiFunctionFixture {};

TEST_F(MultiFunctionModels, HaveTheirNamesAndTheRevisionInTheTitle) {
  for (const Model& model : models) {
    for (const char revision : {'A', 'B'}) {
      open(model.form_name, revision);
      EXPECT_EQ(panel->Caption, model.title_at_load + std::string(1, revision));
      EXPECT_STREQ(panel->model.title, model.title);
      EXPECT_EQ(panel->LstDeviceSel.List(), std::vector<std::string>{model.device});
      EXPECT_EQ(panel->LstDeviceSel.ListIndex, 0);
      program.forms.unload(*panel, 0);
    }
  }
}

TEST_F(MultiFunctionModels, HaveTheirMeasurements) {
  for (const Model& model : models) {
    SCOPED_TRACE(model.form_name);
    open(model.form_name);
    for (int position = 0; position < 9; ++position) {
      const std::string caption = position < 8 ? model.measurements[static_cast<std::size_t>(position)] : "";
      EXPECT_EQ(panel->OptMeasure.has(position), !caption.empty()) << position;
      if (caption.empty()) continue;
      EXPECT_EQ(panel->OptMeasure(position).Caption, caption);
      const bool hidden = std::ranges::count(model.hidden, position) != 0;
      EXPECT_EQ(panel->OptMeasure(position).Visible, !hidden) << position;
    }
    EXPECT_EQ(panel->cover.has_value(), model.has_cover);
    EXPECT_EQ(panel->subtraction.has_value(), model.has_offset);
    for (const char* cover : {"ChkCover", "Frame12", "cmdALS_IR"}) {
      EXPECT_EQ(panel->find(cover) != nullptr, model.has_cover) << cover;
    }
    for (const char* offset : {"ChkSubract", "lblOffset", "frmProxOffset"}) {
      EXPECT_EQ(panel->find(offset) != nullptr, model.has_offset) << offset;
    }
  }
}

TEST_F(MultiFunctionModels, TheFullLayoutShowsWhatTheShortOneHidAndOnSomeThePair) {
  for (const Model& model : models) {
    SCOPED_TRACE(model.form_name);
    open(model.form_name);
    program.runtime.dispatch([&] { forms::user::double_click(panel->Label13); });
    EXPECT_EQ(store.LayoutCompact, 0);
    for (const char* shown :
         {"Frame2",    "Frame3",        "Frame4",        "Frame5",        "Frame8",
          "Frame9",    "Frame11",       "frmTimeBase",   "frmDataRecord", "FrmDevice",
          "Label17",   "cmdSetCommand", "cmdSetControl", "cmdRead_All",   "cmdRead_ADC",
          "cmdReadTB", "cmdSync",       "cmdProx_IR",    "txtReading2",   "txtReading3"}) {
      EXPECT_TRUE(panel->find(shown)->Visible) << shown;
    }
    for (const int width : {2, 3}) EXPECT_TRUE(panel->OptITime(width).Visible);
    for (const int position : model.hidden) EXPECT_TRUE(panel->OptMeasure(position).Visible);
    EXPECT_EQ(panel->Frame10.Visible, model.shows_pair);
    EXPECT_FALSE(panel->cmdIntr1.Visible);
    program.runtime.dispatch([&] { forms::user::double_click(panel->Label13); });
    EXPECT_EQ(store.LayoutCompact, -1);
    EXPECT_FALSE(panel->Frame3.Visible);
    EXPECT_FALSE(panel->Frame10.Visible);
    EXPECT_TRUE(recorder.packets.empty());
  }
}

}  // namespace
}  // namespace varzelin::testing
