// The program's own forms through the console.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "boards/simulated/simulated_board.h"
#include "console/console.h"
#include "shell/application.h"

namespace {

using Lines = std::vector<std::string>;

class ConsolePanel : public testing::Test {
 protected:
  static Lines run(const Lines& lines) {
    std::string input;
    for (const std::string& line : lines) input += line + "\n";
    std::istringstream in(input);
    std::ostringstream out;
    forms::VirtualClock clock;
    boards::SimulatedBoard board(clock);
    console::StreamLines source(in);
    console::Console console(clock, board, source, out);
    varzelin::add_forms(console.program());
    console.run(varzelin::start);
    Lines written;
    std::istringstream text(out.str());
    for (std::string line; std::getline(text, line);) written.push_back(line);
    return written;
  }

  const std::string choose = "click frmStartup.cboDeviceSelect 0";
};

TEST_F(ConsolePanel, TheStartPanelIsTheFirstForm) {
  EXPECT_EQ(
      run({"forms", "get store.Active_Form", "get store.Rev_Sel"}),
      (Lines{"ok [{\"name\":\"frmStartup\",\"visible\":true,\"caption\":\"Varzelin Light Sensor Demo with "
             "Script Execution\"}]",
             "ok \"frmStartup\"", "ok \"B\""}));
}

TEST_F(ConsolePanel, ClosingTheStartPanelEndsTheProgram) {
  EXPECT_EQ(run({"close frmStartup", "forms"}), (Lines{"ok", "* ended"}));
}

TEST_F(ConsolePanel, ChoosingAModelShowsItsPanel) {
  EXPECT_EQ(run({"get frmKVT71346.Loaded", choose, "get frmKVT71346.Visible", "get frmStartup.Visible",
                 "get frmI2C_General.Visible", "click frmStartup.cboDeviceSelect 0"}),
            (Lines{"ok false", "ok", "ok true", "ok false", "ok false",
                   "error not shown: frmStartup.cboDeviceSelect"}));
}

TEST_F(ConsolePanel, ACollectionIsStartedWatchedAndStopped) {
  EXPECT_EQ(run({choose, "start click frmKVT71346.cmdCollectData", "wait 2000", "get store.Sample_Run",
                 "click frmKVT71346.cmdStopData", "finish 5000", "get store.Sample_Run"}),
            (Lines{"ok", "ok", "ok", "ok -1", "ok", "ok", "ok 0"}));
}

TEST_F(ConsolePanel, TheExitButtonEndsTheProgram) {
  EXPECT_EQ(run({choose, "click frmKVT71346.CommandButton1", "clock"}), (Lines{"ok", "ok", "* ended"}));
}

TEST_F(ConsolePanel, EveryLoadedFormCanBeListed) {
  const Lines written = run(
      {choose, "controls frmStartup", "controls frmI2C_General", "controls frmGPIO", "controls frmKVT71346"});
  for (const std::string& line : written) EXPECT_EQ(line.substr(0, 2), "ok");
}

TEST_F(ConsolePanel, TheSameLinesGiveTheSameAnswers) {
  const Lines lines{choose,
                    "board noise 8",
                    "start click frmKVT71346.cmdCollectData",
                    "wait 3000",
                    "get store.Sample_Value",
                    "packets",
                    "driver",
                    "clock"};
  EXPECT_EQ(run(lines), run(lines));
}

}  // namespace
