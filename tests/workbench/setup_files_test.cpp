// Setup files of the workbench: reading one into the register table, and saving.
#include "support/failing_disk.h"
#include "support/temporary_folder.h"
#include "support/workbench_fixture.h"

namespace varzelin::testing {
namespace {

constexpr auto setup_filter = "All Files (*.*)|*.*|I2C_General Setup Files(*.kvt)|*.kvt";

struct SetupFiles : WorkbenchTest {
  TemporaryFolder folder;

  void open(const std::optional<std::string>& path) {
    user.file_answers.push_back(path);
    click(bench.mnuSetup_Open);
  }
  void read(std::string_view content) { open(folder.make("setup.kvt", content)); }
  void save(const std::optional<std::string>& path) {
    user.file_answers.push_back(path);
    click(bench.mnuSetup_Save);
  }
  // Something in every cell that a read has to take away.
  void fill_table() {
    for (int i = 0; i < 32; ++i) set_row(i, "EE", "old", "11", "22");
  }
  void set_row(int row, const char* address, const char* description, const char* write, const char* data) {
    bench.Reg_Adr(row).Text = address;
    bench.Reg_Desc(row).Text = description;
    bench.txtBWrite(row).Text = write;
    bench.txtRdByte(row).Text = data;
  }
  std::vector<std::string> row(int i) {
    return {bench.Reg_Adr(i).Text, bench.Reg_Desc(i).Text, bench.txtBWrite(i).Text, bench.txtRdByte(i).Text};
  }
  using Row = std::vector<std::string>;
  const Row blank{"", "", "", ""};
  const Row old{"EE", "old", "11", "22"};
  void expect_blank_from(int first) {
    for (int i = first; i < 32; ++i) EXPECT_EQ(row(i), blank) << i;
  }
};

TEST_F(SetupFiles, AFileFillsAddressAndRows) {
  fill_table();
  std::string content = "Some sensor, 30\r\n";
  for (int i = 0; i < 32; ++i) {
    const std::string number = std::to_string(10 + i);
    content += number + ",reg " + number + ",w" + number + ",r" + number + "\r\n";
  }
  read(content);
  EXPECT_EQ(user.errors, std::vector<int>{});
  for (int i = 0; i < 32; ++i) {
    const std::string number = std::to_string(10 + i);
    EXPECT_EQ(row(i), (Row{number, "reg " + number, "w" + number, "r" + number}));
  }
  EXPECT_EQ(bench.txtI2CAdr.Text, "30");
  EXPECT_EQ(bench.txtActualWrtAddress.Text, "30");
  EXPECT_EQ(bench.txtActualReadAddress.Text, "31");
  EXPECT_EQ(store.I2C_WrAdr, 0x30);
  EXPECT_EQ(store.I2C_RdAdr, 0x31);
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});
}

TEST_F(SetupFiles, TheDialogAsksForSetupFiles) {
  bench.cdldialog.FileName = "left over";
  open(std::nullopt);
  ASSERT_EQ(user.file_dialogs.size(), 1u);
  const forms::FileDialog& dialog = user.file_dialogs.front();
  EXPECT_FALSE(dialog.save);
  EXPECT_EQ(dialog.title, "Select Setup File to Open");
  EXPECT_EQ(dialog.filename, "");
  EXPECT_EQ(dialog.filter, setup_filter);
  EXPECT_EQ(dialog.filter_index, 2);
  EXPECT_EQ(dialog.default_extension, "*.KVT");
}

TEST_F(SetupFiles, CancelLeavesEverythingAsItWas) {
  fill_table();
  const std::string caption = bench.Caption;
  open(std::nullopt);
  EXPECT_EQ(user.errors, std::vector<int>{});
  for (int i = 0; i < 32; ++i) EXPECT_EQ(row(i), old);
  EXPECT_EQ(bench.Caption, caption);
  EXPECT_EQ(bench.txtI2CAdr.Text, "88");
}

TEST_F(SetupFiles, TheCaptionShowsTheShortName) {
  open(folder.make("my sensor.kvt", "a,88"));
  EXPECT_EQ(bench.Caption, "my sensor.kvt - Varzelin I2CUSB");
}

TEST_F(SetupFiles, TwoItemsEmptyAllRows) {
  fill_table();
  read("free text,40");
  EXPECT_EQ(bench.txtI2CAdr.Text, "40");
  expect_blank_from(0);
  click(bench.cmdReadRegs);
  EXPECT_EQ(recorder.packets, Packets{});
}

