// The bus trace in its window.
#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>
#include <filesystem>

#include "boards/simulated/statuses.h"
#include "panels/single_channel/kvt71346.h"
#include "shell/application.h"
#include "support/temporary_folder.h"
#include "support/window_program.h"
#include "window/bus_trace_window.h"
#include "workbench/workbench.h"

namespace varzelin::testing {
namespace {

using window::BusTraceModel;

struct BusTraceInItsWindow : WindowProgram {
  void SetUp() override {
    add_forms(program);
    program.runtime.dispatch([&] { start(program); });
    turn();
    emit widget<QComboBox>("frmStartup", "cboDeviceSelect").activated(0);
    turn();
  }
  void open() {
    for (QAction* action : window_of("frmKVT71346").menuBar()->findChild<QMenu*>("Windows")->actions()) {
      if (action->text().remove('&') == "Bus Trace") action->trigger();
    }
    ASSERT_TRUE(windows.bus_trace());
    ASSERT_TRUE(windows.bus_trace()->isVisible());
  }
  template <class Widget>
  Widget& part(const char* name) {
    return widget_in<Widget>(*windows.bus_trace(), name);
  }
  QAbstractItemModel& rows() { return *part<QTableView>("transfers").model(); }
  QString cell(int row, int column) { return rows().index(row, column).data().toString(); }
  QString last(int column) { return cell(rows().rowCount() - 1, column); }
  QString summary() { return part<QLabel>("summary").text(); }

