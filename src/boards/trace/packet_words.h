// The board's packets in words, as an engineer would say what they do on the bus.
#pragma once

#include <string>

#include "boards/trace/transfers.h"

namespace boards {

// "write r1 = 05 at 88", "read r2 at 88, 2 bytes", "r2 = A0 00 at 88", "not acknowledged at 88", ...
//
// Registers, data and addresses are hexadecimal; the address is the 8-bit write form, whichever form the
// packet has. An answer is told by the request that it belongs to (null: not known, then its bytes are
// told as they are), and with how much of it came when not all did. A packet that the board doesn't know is
// told as what it is.
std::string in_words(const Transfer& transfer, const Transfer* request);

// An answer on the I2C pipe that says that not everything was acknowledged. The transfer itself went well.
bool is_refusal(const Transfer& transfer, const Transfer* request);

}  // namespace boards
