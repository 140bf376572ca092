// The proximity filter of the two-mode panels: it takes the infrared out of a pair of readings, rejects what
// is out of limits or changes too much from one reading to the next, and averages the rest. Numbers in,
// numbers and lamps out. A pass calls correct, judge and take in this order, with a yield of the panel before
// judge and before take, and threshold_lamps behind the last; the first passes of a collection, which only
// prime, end behind correct.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace varzelin {

// What the panel's boxes say; read anew in each pass.
struct ProximityFilterSettings {
  double low_limit;         // of the corrected proximity, in counts; on it is inside
  double high_limit;        // of both readings, in counts; on it is inside
  double maximum_delta;     // part of the last accepted value that a reading may differ by
  double ir_factor;         // K: part of the infrared that is taken off
  double fixed_threshold;   // infrared counts from which the fixed amount is used in its place
  double fixed_correction;  // in counts, added
  double weight;            // of the average so far against a weight of 1 of the reading
  double gross_delta;       // rejections in a row; one more, and the change is taken for a lasting one
};

struct ProximityPair {
  std::int32_t ProxVal;
  std::int32_t IrVal;
  double ProxDiff;
};

// What goes from pass to pass.
struct ProximityFilterState {
  double ProxAdjPrev = 0;  // last accepted, averaged
  double ProxPrev = 0;
  double IrPrev = 0;
  std::int32_t ProxOverCount = 0;  // rejections in a row for the change alone
  bool ProxAdjStarted = false;     // a reading has been accepted

  // A collection starts. The averages stay, and count again from its first accepted reading on.
  void restart() {
    ProxOverCount = 0;
    ProxAdjStarted = false;
  }
};

// The panel's lamps by their index.
namespace filter_lamp {
inline constexpr int high_limit = 6;
inline constexpr int low_limit = 7;
inline constexpr int formula = 13;  // correction in use
inline constexpr int delta = 14;
inline constexpr int base_accepted = 15;
inline constexpr int below = 16;  // the off threshold
inline constexpr int between = 17;
inline constexpr int above = 18;  // the on threshold
inline constexpr int fixed = 19;  // correction in use
}  // namespace filter_lamp

enum class LampAction { off, green, red, alternate, hide, show };
struct LampChange {
  int lamp;
  LampAction action;
  friend bool operator==(const LampChange&, const LampChange&) = default;
};
// In the order in which the panel makes them.
using LampChanges = std::vector<LampChange>;

struct Correction {
  double ProxAdj;
  LampChanges lamps;
};
Correction correct(const ProximityPair& pair, const ProximityFilterSettings& settings);

struct Judgement {
  bool ProxReject = false;
  // What the box of the largest change shows. None: it stays, the change wasn't tested.
  std::optional<std::string> max_change = std::nullopt;
  // ProxOverCount is to be shown: it was counted, or set back.
  bool over_count_shown = false;
  LampChanges lamps = {};
};
// A change is tested only where the shown largest change is above 100 counts.
Judgement judge(ProximityFilterState& state, const ProximityPair& pair, double ProxAdj,
                const ProximityFilterSettings& settings);

struct ProximityAverages {
  double ProxAdj;
  std::int32_t ProxVal;
  std::int32_t IrVal;
};
struct ProximitySample {
  // None beyond 32 bits: the panel's sample stays what it was.
  std::optional<std::int32_t> sample;
  // To be shown; none for a rejected and for the first accepted reading.
  std::optional<ProximityAverages> averages = std::nullopt;
};
// A rejected reading brings the last accepted one again. An average that can't be worked out - its weights
// make 0, or it is beyond 32 bits - leaves the reading as it is.
ProximitySample take(ProximityFilterState& state, const ProximityPair& pair, double ProxAdj, bool ProxReject,
                     const ProximityFilterSettings& settings);

// Where the reading stands to the thresholds. On a threshold no lamp changes.
LampChanges threshold_lamps(double reading, double on_threshold, double off_threshold);

}  // namespace varzelin
