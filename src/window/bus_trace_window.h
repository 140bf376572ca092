// What goes between the program and its board, as it goes: a list to be filtered, held and saved for
// Wireshark. It listens from its first showing until it is closed; what it saw stays until it is cleared.
#pragma once

#include <QWidget>

#include "boards/trace/bus_trace.h"
#include "window/bus_trace_model.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace window {

class WindowFrontEnd;

class BusTraceWindow final : public QWidget {
 public:
  // All outlive this.
  BusTraceWindow(boards::Driver& driver, const forms::Clock& clock, WindowFrontEnd& front_end,
                 const QString& title_suffix);

  // Brings the list in step; happens by itself while the window is on screen.
  void refresh();

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void make_widgets();
  void arrange();
  void connect_widgets();
  void show_columns();
  QString summary() const;
  void filter();
  void clear();
  void ask_where_to_save();
  void save(const QString& path);

  WindowFrontEnd& front_end_;
  boards::BusTrace trace_;
  BusTraceModel* model_;
  QLineEdit* filter_;
  QComboBox* pipes_;
  QCheckBox* failed_only_;
  QPushButton* pause_;
  QPushButton* clear_;
  QPushButton* save_;
  QTableView* list_;
  QLabel* summary_;
  QString saved_;  // what the summary says of the last file
};

}  // namespace window
