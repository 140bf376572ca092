// The transfers of a bus trace as the rows of a list: those that pass the filter, oldest first.
#pragma once

#include <QAbstractTableModel>
#include <QString>
#include <cstdint>
#include <deque>
#include <optional>

#include "boards/trace/bus_trace.h"

namespace window {

class BusTraceModel final : public QAbstractTableModel {
 public:
  enum Column { Number, Time, Pipe, Direction, Bytes, Status, Words, column_count };
  enum class Pipes { All, I2c, Gpio };
  struct Filter {
    QString text;  // that stands in bytes, status or words, capital or small; empty: in every row
    Pipes pipes = Pipes::All;
    bool failed_only = false;  // the status isn't 0, or the board says that something wasn't acknowledged
  };

  BusTraceModel(const boards::BusTrace& trace, QObject* parent)
      : QAbstractTableModel(parent), trace_(trace) {}

  // Takes over what came and what was driven out since the last call; does nothing while the list is held.
  // Returns how many rows went from the front.
  int update();
  // A held list stands still as it is, whatever the trace goes on to keep and to give up.
  void hold(bool held);
  // Shows a trace that was cleared.
  void clear();
  void set_filter(Filter filter);
  // Transfers that the list shows, or would without a filter.
  const boards::Transfers& transfers() const { return held_ ? *held_ : trace_.transfers(); }
  // Of those that came since the list is held: how many the trace still has, and how many it gave up.
  std::uint64_t behind() const;
  std::uint64_t lost() const;
  // A row as text, the columns apart by tabs.
  QString row_text(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const boards::Transfer* transfer(int row) const {
    return transfers().find(shown_[static_cast<std::size_t>(row)]);
  }
  QString status_text(const boards::Transfer& transfer) const;
  QString text(const boards::Transfer& transfer, int column) const;
  bool failed(const boards::Transfer& transfer) const;
  bool passes(const boards::Transfer& transfer) const;
  int drop_what_went();
  void add_what_came();
  void show_all_anew();

  const boards::BusTrace& trace_;
  Filter filter_;
  std::optional<boards::Transfers> held_;
  std::uint64_t seen_ = 1;           // number of the first transfer that wasn't looked at yet
  std::deque<std::uint64_t> shown_;  // numbers of the transfers, by row
};

}  // namespace window
