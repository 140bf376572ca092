// The line grammar of script files.
#include "script/script_file.h"

#include <gtest/gtest.h>

#include "forms/errors.h"

namespace varzelin {
namespace {

// One line under the address 88, and the address in force after it.
struct Parsed {
  std::string script_address = "88";
  ScriptRow row;
  explicit Parsed(std::string line) : row(parse_script_line(std::move(line), script_address)) {}
};

ScriptRow row_of(std::string line) {
  return Parsed(std::move(line)).row;
}

void expect_no_quantities(const ScriptRow& row) {
  EXPECT_FALSE(row.reg_qty);
  EXPECT_FALSE(row.wr_qty);
  EXPECT_FALSE(row.rd_qty);
}

void expect_does_nothing(const std::string& line, const std::string& comment) {
  const ScriptRow row = row_of(line);
  EXPECT_EQ(row.operation, "NOP") << line;
  EXPECT_EQ(row.comment, comment) << line;
  EXPECT_EQ(row.address, "88") << line;
  EXPECT_EQ(row.reg + row.data_wr + row.data_rd + row.act_rd, "") << line;
  EXPECT_EQ(row.delay, 0) << line;
  EXPECT_FALSE(row.is_read) << line;
  expect_no_quantities(row);
}

TEST(ScriptFile, BlankLine) {
  expect_does_nothing("", "Script File has a blank line");
}

TEST(ScriptFile, CommentLine) {
  expect_does_nothing("# anything, `A50, 40,8C,", "# anything, `A50, 40,8C,");
  expect_does_nothing("  # behind blanks", "# behind blanks");
  expect_does_nothing("\t# behind a tab", "# behind a tab");
}

TEST(ScriptFile, ControlCharactersBecomeBlanks) {
  EXPECT_EQ(row_of("4\t0,\x0F"
                   "8C")
                .reg,
            "40");
  EXPECT_EQ(row_of("40,8C # a\tb\x0Fz").comment, "# a b z");
  EXPECT_EQ(row_of("40\x0C").reg, "40\x0C") << "a form feed is an ordinary character";
}

TEST(ScriptFile, WritesAndReads) {
  const ScriptRow write = row_of("40,8C,");
  EXPECT_EQ(write.reg, "40");
  EXPECT_EQ(write.data_wr, "8C");
  EXPECT_EQ(write.data_rd, "");
  EXPECT_EQ(write.act_rd, "");
  EXPECT_EQ(write.operation, " Reg:1 W:1");
  EXPECT_EQ(write.comment, "");
  EXPECT_EQ(write.reg_qty, 1);
  EXPECT_EQ(write.wr_qty, 1);
  EXPECT_EQ(write.rd_qty, 0);
  EXPECT_FALSE(write.is_read);

  const ScriptRow read = row_of("02,,1F # id");
  EXPECT_EQ(read.reg, "02");
  EXPECT_EQ(read.data_wr, "");
  EXPECT_EQ(read.data_rd, "1F");
  EXPECT_EQ(read.act_rd, "--");
  EXPECT_EQ(read.operation, " Reg:1 R:1");
  EXPECT_EQ(read.comment, "# id");
  EXPECT_EQ(read.reg_qty, 1);
  EXPECT_EQ(read.wr_qty, 0);
  EXPECT_EQ(read.rd_qty, 1);
  EXPECT_TRUE(read.is_read);

  const ScriptRow both = row_of(" 0a0b , 0c0d0e , f1f2 ");
  EXPECT_EQ(both.reg, "0A0B");
  EXPECT_EQ(both.data_wr, "0C0D0E");
  EXPECT_EQ(both.data_rd, "F1F2");
  EXPECT_EQ(both.operation, " Reg:2 W:3 R:2");
}

TEST(ScriptFile, ShortFieldsArePadded) {
  EXPECT_EQ(row_of("8").reg, "08");
  EXPECT_EQ(row_of("123").reg, "123") << "only data fields of three digits are padded";
  EXPECT_EQ(row_of("1,8").data_wr, "08");
  EXPECT_EQ(row_of("1,123").data_wr, "0123");
  EXPECT_EQ(row_of("1,123").wr_qty, 2);
  EXPECT_EQ(row_of("1,,f").data_rd, "0F");
  EXPECT_EQ(row_of("1,,abc").data_rd, "0ABC");
  EXPECT_EQ(row_of("1,,abc").rd_qty, 2);
}

TEST(ScriptFile, OddLengthsRoundHalfToEven) {
  EXPECT_EQ(row_of("123").reg_qty, 2);
  EXPECT_EQ(row_of("12345").reg_qty, 2);
  EXPECT_EQ(row_of("1234567").reg_qty, 4);
  EXPECT_EQ(row_of("123456789").reg_qty, 4);
  EXPECT_EQ(row_of("1,12345").data_wr, "12345");
  EXPECT_EQ(row_of("1,12345").wr_qty, 2);
  EXPECT_EQ(row_of("1,1234567").wr_qty, 4);
  EXPECT_EQ(row_of("1,,12345").rd_qty, 2);
  EXPECT_EQ(row_of("1,,123456789").rd_qty, 4);
  EXPECT_EQ(row_of("1,,12345").operation, " Reg:1 R:2");
}

TEST(ScriptFile, WithoutARegister) {
  const ScriptRow row = row_of(",,1234 # plain read");
  EXPECT_EQ(row.operation, " R:2");
  EXPECT_EQ(row.comment, "No Internal Register# plain read");
  EXPECT_EQ(row.reg_qty, 0);
}

TEST(ScriptFile, OnlyBlanksOrCommasAreAnEmptyTransaction) {
  for (const char* line : {" ", "   ", "\t", ",", ",,", ",,,,,,,,,,,,,", " , , "}) {
    const ScriptRow row = row_of(line);
    EXPECT_EQ(row.operation, "") << line;
    EXPECT_EQ(row.comment, "No Internal Register") << line;
    EXPECT_EQ(row.reg_qty, 0) << line;
    EXPECT_EQ(row.wr_qty, 0) << line;
    EXPECT_EQ(row.rd_qty, 0) << line;
    EXPECT_FALSE(row.is_read) << line;
  }
}

TEST(ScriptFile, FieldsBeyondTheThirdAreIgnored) {
  const ScriptRow row = row_of("1,2,3,4,5,6,7,8,9,10,11,12,13");
  EXPECT_EQ(row.operation, " Reg:1 W:1 R:1");
  EXPECT_EQ(row.data_rd, "03");
  EXPECT_EQ(row.comment, "");
}

TEST(ScriptFile, CommasInACommentMakeNoFields) {
  const ScriptRow row = row_of("40 # a,b,c");
  EXPECT_EQ(row.operation, " Reg:1");
  EXPECT_EQ(row.comment, "# a,b,c");
}

TEST(ScriptFile, DigitsAreNotChecked) {
  const ScriptRow row = row_of("zz,q,!");
  EXPECT_EQ(row.reg, "ZZ");
  EXPECT_EQ(row.data_wr, "0Q");
  EXPECT_EQ(row.data_rd, "0!");
  EXPECT_EQ(row.operation, " Reg:1 W:1 R:1");
}

TEST(ScriptFile, BlankBeforeTheMarkerIsATransaction) {
  const ScriptRow row = row_of(" `w100");
  EXPECT_EQ(row.reg, "`W100");
  EXPECT_EQ(row.operation, " Reg:2");
  EXPECT_EQ(row.delay, 0);
}

void expect_address(const std::string& line, const std::string& later, const std::string& own) {
  const Parsed parsed(line);
  EXPECT_EQ(parsed.script_address, later) << line;
  EXPECT_EQ(parsed.row.address, own) << line;
  EXPECT_EQ(parsed.row.operation, "Cmd:Set I2C Adr") << line;
  expect_no_quantities(parsed.row);
}

TEST(ScriptFile, SetsTheAddress) {
  expect_address("`A5c", "5C", "5C");
  expect_address("`A 50 # blanks go with a comment", "50", "50");
  expect_address("`A88#", "88", "88");
}

TEST(ScriptFile, AddressOfAnotherLengthShowsFromTheNextRowOn) {
  expect_address("`A5", "05", "88");
  expect_address("`A123", "03", "88");
  expect_address("`A 8b", "0B", "88");
  expect_address("`A50 ", "0 ", "88");
  expect_address("`A", "0A", "88");
}

TEST(ScriptFile, CommandsThatAreNone) {
  for (const char* line : {"`", "`a50", "`W100", "`x", "` A50", "`,40,8C"}) {
    const Parsed parsed(line);
    EXPECT_EQ(parsed.row.operation, "Cmd:") << line;
    EXPECT_EQ(parsed.row.comment, "") << line;
    EXPECT_EQ(parsed.script_address, "88") << line;
    EXPECT_EQ(parsed.row.delay, 0) << line;
    expect_no_quantities(parsed.row);
  }
  const ScriptRow only_comment = row_of("`#A50");
  EXPECT_EQ(only_comment.operation, "Cmd:");
  EXPECT_EQ(only_comment.comment, "#A50");
}

void expect_delay(const std::string& line, int delay, const std::string& operation,
                  const std::string& comment = "") {
  const ScriptRow row = row_of(line);
  EXPECT_EQ(row.delay, delay) << line;
  EXPECT_EQ(row.operation, operation) << line;
  EXPECT_EQ(row.comment, comment) << line;
  EXPECT_FALSE(row.bad_delay) << line;
  EXPECT_EQ(row.error, 0) << line;
}

TEST(ScriptFile, Delays) {
  expect_delay("`w250", 250, "Cmd:Delay :250: mSec");
  expect_delay("`w 250 # settle", 250, "Cmd:Delay :250: mSec", "# settle");
  expect_delay("`w 250", 250, "Cmd:Delay : 250: mSec");
  expect_delay("`w0", 0, "Cmd:Delay :0: mSec");
  expect_delay("`w1.5", 2, "Cmd:Delay :1.5: mSec");
  expect_delay("`w2.5", 2, "Cmd:Delay :2.5: mSec");
  expect_delay("`w1e3", 1000, "Cmd:Delay :1E3: mSec");
  expect_delay("`w32767", 32767, "Cmd:Delay :32767: mSec");
  expect_delay("`w-1", -1, "Cmd:Delay :-1: mSec");
  expect_delay("`w-5", -5, "Cmd:Delay :-5: mSec");
}

TEST(ScriptFile, Pause) {
  expect_delay("`w", -1, "Cmd: Delay Keypress");
  expect_delay("`w # look at the lamp", -1, "Cmd: Delay Keypress", "# look at the lamp");
}

TEST(ScriptFile, DelayThatIsNoNumber) {
  for (const char* line : {"`wABC", "`w5ms", "`w ", "`wait"}) {
    const ScriptRow row = row_of(line);
    EXPECT_EQ(row.delay, 0) << line;
    EXPECT_EQ(row.operation, "Error Delay_Time") << line;
    EXPECT_EQ(row.comment, "Delay Error: Time not numeric") << line;
    EXPECT_TRUE(row.bad_delay) << line;
    EXPECT_EQ(row.error, 0) << line;
  }
  EXPECT_EQ(row_of("`wABC # c").comment, "# cDelay Error: Time not numeric");
}

TEST(ScriptFile, DelayTooLongFor16Bits) {
  for (const char* line : {"`w40000 # c", "`w32767.5 # c", "`w-40000 # c", "`w1E999 # c", "`w40000ms # c"}) {
    const ScriptRow row = row_of(line);
    EXPECT_EQ(row.error, forms::overflow) << line;
    EXPECT_EQ(row.operation, "Cmd:") << line;
    EXPECT_EQ(row.comment, "# c") << line;
  }
}

TEST(ScriptFile, FieldTooLongFor16Bits) {
  EXPECT_EQ(row_of(std::string(65534, '1')).reg_qty, 32767);
  EXPECT_EQ(row_of(std::string(65536, '1')).error, forms::overflow);
  const ScriptRow row = row_of("1," + std::string(65536, '1'));
  EXPECT_EQ(row.error, forms::overflow);
  EXPECT_EQ(row.reg_qty, 1);
  EXPECT_FALSE(row.wr_qty);
}

TEST(ScriptFile, NulAndBytesBeyondAsciiAreOrdinaryCharacters) {
  using namespace std::string_literals;
  EXPECT_EQ(row_of("4\0,8C"s).reg, "4\0"s);
  EXPECT_EQ(row_of("#\0\xE4"s).comment, "#\0\xE4"s);
}

}  // namespace
}  // namespace varzelin
