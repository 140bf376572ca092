// Files that are written anew: what was there stays beside until the new content is whole.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "forms/errors.h"
#include "forms/files.h"
#include "support/error_of.h"
#include "support/failing_disk.h"
#include "support/temporary_folder.h"

namespace {

bool names_are_exchanged = true;
int mode_error = 0;  // of every file that is to get a mode

}  // namespace

// In the place of the C library's.
extern "C" int renameat2(int from, const char* old_path, int to, const char* new_path,
                         unsigned flags) noexcept {
  if (!names_are_exchanged) {
    errno = EINVAL;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_renameat2, from, old_path, to, new_path, flags));
}

extern "C" int fchmod(int file, mode_t mode) noexcept {
  if (mode_error == 0) return static_cast<int>(::syscall(SYS_fchmod, file, mode));
  errno = mode_error;
  return -1;
}

namespace varzelin::testing {
namespace {

using forms::Files;
using Mode = Files::Mode;
namespace fs = std::filesystem;

// What an ordinary user may do, while it exists.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (::geteuid() == 0 && ::seteuid(65534) != 0) throw std::runtime_error("root stays root");
  }
  ~OrdinaryUser() {
    if (::getuid() == 0 && ::seteuid(0) != 0) std::abort();
  }
};

struct Overwriting : ::testing::Test {
  const TemporaryFolder folder;
  const std::string path = folder.make("Data.txt", "earlier");
  Files files;

  ~Overwriting() override {
    names_are_exchanged = true;
    mode_error = 0;
  }
  std::string content(const std::string& name = "Data.txt") const {
    return TemporaryFolder::content(folder.path(name));
  }
  bool there(const std::string& name) const { return fs::exists(folder.path(name)); }
  long entries() const { return std::distance(fs::directory_iterator(folder.path()), {}); }
  void begin(Files& by, const std::string& text) {
    by.Open(path, Mode::Output, 1);
    by.PrintLine(1, text);
  }
  void write(const std::string& text) {
    begin(files, text);
    files.Close(1);
  }
};

TEST_F(Overwriting, TheEarlierContentIsBesideUntilTheNewOneIsWhole) {
  fs::permissions(path, fs::perms(0640));
  begin(files, "new");
  EXPECT_EQ(content(), "");
  EXPECT_EQ(content("Data.txt~"), "earlier");
  files.Close(1);
  EXPECT_EQ(content(), "new\r\n");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  EXPECT_EQ(entries(), 1);
  EXPECT_TRUE(files.take_put_aside().empty());
}

TEST_F(Overwriting, AFileThatIsNeverClosedLeavesIt) {
  {
    Files others;
    begin(others, "new");
  }
  EXPECT_EQ(content(), "new\r\n");
  EXPECT_EQ(content("Data.txt~"), "earlier");
}

TEST_F(Overwriting, WhatDoesNotReachTheDiskLeavesItAndSaysWhere) {
  begin(files, "new");
  const FailingDisk disk(S_IFREG);
  EXPECT_EQ(error_of([&] { files.Close(1); }), 57);
  EXPECT_EQ(content("Data.txt~"), "earlier");
  const auto left = files.take_put_aside();
  ASSERT_EQ(left.size(), 1u);
  EXPECT_EQ(left[0].path, path);
  EXPECT_EQ(left[0].earlier, fs::canonical(folder.path()) / "Data.txt~");
  EXPECT_TRUE(files.take_put_aside().empty());
}

TEST_F(Overwriting, NamesThatDoNotReachTheDiskLeaveItToo) {
  begin(files, "new");
  const FailingDisk disk(S_IFDIR);
  EXPECT_EQ(error_of([&] { files.Close(1); }), 57);
  EXPECT_EQ(content("Data.txt~"), "earlier");
}

TEST_F(Overwriting, AnOpenFileIsToldOnce) {
  begin(files, "new");
  EXPECT_EQ(files.take_put_aside().size(), 1u);
  EXPECT_TRUE(files.take_put_aside().empty());
  const FailingDisk disk(S_IFREG);
  EXPECT_EQ(error_of([&] { files.Close(1); }), 57);
  EXPECT_TRUE(files.take_put_aside().empty());
}

