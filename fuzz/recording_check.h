// What holds for any bytes as a board recording: it is refused with a reason, or plays to a program that asks
// whatever it asks, and tells a difference at most.
#pragma once

#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

#include "boards/recording/replaying_board.h"

namespace varzelin::fuzz {

inline void play(boards::ReplayingBoard& board) {
  boards::Handle session = 0;
  boards::Handle device = 0;
  boards::DeviceInfo info;
  board.model_chosen("KVT71346/7");
  board.WDU_VB_Init(session, {0x7A53, 0x2005},
                    {[&](boards::Handle handle, const boards::DeviceInfo& found) {
                       device = handle;
                       boards::active_setting(found);
                       return board.WDU_SetInterface(handle, 0, 0) == boards::success;
                     },
                     [&](boards::Handle) { device = 0; }});
  board.deliver_notifications();
  if (board.WDU_GetDeviceInfo(device, info) == boards::success) boards::active_setting(info);
  std::uint8_t request[] = {2, 0x89};
  std::uint8_t reply[3];
  for (int i = 0; i < 3; ++i) {
    std::size_t sent = 0;
    std::size_t received = 0;
    board.WDU_Transfer(device, boards::pipe_i2c_out, false, request, sent);
    board.WDU_Transfer(device, boards::pipe_i2c_in, true, reply, received);
    if (sent > sizeof request || received > sizeof reply) std::abort();
    board.deliver_notifications();
  }
  board.WDU_ResetPipe(device, boards::pipe_i2c_in);
  board.WDU_ResetDevice(device);
  board.CloseHandle(session);
  board.WDU_VB_Uninit(session);
  board.end();
  if (!board.difference() && !board.at_end()) std::abort();
}

// True when the bytes are a recording.
inline bool check_recording(const std::string& bytes) {
  forms::VirtualClock clock;
  std::istringstream in(bytes);
  try {
    boards::ReplayingBoard board(in, clock);
    play(board);
    return true;
  } catch (const std::runtime_error&) {
    return false;
  }
}

}  // namespace varzelin::fuzz
