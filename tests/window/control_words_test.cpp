// Which line of a table speaks for a control.
#include "window/control_words.h"

#include "support/window_of_program.h"

namespace varzelin::testing {
namespace {

using window::ControlWords;

struct WordsForControls : WindowOfProgram {
  const forms::Control& byte(int index) {
    show("frmKVT71344");
    return *program.forms.loaded("frmKVT71344")->find("txtSampleByte", index);
  }
};

TEST_F(WordsForControls, AFormGoesBeforeAnElement) {
  const std::vector<ControlWords> table{{"", "txtSampleByte(0)", "any first"},
                                        {"frmKVT71344", "txtSampleByte", "this form's"}};
  EXPECT_EQ(window::words_for(byte(0), table), "this form's");
}

TEST_F(WordsForControls, AnElementGoesBeforeItsArray) {
  const std::vector<ControlWords> table{{"", "txtSampleByte", "any"}, {"", "txtSampleByte(0)", "any first"}};
  EXPECT_EQ(window::words_for(byte(0), table), "any first");
  EXPECT_EQ(window::words_for(byte(1), table), "any");
}

TEST_F(WordsForControls, WhatIsForAnotherFormOrControlDoesNotCount) {
  const std::vector<ControlWords> table{{"frmKVT71346", "txtSampleByte", "another form's"},
                                        {"", "txtReading", "another control's"}};
  EXPECT_EQ(window::words_for(byte(0), table), "");
  EXPECT_EQ(window::words_for(byte(0), {}), "");
}

TEST_F(WordsForControls, ASecondInstanceOfAFormHasTheWordsOfTheFirst) {
  const forms::Runtime::SilentDialogs no_file_chosen(program.runtime);
  forms::Form& second = program.forms.touch_another("frmScriptOps");
  const std::vector<ControlWords> table{{"frmScriptOps", "cmdReload2", "again"}};
  EXPECT_EQ(second.name(), "frmScriptOps#2");
  EXPECT_EQ(window::words_for(*second.find("cmdReload2"), table), "again");
}

}  // namespace
}  // namespace varzelin::testing
