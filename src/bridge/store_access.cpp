#include "bridge/store_access.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <type_traits>

namespace varzelin {
namespace {

template <class T>
StoreValue to_value(const T& variable) {
  if constexpr (std::is_same_v<T, std::string>) {
    return variable;
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<double>(variable);
  } else {
    return static_cast<std::int64_t>(variable);
  }
}

// The store's integers are all exact as a double, so a number is held against the bounds of the type
// itself before it is converted. A NaN is no whole number, and an infinity is beyond every bound.
template <class T>
bool from_value(T& variable, const StoreValue& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    const auto* text = std::get_if<std::string>(&value);
    if (text) variable = *text;
    return text != nullptr;
  } else {
    if (std::holds_alternative<std::string>(value)) return false;
    const auto* whole = std::get_if<std::int64_t>(&value);
    const double number = whole ? static_cast<double>(*whole) : std::get<double>(value);
    if constexpr (std::is_integral_v<T>) {
      static_assert(sizeof(T) <= sizeof(std::int32_t));
      using Limits = std::numeric_limits<T>;
      if (number != std::floor(number) || number < Limits::min() || number > Limits::max()) return false;
    }
    variable = static_cast<T>(number);
    return true;
  }
}

// How many indices a variable of the type takes.
template <class T>
constexpr int dimensions_of = 0;
template <class T>
constexpr int dimensions_of<std::vector<T>> = 1;
template <class T, std::size_t Size>
constexpr int dimensions_of<std::array<T, Size>> = 1 + dimensions_of<T>;

template <class T>
std::size_t size_of(const T& variable, int dimension) {
  if constexpr (dimensions_of < T >> 0) {
    if (dimension == 0) return variable.size();
  }
  if constexpr (dimensions_of < T >> 1) return size_of(variable[0], dimension - 1);
  return 0;
}

// What the indices choose. Of Dev_Ctx, the one record, it is the device.
template <class Variable>
auto& element(Variable& variable, std::size_t i, std::size_t j) {
  using T = std::remove_const_t<Variable>;
  if constexpr (std::is_same_v<T, DevCtx>) {
    return variable.device;
  } else if constexpr (dimensions_of<T> == 0) {
    return variable;
  } else {
    return element(variable[i], j, 0);
  }
}

template <auto Member>
constexpr StoreVariable store_variable(std::string_view name) {
  using T = std::remove_cvref_t<decltype(std::declval<Store&>().*Member)>;
  return {
      name, dimensions_of<T>,
      [](const Store& store, int dimension) { return size_of(store.*Member, dimension); },
      [](const Store& store, std::size_t i, std::size_t j) { return to_value(element(store.*Member, i, j)); },
      [](Store& store, std::size_t i, std::size_t j, const StoreValue& value) {
        return from_value(element(store.*Member, i, j), value);
      }};
}

// --- the names, by topic ---

#define VARIABLE(name) store_variable<&Store::name>(#name)

// Active_Form is missing: a form is no value.
constexpr std::array program_variables{VARIABLE(Rev_Sel), VARIABLE(Board_Rev)};

constexpr std::array session_variables{VARIABLE(Usb_Open),   VARIABLE(Man_Usb_Conn), VARIABLE(Usb_Attached),
                                       VARIABLE(Usb_Status), VARIABLE(Drv_Handle),   VARIABLE(Dev_Handle),
                                       VARIABLE(Dev_Ctx),    VARIABLE(Log_Error)};

constexpr std::array transfer_variables{VARIABLE(Pipe_Num),  VARIABLE(Xfer_Size), VARIABLE(Xfer_Buf),
                                        VARIABLE(I2C_Pipe),  VARIABLE(I2C_WrAdr), VARIABLE(I2C_RdAdr),
                                        VARIABLE(I2C_RdCnt), VARIABLE(I2C_WrCnt)};

constexpr std::array port_variables{VARIABLE(Gpio_Image)};

constexpr std::array chart_variables{VARIABLE(Trace_Y),    VARIABLE(Screen_Pixels), VARIABLE(Trace_Pos),
                                     VARIABLE(Scale_Max),  VARIABLE(Scale_Min),     VARIABLE(Scale_Span),
                                     VARIABLE(Trace_Red),  VARIABLE(Trace_Green),   VARIABLE(Trace_Blue),
                                     VARIABLE(Label_Left), VARIABLE(Label_Right),   VARIABLE(Label_Time),
                                     VARIABLE(GraphUnit1), VARIABLE(GraphUnit2)};

constexpr std::array sampling_variables{
    VARIABLE(Sample_Run),    VARIABLE(AbortRequested), VARIABLE(TriggerDone),   VARIABLE(SingleReading),
    VARIABLE(EventsEnabled), VARIABLE(IntervalMs),     VARIABLE(IntegrationMs), VARIABLE(Collections)};

constexpr std::array reading_variables{
    VARIABLE(Sample_Count), VARIABLE(Sample_Value), VARIABLE(Sample_Value2), VARIABLE(RawReading),
    VARIABLE(RawReading2),  VARIABLE(MsbLimit),     VARIABLE(Reading),       VARIABLE(PeakReading)};

constexpr std::array register_variables{
    VARIABLE(RegImage),       VARIABLE(PendingUpdate),  VARIABLE(PendingClearInt), VARIABLE(PendingReadRegs),
    VARIABLE(PendingWriteR0), VARIABLE(PendingWriteR1), VARIABLE(PendingIntHigh),  VARIABLE(PendingIntLow)};

constexpr std::array converter_variables{
    VARIABLE(FullCount),      VARIABLE(AdcBits),      VARIABLE(RangeIndex),    VARIABLE(GainIndex),
    VARIABLE(GainMultiplier), VARIABLE(RangeLux),     VARIABLE(ResistorScale), VARIABLE(SampleDelayMs),
    VARIABLE(OneShotMode),    VARIABLE(LuxMode),      VARIABLE(ExtTiming),     VARIABLE(InternalTiming),
    VARIABLE(ReadAdc),        VARIABLE(ReadTimeBase), VARIABLE(BridgeStatus),  VARIABLE(LayoutCompact)};

constexpr std::array proximity_variables{
    VARIABLE(ProxMode),      VARIABLE(ProxIRMode),   VARIABLE(ProxScheme),  VARIABLE(SinglePolarity),
    VARIABLE(IrdrIndex),     VARIABLE(ReadingSign),  VARIABLE(SignBit),     VARIABLE(SignMask),
    VARIABLE(ProxCount),     VARIABLE(IrCount),      VARIABLE(ProxMinusIr), VARIABLE(CoverMode),
    VARIABLE(CoverAlsCount), VARIABLE(CoverIrCount), VARIABLE(LuxRaw),      VARIABLE(LuxCover)};

constexpr std::array filter_variables{
    VARIABLE(ProxAdjMode),   VARIABLE(Prox_Cmd),  VARIABLE(IR_Cmd),     VARIABLE(ProxVal),
    VARIABLE(IrVal),         VARIABLE(ProxDiff),  VARIABLE(ProxAdj),    VARIABLE(ProxAdjPrev),
    VARIABLE(ProxPrev),      VARIABLE(IrPrev),    VARIABLE(ProxReject), VARIABLE(ProxAdjStarted),
    VARIABLE(ProxOverCount), VARIABLE(Stab_Wait), VARIABLE(Stab_Value)};

constexpr std::array interrupt_variables{VARIABLE(LimitMax), VARIABLE(LimitMin), VARIABLE(IntPinAsserted)};

constexpr std::array auto_range_variables{VARIABLE(GainAuto),   VARIABLE(IrdrAuto),     VARIABLE(TripReading),
                                          VARIABLE(OverCount),  VARIABLE(UnderCount),   VARIABLE(GainTarget),
                                          VARIABLE(IrdrTarget), VARIABLE(RangeChanged), VARIABLE(AdMax),
                                          VARIABLE(AdMin)};

constexpr std::array resistor_variables{VARIABLE(RextOhms), VARIABLE(FsrLux), VARIABLE(LuxFactor)};

constexpr std::array script_variables{VARIABLE(Fails_Before), VARIABLE(Fails_Now)};

constexpr std::array colour_variables{VARIABLE(Clr_Black), VARIABLE(Clr_DkGreen), VARIABLE(Clr_Gray),
                                      VARIABLE(Clr_Blue),  VARIABLE(Clr_LtGreen), VARIABLE(Clr_Red),
                                      VARIABLE(Clr_White)};

#undef VARIABLE

template <std::size_t... Sizes>
constexpr auto joined(const std::array<StoreVariable, Sizes>&... topics) {
  std::array<StoreVariable, (Sizes + ...)> all{};
  auto next = all.begin();
  ((next = std::ranges::copy(topics, next).out), ...);
  return all;
}

constexpr auto variables =
    joined(program_variables, session_variables, transfer_variables, port_variables, chart_variables,
           sampling_variables, reading_variables, register_variables, converter_variables,
           proximity_variables, filter_variables, interrupt_variables, auto_range_variables,
           resistor_variables, script_variables, colour_variables);

}  // namespace

std::span<const StoreVariable> store_variables() {
  return variables;
}

const StoreVariable* find_store_variable(std::string_view name) {
  const auto found = std::ranges::find(variables, name, &StoreVariable::name);
  return found == variables.end() ? nullptr : &*found;
}

}  // namespace varzelin
