// What the controls of the panels over eight registers say, beyond those that all panels have.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

constexpr const char* gain_tip = "Set the Lux Sensitivity Gain  / Level.";

const WordsOfControls words_of_both{
    {"Label16", {"Lux Reading"}},
    {"OptMode(0)", {"Measure"}},
    {"OptMode(1)", {"Power Down"}},
    {"OptMode(2)", {"Test Comm"}},
    {"cbReset",
     {"Reset  KVT7134x",
      "The resets the KVT71344 and then places it in D1, Internal Integration Sensing Mode."}},
    {"OptTimeBase(0)", {"Internal Time Base"}},
    {"OptTimeBase(1)", {"External Time Base"}},
    {"frmMeasure", {"Measurement"}},
    {"OptMeasure(0)", {"D1-Only"}},
    {"OptMeasure(1)", {"D2-Only"}},
    {"frItime", {"AD Resolution"}},
    {"frGain", {"Range", gain_tip}},
    {"frControl", {"Interrupt Control"}},
    {"OpInt(0)",
     {"1 Trip",
      "Interrupt High / Low threshold level must exist for 1 integration cycle before Interrupt Signal will "
      "be asserted."}},
    {"OpInt(1)",
     {"4 Trip",
      "Interrupt High / Low threshold level must exist for 4 integration cycles before Interrupt Signal will "
      "be asserted."}},
    {"OpInt(2)",
     {"8 Trip",
      "Interrupt High / Low threshold level must exist for 8 integration cycles before Interrupt Signal will "
      "be asserted."}},
    {"OpInt(3)",
     {"16 Trip",
      "Interrupt High / Low threshold level must exist for 16 integration cycles before Interrupt Signal "
      "will be asserted."}},
    {"ChkCommand(0)", {"Reset ADC"}},
    {"frmGraphSelect", {"Graph Option Select"}},
    {"OptGraph(0)", {"Lux Count", "Graph the measured Lux count "}},
    {"OptGraph(1)", {"Integration Count", "Graphs the Integration Counter Value, External Time Base Only"}},
    {"OptGraph(2)",
     {"Calculated Lux  - Integration Count Ratio",
      "Graph Calculated Lux based on ratio of Integration Count and Lux Count."}},
    {"lblRegister(4)", {"Lux"}},
    {"lblRegister(5)", {"Lux"}},
    {"lblRegister(6)", {"Icycless"}},
    {"lblRegister(7)", {"Meas"}},
    {"cmdSync", {"Send EOC", "Send Start Integration to ADC. Used when in External Timing"}},
    {"lblSync", {"EOC &&h80"}},
    {"lblICycHex", {"Integration Count Hex"}},
    {"lblICYCDec", {"Integration Count Dec"}},
    {"lblIUpperLimit", {"High Limit"}},
    {"lblILowerLimit", {"Low Limit"}},
    {"cmdClearInt", {"Clear Int"}},
    {"lblIntClear", {"Int Clear"}},
    {"cmdClrInt", {"Clear Interrupt", "Write I2C Clear Interrupt, reads Reg and External INT Pin Status."}},
    {"cmdSample_Portb", {"Sample External Int Pin", "Sample the External INT Signal, does not use I2C Buss"}},
    {"ChkIpol", {"Poll Interrupt"}},
    {"lblINt", {"Reg b001 Bit &h20"}},
    {"lblINTexternal", {"External INT Pin"}}};

const WordsOfControls words_of_kvt71344{{"OptMeasure(2)", {"D1-D2"}},
                                        {"OptITime(0)", {"16"}},
                                        {"OptITime(1)", {"12"}},
                                        {"OptITime(2)", {"8"}},
                                        {"OptITime(3)", {"4"}},
                                        {"OptGain(0)", {"1k", gain_tip}},
                                        {"OptGain(1)", {"4k", gain_tip}},
                                        {"OptGain(2)", {"16k", gain_tip}},
                                        {"OptGain(3)", {"64k", gain_tip}},
                                        {"ChkCommand(1)", {"Pwr Down"}},
                                        {"ChkCommand(2)", {"Ext Time"}},
                                        {"ChkCommand(3)", {"ADC &&  Device Power Down"}},
                                        {"lblRegister(0)", {"R0"}},
                                        {"lblRegister(1)", {"R1"}},
                                        {"lblRegister(2)", {"R2"}},
                                        {"lblRegister(3)", {"R3"}},
                                        {"cmdSetCommand", {"Write Command Register R0"}},
                                        {"cmdSetControl", {"Write  Control Register R1"}},
                                        {"cmdSetIntHigh", {"Write High Int Limit R2"}},
                                        {"cmdSetIntLow", {"Write Low Int Limit R3"}},
                                        {"cmdRead_All", {"Read Regs R0-R3"}},
                                        {"cmdRead_Measurements", {"Read Lux && ICycle R4-R7"}}};

const WordsOfControls words_of_kvt71356{{"OptMeasure(2)", {"Light Count"}},
                                        {"OptITime(0)", {"15"}},
                                        {"OptITime(1)", {"11"}},
                                        {"OptITime(2)", {"7"}},
                                        {"OptITime(3)", {"3"}},
                                        {"OptGain(0)", {"2000", gain_tip}},
                                        {"OptGain(1)", {"8000", gain_tip}},
                                        {"OptGain(2)", {"32000", gain_tip}},
                                        {"OptGain(3)", {"128000", gain_tip}},
                                        {"ChkCommand(1)", {"Power Down"}},
                                        {"ChkCommand(2)", {"External Time"}},
                                        {"lblRegister(0)", {"b000"}},
                                        {"lblRegister(1)", {"b001"}},
                                        {"lblRegister(2)", {"b010"}},
                                        {"lblRegister(3)", {"b011"}},
                                        {"cmdSetCommand", {"Write Command Register b000"}},
                                        {"cmdSetControl", {"Write  Control Register b001"}},
                                        {"cmdSetIntHigh", {"Write High Int Limit b010"}},
                                        {"cmdSetIntLow", {"Write Low Int Limit b011"}},
                                        {"cmdRead_All", {"Read Regs b000-011"}},
                                        {"cmdRead_Measurements", {"Read Lux && ICycle b100-111"}}};

struct EightRegisterCaptions : EightRegisterFixture {
  void expect_own_words(const char* form_name, WordsOfControls own) {
    open(form_name);
    own.insert(words_of_both.begin(), words_of_both.end());
    expect_words(*panel, own);
    // No other control of theirs says anything.
    TestProgram other;
    const WordsOfControls shared = words_of(choose_panel(other, frmKVT71346::form_name));
    for (const auto& [name, said] : words_of(*panel)) {
      EXPECT_TRUE(own.contains(name) || shared.contains(name) || name == "Command4") << name;
    }
  }
};

TEST_F(EightRegisterCaptions, OfKvt71344) {
  expect_own_words("frmKVT71344", words_of_kvt71344);
}
TEST_F(EightRegisterCaptions, OfKvt71356) {
  expect_own_words("frmKVT71356", words_of_kvt71356);
}

}  // namespace
}  // namespace varzelin::testing
