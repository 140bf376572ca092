// What goes over the pipes in a pass of either loop of the panels over eight registers, in which order, and
// where a pass yields.
#include "support/eight_register_fixture.h"

namespace varzelin::testing {
namespace {

// A pipe, and what went out on it or the size of what came in.
using Step = std::pair<int, std::vector<int>>;
using Steps = std::vector<Step>;

struct PassesOf {
  const char* form_name;
  Step port_request;
  // Before each transfer of a timed pass under external timing.
  std::vector<int> yields;
  // From the pin's reply, which clearing the interrupt ends with, to the next call of the driver.
  int yields_behind_clearing;

  friend void PrintTo(const PassesOf& model, std::ostream* out) { *out << model.form_name; }
};

struct EightRegisterPasses : EightRegisterFixture, ::testing::WithParamInterface<PassesOf> {
  const Step port_request = GetParam().port_request;
  const Step port_reply{boards::pipe_gpio_in, {25}};
  const Step two_bytes{boards::pipe_i2c_out, {2, 0x89, 4}};
  const Step four_bytes{boards::pipe_i2c_out, {4, 0x89, 4}};
  const Step results{boards::pipe_i2c_in, {5}};
  const Step end_of_conversion{boards::pipe_i2c_out, {0, 0x88, 0x80}};
  const Steps read_back{{boards::pipe_i2c_out, {2, 0x89, 2}},
                        {boards::pipe_i2c_in, {3}},
                        {boards::pipe_i2c_out, {2, 0x89, 0}},
                        {boards::pipe_i2c_in, {3}}};