TEST_F(SetupFiles, AnEmptyItemForARowIsThatRowAlone) {
  fill_table();
  read("t,88\r\n01,one,11,12\r\n\r\n,\r\n05,five,51,52\r\n");
  EXPECT_EQ(row(0), (Row{"01", "one", "11", "12"}));
  EXPECT_EQ(row(1), blank);
  // The comma ends an empty item, the line end behind it another one.
  EXPECT_EQ(row(2), blank);
  EXPECT_EQ(row(3), blank);
  EXPECT_EQ(row(4), (Row{"05", "five", "51", "52"}));
  expect_blank_from(5);
}

TEST_F(SetupFiles, OnlyTheAddressItemSaysThatARowIsBlank) {
  read("t,88\r\n01,,,\r\n02,two,,22\r\n");
  EXPECT_EQ(row(0), (Row{"01", "", "", ""}));
  EXPECT_EQ(row(1), (Row{"02", "two", "", "22"}));
  expect_blank_from(2);
}

TEST_F(SetupFiles, QuotedItemsMayHoldCommasAndBlanksAroundItemsAreDropped) {
  read("\"text, with comma\" , 88 \n  01 , \"gain, range \" ,  \"\" , 7F\n");
  EXPECT_EQ(bench.txtI2CAdr.Text, "88");
  EXPECT_EQ(row(0), (Row{"01", "gain, range ", "", "7F"}));
  expect_blank_from(1);
}

TEST_F(SetupFiles, AQuotedEmptyAddressIsABlankRow) {
  read("t,88,\"\",02,two,21,22");
  EXPECT_EQ(row(0), blank);
  EXPECT_EQ(row(1), (Row{"02", "two", "21", "22"}));
}

TEST_F(SetupFiles, TheFileMayEndAtAnyPoint) {
  const std::vector<std::string> items{"01", "one", "11", "12", "02", "two", "21", "22"};
  for (std::size_t count = 0; count <= items.size(); ++count) {
    for (const char* end : {"", "\r\n"}) {
      fill_table();
      std::string content = "t,88";
      for (std::size_t i = 0; i < count; ++i) content += "," + items[i];
      read(content + end);
      for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(row(static_cast<int>(i / 4))[i % 4], i < count ? items[i] : "") << count << ' ' << i;
      }
      expect_blank_from(2);
    }
  }
  EXPECT_EQ(user.errors, std::vector<int>{});
}

TEST_F(SetupFiles, WhatFollowsTheLastRowIsNotRead) {
  std::string content = "t,88";
  for (int i = 0; i < 32; ++i) content += "\r\n01,a,b,c";
  read(content + "\r\n\"more");
  EXPECT_EQ(row(31), (Row{"01", "a", "b", "c"}));
  read("t,90");
  EXPECT_EQ(user.errors, std::vector<int>{});
  EXPECT_EQ(bench.txtI2CAdr.Text, "90");
}

TEST_F(SetupFiles, NothingIsCheckedAndTheAddressIsALowByte) {
  read("t,zz,XYZ,d,!!,12345");
  EXPECT_EQ(bench.txtI2CAdr.Text, "zz");
  EXPECT_EQ(store.I2C_WrAdr, 0);
  EXPECT_EQ(store.I2C_RdAdr, 1);
  EXPECT_EQ(row(0), (Row{"XYZ", "d", "!!", "12345"}));
  read("t,1FF");
  EXPECT_EQ(bench.txtI2CAdr.Text, "1FF");
  EXPECT_EQ(store.I2C_WrAdr, 0xFF);
  EXPECT_EQ(store.I2C_RdAdr, 0);
  EXPECT_EQ(bench.txtActualWrtAddress.Text, "FF");
  EXPECT_EQ(bench.txtActualReadAddress.Text, "0");
}

// --- errors ---

TEST_F(SetupFiles, AMissingFileIsNotFound) {
  fill_table();
  const std::string caption = bench.Caption;
  open(folder.path("none.kvt"));
  EXPECT_EQ(user.errors, std::vector<int>{forms::file_not_found});
  EXPECT_EQ(bench.Caption, caption);
  EXPECT_EQ(row(0), old);
}

TEST_F(SetupFiles, AnEmptyFileEndsTooEarlyAndStaysOpen) {
  fill_table();
  const std::string path = folder.make("empty.kvt", "");
  open(path);
  EXPECT_EQ(user.errors, std::vector<int>{forms::input_past_end_of_file});
  EXPECT_EQ(bench.Caption, "empty.kvt - Varzelin I2CUSB");
  EXPECT_EQ(row(0), old);
  EXPECT_EQ(bench.txtI2CAdr.Text, "88");
  open(path);
  EXPECT_EQ(user.errors, (std::vector<int>{forms::input_past_end_of_file, forms::file_already_open}));
  open(folder.make("good.kvt", "t,42"));
  EXPECT_EQ(user.errors.size(), 2u);
  EXPECT_EQ(bench.txtI2CAdr.Text, "42");
}

