// What differs among the panels over a sensor with one converter for light, infrared and proximity: a record
// a model, in its family's table.
#pragma once

#include <array>
#include <vector>

#include "panels/common/panel_model.h"
#include "panels/common/register_panel.h"
#include "registers/register_map.h"

namespace varzelin {

// Where the options of the converter stand in the sensor's registers.
struct ConverterFields {
  registers::Field operation;
  registers::Field external_timing;
  registers::Field time_base;
  registers::Field scheme;
  registers::Field modulation;
  registers::Field current;
  registers::Field width;
  registers::Field range;
  // Values of the fields by position of their options.
  std::array<int, 4> modulation_values;
  std::array<int, 4> current_values;
};

struct Option {
  int position;
  const char* caption;
};

// How proximity and infrared are measured as a pair.
struct PairRules {
  bool stops_at_failure;  // what was not read then stays as it was
  bool powers_down;       // the sensor rests behind a pair
};

// A record of a model, which outlives its panels.
struct ConverterModel {
  PanelModel panel;
  const ConverterFields* fields;
  std::vector<RegisterWrite> writes;
  RegisterPanel::Boxes boxes;
  std::vector<Option> measurements;
  std::vector<Option> modulations;
  std::vector<Option> modes;  // of OptMode
  const char* command_caption;
  const char* control_caption;
  int syncs;  // under external timing: waits with a sync command behind them
  // The measurement that a collection chooses when there is none.
  int collected_measurement;
  std::array<int, 4> gain_multipliers = {1, 1, 1, 1};  // by position of the range
  bool reads_by_gain = true;                           // a reading is the count times GainMultiplier
  bool range_modes_exclude = false;                    // an automatic mode turns the other one off
  PairRules pair;
};

}  // namespace varzelin
