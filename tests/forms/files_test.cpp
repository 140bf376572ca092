#include "forms/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>
#include <vector>

#include "forms/errors.h"
#include "support/error_of.h"

namespace {

using forms::Files;
using forms::RunTimeError;
using varzelin::testing::error_of;
using Mode = Files::Mode;
namespace fs = std::filesystem;

class FilesTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "forms_files_XXXXXX").string();
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override {
    fs::permissions(folder, fs::perms::owner_all);
    fs::remove_all(folder);
  }

  std::string path(const std::string& name) const { return (folder / name).string(); }
  std::string make(const std::string& name, const std::string& content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }
  std::string content(const std::string& name) const {
    std::ostringstream all;
    all << std::ifstream(path(name), std::ios::binary).rdbuf();
    return all.str();
  }
  int open_error(const std::string& at, Mode mode) {
    return error_of([&] { files.Open(at, mode, 200); });
  }
  std::vector<std::string> lines_of(const std::string& text) {
    files.Open(make("in.txt", text), Mode::Input, 1);
    std::vector<std::string> lines;
    while (!files.Eof(1)) lines.push_back(files.LineInput(1));
    EXPECT_EQ(error_of([&] { files.LineInput(1); }), 62);
    files.Close(1);
    return lines;
  }
  std::vector<std::string> items_of(const std::string& text) {
    files.Open(make("in.txt", text), Mode::Input, 1);
    std::vector<std::string> items;
    while (!files.Eof(1)) items.push_back(files.InputItem(1));
    EXPECT_EQ(error_of([&] { files.InputItem(1); }), 62);
    files.Close(1);
    return items;
  }

  fs::path folder;
  Files files;
};

using Texts = std::vector<std::string>;

TEST_F(FilesTest, LinesEndWithEveryKindOfLineEnd) {
  EXPECT_EQ(lines_of("a\r\nb\nc\rd\r\n"), (Texts{"a", "b", "c", "d"}));
  EXPECT_EQ(lines_of("a\r\rb\n\nc\n\rd"), (Texts{"a", "", "b", "", "c", "", "d"}));
  EXPECT_EQ(lines_of("\r\n\r\n"), (Texts{"", ""}));
}

TEST_F(FilesTest, TheLastLineNeedsNoEnd) {
  EXPECT_EQ(lines_of("a\r\nlast"), (Texts{"a", "last"}));
}

TEST_F(FilesTest, AnEmptyFileHasNoLineAndNoItem) {
  EXPECT_EQ(lines_of(""), Texts{});
  EXPECT_EQ(items_of(""), Texts{});
}

TEST_F(FilesTest, BlanksCommasQuotesAndNulsBelongToALine) {
  const std::string odd(" a,\"b\" \0\f\t\x1A ", 12);
  EXPECT_EQ(lines_of(odd + "\r\nb"), (Texts{odd, "b"}));
}

TEST_F(FilesTest, LongLinesAndEndsAtEveryPlaceOfTheBufferAreWhole) {
  for (const std::size_t length : {65534u, 65535u, 65536u, 65537u, 131071u, 131072u}) {
    const std::string line(length, 'x');
    EXPECT_EQ(lines_of(line + "\r\nb"), (Texts{line, "b"})) << length;
    EXPECT_EQ(items_of(line + "\r\nb"), (Texts{line, "b"})) << length;
  }
}

TEST_F(FilesTest, ALineIsAtMost1MiB) {
  const std::string longest(forms::longest_line, 'x');
  EXPECT_EQ(lines_of(longest + "\nb"), (Texts{longest, "b"}));
  EXPECT_EQ(items_of('"' + longest + "\",b"), (Texts{longest, "b"}));
  files.Open(make("long.txt", longest + "x\nb"), Mode::Input, 1);
  EXPECT_EQ(error_of([&] { files.LineInput(1); }), 513);
  files.Open(make("item.txt", '"' + longest + "\n\",b"), Mode::Input, 2);
  EXPECT_EQ(error_of([&] { files.InputItem(2); }), 513);
}

