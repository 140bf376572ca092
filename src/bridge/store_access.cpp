#include "bridge/store_access.h"

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

template <class T>
bool from_value(T& variable, const StoreValue& value) {
  if constexpr (std::is_same_v<T, std::string>) {
    const auto* text = std::get_if<std::string>(&value);
    if (text) variable = *text;
    return text != nullptr;
  } else {
    const auto* whole = std::get_if<std::int64_t>(&value);
    const auto* real = std::get_if<double>(&value);
    if (!whole && !real) return false;
    if constexpr (std::is_floating_point_v<T>) {
      variable = whole ? static_cast<double>(*whole) : *real;
      return true;
    } else {
      if (real && (*real != std::floor(*real) || std::abs(*real) > 9e15)) return false;
      const std::int64_t number = whole ? *whole : static_cast<std::int64_t>(*real);
      if (number < static_cast<std::int64_t>(std::numeric_limits<T>::min()) ||
          number > static_cast<std::int64_t>(std::numeric_limits<T>::max())) {
        return false;
      }
      variable = static_cast<T>(number);
      return true;
    }
  }
}

// A variable that is a single value.
template <auto Member>
constexpr StoreVariable single(std::string_view name) {
  return {name, 0, [](const Store&, int) { return std::size_t{0}; },
          [](const Store& store, std::size_t, std::size_t) { return to_value(store.*Member); },
          [](Store& store, std::size_t, std::size_t, const StoreValue& value) {
            return from_value(store.*Member, value);
          }};
}

// An array.
template <auto Member>
constexpr StoreVariable list(std::string_view name) {
  return {name, 1,
          [](const Store& store, int dimension) { return dimension == 0 ? (store.*Member).size() : 0; },
          [](const Store& store, std::size_t i, std::size_t) { return to_value((store.*Member)[i]); },
          [](Store& store, std::size_t i, std::size_t, const StoreValue& value) {
            return from_value((store.*Member)[i], value);
          }};
}

// The members of Dev_Ctx, the one record of the store.
template <auto Member>
constexpr StoreVariable context(std::string_view name) {
  return {name, 0, [](const Store&, int) { return std::size_t{0}; },
          [](const Store& store, std::size_t, std::size_t) { return to_value(store.Dev_Ctx.*Member); },
          [](Store& store, std::size_t, std::size_t, const StoreValue& value) {
            return from_value(store.Dev_Ctx.*Member, value);
          }};
}

constexpr StoreVariable screen_pixels{
    "Screen_Pixels", 2,
    [](const Store& store, int dimension) {
      return dimension == 0 ? store.Screen_Pixels.size() : store.Screen_Pixels[0].size();
    },
    [](const Store& store, std::size_t i, std::size_t j) { return to_value(store.Screen_Pixels[i][j]); },
    [](Store& store, std::size_t i, std::size_t j, const StoreValue& value) {
      return from_value(store.Screen_Pixels[i][j], value);
    }};

#define SINGLE(name) single<&Store::name>(#name)
#define LIST(name) list<&Store::name>(#name)

constexpr std::array variables{SINGLE(Rev_Sel),         SINGLE(Usb_Open),
                               SINGLE(Man_Usb_Conn),    SINGLE(Usb_Attached),
                               SINGLE(Usb_Status),      SINGLE(Drv_Handle),
                               SINGLE(Dev_Handle),      context<&DevCtx::device>("Dev_Ctx"),
                               SINGLE(Log_Error),       SINGLE(Pipe_Num),
                               SINGLE(Xfer_Size),       LIST(Xfer_Buf),
                               SINGLE(I2C_Pipe),        SINGLE(I2C_WrAdr),
                               SINGLE(I2C_RdAdr),       SINGLE(I2C_RdCnt),
                               SINGLE(I2C_WrCnt),       SINGLE(Sample_Run),
                               SINGLE(Collections),     LIST(Gpio_Image),
                               LIST(Trace_Y),           screen_pixels,
                               SINGLE(Trace_Pos),       SINGLE(Scale_Max),
                               SINGLE(Scale_Min),       SINGLE(Scale_Span),
                               SINGLE(Trace_Red),       SINGLE(Trace_Green),
                               SINGLE(Trace_Blue),      LIST(Label_Left),
                               LIST(Label_Right),       LIST(Label_Time),
                               SINGLE(GraphUnit1),      SINGLE(GraphUnit2),
                               SINGLE(AbortRequested),  SINGLE(TriggerDone),
                               SINGLE(SingleReading),   SINGLE(IntervalMs),
                               SINGLE(Sample_Count),    LIST(Sample_Value),
                               LIST(Sample_Value2),     SINGLE(IntegrationMs),
                               SINGLE(EventsEnabled),   SINGLE(Reading),
                               SINGLE(RawReading),      SINGLE(RawReading2),
                               SINGLE(MsbLimit),        SINGLE(PeakReading),
                               SINGLE(Board_Rev),       LIST(RegImage),
                               SINGLE(PendingUpdate),   SINGLE(PendingClearInt),
                               SINGLE(PendingReadRegs), SINGLE(PendingWriteR0),
                               SINGLE(PendingWriteR1),  SINGLE(PendingIntHigh),
                               SINGLE(PendingIntLow),   SINGLE(Fails_Before),
                               SINGLE(Fails_Now),       SINGLE(Clr_Black),
                               SINGLE(Clr_DkGreen),     SINGLE(Clr_Gray),
                               SINGLE(Clr_Blue),        SINGLE(Clr_LtGreen),
                               SINGLE(Clr_Red),         SINGLE(Clr_White)};

#undef SINGLE
#undef LIST

}  // namespace

std::span<const StoreVariable> store_variables() {
  return variables;
}

const StoreVariable* find_store_variable(std::string_view name) {
  for (const StoreVariable& variable : variables) {
    if (variable.name == name) return &variable;
  }
  return nullptr;
}

}  // namespace varzelin