TEST_F(Overwriting, AFileThatIsBegunAnewIsOpen) {
  begin(files, "new");
  for (const Mode mode : {Mode::Input, Mode::Output, Mode::Append}) {
    EXPECT_EQ(error_of([&] { files.Open(path, mode, 2); }), forms::file_already_open);
  }
  files.Open(folder.path("Data.txt~"), Mode::Input, 2);
  EXPECT_EQ(files.LineInput(2), "earlier");
}

TEST_F(Overwriting, ATakenNameIsLeftAlone) {
  folder.make("Data.txt~", "of an editor");
  folder.make("Data.txt~2", "of a crash");
  begin(files, "new");
  EXPECT_EQ(content("Data.txt~3"), "earlier");
  files.Close(1);
  EXPECT_EQ(content("Data.txt~"), "of an editor");
  EXPECT_EQ(content("Data.txt~2"), "of a crash");
  EXPECT_EQ(entries(), 3);
}

TEST_F(Overwriting, LinksAreFollowed) {
  fs::create_directory(folder.path("elsewhere"));
  fs::rename(path, folder.path("elsewhere/Real.txt"));
  fs::create_symlink("elsewhere/Real.txt", path);
  begin(files, "new");
  EXPECT_EQ(content("elsewhere/Real.txt~"), "earlier");
  files.Close(1);
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(content("elsewhere/Real.txt"), "new\r\n");
  EXPECT_FALSE(there("elsewhere/Real.txt~"));
}

TEST_F(Overwriting, AFileWithTwoNamesIsWrittenInPlace) {
  fs::create_hard_link(path, folder.path("Other.txt"));
  begin(files, "new");
  EXPECT_EQ(entries(), 2);
  EXPECT_EQ(content("Other.txt"), "");
  files.Close(1);
  EXPECT_EQ(content("Other.txt"), "new\r\n");
}

TEST_F(Overwriting, AnEmptyFileIsWrittenInPlace) {
  folder.make("Data.txt", "");
  begin(files, "new");
  EXPECT_EQ(entries(), 1);
}

TEST_F(Overwriting, AFolderThatTakesNoOtherFileHasItWrittenInPlace) {
  fs::permissions(path, fs::perms(0666));
  fs::permissions(folder.path(), fs::perms(0555));
  {
    const OrdinaryUser user;
    write("new");
  }
  EXPECT_EQ(content(), "new\r\n");
  EXPECT_EQ(entries(), 1);
  fs::permissions(folder.path(), fs::perms(0755));
}

TEST_F(Overwriting, AFileWhoseOwnerCannotBeKeptIsWrittenInPlace) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root has another one's files";
  fs::permissions(path, fs::perms(0666));
  fs::permissions(folder.path(), fs::perms(0777));
  {
    const OrdinaryUser user;
    begin(files, "new");
    EXPECT_EQ(entries(), 1);
    files.Close(1);
  }
  EXPECT_EQ(content(), "new\r\n");
  struct stat state {};
  ::stat(path.c_str(), &state);
  EXPECT_EQ(state.st_uid, 0u);
}

TEST_F(Overwriting, ADiskThatHasNoRoomForAModeLeavesTheFileAsItWas) {
  for (const auto& [system_error, error] : {std::pair(ENOSPC, forms::disk_full),
                                            {EDQUOT, forms::disk_full},
                                            {EIO, forms::device_io_error},
                                            {ENOMEM, forms::device_io_error}}) {
    mode_error = system_error;
    EXPECT_EQ(error_of([&] { files.Open(path, Mode::Output, 1); }), error);
    EXPECT_EQ(content(), "earlier");
    EXPECT_EQ(entries(), 1);
  }
  mode_error = EPERM;
  write("new");
  EXPECT_EQ(content(), "new\r\n");
  EXPECT_EQ(entries(), 1);
}

TEST_F(Overwriting, AProtectedFileStaysInAFolderThatIsNot) {
  fs::permissions(path, fs::perms(0444));
  fs::permissions(folder.path(), fs::perms(0777));
  {
    const OrdinaryUser user;
    EXPECT_EQ(error_of([&] { files.Open(path, Mode::Output, 1); }), 70);
  }
  EXPECT_EQ(content(), "earlier");
  EXPECT_EQ(entries(), 1);
}

