#include "panels/multi_function/reading_history.h"

namespace varzelin {
namespace {

constexpr int boxes_of_history = 8;
constexpr std::int32_t below_all = -9999999;
constexpr std::int32_t above_all = 9999999;
// The label says 25: the reading behind so many is shown.
constexpr double skipped_readings = 25;

}  // namespace

ReadingHistory::ReadingHistory(Program& owner, RegisterPanel& of_panel, Frame& frame)
    : PanelPart(owner, of_panel),
      lblADMax(panel, "lblADMax",
               {{maximum, {.Caption = "AD Maximum:         Dec      Hex", .Container = &frame}},
                {minimum, {.Caption = "AD Minimum:         Dec      Hex", .Container = &frame}},
                {sometimes, {.Caption = "Every 25 Rdgs:    Dec      Hex", .Container = &frame}},
                {never_filled, {.Caption = "Intr High Low:       Dec      Hex", .Container = &frame}}}),
      txtADMax(panel, "txtADMax",
               forms::elements(boxes_of_history, [&frame](int) { return Design{.Container = &frame}; })),
      cmdClearHist(panel, "cmdClearHist", {.Caption = "Clear", .Container = &frame}) {
  on(cmdClearHist, Event::Click, &ReadingHistory::cmdClearHist_Click);
}

void ReadingHistory::cmdClearHist_Click() {
  store.AdMax = below_all;
  store.AdMin = above_all;
  empty(never_filled);
}

void ReadingHistory::restart() {
  cmdClearHist_Click();
  readings_ = 0;
}

void ReadingHistory::forget_extremes() {
  store.AdMax = below_all;
  store.AdMin = above_all;
  empty(sometimes);
}

void ReadingHistory::empty(int boxes) {
  for (int box = 0; box < boxes; ++box) txtADMax(box).Text = "";
}

void ReadingHistory::take(const std::string& raw_text, int low, int high) {
  const std::int32_t raw = forms::CLng(forms::Val(raw_text));
  if (raw > store.AdMax) {
    store.AdMax = raw;
    show(maximum, raw_text, low, high);
  }
  if (raw < store.AdMin) {
    store.AdMin = raw;
    show(minimum, raw_text, low, high);
  }
  if (++readings_ > skipped_readings) {
    readings_ = 0;
    show(sometimes, raw_text, low, high);
  }
}

void ReadingHistory::show(int box, const std::string& raw_text, int low, int high) {
  txtADMax(box).Text = raw_text;
  std::string hex = forms::Hex(high) + forms::Hex2(low);
  if (hex.size() == 3) hex.insert(0, "0");
  txtADMax(box + 1).Text = hex;
}

}  // namespace varzelin
