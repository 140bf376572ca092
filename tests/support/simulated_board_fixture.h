// A simulated board on a virtual clock, and a host that talks to it through the driver interface.
#pragma once

#include "boards/simulated/simulated_board.h"
#include "support/board_host.h"

class SimulatedBoardTest : public BoardHost {
 protected:
  forms::VirtualClock clock;
  boards::SimulatedBoard board{clock};
  bool accept = true;

  boards::EventTable events() {
    return {[this](boards::Handle handle, const boards::DeviceInfo&) {
              device = handle;
              ++attaches;
              return accept;
            },
            [this](boards::Handle handle) { detached.push_back(handle); }};
  }

  void connect() {
    ASSERT_EQ(board.WDU_VB_Init(session, match, events()), boards::success);
    board.deliver_notifications();
  }

  boards::Driver& board_driver() override { return board; }

  // Milliseconds of the clock that an action takes.
  template <class Action>
  double time_of(Action&& action) {
    const double before = clock.milliseconds();
    action();
    return clock.milliseconds() - before;
  }
};

// The same with the session open and a device attached.
class ConnectedBoardTest : public SimulatedBoardTest {
 protected:
  void SetUp() override { connect(); }
};
