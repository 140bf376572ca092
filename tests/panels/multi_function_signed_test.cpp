// Readings with a sign on the multi-function panels: what the bytes mean at each width, where the trace has
// them, and the offset that is taken off them.
#include "panels/multi_function/proximity_offset.h"
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct MultiFunctionSigned : MultiFunctionLoop {
  void SetUp() override {
    open("frmKVT71385");
    measure_by(proximity_continuous);
  }
  void width(Width position) { choose(panel->OptITime(position)); }
  // The raw reading of a collection of this word; the one that is shown, and its row, beside it.
  std::int32_t reading_of(int word) {
    measure_by(proximity_continuous);
    if (!maximum_.empty()) set_scale(maximum_, minimum_);
    results(word);
    collect(
        3,
        [&] {
          row = store.Trace_Y[403];
          reading = store.Reading;
        },
        0);
    return store.RawReading;
  }
  std::int32_t row_of(int word) {
    reading_of(word);
    return row;
  }
  // For the collections to come, each of which is ended by options that have a scale of their own.
  void set_scale(const std::string& maximum, const std::string& minimum) {
    panel->txtScale.Text = maximum_ = maximum;
    panel->txtScaleMin.Text = minimum_ = minimum;
    click(panel->cmdScale);
  }

  std::int32_t row = 0;
  std::int32_t reading = 0;

 private:
  std::string maximum_;
  std::string minimum_;
};

struct Decoded {
  int word;
  std::int32_t reading;
};

// --- the bytes ---

TEST_F(MultiFunctionSigned, AtSixteenBitsItIsTwosComplement) {
  width(bits_16);
  for (const Decoded& c : {Decoded{0x0000, 0},
                           {0x1234, 0x1234},
                           {0x7FFF, 32767},
                           {0x8000, -32768},
                           {0xFFFF, -1},
                           {0xFF00, -256}}) {
    EXPECT_EQ(reading_of(c.word), c.reading) << std::hex << c.word;
    EXPECT_EQ(store.ReadingSign, c.reading < 0 ? -1 : 1);
  }
  EXPECT_EQ(store.SignBit, 128);
  EXPECT_EQ(store.SignMask, 32767);
}

TEST_F(MultiFunctionSigned, AtTwelveBitsTheUpperHalfByteDoesNotCount) {
  for (const Decoded& c :
       {Decoded{0x0000, 0}, {0x07FF, 2047}, {0x0800, -2048}, {0x0FFF, -1}, {0xFFFF, -1}, {0xF7FF, 2047}}) {
    EXPECT_EQ(reading_of(c.word), c.reading) << std::hex << c.word;
  }
  EXPECT_EQ(store.SignBit, 8);
  EXPECT_EQ(store.SignMask, 2047);
}

// The smaller widths have no sign of their own.
TEST_F(MultiFunctionSigned, AtEightAndFourBitsTheSignIsThatOfTheWidthBefore) {
  for (const Width narrow : {bits_8, bits_4}) {
    width(bits_16);
    reading_of(0);
    width(narrow);
    for (const Decoded& c : {Decoded{0x00FF, 255}, {0x0F80, 0x0F80}, {0xFF80, -128}, {0xFFFF, -1}}) {
      EXPECT_EQ(reading_of(c.word), c.reading) << std::hex << c.word;
    }
    width(bits_12);
    reading_of(0);
    width(narrow);
    for (const Decoded& c : {Decoded{0x00FF, 255}, {0x0F80, -128}, {0xF780, 0x0780}, {0xFFFF, -1}}) {
      EXPECT_EQ(reading_of(c.word), c.reading) << std::hex << c.word;
    }
  }
}

// Whoever dealt with signs last has left it, the limits as well.
TEST_F(MultiFunctionSigned, AtEightBitsTheSignMayBeThatOfTheLimits) {
  width(bits_16);
  panel->txtSampling_Delay.Text = "0";
  click(panel->limits.cmdWrtILimits);
  ASSERT_EQ(store.SignMask, 65535);
  width(bits_8);
  EXPECT_EQ(reading_of(0x8000), -65536);
  EXPECT_EQ(reading_of(0xFFFF), -32769);
}

TEST_F(MultiFunctionSigned, OtherMeasurementsHaveNoSign) {
  results(0xFFFE);
  measure_by(ir_continuous);
  collect(3);
  EXPECT_EQ(store.Reading, 65534);
  EXPECT_EQ(store.ReadingSign, 1);
  // Nor has proximity under the other scheme.
  measure_by(proximity_continuous);
  store.ProxScheme = 0;
  collect(3);
  EXPECT_EQ(store.Reading, 65534);
}

// The timed loop decodes proximity alone, and then under either scheme: at twelve bits without the upper
// half.
TEST_F(MultiFunctionSigned, ATimedRunTakesTheUpperHalfAwayUnderEitherScheme) {
  results(0xFFFE);
  sample(3);
  EXPECT_EQ(store.Sample_Value[2], -2);
  EXPECT_EQ(store.ReadingSign, -1);
  store.ProxScheme = 0;
  sample(3);
  EXPECT_EQ(store.Sample_Value[2], 0x0FFE);
  EXPECT_EQ(store.ReadingSign, 1);
  measure_by(ir_continuous);
  sample(3);
  EXPECT_EQ(store.Sample_Value[2], 0xFFFE);
}

// --- the row ---

TEST_F(MultiFunctionSigned, TheRowIsCountedFromTheMinimum) {
  set_scale("2047", "-100");       // 2048 to -100: a span of 2148
  EXPECT_EQ(row_of(500), 219);     // 304 - 600 x 304 / 2148
  EXPECT_EQ(row_of(0x0FCE), 297);  // -50: 304 - 50 x 304 / 2148
  set_scale("2047", "48");         // a span of 2000
  EXPECT_EQ(row_of(1048), 152);
  set_scale("1999", "0");
  EXPECT_EQ(row_of(500), 228);
}

