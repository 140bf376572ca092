#include "window/results.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "forms/control.h"

namespace window {
namespace {

// A box that waits for a click of its own is none of them: a user gets to it to act.
struct Box {
  std::string_view name;
  Result result;
};
constexpr std::array boxes{
    // sensor panels
    Box{"txtI2CAddr", Result::shown},
    Box{"txtI2cXmitAdr", Result::shown},
    Box{"txtModeByte", Result::read_back},
    Box{"txtReading", Result::shown},
    Box{"txtReading2", Result::shown},
    Box{"txtReading3", Result::shown},
    Box{"txtTime1", Result::shown},
    Box{"txtTime3", Result::shown},
    Box{"txtSampleByte", Result::read_back},
    Box{"txtADHex", Result::read_back},
    Box{"txtADDec", Result::read_back},
    Box{"txtICycHex", Result::shown},
    Box{"txtICYCDec", Result::shown},
    Box{"txtRegRd", Result::read_back},
    Box{"txtADCRaw", Result::read_back},
    Box{"txtProx_IR", Result::read_back},
    Box{"txtADMax", Result::read_back},
    Box{"txtPROXGross", Result::shown},
    Box{"txtProxADJ", Result::shown},
    Box{"txtMaxChange", Result::shown},
    // the calculator of the external resistor
    Box{"txtADC_Reading", Result::shown},
    Box{"txtCaclulated_Lux", Result::shown},
    Box{"txtTimeBaseReading", Result::shown},
    Box{"txtREXT", Result::shown},
    Box{"txtRREF", Result::shown},
    Box{"txtFOSC_Freq", Result::shown},
    Box{"txtFoscPeriod", Result::shown},
    Box{"txtClockCounts2", Result::shown},
    Box{"txtCalcITIme", Result::shown},
    Box{"txtFSR", Result::shown},
    Box{"txtFSR2", Result::shown},
    Box{"txt2N", Result::shown},
    Box{"txtLFactor", Result::shown},
    // workbench and ports
    Box{"txthDriver", Result::shown},
    Box{"txtActualWrtAddress", Result::shown},
    Box{"txtActualReadAddress", Result::shown},
    Box{"txtTstReg", Result::shown},
    Box{"txtReadByte", Result::read_back},
    Box{"txtPCHex", Result::read_back},
    Box{"txtPCHexData", Result::read_back},
    // scripts
    Box{"txtScriptLine1", Result::shown},
    Box{"txtTotLines", Result::shown},
    Box{"txttotReads", Result::shown},
    Box{"txtRdPass", Result::read_back},
    Box{"txtRdFails", Result::read_back},
    Box{"txtRunning", Result::shown},
    Box{"txtLoopCount", Result::shown},
};

}  // namespace

Result result_of(const forms::Control& box) {
  const auto* found = std::ranges::find(boxes, box.name(), &Box::name);
  return found == boxes.end() ? Result::none : found->result;
}

}  // namespace window
