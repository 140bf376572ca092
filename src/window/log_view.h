// A long text for reading: it costs what is in sight, whatever its length.
#pragma once

#include <QAbstractScrollArea>
#include <QStringList>
#include <cstdint>
#include <string>
#include <vector>

namespace window {

// Lines are selected whole, by mouse or Ctrl+A, and copied by Ctrl+C or the menu of the right button.
class LogView final : public QAbstractScrollArea {
 public:
  // The text outlives the view. Its lines end with CR LF or LF.
  LogView(const std::string& text, QWidget* parent);

  // The text changed: shows its end. Costs what was added, or the whole text where it didn't only grow.
  void take_text();
  int line_count() const { return static_cast<int>(starts_.size()); }
  QString line(int number) const;  // from 0; empty beyond the text
  QStringList lines_in_sight() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  bool only_grew() const;
  void find_lines(std::size_t from);
  void fit_bars();
  int lines_that_fit() const;
  int line_at(int y) const;
  void select_all();
  void copy() const;

  const std::string& text_;
  std::vector<std::uint32_t> starts_{0};  // where lines begin; the last one has no end yet
  std::size_t known_length_ = 0;
  std::string known_end_;
  int widest_ = 0;          // line that was painted since the text began anew, pixels
  int selected_from_ = -1;  // lines; -1: none
  int selected_to_ = -1;
};

}  // namespace window