TEST_F(FilesTest, AFileToReadIsAtMost64MiB) {
  const std::string sparse = make("sparse.txt", "first\n");
  fs::resize_file(sparse, forms::largest_input);
  files.Open(sparse, Mode::Input, 1);
  EXPECT_EQ(files.LineInput(1), "first");
  files.Close(1);
  fs::resize_file(sparse, forms::largest_input + 1);
  EXPECT_EQ(open_error(sparse, Mode::Input), 513);
  EXPECT_EQ(open_error(sparse, Mode::Append), 0);
}

TEST_F(FilesTest, AFileThatGrowsWhileItIsReadStaysBounded) {
  const std::string line(100'000, 'x');
  files.Open(make("in.txt", line + '\n'), Mode::Input, 1);
  std::ofstream more(path("in.txt"), std::ios::app);
  std::size_t read = 0;
  const int error = error_of([&] {
    for (; read <= forms::largest_input; read += files.LineInput(1).size()) more << line << std::endl;
  });
  EXPECT_EQ(error, 513);
  EXPECT_LE(read, forms::largest_input);
}

TEST_F(FilesTest, ItemsAreSeparatedByCommasAndLineEnds) {
  EXPECT_EQ(items_of("setup\r\n88\r\n40,Command,8C,00\r\n"),
            (Texts{"setup", "88", "40", "Command", "8C", "00"}));
  EXPECT_EQ(items_of("a\nb\rc,d"), (Texts{"a", "b", "c", "d"}));
}

TEST_F(FilesTest, BlanksAroundAnItemAreDropped) {
  EXPECT_EQ(items_of("  a b  ,  c\r\n  d  "), (Texts{"a b", "c", "d"}));
  EXPECT_EQ(items_of("  \"  a  \"  ,b"), (Texts{"  a  ", "b"}));
}

TEST_F(FilesTest, QuotedItemsHoldCommasAndLineEnds) {
  EXPECT_EQ(items_of("\"a,b\",c"), (Texts{"a,b", "c"}));
  EXPECT_EQ(items_of("\"a\r\nb\"\r\nc"), (Texts{"a\r\nb", "c"}));
  EXPECT_EQ(items_of("\"\",\"\"\r\n"), (Texts{"", ""}));
  EXPECT_EQ(items_of("\"never closed, so all\r\nof it"), (Texts{"never closed, so all\r\nof it"}));
  EXPECT_EQ(items_of("a \"b\",c"), (Texts{"a \"b\"", "c"}));
  EXPECT_EQ(items_of("\"a\" b,c"), (Texts{"a", "b", "c"}));
}

TEST_F(FilesTest, EmptyItemsCount) {
  EXPECT_EQ(items_of("a,,b"), (Texts{"a", "", "b"}));
  EXPECT_EQ(items_of(",\r\n\r\nb"), (Texts{"", "", "", "b"}));
  EXPECT_EQ(items_of("a,"), (Texts{"a"}));
  EXPECT_EQ(items_of("a,  "), (Texts{"a", ""}));
}

TEST_F(FilesTest, LinesAndItemsReadOnInOneFile) {
  files.Open(make("in.txt", "a,b,c\r\nd"), Mode::Input, 1);
  EXPECT_EQ(files.InputItem(1), "a");
  EXPECT_EQ(files.LineInput(1), "b,c");
  EXPECT_EQ(files.InputItem(1), "d");
  EXPECT_TRUE(files.Eof(1));
}

TEST_F(FilesTest, PrintedLinesEndWithCrLf) {
  files.Open(path("out.txt"), Mode::Output, 1);
  files.PrintLine(1, " 0, 2047, 1");
  files.PrintLine(1, "");
  files.PrintLine(1, std::string("a\0b", 3));
  EXPECT_TRUE(files.Eof(1));
  files.Close(1);
  EXPECT_EQ(content("out.txt"), std::string(" 0, 2047, 1\r\n\r\na\0b\r\n", 20));
}

TEST_F(FilesTest, ManyLinesArriveInOrder) {
  std::string expected;
  files.Open(path("out.txt"), Mode::Output, 1);
  for (int line = 0; line < 30000; ++line) {
    files.PrintLine(1, std::to_string(line));
    expected += std::to_string(line) + "\r\n";
  }
  files.Close(1);
  EXPECT_TRUE(content("out.txt") == expected);  // a difference would take minutes to print
}

TEST_F(FilesTest, OutputReplacesAndAppendAdds) {
  make("out.txt", "old");
  files.Open(path("out.txt"), Mode::Append, 1);
  files.PrintLine(1, "more");
  files.Close(1);
  EXPECT_EQ(content("out.txt"), "oldmore\r\n");
  files.Open(path("out.txt"), Mode::Output, 1);
  EXPECT_EQ(content("out.txt"), "");
  files.PrintLine(1, "new");
  files.Close(1);
  EXPECT_EQ(content("out.txt"), "new\r\n");
  files.Open(path("fresh.txt"), Mode::Append, 1);
  files.Close(1);
  EXPECT_TRUE(fs::exists(path("fresh.txt")));
}

TEST_F(FilesTest, WhatWasPrintedIsWrittenWhenTheFilesGo) {
  {
    Files others;
    others.Open(path("out.txt"), Mode::Output, 1);
    others.PrintLine(1, "left open");
  }
  EXPECT_EQ(content("out.txt"), "left open\r\n");
}

TEST_F(FilesTest, FreeFileIsTheLowestNumberNotInUse) {
  EXPECT_EQ(files.FreeFile(), 1);
  files.Open(path("1"), Mode::Output, 1);
  files.Open(path("3"), Mode::Output, 3);
  EXPECT_EQ(files.FreeFile(), 2);
  files.Close(1);
  EXPECT_EQ(files.FreeFile(), 1);
}

TEST_F(FilesTest, ThereAre255Files) {
  for (int number = 1; number <= 255; ++number) {
    ASSERT_EQ(files.FreeFile(), number);
    files.Open(path(std::to_string(number)), Mode::Output, number);
  }
  EXPECT_EQ(error_of([&] { files.FreeFile(); }), 67);
}

TEST_F(FilesTest, BadNumbersAndNames) {
  const std::string file = make("in.txt", "a");
  EXPECT_EQ(error_of([&] { files.Open(file, Mode::Input, 0); }), 52);
  EXPECT_EQ(error_of([&] { files.Open(file, Mode::Input, 256); }), 52);
  EXPECT_EQ(open_error("", Mode::Input), 52);
  EXPECT_EQ(open_error(file + std::string("\0b", 2), Mode::Input), 52);
  EXPECT_EQ(open_error(path(std::string(300, 'x')), Mode::Output), 52);
  EXPECT_EQ(error_of([&] { files.Eof(1); }), 52);
  EXPECT_EQ(error_of([&] { files.LineInput(1); }), 52);
  EXPECT_EQ(error_of([&] { files.InputItem(1); }), 52);
  EXPECT_EQ(error_of([&] { files.PrintLine(1, ""); }), 52);
  EXPECT_EQ(error_of([&] { files.Close(1); }), 0);
}

TEST_F(FilesTest, BadModes) {
  files.Open(make("in.txt", "a"), Mode::Input, 1);
  files.Open(path("out.txt"), Mode::Output, 2);
  files.Open(path("append.txt"), Mode::Append, 3);
  EXPECT_EQ(error_of([&] { files.PrintLine(1, ""); }), 54);
  for (const int number : {2, 3}) {
    EXPECT_EQ(error_of([&] { files.LineInput(number); }), 54);
    EXPECT_EQ(error_of([&] { files.InputItem(number); }), 54);
  }
}

TEST_F(FilesTest, MissingFilesAndFolders) {
  EXPECT_EQ(open_error(path("missing.txt"), Mode::Input), 53);
  EXPECT_EQ(open_error("a file that is nowhere.txt", Mode::Input), 53);
  EXPECT_EQ(open_error("/a file that is nowhere.txt", Mode::Input), 53);
  EXPECT_EQ(open_error(path("missing/a.txt"), Mode::Input), 76);
  EXPECT_EQ(open_error(path("missing/a.txt"), Mode::Output), 76);
  EXPECT_EQ(open_error(path("missing/a.txt"), Mode::Append), 76);
  EXPECT_EQ(open_error(make("file", "") + "/a.txt", Mode::Input), 76);
  fs::create_symlink("missing/a.txt", path("dangling.txt"));
  EXPECT_EQ(open_error(path("dangling.txt"), Mode::Input), 53);
  EXPECT_EQ(open_error(path("dangling.txt"), Mode::Output), 76);
  EXPECT_EQ(files.FreeFile(), 1);
}

TEST_F(FilesTest, OnlyPlainFilesAreOpened) {
  ASSERT_EQ(::mkfifo(path("fifo").c_str(), 0600), 0);
  fs::create_symlink("loop", path("loop"));
  for (const Mode mode : {Mode::Input, Mode::Output, Mode::Append}) {
    EXPECT_EQ(open_error(path("fifo"), mode), 75);
    EXPECT_EQ(open_error(folder.string(), mode), 75);
    EXPECT_EQ(open_error("/dev/null", mode), 75);
    EXPECT_EQ(open_error("/dev/tty", mode), 75);
    EXPECT_EQ(open_error(path("loop"), mode), 75);
  }
}

TEST_F(FilesTest, AFileIsOpenOnce) {
  const std::string file = make("a.txt", "kept\r\n");
  files.Open(file, Mode::Input, 1);
  EXPECT_EQ(error_of([&] { files.Open(path("b.txt"), Mode::Output, 1); }), 55);
  EXPECT_FALSE(fs::exists(path("b.txt")));

  fs::create_symlink("a.txt", path("symlink.txt"));
  fs::create_hard_link(file, path("link.txt"));
  for (const std::string& name : {file, path("./a.txt"), path("symlink.txt"), path("link.txt")})
    for (const Mode mode : {Mode::Input, Mode::Output, Mode::Append})
      EXPECT_EQ(open_error(name, mode), 55) << name;
  EXPECT_EQ(files.LineInput(1), "kept");
  EXPECT_EQ(content("a.txt"), "kept\r\n");

  files.Close(1);
  EXPECT_EQ(open_error(file, Mode::Output), 0);
}

TEST_F(FilesTest, PermissionIsDenied) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read and write everything";
  const std::string file = make("a.txt", "a");
  fs::permissions(file, fs::perms::none);
  EXPECT_EQ(open_error(file, Mode::Input), 70);
  EXPECT_EQ(open_error(file, Mode::Output), 70);
  EXPECT_EQ(open_error(file, Mode::Append), 70);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(open_error(path("new.txt"), Mode::Output), 70);
  fs::permissions(folder, fs::perms::none);
  EXPECT_EQ(open_error(path("new.txt"), Mode::Input), 70);
}