  void SetUp() override {
    open(GetParam().form_name);
    panel->CboIntTime(5).ListIndex = 0;
  }
  Step write(int register_number, int value) const {
    return {boards::pipe_i2c_out, {0, 0x88, register_number, value}};
  }
  static Steps joined(std::initializer_list<Steps> parts) {
    Steps all;
    for (const Steps& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }
  Steps steps() const {
    Steps result;
    for (const Packet& packet : recorder.packets) {
      result.emplace_back(packet.pipe,
                          packet.pipe < 0x80 ? packet.bytes : std::vector{static_cast<int>(packet.size)});
    }
    return result;
  }
};

TEST_P(EightRegisterPasses, InRealTimeUnderInternalTiming) {
  collect(12, [&] { forget_traffic(); });
  const Steps pass{two_bytes, results};
  EXPECT_EQ(steps(), joined({pass, pass, pass, pass}));
}

// The pass in which the user stops has no trigger any more.
TEST_P(EightRegisterPasses, InRealTimeUnderExternalTimingAndWithPolling) {
  external_timing();
  click(panel->watch.ChkIpol);
  collect(12, [&] { forget_traffic(); });
  const Steps pass{port_request, port_reply, four_bytes, results, end_of_conversion};
  EXPECT_EQ(steps(), joined({pass, pass, pass, {port_request, port_reply, four_bytes, results}}));
}

TEST_P(EightRegisterPasses, InRealTimeWhatWaitsIsDoneInAFixedOrder) {
  external_timing();
  const int command = store.RegImage[0];
  collect(12, [&] {
    forget_traffic();
    store.PendingUpdate = -1;
    for (const auto flag : {&Store::PendingReadRegs, &Store::PendingIntLow, &Store::PendingIntHigh,
                            &Store::PendingWriteR0, &Store::PendingWriteR1, &Store::PendingClearInt}) {
      store.*flag = -1;
    }
    panel->txtRegHex(3).Text = "03";
  });
  const Steps clear_interrupt{{boards::pipe_i2c_out, {0, 0x88, 0x40}}, port_request, port_reply};
  const Steps writes{write(1, 0x00), write(0, command), write(2, 0xFF), write(3, 0x03)};
  const Steps pass{four_bytes, results, end_of_conversion};
  EXPECT_EQ(steps(), joined({{four_bytes, results},
                             clear_interrupt,
                             writes,
                             read_back,
                             {end_of_conversion},
                             pass,
                             pass,
                             {four_bytes, results}}));
  EXPECT_EQ(store.PendingUpdate, 0);
}

TEST_P(EightRegisterPasses, InRealTimeItYieldsBehindClearingTheInterrupt) {
  board.set_timing(false);
  std::map<std::size_t, double> called_at;  // by the number of transfers before
  collect(12, [&] {
    forget_traffic();
    recorder.before_call = [&] { called_at.try_emplace(recorder.packets.size(), clock.milliseconds()); };
    forms::user::click(panel->watch.cmdClrInt);
  });
  constexpr std::size_t pin_reply = 4;
  ASSERT_EQ(steps()[pin_reply], port_reply);
  constexpr double yield_ms = 0.001;
  EXPECT_NEAR(called_at[pin_reply + 1] - called_at[pin_reply], GetParam().yields_behind_clearing * yield_ms,
              yield_ms / 10);
}

// The register boxes' read asks for four bytes, and leaves it so.
TEST_P(EightRegisterPasses, TimedUnderInternalTiming) {
  sample(3);
  const Steps pass{four_bytes, results, four_bytes, results};
  EXPECT_EQ(steps(), joined({{two_bytes, results, four_bytes, results}, pass, pass}));
}

TEST_P(EightRegisterPasses, TimedUnderExternalTiming) {
  external_timing();
  sample(3);
  const Steps pass{end_of_conversion, four_bytes, results, four_bytes, results};
  EXPECT_EQ(steps(), joined({pass, pass, pass}));
}

// A timed run sets no run flag. What waits in it was changed behind its stop, before the last pass was over.
TEST_P(EightRegisterPasses, TimedTheLastOneDoesWhatWasChangedBehindTheStop) {
  external_timing();
  at_yield(count_reaches(3), [&] {
    forget_traffic();
    forms::user::click(panel->cmdEndSampling);
    forms::user::click(panel->OptGain(1));
    forms::user::click(panel->watch.cmdClrInt);
    EXPECT_TRUE(steps().empty());
    EXPECT_EQ(store.PendingUpdate, -1);
  });
  click(panel->cmdSample);
  EXPECT_EQ(steps(), joined({{four_bytes, results, four_bytes, results},
                             {{boards::pipe_i2c_out, {0, 0x88, 0x40}}, port_request, port_reply},
                             {write(1, 0x04)},
                             read_back}));
  EXPECT_EQ(store.PendingClearInt, 0);
  EXPECT_EQ(store.PendingWriteR1, 0);
  EXPECT_EQ(store.PendingReadRegs, 0);
  EXPECT_EQ(panel->txtRegRd(1).Text, "04");
}

TEST_P(EightRegisterPasses, TimedEachYieldsAtItsPlaces) {
  external_timing();
  std::map<std::size_t, int> yields;  // by the number of transfers before
  user.at_yield = [&] {
    ++yields[recorder.packets.size()];
    if (store.Sample_Count == 3 && store.AbortRequested == 0) forms::user::click(panel->cmdEndSampling);
  };
  click(panel->cmdSample);
  constexpr std::size_t second_pass = 5;
  for (std::size_t i = 0; i < GetParam().yields.size(); ++i) {
    EXPECT_EQ(yields[second_pass + i], GetParam().yields[i]) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Each, EightRegisterPasses,
    ::testing::Values(PassesOf{"frmKVT71344", {boards::pipe_gpio_out, {0, 0, 0, 0, 2}}, {2, 3, 2, 3, 2}, 3},
                      PassesOf{
                          "frmKVT71356", {boards::pipe_gpio_out, {0xFF, 0xFF, 0, 0}}, {1, 3, 0, 3, 0}, 2}),
    [](const auto& model) { return std::string(model.param.form_name); });

}  // namespace
}  // namespace varzelin::testing
