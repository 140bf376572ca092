#include "window/bus_trace_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QSaveFile>
#include <QScrollBar>
#include <QTableView>
#include <QTimer>
#include <algorithm>
#include <sstream>

#include "boards/trace/pcapng.h"
#include "shell/application.h"
#include "window/caption_button.h"
#include "window/look.h"
#include "window/window_front_end.h"

namespace window {
namespace {

constexpr int refresh_interval_ms = 50;

QString counted(std::uint64_t count) {
  return QLocale(QLocale::English).toString(static_cast<qulonglong>(count));
}

// A list that copies whole rows, not the one cell that has the focus.
class TransferList final : public QTableView {
 public:
  TransferList(const BusTraceModel& model, QWidget* parent) : QTableView(parent), model_(model) {}

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) {
      copy_rows();
    } else {
      QTableView::keyPressEvent(event);
    }
  }

 private:
  void copy_rows() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    QString text;
    for (const QModelIndex& index : rows) text += model_.row_text(index.row()) + '\n';
    if (!text.isEmpty()) QApplication::clipboard()->setText(text);
  }

  const BusTraceModel& model_;
};

}  // namespace

BusTraceWindow::BusTraceWindow(boards::Driver& driver, const forms::Clock& clock, WindowFrontEnd& front_end,
                               const QString& title_suffix)
    : front_end_(front_end), trace_(driver, clock), model_(new BusTraceModel(trace_, this)) {
  setObjectName("BusTrace");
  setWindowTitle("Bus Trace" + title_suffix);
  make_widgets();
  arrange();
  connect_widgets();
  refresh();
}

void BusTraceWindow::make_widgets() {
  filter_ = new QLineEdit(this);
  filter_->setObjectName("filter");
  filter_->setPlaceholderText("Filter: words, bytes or status");
  filter_->setAccessibleName("Filter");
  filter_->setToolTip(
      "Shows only the transfers in whose bytes, status or words this text stands, e.g. \"at 88\"");
  filter_->setClearButtonEnabled(true);
  filter_->findChild<QAbstractButton*>()->setAccessibleName("Clear the filter");
  pipes_ = new QComboBox(this);
  pipes_->setObjectName("pipes");
  pipes_->addItems({"All pipes", "I2C (02, 82)", "GPIO (01, 81)"});  // in the order of BusTraceModel::Pipes
  pipes_->setAccessibleName("Pipes");
  pipes_->setToolTip("Shows only the transfers on these pipes");
  failed_only_ = new QCheckBox("&Failed only", this);
  failed_only_->setObjectName("failed");
  failed_only_->setToolTip(
      "Shows only transfers that failed and answers that tell of a byte not acknowledged");

  const auto button = [this](const char* name, const QString& caption, const QString& tip) {
    auto* made = new CaptionButton(this);
    made->setText(caption);
    made->setObjectName(name);
    made->setToolTip(tip);
    return made;
  };
  pause_ =
      button("pause", "&Pause",
             "Holds the list as it is; the last 100,000 transfers that come meanwhile are shown afterwards");
  pause_->setCheckable(true);
  clear_ = button("clear", "&Clear", "Forgets all transfers up to now");
  save_ = button("save", "&Save as\u2026",
                 "Writes all transfers kept, whatever the filter, to a file for Wireshark");

  list_ = new TransferList(*model_, this);
  list_->setObjectName("transfers");
  list_->setAccessibleName("Transfers");
  list_->setModel(model_);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setAlternatingRowColors(true);
  list_->setShowGrid(false);
  list_->setWordWrap(false);
  list_->setTabKeyNavigation(false);
  show_columns();
  summary_ = new QLabel(this);
  summary_->setObjectName("summary");
}

void BusTraceWindow::show_columns() {
  // Rows of one height: with a hundred thousand of them none is measured by itself.
  list_->verticalHeader()->hide();
  list_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  list_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + gap);
  const int character = fontMetrics().averageCharWidth();
  static constexpr std::array<int, BusTraceModel::Words> characters{8, 12, 5, 9, 18, 40};
  for (int column = 0; column < BusTraceModel::Words; ++column) {
    list_->setColumnWidth(column, characters[static_cast<std::size_t>(column)] * character + 2 * gap);
  }
  list_->horizontalHeader()->setStretchLastSection(true);
  list_->horizontalHeader()->setHighlightSections(false);
}

