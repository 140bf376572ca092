// The measurement file of every panel, byte by byte but for what its first line says of the sensor.
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <regex>

#include "support/panel_fixture.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {
namespace {

struct PanelRecording : PanelTest {
  const TemporaryFolder folder;
  const std::string path = folder.path("Data.txt");

  void SetUp() override {
    make_measure();
    panel.txtFilePath.Text = path;
    panel.txtInterval.Text = " 99x";
  }

  void samples(std::int32_t count) {
    store.Sample_Count = count;
    for (std::size_t i = 0; i < store.Sample_Value.size(); ++i) {
      store.Sample_Value[i] = static_cast<std::int32_t>(i) * 100;
      store.Sample_Value2[i] = 1;
    }
  }
  void write() { click(panel.cmdStartRec(0)); }
  // A file's bytes, with a star for what its first lines say of the sensor.
  static std::string content(const std::string& file) {
    static const std::regex sensor("(^|\n)(Seq,Lux,Integration,)[^,]*");
    return std::regex_replace(TemporaryFolder::content(file), sensor, "$1$2*");
  }
  void expect_buttons(bool enabled) {
    EXPECT_EQ(panel.cmdSample.Enabled, enabled);
    EXPECT_EQ(panel.cmdCollectData.Enabled, enabled);
  }
};

const std::string nine_lines =
    "Seq,Lux,Integration,*,Interval  99x, 11/25/2008,2:03:07 PM, Qty 9\r\n"
    " 0, 1100, 1\r\n 1, 1200, 1\r\n 2, 1300, 1\r\n 3, 1400, 1\r\n 4, 1500, 1\r\n"
    " 5, 1600, 1\r\n 6, 1700, 1\r\n 7, 1800, 1\r\n 8, 1900, 1\r\n"
    "END\r\n";

TEST_P(PanelRecording, NineteenSamplesAreTooFew) {
  samples(19);
  store.Sample_Run = -1;
  write();
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Save More Measurements");
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(store.Sample_Run, -1);
  expect_buttons(true);
}

TEST_P(PanelRecording, TwentySamplesAreNineLines) {
  samples(20);
  write();
  EXPECT_EQ(content(path), nine_lines);
  EXPECT_EQ(panel.Label18.Caption, " 10 Measurement set(s) written: 11/25/2008 2:03:07 PM");
  EXPECT_TRUE(user.boxes.empty());
  expect_buttons(true);
}

TEST_P(PanelRecording, WritesBothReadingsWithTheirSigns) {
  samples(20);
  store.Sample_Value[11] = -7;
  store.Sample_Value2[11] = 2147483647;
  store.Sample_Value2[12] = -2147483647 - 1;
  write();
  EXPECT_NE(content(path).find("\r\n 0,-7, 2147483647\r\n 1, 1200,-2147483648\r\n"), std::string::npos);
}

TEST_P(PanelRecording, AFullStoreIs999Lines) {
  samples(1010);
  write();
  const std::string text = content(path);
  EXPECT_EQ(std::ranges::count(text, '\n'), 999 + 2);
  EXPECT_EQ(std::ranges::count(text, '\r'), 999 + 2);
  EXPECT_NE(text.find(", Qty 999\r\n"), std::string::npos);
  EXPECT_TRUE(text.ends_with("\r\n 998, 100900, 1\r\nEND\r\n"));
  EXPECT_TRUE(panel.Label18.Caption.get().starts_with(" 1000 Measurement set(s) written: "));
}

TEST_P(PanelRecording, ReplacesTheFileOrAppendsABlock) {
  samples(20);
  write();
  write();
  EXPECT_EQ(content(path), nine_lines);
  panel.chkAppend.Value = 1;
  write();
  EXPECT_EQ(content(path), nine_lines + nine_lines);
}

TEST_P(PanelRecording, AppendingCreatesAMissingFile) {
  samples(20);
  panel.chkAppend.Value = 1;
  write();
  EXPECT_EQ(content(path), nine_lines);
}

TEST_P(PanelRecording, ATypedNameIsUsedAsItStands) {
  samples(20);
  const std::string typed = folder.path("  my data, \xC3\xA4");
  program.runtime.dispatch([&] { forms::user::fill(panel.txtFilePath, typed); });
  write();
  EXPECT_EQ(content(typed), nine_lines);
}

TEST_P(PanelRecording, WritesWhatACollectionLeft) {
  reading(5100);
  collect(30);
  const std::int32_t count = store.Sample_Count;
  panel.txtInterval.Text = " 99x";
  write();
  write();  // the samples stay
  const std::string text = content(path);
  EXPECT_TRUE(text.starts_with("Seq,Lux,Integration,*,Interval  99x, "));
  EXPECT_NE(text.find("\r\n 10, 5100, 1\r\n"), std::string::npos);
  EXPECT_EQ(std::ranges::count(text, '\n'), count - 11 + 2);
}

TEST_P(PanelRecording, StopsARunningCollection) {
  at_yield(count_reaches(25), clicking(panel.cmdStartRec(0)));
  click(panel.cmdCollectData);
  expect_ended();
  EXPECT_EQ(store.Sample_Count, 25);
  EXPECT_NE(content(path).find(", Qty 14\r\n"), std::string::npos);
  EXPECT_TRUE(panel.Label18.Caption.get().starts_with(" 15 Measurement set(s) written: "));
}

TEST_P(PanelRecording, AFailureShowsThePlatformsWordsAndLeavesTheButtonsDisabled) {
  samples(20);
  std::filesystem::create_directory(folder.path("folder"));
  struct Case {
    std::string path;
    int error;
  };
  for (const Case& c : {Case{folder.path("missing/Data.txt"), forms::path_not_found},
                        Case{folder.path("folder"), forms::path_file_access_error},
                        Case{"", forms::bad_file_name_or_number}}) {
    user.boxes.clear();
    panel.cmdSample.Enabled = true;
    panel.cmdCollectData.Enabled = true;
    panel.txtFilePath.Text = c.path;
    panel.Label18.Caption = "before";
    write();
    ASSERT_EQ(user.boxes.size(), 1u) << c.path;
    EXPECT_EQ(user.boxes[0].text, forms::error_text(c.error)) << c.path;
    expect_buttons(false);
    EXPECT_EQ(panel.Label18.Caption, "before");
    EXPECT_TRUE(user.errors.empty());
    EXPECT_EQ(program.runtime.files.FreeFile(), 1);  // nothing was opened
  }
  // A write that works enables them again.
  panel.txtFilePath.Text = path;
  write();
  EXPECT_EQ(content(path), nine_lines);
  expect_buttons(true);
}

TEST_P(PanelRecording, AFileThatIsStillOpenIsRefused) {
  samples(20);
  program.runtime.files.Open(path, forms::Files::Mode::Output, 1);
  write();
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "File already open");
  expect_buttons(false);
}

