// The highest and the lowest raw reading of a collection on the multi-function panels, and the one every so
// often.
#include "support/multi_function_loop_fixture.h"

namespace varzelin::testing {
namespace {

struct MultiFunctionHistory : MultiFunctionLoop {
  void SetUp() override {
    open("frmKVT71385");
    measure_by(ir_continuous);
  }
  using MultiFunctionLoop::results;
  // A collection of these, one a pass, which the user stops behind the last one.
  void collect_words(const std::vector<int>& words) {
    results(words);
    collect(static_cast<std::int32_t>(words.size()));
  }
  // Decimal and hexadecimal texts of the maximum, the minimum and the third pair.
  std::string boxes(int first, int last = 5) {
    std::string texts;
    for (int box = first; box <= last; ++box) texts += (box > first ? "," : "") + history(box);
    return texts;
  }
};

TEST_F(MultiFunctionHistory, KeepsTheExtremes) {
  // The pass in which the stop comes reads the last one again.
  collect_words({300, 700, 500, 200, 400});
  EXPECT_EQ(boxes(0), "700,02BC,200,00C8,,");
  EXPECT_EQ(store.AdMax, 700);
  EXPECT_EQ(store.AdMin, 200);
}

TEST_F(MultiFunctionHistory, TheFirstReadingIsBoth) {
  results(300);
  collect(1);
  EXPECT_EQ(boxes(0), "300,012C,300,012C,,");
}

TEST_F(MultiFunctionHistory, TheHexadecimalTextHasFourDigits) {
  for (const auto& [word, text] :
       {std::pair{0x0003, "0003"}, {0x0034, "0034"}, {0x0205, "0205"}, {0x0F00, "0F00"}, {0xABC4, "ABC4"}}) {
    measure_by(ir_continuous);
    results(word);
    collect(2);
    EXPECT_EQ(history(1), text);
    EXPECT_EQ(history(3), text);
  }
}

// The bytes are those that came, sign and all.
TEST_F(MultiFunctionHistory, OfReadingsWithASign) {
  measure_by(proximity_continuous);
  collect_words({100, 0xFFFE, 0x0803, 0});
  EXPECT_EQ(boxes(0), "100,0064,-2045,0803,,");
}

// Of a pair the infrared's, which came last. A reading as high as the highest doesn't replace it.
TEST_F(MultiFunctionHistory, OfAPair) {
  measure_by(pair_position);
  int passes = 0;
  result = [&](int operation) { return operation == proximity_once ? 400 + ++passes : 100 + passes; };
  collect(3);
  EXPECT_EQ(boxes(0), "300,0065,300,0065,,");
}

TEST_F(MultiFunctionHistory, OfLightIsTheCountNotTheLux) {
  measure_by(als_continuous);
  results(2049);
  collect(3);
  EXPECT_EQ(store.Reading, 500);
  EXPECT_EQ(boxes(0), "2049,0801,2049,0801,,");
}

TEST_F(MultiFunctionHistory, ShowsOneReadingEveryTwentySixPasses) {
  int passes = 0;
  result = [&](int) { return 100 + ++passes; };
  std::map<std::int32_t, std::string> seen;
  user.at_yield = [&] {
    if (store.Sample_Run == 0) return;
    seen[store.Sample_Count] = boxes(4);
    if (store.Sample_Count == 53) program.runtime.post(clicking(panel->cmdStopData));
  };
  store.Sample_Count = 0;
  click(panel->cmdCollectData);
  EXPECT_EQ(seen[25], ",");
  EXPECT_EQ(seen[26], "126,007E");
  EXPECT_EQ(seen[51], "126,007E");
  EXPECT_EQ(seen[52], "152,0098");
}

TEST_F(MultiFunctionHistory, EachCollectionCountsFromItsOwnBeginning) {
  results(100);
  collect(20);
  EXPECT_EQ(boxes(0), "100,0064,100,0064,,");
  measure_by(ir_continuous);
  results(200);
  collect(10);
  EXPECT_EQ(boxes(0), "200,00C8,200,00C8,,");
}

TEST_F(MultiFunctionHistory, AlsoOneThatIsBegunAnew) {
  results(100);
  std::string seen;
  const auto act = [&] {
    results(200);
    forms::user::enter(panel->txtInterval);
    EXPECT_EQ(boxes(0), ",,,,,");
    at_yield([&] { return store.Sample_Count == 10; },
             [&] {
               seen = boxes(0);
               forms::user::click(panel->cmdStopData);
             });
  };
  collect(20, act, -1);
  EXPECT_EQ(seen, "200,00C8,200,00C8,,");
}

TEST_F(MultiFunctionHistory, TheButtonClearsItAndItGoesOn) {
  results(500);
  std::string cleared;
  const auto act = [&] {
    EXPECT_EQ(boxes(0), "500,01F4,500,01F4,500,01F4");
    for (const int box : {6, 7}) panel->history.txtADMax(box).Text = "kept";
    forms::user::click(panel->history.cmdClearHist);
    cleared = boxes(0, 7);
    EXPECT_EQ(store.AdMax, -9999999);
    EXPECT_EQ(store.AdMin, 9999999);
    results(400);
  };
  collect(30, act, 2);
  EXPECT_EQ(cleared, ",,,,,,kept,kept");
  EXPECT_EQ(boxes(0), "400,0190,400,0190,,");
}

TEST_F(MultiFunctionHistory, AWriteOfR1ForgetsTheExtremesAlone) {
  results(500);
  collect(
      30,
      [&] {
        forms::user::click(panel->OptGain(1));
        results({450, 480});  // that of the pass that writes is forgotten with the others
      },
      2);
  EXPECT_EQ(boxes(0), "480,01E0,480,01E0,500,01F4");
}

TEST_F(MultiFunctionHistory, AWriteOfR0DoesNot) {
  results(500);
  collect(
      5,
      [&] {
        forms::user::click(panel->OptExtTime(1));
        ASSERT_EQ(store.PendingWriteR1, 0);
        ASSERT_EQ(store.PendingWriteR0, -1);
        results(400);
      },
      2);
  EXPECT_EQ(boxes(0), "500,01F4,400,0190,,");
}

TEST_F(MultiFunctionHistory, LeavesLightBehindACoverOut) {
  results(500);
  click(panel->cover->ChkCover);
  collect(30);
  EXPECT_EQ(boxes(0), ",,,,,");
}

}  // namespace
}  // namespace varzelin::testing