void BusTraceWindow::arrange() {
  auto* controls = new QHBoxLayout;
  controls->setSpacing(gap);
  controls->addWidget(filter_, 1);
  controls->addWidget(pipes_);
  controls->addWidget(failed_only_);
  controls->addSpacing(2 * gap);
  controls->addWidget(pause_);
  controls->addWidget(clear_);
  controls->addWidget(save_);
  auto* outermost = new QVBoxLayout(this);
  outermost->setSpacing(gap);
  outermost->setContentsMargins(gap, gap, gap, gap);
  outermost->addLayout(controls);
  outermost->addWidget(list_, 1);
  outermost->addWidget(summary_);
  resize(on_screen(*this, {145 * fontMetrics().averageCharWidth(), 28 * fontMetrics().height()}));
}

void BusTraceWindow::connect_widgets() {
  connect(filter_, &QLineEdit::textChanged, this, &BusTraceWindow::filter);
  connect(pipes_, &QComboBox::currentIndexChanged, this, &BusTraceWindow::filter);
  connect(failed_only_, &QCheckBox::toggled, this, &BusTraceWindow::filter);
  connect(pause_, &QPushButton::toggled, this, [this](bool held) {
    model_->hold(held);
    refresh();
  });
  connect(clear_, &QPushButton::clicked, this, &BusTraceWindow::clear);
  connect(save_, &QPushButton::clicked, this, &BusTraceWindow::ask_where_to_save);
  auto* turn = new QTimer(this);
  connect(turn, &QTimer::timeout, this, [this] {
    if (isVisible()) refresh();
  });
  turn->start(refresh_interval_ms);
}

// ---- The list

void BusTraceWindow::refresh() {
  const QScrollBar& bar = *list_->verticalScrollBar();
  const bool at_end = bar.value() == bar.maximum();
  const int top = list_->rowAt(0);
  const int gone = model_->update();
  if (at_end) {
    list_->scrollToBottom();
  } else if (gone > 0) {
    list_->scrollTo(model_->index(std::max(0, top - gone), 0), QAbstractItemView::PositionAtTop);
  }
  summary_->setText(summary());
  save_->setEnabled(trace_.transfers().size() > 0);
  clear_->setEnabled(trace_.transfers().size() > 0);
}

QString BusTraceWindow::summary() const {
  const std::size_t total = model_->transfers().size();
  const auto shown = static_cast<std::size_t>(model_->rowCount());
  QString text = counted(total) + (total == 1 ? " transfer" : " transfers");
  if (shown != total) text += ", " + counted(shown) + " shown";
  if (pause_->isChecked()) {
    text += ". Paused: " + counted(model_->behind()) + " more since";
    if (model_->lost() > 0) text += ", and " + counted(model_->lost()) + " that are lost";
  } else if (total == boards::Transfers::most) {
    text += ". The list is full: the oldest go";
  }
  return text + saved_;
}

void BusTraceWindow::filter() {
  model_->set_filter({filter_->text().trimmed(), static_cast<BusTraceModel::Pipes>(pipes_->currentIndex()),
                      failed_only_->isChecked()});
  list_->scrollToBottom();
  refresh();
}

void BusTraceWindow::clear() {
  trace_.clear();
  model_->clear();
  saved_.clear();
  refresh();
}

// ---- The file

// The dialog and the box stay beside the program: a collection under way must not wait for them.
void BusTraceWindow::ask_where_to_save() {
  front_end_.ask_for_file(*this,
                          {.save = true,
                           .title = "Bus Trace",
                           .filter = "Captures for Wireshark|*.pcapng",
                           .filter_index = 1,
                           .filename = "bus-trace.pcapng",
                           .default_extension = "pcapng"},
                          [this](const QString& path) { save(path); });
}

void BusTraceWindow::save(const QString& path) {
  std::ostringstream capture;
  boards::write_pcapng(capture, trace_, varzelin::application_title);
  const std::string bytes = std::move(capture).str();
  QSaveFile file(path);
  const bool saved = file.open(QIODevice::WriteOnly) &&
                     file.write(bytes.data(), static_cast<qint64>(bytes.size())) >= 0 && file.commit();
  if (saved) {
    saved_ = ". " + counted(trace_.transfers().size()) + " saved in " + path;
    refresh();
    return;
  }
  auto* box = new QMessageBox(QMessageBox::Warning, windowTitle(),
                              path + " can't be written: " + file.errorString(), QMessageBox::Ok, this);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

// ---- On screen and off

void BusTraceWindow::showEvent(QShowEvent* event) {
  trace_.start();
  QWidget::showEvent(event);
}

void BusTraceWindow::closeEvent(QCloseEvent* event) {
  trace_.stop();
  QWidget::closeEvent(event);
}

}  // namespace window