// A disk that fills up, played by the process's own limit.
TEST_P(PanelRecording, AFullDiskIsToldAndKeepsTheEarlierFile) {
  samples(20);
  write();
  samples(1010);
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{100, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  write();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Disk full");
  expect_buttons(false);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(content(path + "~"), nine_lines);
  EXPECT_NE(log().find(path + " isn't written whole, what it held before is in " + path + "~ :"),
            std::string::npos);
}

TEST_P(PanelRecording, BrowsingAsksForAFileAndCancelKeepsTheName) {
  user.file_answers = {std::nullopt, "/some/where.txt"};
  click(panel.cmdBrowse);
  EXPECT_EQ(panel.txtFilePath.Text, path);
  click(panel.cmdBrowse);
  EXPECT_EQ(panel.txtFilePath.Text, "/some/where.txt");
  ASSERT_EQ(user.file_dialogs.size(), 2u);
  const forms::FileDialog& dialog = user.file_dialogs[1];
  EXPECT_FALSE(dialog.save);
  EXPECT_EQ(dialog.title, "Select File For Recording");
  EXPECT_EQ(dialog.filename, "");
  EXPECT_EQ(dialog.filter, "All Files (*.*)|*.*|KVT7134x Data Files(*.txt)|*.txt");
  EXPECT_EQ(dialog.default_extension, "*.txt");
}

// One panel has no second register for the first line: nothing it writes comes to an end.
INSTANTIATE_TEST_SUITE_P(Each, PanelRecording, ::testing::ValuesIn(every_panel_but(frmKVT71338::form_name)),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
