#include "window/bus_trace_model.h"

#include <QApplication>
#include <QBrush>
#include <QFontDatabase>
#include <algorithm>
#include <array>
#include <vector>

#include "boards/hex.h"
#include "boards/trace/packet_words.h"
#include "window/look.h"

namespace window {
namespace {

bool is_gpio(std::int32_t pipe) {
  return pipe == boards::pipe_gpio_out || pipe == boards::pipe_gpio_in;
}

QVariant alignment(int column) {
  return QVariant((column <= BusTraceModel::Time ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

QBrush failure_brush() {
  return readable(QColor(0xB0, 0x10, 0x10), QApplication::palette().color(QPalette::Base));
}

}  // namespace

// ---- In step with the trace

int BusTraceModel::update() {
  if (held_) return 0;
  const int gone = drop_what_went();
  add_what_came();
  return gone;
}

int BusTraceModel::drop_what_went() {
  const auto first_kept = std::ranges::lower_bound(shown_, transfers().first_number());
  const int gone = static_cast<int>(first_kept - shown_.begin());
  if (gone == 0) return 0;
  beginRemoveRows({}, 0, gone - 1);
  shown_.erase(shown_.begin(), first_kept);
  endRemoveRows();
  return gone;
}

void BusTraceModel::add_what_came() {
  std::vector<std::uint64_t> coming;
  for (std::uint64_t number = std::max(seen_, transfers().first_number()); number < transfers().next_number();
       ++number) {
    if (passes(*transfers().find(number))) coming.push_back(number);
  }
  seen_ = transfers().next_number();
  if (coming.empty()) return;
  const int row = rowCount();
  beginInsertRows({}, row, row + static_cast<int>(coming.size()) - 1);
  shown_.insert(shown_.end(), coming.begin(), coming.end());
  endInsertRows();
}

void BusTraceModel::hold(bool held) {
  if (held) {
    update();
    held_ = trace_.transfers();
  } else {
    beginResetModel();
    held_.reset();
    show_all_anew();
    endResetModel();
  }
}

void BusTraceModel::clear() {
  beginResetModel();
  if (held_) held_ = trace_.transfers();
  show_all_anew();
  endResetModel();
}

void BusTraceModel::set_filter(Filter filter) {
  beginResetModel();
  filter_ = std::move(filter);
  show_all_anew();
  endResetModel();
}

void BusTraceModel::show_all_anew() {
  shown_.clear();
  for (std::size_t i = 0; i < transfers().size(); ++i) {
    if (passes(transfers()[i])) shown_.push_back(transfers()[i].number);
  }
  seen_ = transfers().next_number();
}

std::uint64_t BusTraceModel::behind() const {
  if (!held_) return 0;
  return trace_.transfers().next_number() - held_->next_number() - lost();
}

std::uint64_t BusTraceModel::lost() const {
  const std::uint64_t first = trace_.transfers().first_number();
  return held_ && first > held_->next_number() ? first - held_->next_number() : 0;
}

bool BusTraceModel::failed(const boards::Transfer& transfer) const {
  return transfer.status != boards::success || boards::is_refusal(transfer, transfers().request_of(transfer));
}

bool BusTraceModel::passes(const boards::Transfer& transfer) const {
  if (filter_.pipes != Pipes::All && is_gpio(transfer.pipe) != (filter_.pipes == Pipes::Gpio)) return false;
  if (filter_.failed_only && !failed(transfer)) return false;
  if (filter_.text.isEmpty()) return true;
  for (const int column : {Bytes, Status, Words}) {
    if (text(transfer, column).contains(filter_.text, Qt::CaseInsensitive)) return true;
  }
  return false;
}

// ---- Rows

QString BusTraceModel::status_text(const boards::Transfer& transfer) const {
  return QString::number(transfer.status) + ' ' + to_qt(trace_.driver().VB_Stat2Str(transfer.status));
}

QString BusTraceModel::text(const boards::Transfer& transfer, int column) const {
  switch (column) {
    case Number:
      return QString::number(transfer.number);
    case Time:
      return QString::number(std::chrono::duration<double, std::milli>(transfer.begin).count(), 'f', 3);
    case Pipe:
      return QString::number(transfer.pipe, 16).rightJustified(2, '0').toUpper();
    case Direction:
      return transfer.read ? "in" : "out";
    case Bytes:
      return to_qt(boards::hex(transfer.bytes));
    case Status:
      return transfer.status == boards::success ? "0" : status_text(transfer);
    case Words:
      return (transfer.after_gap ? "(not listening before) " : "") +
             to_qt(boards::in_words(transfer, transfers().request_of(transfer)));
    default:
      return {};
  }
}

QString BusTraceModel::row_text(int row) const {
  QStringList columns;
  if (const boards::Transfer* shown = transfer(row)) {
    for (int column = 0; column < column_count; ++column) columns << text(*shown, column);
  }
  return columns.join('\t');
}

int BusTraceModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int BusTraceModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : column_count;
}

// A row may be asked for when its transfer has just been driven out, before update() takes it away.
QVariant BusTraceModel::data(const QModelIndex& index, int role) const {
  const boards::Transfer* shown = index.isValid() ? transfer(index.row()) : nullptr;
  if (!shown) return {};
  const int column = index.column();
  switch (role) {
    case Qt::DisplayRole:
      return text(*shown, column);
    case Qt::ToolTipRole:
      return column >= Bytes ? text(*shown, column) : QVariant();
    case Qt::TextAlignmentRole:
      return alignment(column);
    case Qt::FontRole:
      return column == Bytes ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QVariant();
    case Qt::ForegroundRole:
      return failed(*shown) ? failure_brush() : QVariant();
    default:
      return {};
  }
}

QVariant BusTraceModel::headerData(int section, Qt::Orientation orientation, int role) const {
  static constexpr std::array<const char*, column_count> captions{
      "No.", "Time (ms)", "Pipe", "Direction", "Bytes", "Status", "In words"};
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return captions[static_cast<std::size_t>(section)];
  return role == Qt::TextAlignmentRole ? alignment(section) : QVariant();
}

}  // namespace window
