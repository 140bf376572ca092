// The script's rows as they are read: comments from the left, in as many lines as they need.
#include <QHeaderView>
#include <QTableWidget>

#include "script/script_panel.h"
#include "support/panel_window.h"

namespace varzelin::testing {
namespace {

const char* const long_comment =
    "# Reads the identification back, which tells the sensor from those of its family that answer at the "
    "same "
    "address; a sensor that has just been powered up answers with zeros until its first conversion is "
    "through.";

struct WindowScriptGrid : PanelWindow {
  void SetUp() override {
    PanelWindow::SetUp();
    form = "frmScriptOps";
    show(form);
    grid().set_rows(3);
    widen_to(900);
  }
  frmScriptOps& panel() { return static_cast<frmScriptOps&>(*program.forms.loaded(form)); }
  forms::Grid& grid() { return panel().vbalGrid1; }
  QTableWidget& table() { return widget<QTableWidget>("vbalGrid1"); }
  void widen_to(int width) {
    window_of(form).resize(width, 700);
    turn();
    settle();
    turn();
  }
  void write(int row, int column, const char* text) {
    grid().set_align(row, column, forms::Align::Center);
    grid().set_text(row, column, text);
    turn();
  }
  int line_height() { return table().verticalHeader()->defaultSectionSize(); }
  // Of the comment of this row, in its column's width.
  int text_height(int row) {
    const int width = table().columnWidth(frmScriptOps::comment_column - 1);
    const QString text = table().item(row - 1, frmScriptOps::comment_column - 1)->text();
    return table().fontMetrics().boundingRect(QRect(0, 0, width, 10000), Qt::TextWordWrap, text).height();
  }
  int row_height(int row) { return table().rowHeight(row - 1); }
};

TEST_F(WindowScriptGrid, CommentsStandAtTheLeftBelowTheirHeader) {
  write(1, frmScriptOps::wr_column, "8C");
  write(1, frmScriptOps::comment_column, "# gain");
  const int comment = frmScriptOps::comment_column - 1;
  EXPECT_EQ(table().item(0, comment)->textAlignment(), Qt::AlignLeft | Qt::AlignVCenter);
  EXPECT_EQ(table().horizontalHeaderItem(comment)->textAlignment(), Qt::AlignLeft | Qt::AlignVCenter);
  EXPECT_EQ(table().item(0, frmScriptOps::wr_column - 1)->textAlignment(), Qt::AlignCenter);
}

TEST_F(WindowScriptGrid, AWindowWithTheRoomShowsTwentyLines) {
  EXPECT_GE(table().sizeHint().height(), 20 * line_height());
  const int last = table().horizontalHeader()->sectionPosition(frmScriptOps::comment_column - 1);
  EXPECT_GE(table().sizeHint().width() - last, table().fontMetrics().horizontalAdvance(QString(40, 'n')));
}

TEST_F(WindowScriptGrid, ARowGrowsWithItsCommentAlone) {
  write(1, frmScriptOps::comment_column, "# short");
  write(2, frmScriptOps::comment_column, long_comment);
  write(3, frmScriptOps::operation_column, long_comment);
  EXPECT_EQ(row_height(1), line_height());
  EXPECT_GT(text_height(2), 2 * table().fontMetrics().height());
  const int padding = line_height() - table().fontMetrics().height();
  EXPECT_EQ(row_height(2), text_height(2) + padding);
  EXPECT_EQ(row_height(3), line_height());
  write(2, frmScriptOps::comment_column, "# short");
  EXPECT_EQ(row_height(2), line_height());
}

TEST_F(WindowScriptGrid, ARowLeavesRoomForItsNeighbours) {
  write(2, frmScriptOps::comment_column, QString(long_comment).repeated(20).toUtf8());
  EXPECT_LT(row_height(2), table().viewport()->height() / 2);
}

TEST_F(WindowScriptGrid, AWiderWindowNeedsFewerLines) {
  write(2, frmScriptOps::comment_column, long_comment);
  const int narrow = row_height(2);
  widen_to(1300);
  EXPECT_LT(row_height(2), narrow);
  EXPECT_GE(row_height(2), text_height(2));
  widen_to(900);
  EXPECT_EQ(row_height(2), narrow);
}

TEST_F(WindowScriptGrid, TheCommentAloneIsPaintedInManyLines) {
  write(2, frmScriptOps::operation_column, long_comment);
  write(2, frmScriptOps::comment_column, long_comment);
  ASSERT_GT(row_height(2), 3 * line_height());
  const auto ink_below_the_middle_line = [this](int column) {
    QRect part = table().visualItemRect(table().item(1, column - 1)).adjusted(2, 0, -2, -4);
    part.setTop(part.center().y() + line_height());
    const QImage picture = table().viewport()->grab(part).toImage();
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 0; y < picture.height(); ++y) {
        if (picture.pixelColor(x, y).lightness() < 100) return true;
      }
    }
    return false;
  };
  EXPECT_TRUE(ink_below_the_middle_line(frmScriptOps::comment_column));
  EXPECT_FALSE(ink_below_the_middle_line(frmScriptOps::operation_column));
}

}  // namespace
}  // namespace varzelin::testing
