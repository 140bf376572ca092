#include "boards/missing_driver.h"

namespace boards {

std::string MissingDriver::VB_Stat2Str(Status status) const {
  return status == success ? "Success" : "No driver is present for the evaluation board";
}

}  // namespace boards
