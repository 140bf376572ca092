// The reader of setup files on files that nobody would write.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/error_of.h"
#include "support/setup_file_check.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {
namespace {

struct SetupFileRobustness : ::testing::Test {
  TemporaryFolder folder;

  int read(std::string_view content) { return check_setup_file(folder.make("setup.kvt", content)); }
};

TEST_F(SetupFileRobustness, EveryFileOfTheCorpusEndsInARunTimeErrorAtMost) {
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(PROJECT_FOLDER "/fuzz/corpus/setup")) {
    const int error = check_setup_file(entry.path().string());
    EXPECT_TRUE(error == 0 || error == forms::input_past_end_of_file) << entry.path() << ' ' << error;
    ++files;
  }
  EXPECT_GE(files, 8);
}

TEST_F(SetupFileRobustness, SixtyMegabytesOfItemsAreReadAsFarAsTheRowsGo) {
  const std::string path = folder.make("large.kvt", "t,88\r\n");
  {
    std::ofstream file(path, std::ios::binary | std::ios::app);
    std::string block;
    while (block.size() < 1'000'000) block += "01,some register,AA,55\r\n";
    for (int i = 0; i < 60; ++i) file << block;
  }
  forms::Files files;
  const int number = open_setup_file(files, path);
  EXPECT_EQ(read_setup_address(files, number), "88");
  for (int i = 0; i < setup_rows; ++i) EXPECT_EQ(read_setup_row(files, number).read_value, "55");
  EXPECT_FALSE(files.Eof(number));
}

TEST_F(SetupFileRobustness, AnEndlessLineEndsTheReading) {
  const std::string path = folder.make("line.kvt", "t,88,01,");
  std::filesystem::resize_file(path, 60'000'000);  // NULs to the end
  forms::Files files;
  const int number = open_setup_file(files, path);
  EXPECT_EQ(read_setup_address(files, number), "88");
  EXPECT_EQ(error_of([&] { read_setup_row(files, number); }), forms::input_too_large);
}

TEST_F(SetupFileRobustness, ALineWithoutAnEndIsNoAddress) {
  EXPECT_EQ(read(std::string(1'000'000, 'x')), forms::input_past_end_of_file);
  EXPECT_EQ(read("\"" + std::string(1'000'000, ',')), forms::input_past_end_of_file);
}

TEST_F(SetupFileRobustness, NulBytesAreOrdinaryCharacters) {
  using namespace std::string_literals;
  forms::Files files;
  const int number = open_setup_file(files, folder.make("nul.kvt", "t\0,8\0008,\0,a\0b,,c"s));
  EXPECT_EQ(read_setup_address(files, number), "8\0008"s);
  const SetupRow row = read_setup_row(files, number);
  EXPECT_EQ(row.register_address, "\0"s);
  EXPECT_EQ(row.description, "a\0b"s);
  EXPECT_EQ(row.write_value, "");
  EXPECT_EQ(row.read_value, "c");
}

TEST_F(SetupFileRobustness, OnlyLineEndsAreEmptyItems) {
  EXPECT_EQ(read("\r"), forms::input_past_end_of_file);
  EXPECT_EQ(read("\r\n"), forms::input_past_end_of_file);
  EXPECT_EQ(read("\n\n"), 0);
  EXPECT_EQ(read(std::string(100'000, '\n')), 0);
  EXPECT_EQ(read(std::string(100'000, ',')), 0);
}

TEST_F(SetupFileRobustness, WhatIsNoPlainFileIsNotOpened) {
  EXPECT_EQ(check_setup_file(folder.path()), forms::path_file_access_error);
  const std::string fifo = folder.path("fifo.kvt");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_EQ(check_setup_file(fifo), forms::path_file_access_error);
  EXPECT_EQ(check_setup_file("/dev/zero"), forms::path_file_access_error);
  const std::string link = folder.path("loop.kvt");
  std::filesystem::create_symlink(link, link);
  EXPECT_EQ(check_setup_file(link), forms::path_file_access_error);
}

// The superuser reads everything, so the test takes another user's rights while it looks.
TEST_F(SetupFileRobustness, AnUnreadableFileIsDenied) {
  constexpr ::uid_t nobody = 65534;
  const std::string path = folder.make("locked.kvt", "t,88");
  std::filesystem::permissions(folder.path(), std::filesystem::perms{0755});
  std::filesystem::permissions(path, std::filesystem::perms::none);
  const ::uid_t user = ::geteuid();
  ASSERT_EQ(::seteuid(user == 0 ? nobody : user), 0);
  const int error = check_setup_file(path);
  ASSERT_EQ(::seteuid(user), 0);
  EXPECT_EQ(error, forms::permission_denied);
}

TEST_F(SetupFileRobustness, PathsThatCanNotBeAreRefused) {
  EXPECT_EQ(check_setup_file(""), forms::bad_file_name_or_number);
  EXPECT_EQ(check_setup_file(folder.path(std::string(300, 'x'))), forms::bad_file_name_or_number);
  EXPECT_EQ(check_setup_file(folder.path("none/x.kvt")), forms::path_not_found);
  EXPECT_EQ(check_setup_file(folder.path("x.kvt")), forms::file_not_found);
}

}  // namespace
}  // namespace varzelin::testing