TEST_F(SetupFiles, OneItemEndsTooEarlyAndLeavesTheAddress) {
  read("free text\r\n");
  EXPECT_EQ(user.errors, std::vector<int>{forms::input_past_end_of_file});
  EXPECT_EQ(bench.txtI2CAdr.Text, "88");
}

TEST_F(SetupFiles, AnAddressOfFiveDigitsOverflowsAndLeavesTheFileOpen) {
  fill_table();
  const std::string path = folder.make("wide.kvt", "t,12345,01,one,11,12");
  open(path);
  EXPECT_EQ(user.errors, std::vector<int>{forms::overflow});
  EXPECT_EQ(bench.txtI2CAdr.Text, "12345");
  EXPECT_EQ(store.I2C_WrAdr, 0x88);
  EXPECT_EQ(row(0), old);
  open(path);
  EXPECT_EQ(user.errors, (std::vector<int>{forms::overflow, forms::file_already_open}));
}

TEST_F(SetupFiles, AGoodFileIsClosedAndCanBeReadAgain) {
  const std::string path = folder.make("good.kvt", "t,42");
  open(path);
  bench.txtI2CAdr.Text = "";
  open(path);
  EXPECT_EQ(bench.txtI2CAdr.Text, "42");
  EXPECT_EQ(user.errors, std::vector<int>{});
}

// --- saving ---

TEST_F(SetupFiles, AnItemOrAFileThatIsTooLargeIsReported) {
  read("t,88,\"" + std::string(forms::longest_line + 1, '1') + "\"");
  EXPECT_EQ(user.errors, std::vector<int>{forms::input_too_large});
  const std::string path = folder.make("large.kvt", "t,88");
  std::filesystem::resize_file(path, forms::largest_input + 1);
  open(path);
  EXPECT_EQ(user.errors, (std::vector<int>{forms::input_too_large, forms::input_too_large}));
}

TEST_F(SetupFiles, TheSaveDialogProposesTheProgramsName) {
  save(std::nullopt);
  ASSERT_EQ(user.file_dialogs.size(), 1u);
  const forms::FileDialog& dialog = user.file_dialogs.front();
  EXPECT_TRUE(dialog.save);
  EXPECT_EQ(dialog.filename, "I2C_General.kvt");
  EXPECT_EQ(dialog.filter, setup_filter);
  EXPECT_EQ(dialog.filter_index, 2);
  EXPECT_EQ(bench.CommonDialog1.Flags, 4);
  EXPECT_TRUE(bench.CommonDialog1.CancelError);
}

TEST_F(SetupFiles, TheSaveDialogProposesTheFileThatWasOpened) {
  const std::string path = folder.make("opened.kvt", "t,88");
  open(path);
  save(std::nullopt);
  EXPECT_EQ(user.file_dialogs.back().filename, path);
  open(std::nullopt);
  save(std::nullopt);
  EXPECT_EQ(user.file_dialogs.back().filename, "I2C_General.kvt");
}

TEST_F(SetupFiles, SaveMakesAnEmptyFileWhateverTheTableHolds) {
  fill_table();
  const std::string fresh = folder.path("fresh.kvt");
  save(fresh);
  EXPECT_TRUE(std::filesystem::exists(fresh));
  EXPECT_EQ(std::filesystem::file_size(fresh), 0u);
  const std::string full = folder.make("full.kvt", "t,88,01,one,11,12");
  save(full);
  EXPECT_EQ(std::filesystem::file_size(full), 0u);
  EXPECT_EQ(row(0), old);
  EXPECT_EQ(user.errors, std::vector<int>{});
  EXPECT_EQ(recorder.calls, std::vector<std::string>{});

  open(full);
  EXPECT_EQ(user.errors, std::vector<int>{forms::input_past_end_of_file});
}

TEST_F(SetupFiles, CancelInTheSaveDialogSavesNothing) {
  const std::string full = folder.make("full.kvt", "t,88");
  open(full);
  save(std::nullopt);
  EXPECT_EQ(user.errors, std::vector<int>{});
  EXPECT_EQ(folder.content(full), "t,88");
}

TEST_F(SetupFiles, ASaveThatFailsIsReported) {
  save(folder.path("no folder/x.kvt"));
  EXPECT_EQ(user.errors, std::vector<int>{forms::path_not_found});
}

TEST_F(SetupFiles, ASaveThatDoesNotReachTheDiskKeepsTheEarlierFile) {
  const std::string full = folder.make("full.kvt", "t,88");
  {
    const FailingDisk disk(S_IFREG);
    save(full);
  }
  EXPECT_EQ(user.errors, std::vector<int>{forms::device_io_error});
  EXPECT_EQ(folder.content(full + "~"), "t,88");
  EXPECT_NE(bench.Txtlog.Text.get().find("what it held before is in " + full + "~ :"), std::string::npos);
}

}  // namespace
}  // namespace varzelin::testing
