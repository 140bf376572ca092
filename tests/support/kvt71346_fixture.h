// The KVT71346/7 panel on the simulated board.
#pragma once

#include "support/panel_fixture.h"

namespace varzelin::testing {

struct Kvt71346Fixture : ::testing::Test, PanelProgram {
  frmKVT71346& panel = dynamic_cast<frmKVT71346&>(open(frmKVT71346::form_name));

  // Selects a row of the mode list without any traffic.
  void set_mode(int row) {
    panel.Lst71346_Mode.select_quietly(row);
    panel.ModeIndex = static_cast<std::int16_t>(row);
  }
};

}  // namespace varzelin::testing
