// The transfers of a bus trace as the rows of a list: those that pass the filter, oldest first.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <algorithm>
#include <cstdint>
#include <deque>

#include "boards/trace/bus_trace.h"

namespace window {

class BusTraceModel final : public QAbstractTableModel {
 public:
  enum Column { Number, Time, Pipe, Direction, Bytes, Status, Words, column_count };
  enum class Pipes { All, I2c, Gpio };
  struct Filter {
    QString text;  // that stands somewhere in the row, capital or small; empty: in every row
    Pipes pipes = Pipes::All;
    bool failed_only = false;  // the status isn't 0, or the board says that something wasn't acknowledged
  };

  BusTraceModel(const boards::BusTrace& trace, QObject* parent)
      : QAbstractTableModel(parent), trace_(trace) {}

  // Takes over what came and what was driven out since the last call. While it is held nothing comes,
  // but what the trace doesn't keep any longer goes.
  void update();
  void hold(bool held);
  void set_filter(Filter filter);
  // Transfers in the trace that came since it is held.
  std::uint64_t behind() const { return trace_.next_number() - first_unseen(); }
  // A row as text, the columns apart by tabs.
  QString row_text(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const boards::Transfer* transfer(int row) const {
    return trace_.find(shown_[static_cast<std::size_t>(row)]);
  }
  QString status_text(const boards::Transfer& transfer) const;
  QString text(const boards::Transfer& transfer, int column) const;
  bool failed(const boards::Transfer& transfer) const;
  bool passes(const boards::Transfer& transfer) const;
  std::uint64_t first_unseen() const { return std::max(seen_, trace_.first_number()); }
  void drop_what_went();
  void add_what_came();

  const boards::BusTrace& trace_;
  Filter filter_;
  bool held_ = false;
  std::uint64_t seen_ = 1;           // number of the first transfer that wasn't looked at yet
  std::deque<std::uint64_t> shown_;  // numbers of the transfers, by row
};

}  // namespace window
