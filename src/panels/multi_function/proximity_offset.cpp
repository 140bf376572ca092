#include "panels/multi_function/proximity_offset.h"

#include <array>

namespace varzelin {
namespace {

struct Offset {
  const char* label;
  const char* counts;
};
constexpr std::array<Offset, 8> offsets{{{"100mA / DC", "700"},
                                         {"100mA /  327kHz", "330"},
                                         {"50mA / DC", "320"},
                                         {"50mA /  327kHz", "150"},
                                         {"25mA / DC", "140"},
                                         {"25mA /  327kHz", "60"},
                                         {"12.5mA / DC", "60"},
                                         {"12.5mA / 327kHz", "30"}}};

const Offset& offset(int index) {
  return offsets[static_cast<std::size_t>(index)];
}

}  // namespace

frmProxOff::frmProxOff(Program& owner)
    : ProgramForm(owner, form_name, "Proximity Offset Subtraction Constants"),
      LblOffsetLables(
          *this, "LblOffsetLables",
          forms::elements(
              8, [this](int i) { return Design{.Caption = offset(i).label, .Container = &FrmOffsets}; })),
      txtProxOff(*this, "txtProxOff", forms::elements(8, [this](int i) {
        return Design{.Text = offset(i).counts, .Container = &FrmOffsets};
      })) {}

}  // namespace varzelin
