// The highest and the lowest raw reading since they were cleared, and one reading every so often.
#pragma once

#include "panels/common/panel_part.h"

namespace varzelin {

class ReadingHistory : public PanelPart {
 public:
  ReadingHistory(Program& owner, RegisterPanel& of_panel, Frame& frame);

  void cmdClearHist_Click();

  // A collection begins.
  void restart();
  // The extremes are of another setting from here on.
  void forget_extremes();
  // A raw reading as its box shows it, and its bytes as read.
  void take(const std::string& raw_text, int low, int high);

 private:
  static constexpr int maximum = 0;  // elements of txtADMax: decimal, and hexadecimal behind it
  static constexpr int minimum = 2;
  static constexpr int sometimes = 4;
  static constexpr int never_filled = 6;

  void show(int box, const std::string& raw_text, int low, int high);
  void empty(int boxes);

  double readings_ = 0;  // since one was shown by its number

 public:
  ControlArray<Label> lblADMax;
  ControlArray<TextBox> txtADMax;
  CommandButton cmdClearHist;
};

}  // namespace varzelin
