// The shared variables by name.
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "bridge/store_access.h"

namespace varzelin::testing {
namespace {

struct StoreAccess : ::testing::Test {
  std::unique_ptr<Store> owned = std::make_unique<Store>();  // too large for a stack
  Store& store = *owned;

  StoreValue get(std::string_view name, std::size_t i = 0, std::size_t j = 0) {
    return find_store_variable(name)->get(store, i, j);
  }
  bool set(std::string_view name, StoreValue value, std::size_t i = 0, std::size_t j = 0) {
    return find_store_variable(name)->set(store, i, j, value);
  }
};

using Int = std::int64_t;

TEST_F(StoreAccess, EveryVariableIsFoundOnceAndReadable) {
  std::set<std::string_view> names;
  store.Xfer_Buf = {1};
  for (const StoreVariable& variable : store_variables()) {
    EXPECT_TRUE(names.insert(variable.name).second) << variable.name;
    EXPECT_EQ(find_store_variable(variable.name), &variable);
    for (int dimension = 0; dimension < 2; ++dimension) {
      EXPECT_EQ(variable.size(store, dimension) > 0, dimension < variable.dimensions) << variable.name;
    }
    const std::size_t i = variable.dimensions > 0 ? variable.size(store, 0) - 1 : 0;
    const std::size_t j = variable.dimensions > 1 ? variable.size(store, 1) - 1 : 0;
    const StoreValue value = variable.get(store, i, j);
    EXPECT_TRUE(variable.set(store, i, j, value)) << variable.name;
    EXPECT_EQ(variable.get(store, i, j), value) << variable.name;
  }
  EXPECT_EQ(find_store_variable("usb_open"), nullptr);
  EXPECT_EQ(find_store_variable(""), nullptr);
}

TEST_F(StoreAccess, TheSharedVariablesOfAllFormsAreThere) {
  for (const char* name :
       {"Usb_Open",   "Man_Usb_Conn", "Usb_Attached", "Usb_Status",     "Drv_Handle",    "Dev_Handle",
        "Dev_Ctx",    "Pipe_Num",     "Xfer_Size",    "Xfer_Buf",       "I2C_Pipe",      "I2C_WrAdr",
        "I2C_RdAdr",  "I2C_RdCnt",    "I2C_WrCnt",    "Sample_Run",     "Rev_Sel",       "Gpio_Image",
        "Trace_Y",    "Trace_Pos",    "Scale_Max",    "Scale_Min",      "Scale_Span",    "Screen_Pixels",
        "Label_Left", "Label_Right",  "Label_Time",   "AbortRequested", "TriggerDone",   "SingleReading",
        "IntervalMs", "Sample_Count", "Sample_Value", "Sample_Value2",  "EventsEnabled", "PendingUpdate",
        "RegImage",   "Log_Error",    "Clr_LtGreen",  "RawReading",     "RawReading2",   "MsbLimit"}) {
    EXPECT_NE(find_store_variable(name), nullptr) << name;
  }
}

TEST_F(StoreAccess, SetsTheVariableItself) {
  EXPECT_TRUE(set("Sample_Value", Int{-5}, 1010));
  EXPECT_EQ(store.Sample_Value[1010], -5);
  EXPECT_TRUE(set("Screen_Pixels", Int{7}, 3, 400));
  EXPECT_EQ(store.Screen_Pixels[3][400], 7);
  EXPECT_EQ(get("Screen_Pixels", 3, 400), StoreValue(Int{7}));
  EXPECT_TRUE(set("Rev_Sel", std::string("A")));
  EXPECT_EQ(store.Rev_Sel, "A");
  EXPECT_TRUE(set("PeakReading", 2.5));
  EXPECT_TRUE(set("Clr_Red", Int{12}));
  EXPECT_EQ(get("Clr_Red"), StoreValue(12.0));
  EXPECT_TRUE(set("Dev_Ctx", Int{0x101}));
  EXPECT_EQ(store.Dev_Ctx.device, 0x101);
  EXPECT_EQ(get("Usb_Open"), StoreValue(Int{0}));
}

TEST_F(StoreAccess, AWrongTypeIsRefused) {
  store.Rev_Sel = "B";
  EXPECT_FALSE(set("Rev_Sel", Int{1}));
  EXPECT_FALSE(set("Sample_Count", std::string("1")));
  EXPECT_FALSE(set("Sample_Count", 1.5));
  EXPECT_FALSE(set("PeakReading", std::string("1")));
  EXPECT_FALSE(set("Sample_Count", std::numeric_limits<double>::quiet_NaN()));
  EXPECT_FALSE(set("Sample_Count", std::numeric_limits<double>::infinity()));
  EXPECT_FALSE(set("Sample_Count", -std::numeric_limits<double>::infinity()));
  EXPECT_EQ(store.Rev_Sel, "B");
  EXPECT_EQ(store.Sample_Count, 0);
  EXPECT_TRUE(set("Sample_Count", 3.0));
  EXPECT_EQ(store.Sample_Count, 3);
}

TEST_F(StoreAccess, AValueBeyondTheTypeIsRefused) {
  struct Bounds {
    const char* name;
    Int least, most;
  };
  for (const auto& [name, least, most] :
       {Bounds{"I2C_WrAdr", 0, 255}, Bounds{"Gpio_Image", 0, 255}, Bounds{"Usb_Open", -32768, 32767},
        Bounds{"Usb_Status", -(Int{1} << 31), (Int{1} << 31) - 1}}) {
    for (const Int bound : {least, most}) {
      EXPECT_TRUE(set(name, bound)) << name;
      EXPECT_EQ(get(name), StoreValue(bound));
      EXPECT_TRUE(set(name, static_cast<double>(bound))) << name;
      EXPECT_EQ(get(name), StoreValue(bound));
    }
    ASSERT_TRUE(set(name, Int{7}));
    for (const Int beyond : {least - 1, most + 1, 2 * least - 1, 2 * most + 2,
                             std::numeric_limits<Int>::min(), std::numeric_limits<Int>::max()}) {
      EXPECT_FALSE(set(name, beyond)) << name << " " << beyond;
      EXPECT_FALSE(set(name, static_cast<double>(beyond))) << name << " " << beyond;
    }
    for (const double huge : {9.1e15, 18446744073709551616.0, 1e300}) {
      EXPECT_FALSE(set(name, huge)) << name << " " << huge;
      EXPECT_FALSE(set(name, -huge)) << name << " " << -huge;
    }
    EXPECT_EQ(get(name), StoreValue(Int{7})) << name << " is as it was";
  }
}

TEST_F(StoreAccess, AFloatingPointVariableTakesAnyNumber) {
  EXPECT_TRUE(set("PeakReading", 1e300));
  EXPECT_EQ(store.PeakReading, 1e300);
}

TEST_F(StoreAccess, TheSizesAreThoseOfTheArrays) {
  const auto size = [&](const char* name, int dimension = 0) {
    return find_store_variable(name)->size(store, dimension);
  };
  EXPECT_EQ(size("Xfer_Buf"), 0u);
  store.Xfer_Buf.resize(25);
  EXPECT_EQ(size("Xfer_Buf"), 25u);
  EXPECT_EQ(size("Sample_Value"), 1011u);
  EXPECT_EQ(size("Trace_Y"), 411u);
  EXPECT_EQ(size("Screen_Pixels"), 405u);
  EXPECT_EQ(size("Screen_Pixels", 1), 405u);
  EXPECT_EQ(size("Sample_Value", 1), 0u);
}

}  // namespace
}  // namespace varzelin::testing
