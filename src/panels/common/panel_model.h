// What differs among the sensor panels in the handlers that they share: one record a model.
#pragma once

#include <cstdint>
#include <vector>

namespace varzelin {

struct DeviceRow {
  const char* text;
  std::uint8_t write_address;  // what I2C_WrAdr becomes when the row is chosen
};

// Which form of the sensor's address a write carries.
enum class AddressForm { write, read };

// The unchecked transfers, or the checked ones: those test the session and the device before, log what
// fails, and a failed read stops the timed loop as well.
enum class Transfers { fast, checked };

// What becomes of the session behind the last sample of a timed run.
enum class SessionEnd { disconnect, connect_again, leave };

// The button that leaves the program.
struct ExitButton {
  const char* name = "Command4";
  bool stays_in_loops = false;
};

struct PanelModel {
  const char* form_name;
  const char* title;
  const char* interval;   // txtInterval at load, milliseconds
  const char* scale;      // txtScale at load, reading units
  double scale_addition;  // Scale_Max is the whole part of txtScale's value plus this
  std::vector<DeviceRow> devices;
  const char* sample_caption = "Trigger / Read Light Sensor with Selected Delay Time";
  // The real-time loop wakes this long before a sample is due (milliseconds), and sleeps up to
  // `sleep_margin` before it.
  int wake_margin = 4;
  int sleep_margin = 3;
  int full_trace_sleep = 1;  // of a pass once the trace fills the chart, milliseconds
  int shown_reply_bytes = 3;
  ExitButton exit_button = {};
  // Panels that Exit unloads beside the shell's own forms.
  std::vector<const char*> unloaded_panels = {};
  AddressForm write_address = AddressForm::write;
  Transfers transfers = Transfers::fast;
  // The loops enable and disable the buttons that another panel's show and hide.
  bool buttons_stay = false;
  bool heartbeat = true;  // shpSample beats while a timed run goes
  // The timed loop holds the session. Otherwise its transfers open and close it by the connection rule.
  bool sampling_holds_session = true;
  SessionEnd sampling_session_end = SessionEnd::disconnect;
  // Yields at the end of a collection before the session is closed; 0: it is closed first of all.
  int yields_before_disconnect = 0;
  // Behind the close of a loop's session. Until they are over the stop is in force: options wait.
  int yields_when_closed = 0;
  int yields_at_end = 1;          // of a collection, before the panel is as it was
  bool integration_timer = true;  // Tmr_Integration has a handler
};

}  // namespace varzelin