TEST_F(FilesTest, AFailingReadIsADeviceError) {
  // Nothing is mapped at address 0, so reading the memory of the process from its start fails.
  files.Open("/proc/self/mem", Mode::Input, 1);
  EXPECT_EQ(error_of([&] { files.LineInput(1); }), 57);
  EXPECT_EQ(error_of([&] { files.Eof(1); }), 57);
}

// Holds the size of the files that this process writes down for a while: growing beyond fails as on
// a disk that is full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{size, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*signal_)(int);
};

TEST_F(FilesTest, AFullDiskIsToldAtTheLatestByClose) {
  int error = 0;
  int number_afterwards = 0;
  {
    const FileSizeLimit limit(4);
    files.Open(path("out.txt"), Mode::Output, 1);
    files.PrintLine(1, "12345");
    error = error_of([&] { files.Close(1); });
    number_afterwards = files.FreeFile();
  }
  EXPECT_EQ(error, 61);
  EXPECT_EQ(number_afterwards, 1);
  EXPECT_EQ(content("out.txt"), "1234");
}

TEST_F(FilesTest, ALineThatFailsForAFullDiskIsNotTaken) {
  const std::string kilobyte(1022, 'x');
  int accepted = 0;
  int error = 0;
  {
    const FileSizeLimit limit(1024);
    files.Open(path("out.txt"), Mode::Output, 1);
    while (error == 0 && accepted < 2000) {
      error = error_of([&] { files.PrintLine(1, kilobyte); });
      if (error == 0) ++accepted;
    }
  }
  EXPECT_EQ(error, 61);
  files.Close(1);  // there is room again
  EXPECT_EQ(content("out.txt").size(), 1024u * static_cast<unsigned>(accepted));
}

}  // namespace
