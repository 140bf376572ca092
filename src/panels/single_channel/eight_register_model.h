// The sensors with eight registers, KVT71344/5 and KVT71356: a record a model of everything in which their
// panels differ.
#pragma once

#include <array>
#include <initializer_list>
#include <span>

#include "panels/common/panel_model.h"
#include "panels/common/register_panel.h"
#include "panels/single_channel/limit_byte.h"

namespace varzelin {

struct EightRegisterModel {
  PanelModel panel;
  std::array<RegisterWrite, 4> writes;  // R0 to R3
  std::array<std::uint8_t, 4> image_at_load;
  // The image goes to the sensor at the end of the load.
  bool writes_at_load = false;

  // --- captions ---
  std::initializer_list<const char*> register_labels;
  std::array<const char*, 6> buttons;  // writes of R0 to R3, read of R0 to R3, read of R4 to R7
  std::initializer_list<const char*> commands;
  std::initializer_list<const char*> resolutions;
  std::initializer_list<const char*> ranges;
  std::initializer_list<const char*> diodes;  // rows of LstMode2

  std::int32_t limit_maximum;  // of both interrupt limits

  // The device row under which the sensor has the light count alone; -1: none.
  int light_count_row = -1;
  // The sensor has one measurement: the options of the measurement and of the mode follow its command bits.
  bool one_measurement = false;
  // A count whose top byte is above MsbLimit is taken as its low byte alone, and each resolution has a limit.
  bool limits_top_byte = false;
  // Reset goes by the box that powers the device down. Otherwise by the reset box, with a second's waits.
  bool resets_by_power_down = true;
  // A collection with the sensor in reset or powered down resets it first. Otherwise it is refused.
  bool resets_before_collection = true;

  // --- the session ---
  // Trigger and reading keep the connection rule by themselves.
  bool measures_by_rule = false;
  // A timed run opens the session before it changes the panel.
  bool connects_before_sampling = false;
  // The read-back opens the session before it asks whether a loop runs.
  bool read_back_connects_first = false;
  // "Stop Sampling" closes a session that is not held.
  bool stop_disconnects = false;
  // The clear-interrupt command closes the session before the read-back.
  bool clear_disconnects_first = true;
  // The interrupt pin is sampled by a write of the GPIO panel. Otherwise by a packet that only asks.
  bool pin_by_gpio_panel = false;
  // The timer polls the sensor's interrupt flag. Otherwise it only has its caption.
  bool timer_polls = false;
};

// All models, in the order of the start list.
std::span<const EightRegisterModel> eight_register_models();

}  // namespace varzelin
