// The shared store: the program-wide variables, one instance each, by topic. Flags are 16-bit integers,
// 0 false and -1 true. The console and the tests reach them by name: a new variable goes into its topic
// here and into the same topic's list in store_access.cpp.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "boards/driver.h"

namespace forms {
class Form;
}

namespace varzelin {

using Flag = std::int16_t;
inline constexpr Flag false_flag = 0;
inline constexpr Flag true_flag = -1;
constexpr Flag flag(bool value) {
  return value ? true_flag : false_flag;
}

// What the kit's notifications are handed: the session's wanted interface and the device found.
struct DevCtx {
  std::int32_t interface_number = 0;
  std::int32_t alternate = 0;
  boards::Handle device = 0;  // 0: none attached
  boards::Status last_status = boards::success;
};

// --- the topics, of which the store at the end is made ---

struct ProgramVariables {
  std::string Rev_Sel;         // chip revision, "A" or "B"
  std::int16_t Board_Rev = 2;  // revision of the evaluation board
  // The form in front. Null before the first form came forward, and when its object is gone.
  forms::Form* Active_Form = nullptr;
};

struct SessionVariables {
  Flag Usb_Open = 0;            // the session is open
  Flag Man_Usb_Conn = 0;        // the user (or a loop) holds the session: actions neither open nor close it
  Flag Usb_Attached = 0;        // the board is attached; nothing reads it
  std::int32_t Usb_Status = 0;  // status of the last driver call, 0 is success
  boards::Handle Drv_Handle = 0;
  boards::Handle Dev_Handle = 0;  // device handle for transfers, copied from Dev_Ctx
  DevCtx Dev_Ctx;
  Flag Log_Error = 0;  // an error was logged and no driver call has succeeded since
};

struct TransferVariables {
  std::int32_t Pipe_Num = 0;
  std::int32_t Xfer_Size = 0;          // bytes of the next transfer
  std::vector<std::uint8_t> Xfer_Buf;  // after a read it holds the reply
  std::int16_t I2C_Pipe = 2;           // OUT pipe of I2C; the IN pipe is 128 above it
  std::uint8_t I2C_WrAdr = 0x88;       // 8-bit bus address, R/W bit clear
  std::uint8_t I2C_RdAdr = 0x89;       // always I2C_WrAdr + 1, but for what a panel does to it
  std::int16_t I2C_RdCnt = 0;          // bytes of the read in hand
  std::int16_t I2C_WrCnt = 0;          // bytes of the write in hand
};

struct PortVariables {
  // Output enables of port B and C, then data of port B and C.
  std::array<std::uint8_t, 4> Gpio_Image{};
};

struct ChartVariables {
  std::array<std::int32_t, 411> Trace_Y{};  // pixel row of the trace by column; 1 is the top, 1 when cleared
  std::array<std::array<std::int32_t, 405>, 405> Screen_Pixels{};  // [column][row] of the empty chart
  std::int32_t Trace_Pos = 403;                                    // leftmost column reached plus one
  std::int32_t Scale_Max = 0;                                      // vertical scale, reading units
  std::int32_t Scale_Min = 0;
  std::int32_t Scale_Span = 0;
  std::uint8_t Trace_Red = 0;  // colour of the scrolling trace
  std::uint8_t Trace_Green = 0;
  std::uint8_t Trace_Blue = 0;
  std::array<std::string, 11> Label_Left;  // 0 is the bottom line
  std::array<std::string, 11> Label_Right;
  std::array<std::string, 11> Label_Time;  // 0 is the newest sample, on the right
  std::string GraphUnit1 = "AD Cnt";       // headings of the label columns
  std::string GraphUnit2 = "AD Cnt";
};

// How the loops run, and how fast.
struct SamplingVariables {
  Flag Sample_Run = 0;           // a panel's real-time loop runs
  Flag AbortRequested = 0;       // a stop of the timed sampling loop was asked
  Flag TriggerDone = 0;          // a conversion was started and its reading not yet fetched
  Flag SingleReading = 0;        // one reading a sample (I2C_RdCnt 2), else two (4)
  Flag EventsEnabled = 0;        // false while a handler moves option buttons itself
  std::int32_t IntervalMs = 0;   // from sample to sample
  double IntegrationMs = 0;      // counts up while Tmr_Integration runs
  std::int32_t Collections = 0;  // real-time collections begun since the start
};

// What the loops read.
struct ReadingVariables {
  std::int32_t Sample_Count = 0;                   // next slot of Sample_Value, 0 to 1010
  std::array<std::int32_t, 1011> Sample_Value{};   // first reading of each sample
  std::array<std::int32_t, 1011> Sample_Value2{};  // second reading
  std::int32_t RawReading = 0;                     // light count of the present sample, as read
  std::int32_t RawReading2 = 0;                    // integration cycle count of the present sample, as read
  std::int16_t MsbLimit = 0;                       // largest top byte of a valid count
  std::int32_t Reading = 0;                        // latest value to plot, display units
  double PeakReading = 0;                          // greatest Reading of the collection
};

// The sensor's registers. A write that is asked for while a loop runs is pending until the loop does it.
struct RegisterVariables {
  std::array<std::uint8_t, 9> RegImage{};  // a panel's image of the writable registers, r0 first
  Flag PendingUpdate = 0;                  // at least one of those below is set
  Flag PendingClearInt = 0;
  Flag PendingReadRegs = 0;
  Flag PendingWriteR0 = 0;
  Flag PendingWriteR1 = 0;
  Flag PendingIntHigh = 0;
  Flag PendingIntLow = 0;
};

// The converter of a sensor, and what its options say.
struct ConverterVariables {
  std::int32_t FullCount = 0;   // counts of the selected width; 0: the host times the integrations
  std::int16_t AdcBits = 0;     // the selected width
  std::int16_t RangeIndex = 0;  // selected position of the range
  std::int16_t GainIndex = 0;   // the same
  std::int16_t GainMultiplier = 1;
  std::array<std::int32_t, 4> RangeLux{};  // full scale by position of the range
  std::int32_t ResistorScale = 0;          // ohms; a fixed part of the lux formula
  std::int16_t SampleDelayMs = 0;          // from command to reading
  Flag OneShotMode = 0;                    // each reading starts its own conversion
  Flag LuxMode = 0;                        // readings are turned into lux
  Flag ExtTiming = 0;                      // the host times the conversions
  Flag InternalTiming = 0;                 // conversions need no sync command
  Flag ReadAdc = 0;                        // what a triggered reading shows: the count,
  Flag ReadTimeBase = 0;                   // or the time base
  std::int16_t BridgeStatus = 0;           // byte 0 of the last register read
  Flag LayoutCompact = 0;                  // the panel shows its short layout
};

// Readings with a sign, proximity with its emitter, and what is worked out of two readings.
struct ProximityVariables {
  Flag ProxMode = 0;             // readings are of proximity
  Flag ProxIRMode = 0;           // they are pairs: proximity minus infrared
  std::int16_t ProxScheme = 0;   // 0 counts from 0, 1 has a sign
  Flag SinglePolarity = 0;       // interrupt limits have no sign
  std::int16_t IrdrIndex = 0;    // selected position of the emitter current; the persistence goes here too
  std::int16_t ReadingSign = 0;  // 1 or -1, of the last value that was decoded
  std::int32_t SignBit = 0;      // of a high byte
  std::int32_t SignMask = 0;     // of the 16 bits
  std::int32_t ProxCount = 0;
  std::int32_t IrCount = 0;
  std::int32_t ProxMinusIr = 0;  // -9999 when one of both is out of range
  Flag CoverMode = 0;            // light is worked out as behind a cover
  std::int32_t CoverAlsCount = 0;
  std::int32_t CoverIrCount = 0;
  std::int32_t LuxRaw = 0;  // not corrected for the cover
  double LuxCover = 0;
};

// The proximity filter and the stability wait of the two-mode panels.
struct FilterVariables {
  Flag ProxAdjMode = 0;       // readings are filtered
  std::uint8_t Prox_Cmd = 0;  // commands of the last pair
  std::uint8_t IR_Cmd = 0;
  std::int32_t ProxVal = 0;  // readings of this pass
  std::int32_t IrVal = 0;
  double ProxDiff = 0;
  double ProxAdj = 0;      // what the filter makes of them
  double ProxAdjPrev = 0;  // last accepted
  double ProxPrev = 0;
  double IrPrev = 0;
  Flag ProxReject = 0;                        // this pass's reading is rejected
  Flag ProxAdjStarted = 0;                    // one has been accepted
  std::int32_t ProxOverCount = 0;             // rejections in a row for the change alone
  Flag Stab_Wait = 0;                         // a wait goes on
  std::array<std::int32_t, 11> Stab_Value{};  // the readings that it compares
};

// What the sensor interrupts on.
struct InterruptVariables {
  std::int32_t LimitMax = 0;  // bounds of the limits, inclusive
  std::int32_t LimitMin = 0;
  Flag IntPinAsserted = 0;  // the pin was low when it was last sampled
};

// The range that follows the readings by itself.
struct AutoRangeVariables {
  Flag GainAuto = 0;           // the range follows,
  Flag IrdrAuto = 0;           // or the emitter current
  double TripReading = 0;      // what is held against the trip limits
  std::int16_t OverCount = 0;  // readings beyond a trip limit since the last switch
  std::int16_t UnderCount = 0;
  std::int16_t GainTarget = 0;  // wanted position of the range,
  std::int16_t IrdrTarget = 0;  // and of the emitter current
  Flag RangeChanged = 0;        // it acted in this pass
  std::int32_t AdMax = 0;       // extremes of the raw readings since they were cleared
  std::int32_t AdMin = 0;
};

// The external resistor, which sets the sensor's clock and its ranges.
struct ResistorVariables {
  std::int32_t RextOhms = 0;
  std::int32_t FsrLux = 0;  // full scale of the selected range, lux
  double LuxFactor = 0;     // lux per count
};

struct ScriptVariables {
  double Fails_Before = 0;  // failed reads when the present row began
  double Fails_Now = 0;     // failed reads after the last one that failed
};

// Lamp colours, indices of the platform's 16-colour table.
struct ColourVariables {
  double Clr_Black = 0;  // never assigned
  double Clr_DkGreen = 0;
  double Clr_Gray = 0;
  double Clr_Blue = 0;
  double Clr_LtGreen = 0;
  double Clr_Red = 0;
  double Clr_White = 0;
};

struct Store : ProgramVariables,
               SessionVariables,
               TransferVariables,
               PortVariables,
               ChartVariables,
               SamplingVariables,
               ReadingVariables,
               RegisterVariables,
               ConverterVariables,
               ProximityVariables,
               FilterVariables,
               InterruptVariables,
               AutoRangeVariables,
               ResistorVariables,
               ScriptVariables,
               ColourVariables {};

}  // namespace varzelin