  void connect() {
    program.runtime.dispatch([&] { program.forms.touch<frmI2C_General>().cmdUSBConnect_Click(); });
  }
  void send(std::vector<std::uint8_t> packet, std::int32_t pipe = boards::pipe_i2c_out) {
    std::size_t transferred = 0;
    board.WDU_Transfer(program.store.Dev_Handle, pipe, false, packet, transferred);
  }
  void receive(std::size_t size, std::int32_t pipe = boards::pipe_i2c_in) {
    std::vector<std::uint8_t> buffer(size);
    std::size_t transferred = 0;
    board.WDU_Transfer(program.store.Dev_Handle, pipe, true, buffer, transferred);
  }
  QFileDialog& ask_where_to_save() {
    part<QPushButton>("save").click();
    return *windows.bus_trace()->findChild<QFileDialog*>();
  }
  static void take(QFileDialog& dialog, const std::string& path) {
    dialog.findChild<QLineEdit*>()->setText(QString::fromStdString(path));
    static_cast<QDialog&>(dialog).accept();
  }
  QMessageBox& question() {
    for (auto* box : windows.bus_trace()->findChildren<QMessageBox*>()) {
      if (box->isVisible()) return *box;
    }
    throw std::logic_error("no box");
  }
  void answer(const QString& button) {
    for (QAbstractButton* each : question().buttons()) {
      if (each->text().remove('&') == button) return each->click();
    }
    ADD_FAILURE() << "no button " << button.toStdString();
  }
  void open_with(std::size_t writes) {
    connect();
    open();
    for (std::size_t i = 0; i < writes; ++i) send({0, 0x88, 1, static_cast<std::uint8_t>(i)});
    windows.bus_trace()->refresh();
  }
};

TEST_F(BusTraceInItsWindow, CostsNothingUntilItIsOpenedAndAfterItIsClosed) {
  EXPECT_EQ(windows.bus_trace(), nullptr);
  EXPECT_EQ(board.observer, nullptr);
  open();
  EXPECT_NE(board.observer, nullptr);
  windows.bus_trace()->close();
  EXPECT_EQ(board.observer, nullptr);
  open();
  EXPECT_NE(board.observer, nullptr);
}

TEST_F(BusTraceInItsWindow, ATransferIsARow) {
  connect();
  open();
  clock.pass(std::chrono::microseconds(2500) - clock.now() % std::chrono::milliseconds(1));
  const QString begin = QString::number(clock.milliseconds(), 'f', 3);
  send({1, 0x88, 1, 5});
  receive(2);
  board.fail_transfers(1, boards::statuses::time_out);
  receive(2);
  windows.bus_trace()->refresh();
  ASSERT_EQ(rows().rowCount(), 3);
  const QStringList captions{"No.", "Time (ms)", "Pipe", "Direction", "Bytes", "Status", "In words"};
  for (int column = 0; column < captions.size(); ++column) {
    EXPECT_EQ(rows().headerData(column, Qt::Horizontal).toString(), captions[column]);
  }
  EXPECT_EQ(cell(0, BusTraceModel::Number), "1");
  EXPECT_EQ(cell(0, BusTraceModel::Time), begin);
  EXPECT_EQ(cell(0, BusTraceModel::Pipe), "02");
  EXPECT_EQ(cell(0, BusTraceModel::Direction), "out");
  EXPECT_EQ(cell(0, BusTraceModel::Bytes), "01 88 01 05");
  EXPECT_EQ(cell(0, BusTraceModel::Status), "0");
  EXPECT_EQ(cell(0, BusTraceModel::Words), "write r1 = 05 at 88");
  EXPECT_EQ(cell(1, BusTraceModel::Pipe), "82");
  EXPECT_EQ(cell(1, BusTraceModel::Direction), "in");
  EXPECT_EQ(cell(2, BusTraceModel::Status), "536870916 The transfer timed out");
  EXPECT_EQ(cell(2, BusTraceModel::Words), "no answer");
  EXPECT_FALSE(rows().index(0, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_TRUE(rows().index(2, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_EQ(summary(), "3 transfers");
}

TEST_F(BusTraceInItsWindow, ShowsACollectionWhileItRuns) {
  open();
  auto& panel = program.forms.touch<frmKVT71346>();
  panel.ModeIndex = 2;
  int seen_while_running = 0;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    if (program.store.Sample_Count < 60 || rows().rowCount() <= 100) return;
    seen_while_running = rows().rowCount();
    widget<QPushButton>("frmKVT71346", "cmdStopData").click();
  });
  user.start(0);
  widget<QPushButton>("frmKVT71346", "cmdCollectData").click();
  turn();
  EXPECT_GT(seen_while_running, 100);
}

TEST_F(BusTraceInItsWindow, FiltersByTextPipesAndFailure) {
  connect();
  open();
  send({1, 0x88, 1, 5});
  receive(2);
  send({1, 0xA0, 1, 5});
  receive(2);  // nothing answers at A0
  send({1, 2, 3, 4}, boards::pipe_gpio_out);
  board.fail_transfers(1, boards::statuses::transfer_failed);
  send({0, 0x88, 7});
  windows.bus_trace()->refresh();
  const auto shown = [&] {
    QStringList numbers;
    for (int row = 0; row < rows().rowCount(); ++row) numbers << cell(row, BusTraceModel::Number);
    return numbers.join(' ');
  };
  EXPECT_EQ(shown(), "1 2 3 4 5 6");
  part<QLineEdit>("filter").setText("AT 88");
  EXPECT_EQ(shown(), "1 2 6");
  EXPECT_EQ(summary(), "6 transfers, 3 shown");
  part<QCheckBox>("failed").setChecked(true);
  EXPECT_EQ(shown(), "6");
  part<QLineEdit>("filter").clear();
  EXPECT_EQ(shown(), "4 6");
  part<QComboBox>("pipes").setCurrentIndex(2);
  EXPECT_EQ(shown(), "");
  part<QCheckBox>("failed").setChecked(false);
  EXPECT_EQ(shown(), "5");
  part<QComboBox>("pipes").setCurrentIndex(1);
  EXPECT_EQ(shown(), "1 2 3 4 6");
  part<QLineEdit>("filter").setText("01 A0");
  EXPECT_EQ(shown(), "3");
  send({1, 0xA0, 1, 6});
  send({1, 0x88, 1, 6});
  windows.bus_trace()->refresh();
  EXPECT_EQ(shown(), "3 7");
  part<QLineEdit>("filter").setText("536870917");
  EXPECT_EQ(shown(), "6");
  part<QLineEdit>("filter").setText("out");  // a direction; it stands in every row
  EXPECT_EQ(shown(), "");
}

TEST_F(BusTraceInItsWindow, FitsTheScreen) {
  open();
  EXPECT_LE(windows.bus_trace()->width(), windows.bus_trace()->screen()->availableSize().width());
}

TEST_F(BusTraceInItsWindow, APausedListStandsStillAndLosesNothing) {
  open_with(2);
  part<QPushButton>("pause").setChecked(true);
  send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  EXPECT_EQ(rows().rowCount(), 2);
  EXPECT_EQ(summary(), "2 transfers. Paused: 1 more since");
  part<QLineEdit>("filter").setText("command");
  EXPECT_EQ(rows().rowCount(), 0);
  part<QLineEdit>("filter").clear();
  EXPECT_EQ(rows().rowCount(), 2);
  part<QPushButton>("pause").setChecked(false);
  EXPECT_EQ(rows().rowCount(), 3);
  EXPECT_EQ(summary(), "3 transfers");
}

TEST_F(BusTraceInItsWindow, ClearingForgetsEverything) {
  open_with(2);
  part<QPushButton>("clear").click();
  EXPECT_EQ(rows().rowCount(), 0);
  EXPECT_EQ(summary(), "0 transfers");
  EXPECT_FALSE(part<QPushButton>("save").isEnabled());
  send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  EXPECT_EQ(last(BusTraceModel::Number), "3");
  part<QPushButton>("pause").setChecked(true);
  send({0, 0x88, 9});
  part<QPushButton>("clear").click();
  EXPECT_EQ(summary(), "0 transfers. Paused: 0 more since");
}

TEST_F(BusTraceInItsWindow, AFullListDropsItsOldestRows) {
  open_with(boards::Transfers::most);
  QAbstractItemModelTester tester(&rows(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(rows().rowCount(), 100'000);
  send({0, 0x88, 9});
  // Before the list knows that its first row has gone, it may be painted.
  EXPECT_FALSE(rows().index(0, 0).data().isValid());
  windows.bus_trace()->refresh();
  EXPECT_EQ(rows().rowCount(), 100'000);
  EXPECT_EQ(cell(0, 0), "2");
  EXPECT_EQ(last(0), "100001");
  EXPECT_EQ(summary(), "100,000 transfers. The list is full: the oldest go");
  part<QPushButton>("pause").setChecked(true);
  for (int i = 0; i < 10; ++i) send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  EXPECT_EQ(cell(0, 0), "2");
  EXPECT_EQ(last(0), "100001");
  EXPECT_EQ(summary(), "100,000 transfers. Paused: 10 more since");
  for (std::size_t i = 0; i < boards::Transfers::most; ++i) send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  EXPECT_EQ(cell(0, 0), "2");
  EXPECT_EQ(cell(99'999, BusTraceModel::Words), "command 09 at 88");
  EXPECT_EQ(summary(), "100,000 transfers. Paused: 100,000 more since, and 10 that are lost");
  part<QPushButton>("pause").setChecked(false);
  EXPECT_EQ(cell(0, 0), "100012");
  EXPECT_EQ(last(0), "200011");
}

TEST_F(BusTraceInItsWindow, AFullListDoesNotSlideUnderItsReader) {
  open_with(boards::Transfers::most);
  auto& list = part<QTableView>("transfers");
  list.scrollTo(rows().index(50'000, 0), QAbstractItemView::PositionAtTop);
  const QString top = cell(list.rowAt(0), BusTraceModel::Number);
  for (int i = 0; i < 1000; ++i) send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  EXPECT_EQ(cell(list.rowAt(0), BusTraceModel::Number), top);
}

// The list keeps itself in step, also while a handler runs.
TEST_F(BusTraceInItsWindow, IsLive) {
  open_with(1);
  send({0, 0x88, 9});
  EXPECT_EQ(rows().rowCount(), 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return rows().rowCount() == 2; }));
}

TEST_F(BusTraceInItsWindow, FollowsTheNewestAsLongAsItIsAtTheEnd) {
  open_with(200);
  QScrollBar& bar = *part<QTableView>("transfers").verticalScrollBar();
  QApplication::processEvents();
  EXPECT_EQ(bar.value(), bar.maximum());
  bar.setValue(10);
  send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  QApplication::processEvents();
  EXPECT_EQ(bar.value(), 10);
}

TEST_F(BusTraceInItsWindow, CopiesTheSelectedRows) {
  open_with(3);
  auto& list = part<QTableView>("transfers");
  list.selectRow(1);
  list.setFocus();
  QTest::keySequence(&list, QKeySequence::Copy);
  EXPECT_EQ(QApplication::clipboard()->text(),
            "2\t" + cell(1, BusTraceModel::Time) + "\t02\tout\t00 88 01 01\t0\twrite r1 = 01 at 88\n");
}

TEST_F(BusTraceInItsWindow, WhatItSawOutlivesItsClosing) {
  open_with(2);
  windows.bus_trace()->close();
  send({0, 0x88, 9});
  open();
  windows.bus_trace()->refresh();
  EXPECT_EQ(rows().rowCount(), 2);
  EXPECT_EQ(cell(1, BusTraceModel::Words), "write r1 = 01 at 88");
  send({0, 0x88, 9});
  send({0, 0x88, 9});
  windows.bus_trace()->refresh();
  EXPECT_EQ(cell(2, BusTraceModel::Words), "(not listening before) command 09 at 88");
  EXPECT_EQ(cell(3, BusTraceModel::Words), "command 09 at 88");
}

TEST_F(BusTraceInItsWindow, SavesACaptureBesideTheRunningProgram) {
  const TemporaryFolder folder;
  open_with(2);
  part<QLineEdit>("filter").setText("nothing");
  const std::string path = folder.path("bus.pcapng");
  QFileDialog& dialog = ask_where_to_save();
  EXPECT_EQ(dialog.windowTitle(), "Save: Bus Trace \u2014 simulated board");
  EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
  EXPECT_TRUE(dialog.selectedFiles().front().endsWith("/bus-trace.pcapng"));
  take(dialog, folder.path("bus"));
  EXPECT_EQ(summary(), "2 transfers, 0 shown. 2 saved in " + QString::fromStdString(path));
  const std::string content = TemporaryFolder::content(path);
  EXPECT_EQ(content.substr(0, 4), "\x0A\x0D\x0D\x0A");
  EXPECT_NE(content.find(std::string("\0\x88\x01\x01", 4)), std::string::npos);
  part<QPushButton>("clear").click();
  EXPECT_EQ(summary(), "0 transfers");
}

TEST_F(BusTraceInItsWindow, ACaptureReplacesAFileOnceTheUserSaysSo) {
  const TemporaryFolder folder;
  const std::string path = folder.make("bus.pcapng", "older");
  open_with(1);
  QFileDialog& dialog = ask_where_to_save();
  take(dialog, path);
  EXPECT_FALSE(dialog.isVisible());
  answer("Cancel");
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(TemporaryFolder::content(path), "older");
  EXPECT_EQ(summary(), "1 transfer");
  take(dialog, path);
  answer("Replace It");
  EXPECT_EQ(TemporaryFolder::content(path).substr(0, 4), "\x0A\x0D\x0D\x0A");
}

// What goes on in the program doesn't wait for the dialog, nor for its question.
TEST_F(BusTraceInItsWindow, HandlersRunBesideTheFileDialog) {
  const TemporaryFolder folder;
  const std::string path = folder.make("bus.pcapng", "older");
  open_with(1);
  take(ask_where_to_save(), path);
  EXPECT_EQ(question().windowModality(), Qt::WindowModal);
  bool ran = false;
  program.runtime.post([&] { ran = true; });
  turn();
  EXPECT_TRUE(ran);
}

TEST_F(BusTraceInItsWindow, ItsFileDialogSharesTheFolderUsedLastWithThoseOfForms) {
  const TemporaryFolder folder;
  open_with(1);
  take(ask_where_to_save(), folder.path("bus.pcapng"));
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->directory(), QDir(QString::fromStdString(folder.path())));
    take(*dialog, folder.path("other/form.txt"));
  });
  std::filesystem::create_directory(folder.path("other"));
  EXPECT_TRUE(program.runtime.file_dialog(
      {.save = true, .title = "", .filter = "", .filter_index = 0, .filename = "", .default_extension = ""}));
  QFileDialog& dialog = ask_where_to_save();
  EXPECT_EQ(dialog.directory(), QDir(QString::fromStdString(folder.path("other"))));
  EXPECT_TRUE(dialog.selectedFiles().front().endsWith("/other/bus-trace.pcapng"));
}

TEST_F(BusTraceInItsWindow, AFileThatCannotBeWrittenIsTold) {
  const TemporaryFolder folder;
  open_with(1);
  QFileDialog& dialog = ask_where_to_save();
  const std::string path = folder.path("gone/bus.pcapng");
  std::filesystem::create_directory(folder.path("gone"));
  dialog.setDirectory(QString::fromStdString(folder.path("gone")));
  std::filesystem::remove(folder.path("gone"));
  take(dialog, path);
  EXPECT_TRUE(question().text().startsWith(QString::fromStdString(path) + " can't be written: "))
      << question().text().toStdString();
  EXPECT_EQ(summary(), "1 transfer");
}

}  // namespace
}  // namespace varzelin::testing
