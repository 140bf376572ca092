#include "panels/two_mode/proximity_filter.h"

#include <cmath>

#include "forms/errors.h"
#include "forms/text.h"

namespace varzelin {
namespace {

using enum LampAction;

// Smaller changes than these counts are never too large.
constexpr double least_tested_change = 100;

// None where the platform would overflow.
std::optional<std::int32_t> whole(double value) {
  std::optional<std::int32_t> number;
  forms::resume_next([&] { number = forms::CLng(value); });
  return number;
}

double average(double previous, double weight, double value) {
  if (weight + 1 == 0) return value;
  return (previous * weight + value) / (weight + 1);
}

bool limits_reject(Judgement& judgement, const ProximityPair& pair, double ProxAdj,
                   const ProximityFilterSettings& settings) {
  const bool below_high = pair.ProxVal <= settings.high_limit && pair.IrVal <= settings.high_limit;
  const bool above_low = ProxAdj >= settings.low_limit;
  judgement.lamps.push_back({filter_lamp::high_limit, below_high ? green : red});
  judgement.lamps.push_back({filter_lamp::low_limit, above_low ? green : red});
  return !(below_high && above_low);
}

// By the shown, rounded number, so that 100.4 counts are 100.
bool change_rejects(Judgement& judgement, ProximityFilterState& state, double ProxAdj,
                    const ProximityFilterSettings& settings) {
  const double most = state.ProxAdjPrev * settings.maximum_delta;
  judgement.max_change = forms::Format(most, "######.");
  if (forms::Val(*judgement.max_change) <= least_tested_change) return false;
  judgement.lamps.push_back({filter_lamp::delta, green});
  judgement.over_count_shown = true;
  if (most >= std::abs(state.ProxAdjPrev - ProxAdj)) {
    state.ProxOverCount = 0;
    judgement.lamps.push_back({filter_lamp::delta, hide});
    judgement.lamps.push_back({filter_lamp::delta, green});
    return false;
  }
  ++state.ProxOverCount;
  judgement.lamps.push_back({filter_lamp::delta, red});
  judgement.lamps.push_back({filter_lamp::delta, show});
  return true;
}

}  // namespace

Correction correct(const ProximityPair& pair, const ProximityFilterSettings& settings) {
  if (pair.IrVal < settings.fixed_threshold) {
    return {pair.ProxDiff - pair.IrVal * settings.ir_factor,
            {{filter_lamp::formula, green}, {filter_lamp::fixed, off}}};
  }
  return {pair.ProxDiff + settings.fixed_correction,
          {{filter_lamp::fixed, green}, {filter_lamp::formula, off}}};
}

Judgement judge(ProximityFilterState& state, const ProximityPair& pair, double ProxAdj,
                const ProximityFilterSettings& settings) {
  Judgement judgement;
  judgement.ProxReject = limits_reject(judgement, pair, ProxAdj, settings);
  if (state.ProxAdjStarted && !judgement.ProxReject) {
    judgement.ProxReject = change_rejects(judgement, state, ProxAdj, settings);
  }
  if (state.ProxOverCount > settings.gross_delta) {
    state.ProxAdjPrev = ProxAdj;
    state.ProxOverCount = 0;
    judgement.over_count_shown = true;
    judgement.lamps.push_back({filter_lamp::base_accepted, alternate});
  }
  return judgement;
}

ProximitySample take(ProximityFilterState& state, const ProximityPair& pair, double ProxAdj, bool ProxReject,
                     const ProximityFilterSettings& settings) {
  if (ProxReject) return {whole(state.ProxAdjPrev)};
  ProximitySample sample;
  ProximityAverages accepted{ProxAdj, pair.ProxVal, pair.IrVal};
  if (state.ProxAdjStarted) {
    const auto averaged = [&](double previous, std::int32_t value) {
      return whole(average(previous, settings.weight, value)).value_or(value);
    };
    accepted = {average(state.ProxAdjPrev, settings.weight, ProxAdj), averaged(state.ProxPrev, pair.ProxVal),
                averaged(state.IrPrev, pair.IrVal)};
    sample.averages = accepted;
  }
  state = {accepted.ProxAdj, static_cast<double>(accepted.ProxVal), static_cast<double>(accepted.IrVal),
           state.ProxOverCount, true};
  sample.sample = whole(accepted.ProxAdj);
  return sample;
}

LampChanges threshold_lamps(double reading, double on_threshold, double off_threshold) {
  using namespace filter_lamp;
  LampChanges lamps;
  const auto only = [&lamps](int beats, int one, int other) {
    for (const int dark : {one, other}) lamps.push_back({dark, off});
    lamps.push_back({beats, alternate});
  };
  // With the thresholds the wrong way round a reading can be above the one and below the other.
  if (reading > on_threshold) only(above, below, between);
  if (reading < off_threshold) only(below, between, above);
  if (reading > off_threshold && reading < on_threshold) only(between, below, above);
  return lamps;
}

}  // namespace varzelin
