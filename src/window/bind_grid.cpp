// The table of cells.
#include <QHeaderView>
#include <QTableWidget>

#include "forms/grid.h"
#include "window/binding.h"
#include "window/look.h"

namespace window {
namespace {

Qt::Alignment to_qt(forms::Align align) {
  switch (align) {
    case forms::Align::Center:
      return Qt::AlignCenter;
    case forms::Align::Right:
      return Qt::AlignRight | Qt::AlignVCenter;
    case forms::Align::Left:
      break;
  }
  return Qt::AlignLeft | Qt::AlignVCenter;
}

class GridBinding final : public Binding {
 public:
  GridBinding(forms::Grid& grid, QWidget* parent)
      : Binding(grid), grid_(grid), table_(new QTableWidget(parent)) {
    adopt(table_);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->verticalHeader()->hide();
    connect(table_, &QTableWidget::currentCellChanged, this, [this](int row, int column) {
      if (!showing_ && row >= 0) post([this, row, column] { select(row + 1, column + 1); });
    });
    grid_.take_changes();
    show_rows(1, grid_.Rows());
  }

  void show() override {
    const auto changes = grid_.take_changes();
    if (changes.shape) {
      show_rows(1, grid_.Rows());
    } else {
      show_rows(changes.first_row, changes.last_row);
    }
    showing_ = true;
    if (!ahead() && table_->currentRow() != grid_.SelectedRow() - 1) {
      table_->setCurrentCell(grid_.SelectedRow() - 1, std::max(0, table_->currentColumn()));
    }
    showing_ = false;
    Binding::show();
  }

 protected:
  void released(QPoint) override {}

 private:
  void select(int row, int column) {
    if (row <= grid_.Rows() && column <= grid_.Columns()) grid_.select_by_user(row, column);
  }

  void show_rows(int first, int last) {
    showing_ = true;
    table_->setColumnCount(grid_.Columns());
    table_->setRowCount(grid_.Rows());
    for (int column = 1; column <= grid_.Columns(); ++column) {
      if (!table_->horizontalHeaderItem(column - 1)) {
        table_->setHorizontalHeaderItem(column - 1,
                                        new QTableWidgetItem(window::to_qt(grid_.Header(column))));
        table_->setColumnWidth(column - 1, grid_.ColumnWidth(column));
      }
    }
    for (int row = first; row <= std::min(last, grid_.Rows()); ++row) {
      for (int column = 1; column <= grid_.Columns(); ++column) show_cell(row, column);
    }
    showing_ = false;
  }

  void show_cell(int row, int column) {
    QTableWidgetItem* item = table_->item(row - 1, column - 1);
    if (!item) {
      item = new QTableWidgetItem;
      table_->setItem(row - 1, column - 1, item);
    }
    const forms::GridCell& cell = grid_.cell(row, column);
    item->setText(window::to_qt(cell.text));
    item->setTextAlignment(to_qt(cell.align));
    item->setBackground(cell.back ? QBrush(window::to_qt(*cell.back)) : QBrush());
  }

  forms::Grid& grid_;
  QTableWidget* table_;
  bool showing_ = false;
};

}  // namespace

std::unique_ptr<Binding> bind_grid(forms::Control& control, QWidget* parent) {
  return std::make_unique<GridBinding>(dynamic_cast<forms::Grid&>(control), parent);
}

}  // namespace window
