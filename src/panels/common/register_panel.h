// A panel over a sensor with registers: the image of what the sensor is to hold, the boxes that show and
// edit it, the writes, the read-back and what compares it, the communications test.
//
// Option handlers change fields of the image; the write takes the byte from the box, which the user may
// have edited.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "panels/common/sensor_panel.h"
#include "registers/register_map.h"

namespace varzelin {

// How the write of one register goes, from its box to the sensor.
struct RegisterWrite {
  enum class Disconnect { behind_read_back, before_read_back, never };

  Flag Store::*pending;  // cleared once it was written
  Disconnect disconnect = Disconnect::behind_read_back;
  int yields_before = 0;
  bool only_with_events = false;  // does nothing while EventsEnabled is false
};

class RegisterPanel : public SensorPanel {
 public:
  // Which boxes and lamps there are.
  struct Boxes {
    std::vector<int> written;
    std::vector<int> read;
    std::vector<int> lamps;
    // Some of the lamps stand in a frame.
    std::vector<int> framed_lamps = {};
    forms::Control* lamp_frame = nullptr;
  };
  // The writes are those of registers 0, 1, ... and outlive the panel.
  RegisterPanel(Program& owner, const PanelModel& panel_model, std::span<const RegisterWrite> writes,
                const Boxes& boxes);

  // Reads the written registers back, or leaves it to the loop that runs.
  virtual void cmdRead_All_Click();
  virtual void Read_Registers() = 0;

  // --- for the family's handlers and parts ---

  // A field of the image, and the register's box.
  void set_field(const registers::Field& field, int value);
  int field(const registers::Field& field) const { return field.of(image(field.register_number)); }
  std::uint8_t image(int register_number) const { return forms::element(store.RegImage, register_number); }
  void show_register(int register_number);

  // What an option handler ends with: the pending flags while a loop runs, else the writes in this order.
  struct Commit {
    PendingFlags pending;
    std::initializer_list<int> registers;
  };
  void commit(const Commit& change);
  // Writes a register from its box and reads back.
  void write_register(int register_number);

  // A read-back byte in its box.
  void show_read_back(int register_number, std::uint8_t value);
  // Turns the lamp red when box and read-back differ as texts.
  void compare_read_back(int register_number, Shape& lamp_of_it);

 protected:
  // The low byte of a register's box.
  std::uint8_t byte_of_box(int register_number) const;
  virtual Shape& write_lamp(int register_number) { return ShpInd(register_number); }

  // Writes register 0, or leaves it to the loop, and shows whether the sensor answered.
  void test_communications();
  virtual void exchange_for_test() { write_register(0); }
  virtual bool sensor_answered() = 0;

  // Register 0 and 1 as their boxes show them.
  std::string data_file_header() override;

 private:
  const std::span<const RegisterWrite> writes_;

 public:
  ControlArray<TextBox> txtRegHex;
  ControlArray<TextBox> txtRegRd;
  ControlArray<Shape> ShpInd;
};

}  // namespace varzelin