TEST_F(MultiFunctionSigned, TheRowIsRoundedHalvesToEvenAndKeptInThePlot) {
  set_scale("607", "0");  // two readings a row
  EXPECT_EQ(row_of(3), 302);
  EXPECT_EQ(row_of(5), 302);
  EXPECT_EQ(row_of(0x0FFF), 304);
  EXPECT_EQ(row_of(608), 1);
  EXPECT_EQ(row_of(2047), 1);
}

// A new scale moves the readings of a running collection, it doesn't stretch them.
TEST_F(MultiFunctionSigned, TheSpanIsThatOfTheBeginning) {
  set_scale("999", "-1000");  // a span of 2000
  results(500);
  std::int32_t before = 0;
  std::int32_t behind = 0;
  const auto rescale = [&] {
    before = store.Trace_Y[403];
    panel->txtScale.Text = "99";
    panel->txtScaleMin.Text = "-200";
    panel->cmdScale_Click();
    at_yield(count_reaches(5), [&] {
      behind = store.Trace_Y[403];
      forms::user::click(panel->cmdStopData);
    });
  };
  collect(3, rescale, -1);
  EXPECT_EQ(before, 76);   // 304 - 1500 x 304 / 2000
  EXPECT_EQ(behind, 198);  // 304 - 700 x 304 / 2000, of 197.6
}

TEST_F(MultiFunctionSigned, WithoutASpanTheRowStays) {
  set_scale("49", "50");
  EXPECT_EQ(row_of(500), 1);  // that of the empty chart
  EXPECT_EQ(store.Sample_Count, 3);
  EXPECT_TRUE(user.errors.empty());
}

TEST_F(MultiFunctionSigned, TheAutomaticScaleGoesAsFarDownAsUp) {
  results(1000);
  const auto act = [&] {
    panel->cmdAutoScale_Click();
    EXPECT_EQ(panel->txtScale.Text, "1150");
    EXPECT_EQ(panel->txtScaleMin.Text, "-1150");
    EXPECT_EQ(store.Scale_Min, -1150);
    EXPECT_EQ(store.Scale_Max, 1151);
    EXPECT_EQ(store.Label_Left[0], "-1150");
    EXPECT_EQ(store.Label_Right[0], "-1150");
  };
  collect(12, act, 0);
  measure_by(ir_continuous);
  collect(
      12,
      [&] {
        panel->cmdAutoScale_Click();
        EXPECT_EQ(panel->txtScaleMin.Text, "0");
        EXPECT_EQ(store.Scale_Min, 0);
      },
      0);
}

// --- the offset ---

struct MultiFunctionOffset : MultiFunctionSigned {
  void SetUp() override {
    MultiFunctionSigned::SetUp();
    click(panel->subtraction->ChkSubract);
    forget_traffic();
  }
};

// 50 mA, modulated, twelve bits: 150.
TEST_F(MultiFunctionOffset, IsTakenOffTheReadingAlone) {
  set_scale("2047", "-100");
  EXPECT_EQ(reading_of(500), 500);
  EXPECT_EQ(reading, 350);
  EXPECT_EQ(row, 240);  // 304 - (350 + 100) x 304 / 2148
  EXPECT_EQ(store.Sample_Value[1], 500);
  EXPECT_EQ(panel->txtADCRaw.Text, "500");
}

// The pass in which a stop comes has no row any more, and no offset.
TEST_F(MultiFunctionOffset, IsInTheBoxAndInThePeak) {
  results(500);
  collect(
      3,
      [&] {
        EXPECT_EQ(panel->txtReading.Text, "350");
        EXPECT_EQ(store.PeakReading, 350);
      },
      0);
  EXPECT_EQ(panel->txtReading.Text, "500");
}

TEST_F(MultiFunctionOffset, OfAPartIsRoundedInTheReadingNotInTheRow) {
  form<frmProxOff>().txtProxOff(3).Text = "50.4";
  click(panel->OptPSrc(1));
  set_scale("151", "0");      // two rows a reading
  EXPECT_EQ(row_of(200), 5);  // 304 - 149.6 x 2
  EXPECT_EQ(reading, 150);
  // With a minimum it is counted from the rounded one.
  set_scale("151", "-1");
  EXPECT_EQ(row_of(199), 6);  // 304 - (149 + 1) x 304 / 153, of 5.96
}

TEST_F(MultiFunctionOffset, OfNothingOrLessIsNone) {
  for (const char* text : {"0", "-5", "none"}) {
    form<frmProxOff>().txtProxOff(3).Text = text;
    panel->subtraction->ChkSubract_Click();
    reading_of(500);
    EXPECT_EQ(reading, 500) << text;
  }
}

TEST_F(MultiFunctionOffset, IsNoneWithoutItsTick) {
  click(panel->subtraction->ChkSubract);
  reading_of(500);
  EXPECT_EQ(reading, 500);
}

TEST_F(MultiFunctionOffset, IsNoneAtOtherWidths) {
  for (const Width position : {bits_16, bits_8, bits_4}) {
    width(position);
    reading_of(500);
    EXPECT_EQ(reading, 500) << position;
    EXPECT_EQ(panel->subtraction->lblOffset.Caption, "0");
  }
}

TEST_F(MultiFunctionOffset, IsNoneOfInfrared) {
  measure_by(ir_continuous);
  results(500);
  collect(
      3, [&] { EXPECT_EQ(store.Reading, 500); }, 0);
}

}  // namespace
}  // namespace varzelin::testing
