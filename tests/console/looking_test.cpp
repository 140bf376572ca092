#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "support/console_fixture.h"

namespace console_test {
namespace {

using ConsoleLooking = ConsoleTest;

TEST_F(ConsoleLooking, BlankLinesAndCommentsAreSkipped) {
  EXPECT_EQ(run({"", "   ", "\t\r", "# get x", "get frmBench.Visible\r"}), Lines{"ok true"});
  EXPECT_EQ(run({" # get x"}), Lines{"error no such command: #"});
}

// A user who was cut off may have meant more than stands there.
TEST_F(ConsoleLooking, HalfALineAtTheEndIsRefusedAndNotRun) {
  EXPECT_EQ(run_console(clock, board, "get frmBench.Visible\nset frmBench.Caption \"Be"),
            (Lines{"ok true", "error no end of line: set frmBench.Caption \"Be"}));
  EXPECT_EQ(run_console(clock, board, "close frmBench"), Lines{"error no end of line: close frmBench"});
  EXPECT_EQ(run_console(clock, board, "get frmBench.Visible\n# come"), Lines{"ok true"});
}

TEST_F(ConsoleLooking, ALineOfMoreThanOneMiBIsRefusedAndNotRun) {
  const std::string tail(1024 * 1024, 'x');
  EXPECT_EQ(
      run_console(clock, board, "set frmBench.Caption \"" + tail + "\"\nget frmBench.Visible\n"),
      (Lines{"error longer than 1 MiB: set frmBench.Caption \"" + tail.substr(0, 278) + "...", "ok true"}));
}

TEST_F(ConsoleLooking, ACommentOfMoreThanOneMiBIsSkippedAndTheLineBehindItRuns) {
  EXPECT_EQ(run_console(clock, board, "#" + std::string(1024 * 1024, 'x') + "\nget frmBench.Visible\n"),
            Lines{"ok true"});
  EXPECT_EQ(run_console(clock, board, std::string(1024 * 1024 + 1, ' ') + "\nget frmBench.Visible\n"),
            Lines{"ok true"});
}

TEST_F(ConsoleLooking, PropertiesByTheirTypes) {
  EXPECT_EQ(
      run({"get frmBench.cmdCount.Caption", "get frmBench.cmdCount.Enabled", "get frmBench.cmdHidden.Visible",
           "get frmBench.OptGain(0).Value", "get frmBench.OptGain(2).Value", "get frmBench.chkCover.Value",
           "get frmBench.ShpAttach.FillColor", "get frmBench.txtEntry.BackColor",
           "get frmBench.tmrTick.Interval", "get frmBench.picChart.CurrentX",
           "get frmBench.lblPasses.ToolTipText", "get frmBench.cboModel.Text"}),
      (Lines{"ok \"Count\"", "ok true", "ok false", "ok true", "ok false", "ok 0", "ok \"#000000\"",
             "ok \"#FFFFFF\"", "ok 100", "ok 0.0", "ok \"Passes \\\"so far\\\"\"", "ok \"Choose\""}));
}

TEST_F(ConsoleLooking, ListsGiveTheirRows) {
  EXPECT_EQ(run({"get frmBench.lstRows.List", "get frmBench.lstRows.ListCount",
                 "get frmBench.lstRows.ListIndex", "get frmBench.cmdCount.List"}),
            (Lines{"ok [\"first\",\"second\"]", "ok 2", "ok -1",
                   "error no such property: frmBench.cmdCount.List"}));
}

TEST_F(ConsoleLooking, Grid) {
  const std::string grid = "get frmBench.grdScript.";
  EXPECT_EQ(run({grid + "Rows", grid + "Columns", grid + "SelectedRow", grid + "Header(2)",
                 grid + "ColumnWidth(1)", grid + "RowHeight(2)", grid + "Cell(2,1)", grid + "Cell(2,2)"}),
            (Lines{"ok 2", "ok 2", "ok 0", "ok \"Reply\"", "ok 80", "ok 30",
                   "ok {\"text\":\"W 00\",\"back\":\"#FFFFFF\",\"align\":\"left\"}",
                   "ok {\"text\":\"\",\"back\":null,\"align\":\"center\"}"}));
  EXPECT_EQ(last({grid + "Cell(3,1)"}), "error no such element: frmBench.grdScript.Cell(3,1)");
  EXPECT_EQ(last({grid + "Header(0)"}), "error no such element: frmBench.grdScript.Header(0)");
  EXPECT_EQ(last({grid + "Cell(1)"}), "error no such property: frmBench.grdScript.Cell(1)");
}

TEST_F(ConsoleLooking, FormProperties) {
  EXPECT_EQ(
      run({"get frmBench.Loaded", "get frmBench.Visible", "get frmBench.Caption", "get frmSpare.Loaded",
           "get frmSpare.Visible", "get frmSpare.Caption", "get frmBench#2.Loaded", "get frmNone.Loaded",
           "get frmNone#2.Loaded", "get frmBench#x.Loaded", "get frmBench.Nothing", "get frmBench"}),
      (Lines{"ok true", "ok true", "ok \"Bench\"", "ok false", "error not loaded: frmSpare",
             "error not loaded: frmSpare", "ok false", "error no such control: frmNone",
             "error no such control: frmNone#2", "error no such control: frmBench#x",
             "error no such property: frmBench.Nothing", "error no such property: frmBench"}));
}

TEST_F(ConsoleLooking, NamesThatAreNotThere) {
  EXPECT_EQ(
      run({"get frmBench.cmdNone.Caption", "get frmBench.OptGain(1).Value", "get frmBench.OptGain.Value",
           "get frmBench.cmdCount(0).Caption", "get frmBench.OptGain(-1).Value",
           "get frmBench.OptGain(a).Value", "get frmBench.OptGain(0,0).Value",
           "get frmBench.cmdNone(1).Caption", "get frmSpare.cmdCount.Caption", "get frmNone.cmdCount.Caption",
           "get frmBench.cmdCount.Nothing", "get frmBench.cmdCount.Caption.More"}),
      (Lines{"error no such control: frmBench.cmdNone", "error no such element: frmBench.OptGain(1)",
             "error no such element: frmBench.OptGain", "error no such element: frmBench.cmdCount(0)",
             "error no such element: frmBench.OptGain(-1).Value",
             "error no such element: frmBench.OptGain(a).Value",
             "error no such element: frmBench.OptGain(0,0)", "error no such control: frmBench.cmdNone(1)",
             "error not loaded: frmSpare", "error no such control: frmNone",
             "error no such property: frmBench.cmdCount.Nothing",
             "error no such property: frmBench.cmdCount.Caption.More"}));
}

TEST_F(ConsoleLooking, LookingLoadsNothing) {
  EXPECT_EQ(run({"get frmSpare.Loaded", "get frmSpare.cmdCount.Caption", "controls frmSpare",
                 "shown frmSpare.cmdCount", "forms"})
                .back(),
            "ok [{\"name\":\"frmBench\",\"visible\":true,\"caption\":\"Bench\"}]");
}

TEST_F(ConsoleLooking, ControlsListsEveryControl) {
  const std::string answer = last({"controls frmBench"});
  EXPECT_NE(answer.find("{\"name\":\"OptGain(2)\",\"kind\":\"OptionButton\",\"Enabled\":true,"
                        "\"Visible\":true,\"ToolTipText\":\"\",\"Caption\":\"Gain 2\",\"Value\":false}"),
            std::string::npos);
  EXPECT_NE(answer.find("\"ListIndex\":-1,\"Text\":\"Choose\",\"List\":[\"A\",\"B\"],\"ListCount\":2}"),
            std::string::npos);
  EXPECT_NE(answer.find("{\"name\":\"tmrTick\",\"kind\":\"Timer\""), std::string::npos);
}

TEST_F(ConsoleLooking, ShownNeedsTheControlItsFramesItsTabAndItsForm) {
  EXPECT_EQ(
      run({"shown frmBench.OptGain(2)", "set frmBench.fraGain.Visible false", "shown frmBench.OptGain(2)",
           "shown frmBench.lblBehind", "set frmBench.tabPages.Tab 1", "shown frmBench.lblBehind",
           "shown frmBench", "set frmBench.Visible false", "shown frmBench.lblBehind", "shown frmBench"}),
      (Lines{"ok true", "ok", "ok false", "ok false", "ok", "ok true", "ok true", "ok", "ok false",
             "ok false"}));
}

TEST_F(ConsoleLooking, SharedVariables) {
  EXPECT_EQ(
      run({"get store.GraphUnit1", "get store.Board_Rev", "get store.Clr_Red", "get store.Gpio_Image",
           "get store.Gpio_Image(3)", "get store.Gpio_Image(4)", "get store.Xfer_Buf",
           "get store.Screen_Pixels(404,404)", "get store.Screen_Pixels(405,0)", "get store.Screen_Pixels(1)",
           "get store.Board_Rev(0)", "get store.Nothing", "get store", "get store.Board_Rev.More",
           "get store.Active_Form"}),
      (Lines{"ok \"AD Cnt\"", "ok 2", "ok 0.0", "ok [0,0,0,0]", "ok 0",
             "error no such element: store.Gpio_Image(4)", "ok []", "ok 0",
             "error no such element: store.Screen_Pixels(405,0)",
             "error no such element: store.Screen_Pixels(1)", "error no such element: store.Board_Rev(0)",
             "error no such variable: store.Nothing", "error no such variable: store",
             "error no such variable: store.Board_Rev.More", "ok null"}));
}

TEST_F(ConsoleLooking, AWholeTableIsAnArrayOfColumns) {
  const Lines written = run({"set store.Screen_Pixels(1,0) 7", "get store.Screen_Pixels"});
  const std::string& answer = written.back();
  EXPECT_EQ(answer.substr(0, 10), "ok [[0,0,0");
  EXPECT_NE(answer.find("],[7,0,"), std::string::npos);
  EXPECT_EQ(std::count(answer.begin(), answer.end(), ','), 405 * 405 - 1);
  EXPECT_EQ(answer.substr(answer.size() - 3), "0]]");
}

class ConsolePicture : public ConsoleTest {
 protected:
  // Runs lines on a program whose picture was drawn on.
  Lines run_drawn(const std::string& input) {
    std::istringstream in(input);
    std::ostringstream out;
    console::StreamLines source(in);
    console::Console console(clock, board, source, out);
    FormSet& forms = console.program().forms;
    forms.add("frmBench", [&](std::string name) { return std::make_unique<frmBench>(forms, name); });
    console.run([](varzelin::Program& program) {
      auto& form = static_cast<frmBench&>(program.forms.touch("frmBench"));
      form.Show();
      form.picChart.SetPixelV(2, 1, 0x0000FF);
      form.picChart.CurrentX = 12;
      form.picChart.CurrentY = 304;
      form.picChart.Print("00000");
    });
    Lines written;
    std::istringstream text(out.str());
    for (std::string line; std::getline(text, line);) written.push_back(line);
    return written;
  }
};

TEST_F(ConsolePicture, PixelsAndTexts) {
  EXPECT_EQ(run_drawn("pixel frmBench.picChart 2 1\npixel frmBench.picChart 0 0\n"
                      "pixel frmBench.picChart 3 0\npixel frmBench.picChart 0 -1\n"
                      "pixel frmBench.cmdCount 0 0\npixel frmBench.picChart 0\n"
                      "get frmBench.picChart.Printed\n"),
            (Lines{"ok \"#FF0000\"", "ok \"#F0F0F0\"", "error outside the picture: 3 0",
                   "error outside the picture: 0 -1", "error not a picture: frmBench.cmdCount",
                   "error missing argument: Y", "ok [{\"x\":12.0,\"y\":304.0,\"text\":\"00000\"}]"}));
}

TEST_F(ConsolePicture, IsWrittenAsPpm) {
  const std::string path = testing::TempDir() + "console picture.ppm";
  EXPECT_EQ(run_drawn("picture frmBench.picChart \"" + path + "\"\n"), Lines{"ok"});
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(bytes.substr(0, 11), "P6\n3 2\n255\n");
  ASSERT_EQ(bytes.size(), 11u + 3 * 2 * 3);
  EXPECT_EQ(bytes.substr(11 + 15), std::string("\xFF\0\0", 3));
  std::remove(path.c_str());
  EXPECT_EQ(run_drawn("picture frmBench.picChart /nowhere/x.ppm\n"),
            Lines{"error cannot write: /nowhere/x.ppm"});
}

TEST_F(ConsoleLooking, TheClockGoesByMicroseconds) {
  EXPECT_EQ(run({"clock", "wait 12.5", "clock", "idle 3", "clock"}),
            (Lines{"ok 0.0", "ok", "ok 12.5", "ok", "ok 12.503"}));
}

TEST_F(ConsoleLooking, PacketsTellTheTransfersSinceTheLastTime) {
  board.mount("KVT71385");
  EXPECT_EQ(run({"board register 0A 5A", "click frmBench.cmdTransfer", "packets", "packets",
                 "click frmBench.cmdTransfer", "packets"}),
            (Lines{"error no such register: 0A", "ok",
                   "ok [{\"pipe\":2,\"size\":3,\"data\":\"02 89 0A\",\"status\":0,\"time\":0.001},"
                   "{\"pipe\":130,\"size\":3,\"data\":\"02 00 00\",\"status\":0,\"time\":0.371}]",
                   "ok []", "ok",
                   "ok [{\"pipe\":2,\"size\":3,\"data\":\"02 89 0A\",\"status\":0,\"time\":0.652},"
                   "{\"pipe\":130,\"size\":3,\"data\":\"02 00 00\",\"status\":0,\"time\":1.022}]"}));
}

TEST_F(ConsoleLooking, PacketsTellFailedTransfersWithWhatWentThrough) {
  EXPECT_EQ(
      run({"board timing none", "board fail 2 20000005", "click frmBench.cmdTransfer", "packets"}).back(),
      "ok [{\"pipe\":2,\"size\":3,\"data\":\"\",\"status\":536870917,\"time\":0.001},"
      "{\"pipe\":130,\"size\":3,\"data\":\"\",\"status\":536870917,\"time\":0.001}]");
}

TEST_F(ConsoleLooking, DriverTellsEveryCall) {
  EXPECT_EQ(run({"board timing none", "board fail-call CloseHandle 7", "board reply 01",
                 "click frmBench.cmdTransfer", "packets", "driver", "driver"}),
            (Lines{"ok", "ok", "ok", "ok",
                   "ok [{\"pipe\":2,\"size\":3,\"data\":\"02 89 0A\",\"status\":0,\"time\":0.001},"
                   "{\"pipe\":130,\"size\":3,\"data\":\"01\",\"status\":0,\"time\":0.001}]",
                   "ok [{\"call\":\"WDU_VB_Init\",\"status\":0,\"time\":0.0},"
                   "{\"call\":\"WDU_Transfer\",\"status\":0,\"time\":0.001},"
                   "{\"call\":\"WDU_Transfer\",\"status\":0,\"time\":0.001},"
                   "{\"call\":\"CloseHandle\",\"status\":7,\"time\":0.001},"
                   "{\"call\":\"WDU_VB_Uninit\",\"status\":0,\"time\":0.001}]",
                   "ok []"}));
}

class ConsoleCallLog : public testing::Test {
 protected:
  void transfer(std::uint8_t data, std::size_t times = 1) {
    const std::vector<std::uint8_t> bytes(3, data);
    for (std::size_t i = 0; i < times; ++i) {
      log_.call_begins();
      log_.call_ended({"WDU_Transfer", 0, true, 2, false, bytes, bytes});
    }
  }
  std::string packets() { return written(&console::CallLog::write_packets); }
  std::string calls() { return written(&console::CallLog::write_calls); }

