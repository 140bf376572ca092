// What fails on the KVT71338 panel: the measurement file, always, and the bus at any transfer.
#include <filesystem>
#include <fstream>

#include "support/kvt71338_fixture.h"
#include "support/temporary_folder.h"

namespace varzelin::testing {
namespace {

// --- the measurement file ---

struct Kvt71338Recording : Kvt71338 {
  const TemporaryFolder folder;
  const std::string path = folder.path("Data.txt");

  void SetUp() override {
    Kvt71338::SetUp();
    panel->txtFilePath.Text = path;
    store.Sample_Count = 30;
  }
  std::string content() const { return TemporaryFolder::content(path); }
};

// The header wants a second register, which this panel doesn't have.
TEST_F(Kvt71338Recording, FailsOverTheMissingRegister) {
  std::ofstream(path) << "what stood there";
  click(panel->cmdStartRec(0));
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, forms::error_text(forms::no_such_element));
  EXPECT_FALSE(panel->cmdSample.Enabled);
  EXPECT_FALSE(panel->cmdCollectData.Enabled);
  EXPECT_TRUE(user.errors.empty());
  EXPECT_EQ(content(), "");  // opened, and nothing written
  EXPECT_EQ(TemporaryFolder::content(path + "~"), "what stood there");
  EXPECT_TRUE(log().ends_with(path + " isn't written whole, what it held before is in " + path +
                              "~ :" + "11-25-2008 14:03:07\r\n\r\n"))
      << log();
}

TEST_F(Kvt71338Recording, FailsOverTheOpenFileTheSecondTime) {
  click(panel->cmdStartRec(0));
  for (const int append : {0, 1}) {
    panel->chkAppend.Value = append;
    click(panel->cmdStartRec(0));
    EXPECT_EQ(user.boxes.back().text, "File already open");
  }
  ASSERT_EQ(user.boxes.size(), 3u);
  // Another file fails as the first did.
  panel->txtFilePath.Text = path + "2";
  click(panel->cmdStartRec(0));
  EXPECT_EQ(user.boxes.back().text, forms::error_text(forms::no_such_element));
}

TEST_F(Kvt71338Recording, KeepsWhatIsThereWithAppend) {
  std::ofstream(path) << "what stood there";
  panel->chkAppend.Value = 1;
  click(panel->cmdStartRec(0));
  EXPECT_EQ(content(), "what stood there");
}

TEST_F(Kvt71338Recording, WantsTwentySamplesBefore) {
  store.Sample_Count = 19;
  click(panel->cmdStartRec(0));
  ASSERT_EQ(user.boxes.size(), 1u);
  EXPECT_EQ(user.boxes[0].text, "Save More Measurements");
  EXPECT_TRUE(panel->cmdSample.Enabled);
  EXPECT_FALSE(std::filesystem::exists(path));
}

// --- the bus ---

struct Kvt71338Faults : Kvt71338 {
  void SetUp() override {
    Kvt71338::SetUp();
    make_ready();
  }
  void expect_idle() {
    EXPECT_EQ(store.Sample_Run, 0);
    EXPECT_EQ(store.AbortRequested, 0);
    EXPECT_EQ(store.Man_Usb_Conn, 0);
    EXPECT_EQ(store.Usb_Open, 0);
    EXPECT_TRUE(panel->cmdSample.Visible);
    EXPECT_TRUE(panel->cmdSample.Enabled);
    EXPECT_TRUE(panel->cmdCollectData.Enabled);
    EXPECT_FALSE(panel->cmdStopData.Visible);
    EXPECT_FALSE(panel->cmdEndSampling.Visible);
    EXPECT_TRUE(panel->Command4.Visible);
    EXPECT_TRUE(user.errors.empty());
  }
  // Transfers of a run in which nothing fails.
  std::size_t transfers_of(const std::function<void()>& run) {
    forget_traffic();
    run();
    return recorder.packets.size();
  }
};

TEST_F(Kvt71338Faults, AnyFailedTransferEndsACollection) {
  click(panel->OptITime(5));
  click(panel->OptMeasQty(1));
  for (const int graph : {0, 2}) {
    panel->OptGraph(graph).select_quietly();
    const std::size_t count = transfers_of([&] { collect(4); });
    ASSERT_GT(count, 12u);
    for (std::size_t after = 0; after < count; ++after) {
      SCOPED_TRACE(after);
      forget_traffic();
      board.fail_transfers(1, 0x20000001, after);
      std::int32_t runs = 0;
      at_yield([&] { return ++runs > 20000; }, [] { ADD_FAILURE() << "it goes on"; });
      click(panel->cmdCollectData);
      user.at_yield = nullptr;
      EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(recorder.packets.back().status ? 12 : 10));
      EXPECT_TRUE(std::ranges::any_of(recorder.packets, [](const Packet& p) { return p.status != 0; }));
      expect_idle();
      board.clear();
    }
  }
}

// A failed read stops the timed run, and so does a request that fails, as its reply then does too. A failed
// trigger doesn't.
TEST_F(Kvt71338Faults, AFailedReadEndsATimedRun) {
  click(panel->OptITime(4));
  const std::size_t count = transfers_of([&] { sample(3); });
  ASSERT_GT(count, 8u);
  for (std::size_t after = 0; after < count; ++after) {
    SCOPED_TRACE(after);
    forget_traffic();
    board.fail_transfers(1, 0x20000001, after);
    store.Sample_Count = 0;
    bool stopped_by_user = false;
    at_yield(count_reaches(10), [&] {
      stopped_by_user = true;
      forms::user::click(panel->cmdEndSampling);
    });
    click(panel->cmdSample);
    user.at_yield = nullptr;
    ASSERT_GT(recorder.packets.size(), after);
    EXPECT_NE(recorder.packets[after].status, 0);
    EXPECT_EQ(stopped_by_user, after % 3 == 0);
    expect_idle();
    board.clear();
  }
}

TEST_F(Kvt71338Faults, AClosedSessionIsLoggedAndNotTried) {
  workbench();
  store.Man_Usb_Conn = true_flag;  // held, but not open
  click(panel->cmdRead_ADC);
  EXPECT_TRUE(recorder.packets.empty());
  EXPECT_NE(log().find("Write GPIOPipe .. USB Not opened"), std::string::npos);
  EXPECT_NE(log().find("ReadPipe .. USB Not opened"), std::string::npos);
  EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(12));
  EXPECT_EQ(store.AbortRequested, -1);
}

TEST_F(Kvt71338Faults, AnUnpluggedBoardEndsBothLoops) {
  for (forms::CommandButton* start : {&panel->cmdCollectData, &panel->cmdSample}) {
    at_yield(count_reaches(3), [&] { board.unplug(); });
    store.Sample_Count = 0;
    click(*start);
    expect_idle();
    EXPECT_EQ(panel->ShpAttach.FillColor.get(), lamp(12));
    board.plug();
    make_ready();
    if (start == &panel->cmdCollectData) board.set_register(0, store.RegImage[0]);
  }
}

}  // namespace
}  // namespace varzelin::testing
