// What differs among the sensor panels in the handlers that they share: one record a model.
#pragma once

#include <cstdint>
#include <vector>

namespace varzelin {

struct DeviceRow {
  const char* text;
  std::uint8_t write_address;  // what I2C_WrAdr becomes when the row is chosen
};

struct PanelModel {
  const char* form_name;
  const char* title;
  const char* interval;   // txtInterval at load, milliseconds
  const char* scale;      // txtScale at load, reading units
  double scale_addition;  // Scale_Max is the whole part of txtScale's value plus this
  std::vector<DeviceRow> devices;
  // The real-time loop wakes this long before a sample is due (milliseconds), and sleeps up to
  // `sleep_margin` before it.
  int wake_margin;
  int sleep_margin;
  // Sleep of a pass once the trace fills the chart, milliseconds.
  int full_trace_sleep;
  // Panels that Exit unloads beside the shell's own forms.
  std::vector<const char*> unloaded_panels;
};

}  // namespace varzelin