  console::CallLog& log() { return log_; }

 private:
  std::string written(void (console::CallLog::*write)(console::Json&)) {
    std::ostringstream out;
    console::Json json(out);
    (log_.*write)(json);
    json.end_line();
    return out.str();
  }

  VirtualClock clock_;
  console::CallLog log_{clock_};
};

TEST_F(ConsoleCallLog, TheOldestCallsGoWhenNobodyAsks) {
  transfer(1);
  transfer(2);
  transfer(3, console::CallLog::most_calls - 1);
  const std::string answer = packets();
  EXPECT_EQ(answer.substr(0, 42), "[{\"pipe\":2,\"size\":3,\"data\":\"02 02 02\",\"sta");
  EXPECT_EQ(static_cast<std::size_t>(std::count(answer.begin(), answer.end(), '{')),
            console::CallLog::most_calls);
}

TEST_F(ConsoleCallLog, TheOldestGoForTheirBytesToo) {
  const std::vector<std::uint8_t> large(std::size_t{1} << 20);
  for (int pipe = 1; pipe <= 20; ++pipe) {
    log().call_begins();
    log().call_ended({.call = "WDU_Transfer",
                      .status = 0,
                      .transfer = true,
                      .pipe = pipe,
                      .buffer = large,
                      .data = large});
  }
  const std::string told = packets();
  EXPECT_EQ(told.find("{\"pipe\":5,"), 1u);
  EXPECT_NE(told.find("{\"pipe\":20,"), std::string::npos);
}

TEST_F(ConsoleCallLog, WhatWasToldTwiceGoesWithItsData) {
  transfer(1);
  packets();
  transfer(2);
  calls();
  EXPECT_NE(packets().find("\"02 02 02\""), std::string::npos);
  transfer(3);
  EXPECT_NE(packets().find("\"03 03 03\""), std::string::npos);
  EXPECT_NE(calls().find("WDU_Transfer"), std::string::npos);
}

TEST_F(ConsoleLooking, CommandsThatDoNotExistOrHaveTooManyArguments) {
  EXPECT_EQ(
      run({"look", "\"\"", "get", "get a b", "forms x", "controls", "clock x", "packets x", "driver x",
           "shown", "get \"open", "\"a\\nb\""}),
      (Lines{"error no such command: look", "error no such command: ",
             "error missing argument: NAME.PROPERTY", "error too many arguments: b",
             "error too many arguments: x", "error missing argument: FORM", "error too many arguments: x",
             "error too many arguments: x", "error too many arguments: x", "error missing argument: NAME",
             "error bad string: no closing quote", "error no such command: a b"}));
}

TEST_F(ConsoleLooking, RefusalsAreShortLinesOfUtf8) {
  EXPECT_EQ(last({"\xff\xfe"}), "error no such command: \uFFFD\uFFFD");
  EXPECT_EQ(last({std::string(1'000'000, 'x')}).size(), 6 + 300 + 3u);
}

}  // namespace
}  // namespace console_test
