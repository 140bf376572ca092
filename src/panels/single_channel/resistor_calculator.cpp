#include "panels/single_channel/resistor_calculator.h"

#include "forms/errors.h"
#include "forms/text.h"

namespace varzelin {
namespace {

constexpr double reference_khz = 655;

double ratio_to_reference(std::int32_t ohms) {
  return static_cast<double>(reference_ohms) / ohms;
}

}  // namespace

double through_text(double value) {
  return forms::Val(forms::Str(value));
}

std::string range_caption(std::size_t range, std::int32_t ohms) {
  return forms::Format(ratio_to_reference(ohms) * forms::element(range_lux, range), "######");
}

double lux_scale(double full_scale_lux, std::int32_t ohms, std::int32_t full_count) {
  return full_scale_lux * reference_ohms / ohms * full_count / full_count;
}

Calculation calculate(std::int32_t ohms, std::int32_t full_count, std::int32_t full_scale_lux) {
  const double oscillator_khz = ratio_to_reference(ohms) * reference_khz;
  const double period_ms = 1 / oscillator_khz;
  Calculation result{.clock_counts = forms::Format(full_count, "####"),
                     .oscillator_khz = forms::Format(oscillator_khz, "###.000"),
                     .period_ms = forms::Format(period_ms, "#.000000"),
                     .integration_ms = forms::Format(full_count * period_ms, "###.000"),
                     .full_scale_lux = forms::Format(full_scale_lux, "######"),
                     .lux_factor = std::nullopt};
  if (full_count != 0) result.lux_factor = through_text(static_cast<double>(full_scale_lux) / full_count);
  return result;
}

std::string lux_text(std::int32_t count, double lux_factor) {
  return forms::Format(through_text(count * lux_factor), "#######.00");
}

}  // namespace varzelin