TEST_F(Overwriting, FileSystemsThatExchangeNoNamesKeepItToo) {
  names_are_exchanged = false;
  fs::permissions(path, fs::perms(0640));
  begin(files, "new");
  EXPECT_EQ(content(), "");
  EXPECT_EQ(content("Data.txt~"), "earlier");
  files.Close(1);
  EXPECT_EQ(content(), "new\r\n");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
  EXPECT_EQ(entries(), 1);
}

TEST_F(Overwriting, WithoutAHandleForTheNewFileTheEarlierOneComesBack) {
  names_are_exchanged = false;
  const int lowest_free = ::dup(0);
  ::close(lowest_free);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit two_more{static_cast<rlim_t>(lowest_free) + 2, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &two_more);
  const int error = error_of([&] { files.Open(path, Mode::Output, 1); });
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(error, 67);
  EXPECT_EQ(content(), "earlier");
  EXPECT_EQ(entries(), 1);
}

// Each Files object stands for a program.
TEST_F(Overwriting, TwoProgramsLeaveOneBlockOrTheOther) {
  const std::string longer(10000, 'a');
  for (const bool first_closes_first : {true, false}) {
    Files first;
    Files second;
    begin(first, longer);
    begin(second, "b");
    EXPECT_EQ(content("Data.txt~"), first_closes_first ? "earlier" : "b\r\n");
    (first_closes_first ? first : second).Close(1);
    (first_closes_first ? second : first).Close(1);
    EXPECT_EQ(content(), "b\r\n");
    EXPECT_EQ(entries(), 1);
  }
}

TEST_F(Overwriting, TheSecondProgramsFailureLeavesTheFirstOnesBlock) {
  Files second;
  begin(files, "a");
  begin(second, "b");
  files.Close(1);
  EXPECT_EQ(content("Data.txt~2"), "a\r\n");
  const FailingDisk disk(S_IFREG);
  EXPECT_EQ(error_of([&] { second.Close(1); }), 57);
  EXPECT_EQ(content("Data.txt~2"), "a\r\n");
}

TEST_F(Overwriting, TwoProgramsThatCreateAFileDontMixTheirBlocks) {
  fs::remove(path);
  Files second;
  begin(files, "a longer block");
  begin(second, "b");
  files.Close(1);
  second.Close(1);
  EXPECT_EQ(content(), "b\r\n");
  EXPECT_EQ(entries(), 1);
}

TEST_F(Overwriting, InPlaceTheSecondProgramIsDenied) {
  fs::create_hard_link(path, folder.path("Other.txt"));
  Files second;
  begin(files, "a");
  EXPECT_EQ(error_of([&] { second.Open(path, Mode::Output, 1); }), 70);
  files.Close(1);
  EXPECT_EQ(content(), "a\r\n");
  EXPECT_EQ(error_of([&] { second.Open(path, Mode::Output, 1); }), 0);
}

TEST_F(Overwriting, AppendedBlocksOfTwoProgramsAreWhole) {
  const std::string line(70000, 'x');
  Files second;
  for (Files* each : {&files, &second}) each->Open(path, Mode::Append, 1);
  for (int lines = 0; lines < 3; ++lines) {
    files.PrintLine(1, line);
    second.PrintLine(1, "b");
  }
  second.Close(1);
  files.Close(1);
  EXPECT_TRUE(content() == "earlierb\r\nb\r\nb\r\n" + line + "\r\n" + line + "\r\n" + line + "\r\n");
}

TEST_F(Overwriting, ABlockAppendedWhileAnotherProgramOverwritesStaysWhole) {
  Files second;
  begin(files, "a");
  second.Open(path, Mode::Append, 1);
  second.PrintLine(1, "a longer block");
  second.Close(1);
  files.Close(1);
  EXPECT_EQ(content(), "a longer block\r\na\r\n");
}

TEST_F(Overwriting, ABlockAppendedWhileAnotherProgramCreatesTheFileStaysWhole) {
  fs::remove(path);
  Files second;
  begin(files, "a");
  second.Open(path, Mode::Append, 1);
  second.PrintLine(1, "a longer block");
  second.Close(1);
  files.Close(1);
  EXPECT_EQ(content(), "a longer block\r\na\r\n");
}

}  // namespace
}  // namespace varzelin::testing
