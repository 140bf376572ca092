// The table of cells.
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <QTableWidget>

#include <functional>
#include <optional>

#include "forms/grid.h"
#include "window/binding.h"
#include "window/choosing.h"
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

// What a cell's colour says of it; nothing for a colour that is no verdict.
QString verdict_of(const forms::GridCell& cell) {
  if (cell.back == forms::clr_green) return "pass";
  return cell.back == forms::clr_red ? "fail" : QString();
}

// A row fails with any of its cells.
QString verdict_of(const forms::Grid& grid, int row) {
  QString verdict;
  for (int column = 1; column <= grid.Columns() && verdict != "fail"; ++column) {
    const QString of_cell = verdict_of(grid.cell(row, column));
    if (!of_cell.isEmpty()) verdict = of_cell;
  }
  return verdict;
}

// Keeps the colour of a cell in the selected row: it tells how a read went. The last column wraps.
class CellLook final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    if (option->backgroundBrush.style() != Qt::NoBrush) option->state &= ~QStyle::State_Selected;
    const bool last = index.column() == index.model()->columnCount() - 1;
    option->features.setFlag(QStyleOptionViewItem::WrapText, last);
  }
};

// Above and below a row's text, together.
constexpr int row_padding = 6;

// A table whose cursor goes through the rows by the keys; a click, Enter or Space chooses one. A row may run
// when it is chosen, so the cursor and the focus alone must not.
class Table final : public QTableWidget {
 public:
  using QTableWidget::QTableWidget;
  std::function<void(int row, int column)> selected;
  // As high as the text of the last column needs in this width.
  void fit_height(int row, int width) {
    constexpr int grid_line = 1;
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect.setSize({width - grid_line, rowHeight(row)});
    const int last = columnCount() - 1;
    const int text = itemDelegate()->sizeHint(option, model()->index(row, last)).height();
    setRowHeight(row, std::max(text + row_padding, verticalHeader()->defaultSectionSize()));
  }
  // Of a window that has the room.
  QSize sizeHint() const override {
    constexpr int lines = 20;
    constexpr int characters_of_last_column = 60;
    const int columns = horizontalHeader()->sectionPosition(columnCount() - 1);
    return {columns + characters_of_last_column * fontMetrics().averageCharWidth(),
            horizontalHeader()->sizeHint().height() + lines * verticalHeader()->defaultSectionSize()};
  }
  int selected_row() const {
    const auto rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.front().row();
  }

 protected:
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override {
    return chooses(event) ? QTableWidget::selectionCommand(index, event) : QItemSelectionModel::NoUpdate;
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QTableWidget::mouseReleaseEvent(event);
    const QModelIndex cell = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && cell.isValid()) selected(cell.row(), cell.column());
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) {
      copy();
    } else if (is_choosing_key(event->key())) {
      if (currentRow() >= 0) selected(currentRow(), currentColumn());
    } else {
      QTableWidget::keyPressEvent(event);
    }
  }

 private:
  // The cursor's row as text, its cells with tabs between.
  void copy() {
    QStringList cells;
    for (int column = 0; currentRow() >= 0 && column < columnCount(); ++column) {
      cells << item(currentRow(), column)->text();
    }
    QApplication::clipboard()->setText(cells.join('\t'));
  }
};

class GridBinding final : public Binding {
 public:
  GridBinding(forms::Grid& grid, QWidget* parent) : Binding(grid), grid_(grid), table_(new Table(parent)) {
    adopt(table_);
    table_->setItemDelegate(new CellLook(table_));
    table_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    const int line = table_->fontMetrics().height() + row_padding;
    constexpr int most_lines = 8;  // the tool tip has the rest
    table_->verticalHeader()->setDefaultSectionSize(line);
    table_->verticalHeader()->setMaximumSectionSize(most_lines * line);
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setTabKeyNavigation(false);
    table_->verticalHeader()->hide();
    table_->selected = [this](int row, int column) {
      post([this, row, column] { select(row + 1, column + 1); });
    };
    connect(table_->horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int, int width) {
              for (int row = 0; is_last(column + 1) && row < table_->rowCount(); ++row)
                table_->fit_height(row, width);
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
    if (!ahead() && table_->selected_row() != grid_.SelectedRow() - 1) {
      table_->setCurrentCell(grid_.SelectedRow() - 1, std::max(0, table_->currentColumn()),
                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    Binding::show();
  }

 protected:
  void released(QPoint) override {}
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange && object == table_) show_rows(1, grid_.Rows());
    return Binding::eventFilter(object, event);
  }

 private:
  // The last column has what is to be read as sentences: it takes the room that is left, and its text stands
  // at the left and wraps.
  bool is_last(int column) const { return column == grid_.Columns(); }

  void select(int row, int column) {
    if (row <= grid_.Rows() && column <= grid_.Columns()) grid_.select_by_user(row, column);
  }

  void show_rows(int first, int last) {
    table_->setColumnCount(grid_.Columns());
    table_->setRowCount(grid_.Rows());
    for (int column = 1; column <= grid_.Columns(); ++column) {
      if (!table_->horizontalHeaderItem(column - 1)) {
        auto* header = new QTableWidgetItem(window::to_qt(grid_.Header(column)));
        if (is_last(column)) header->setTextAlignment(to_qt(forms::Align::Left));
        table_->setHorizontalHeaderItem(column - 1, header);
        // A quarter wider than the program asks, so that eight digits fit.
        if (!is_last(column)) table_->setColumnWidth(column - 1, grid_.ColumnWidth(column) * 5 / 4);
      }
    }
    for (int row = first; row <= std::min(last, grid_.Rows()); ++row) {
      for (int column = 1; column <= grid_.Columns(); ++column) show_cell(row, column);
    }
  }

  void show_cell(int row, int column) {
    QTableWidgetItem* item = table_->item(row - 1, column - 1);
    if (!item) {
      item = new QTableWidgetItem;
      table_->setItem(row - 1, column - 1, item);
    }
    const forms::GridCell& cell = grid_.cell(row, column);
    const QString text = window::to_qt(cell.text);
    if (text != item->text()) {
      item->setText(text);
      if (is_last(column)) table_->fit_height(row - 1, table_->columnWidth(column - 1));
    }
    const QString verdict = column == 1 ? verdict_of(grid_, row) : verdict_of(cell);
    item->setData(Qt::AccessibleTextRole, verdict.isEmpty() ? QVariant() : text + ", " + verdict);
    item->setToolTip(text);
    item->setTextAlignment(to_qt(is_last(column) ? forms::Align::Left : cell.align));
    const auto ground = ground_of(cell);
    item->setBackground(ground ? QBrush(*ground) : QBrush());
    item->setForeground(ground ? QBrush(ink_on(*ground)) : QBrush());
  }

  // The system's colour of a button face is the platform's.
  std::optional<QColor> ground_of(const forms::GridCell& cell) const {
    if (!cell.back) return std::nullopt;
    return *cell.back == forms::clr_button_face ? table_->palette().color(QPalette::Button)
                                                : window::to_qt(*cell.back);
  }

  forms::Grid& grid_;
  Table* table_;
};

}  // namespace

std::unique_ptr<Binding> bind_grid(forms::Control& control, QWidget* parent) {
  return std::make_unique<GridBinding>(dynamic_cast<forms::Grid&>(control), parent);
}

}  // namespace window
