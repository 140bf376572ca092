// What may go wrong on the bus where the panels over eight registers have more on it than readings: under
// external timing, while they poll the interrupt, and with a write that waits for the loop.
#include "panels/single_channel/eight_register_panel.h"
#include "support/fault_fixture.h"

namespace varzelin::testing {
namespace {

struct EightRegisterFaults : PanelFaults {
  EightRegisterPanel& registers = dynamic_cast<EightRegisterPanel&>(panel);
  bool external_timing = false;
  bool polling = false;
  bool options = false;

  void make_ready() override {
    EXPECT_EQ(registers.watch.TimerIPol.Enabled.get(), registers.watch.ChkIpol.Value == 1);
    PanelFaults::make_ready();
    registers.ChkCommand(2).Value = external_timing ? 1 : 0;
    registers.watch.ChkIpol.Value = polling ? 1 : 0;
    // A sensor that lost its power has lost its registers, too.
    click(registers.cmdSetCommand);
    forget_traffic();
    EXPECT_EQ(store.PendingWriteR1, 0);
  }
  void act(std::function<void()> and_then) override {
    // The timer's ticks then fall alike in each run.
    for (const int ticked : {0, 1}) {
      if (polling) registers.watch.ChkIpol.Value = ticked;
    }
    if (!options) return and_then();
    at_yield(count_reaches(12), [this, then = std::move(and_then)] {
      registers.OptGain(1).Value = false;
      forms::user::click(registers.OptGain(1));
      then();
    });
  }

  static bool is_write(const Packet& packet) { return packet.pipe < 0x80 && packet.bytes[0] == 0; }
  static bool is_port(const Packet& packet) { return (packet.pipe & 0x7F) == boards::pipe_gpio_out; }
  // A read of the command register, by the timer or behind a write.
  static bool is_control_read(const Packet& packet) {
    return packet.pipe < 0x80 ? packet.bytes == std::vector{2, 0x89, 0} : packet.size == 3;
  }
  // The checked transfers of the GPIO panel end nothing, nor do checked writes in a timed run.
  bool ends_run(const Packet& undisturbed, bool real_time) const override {
    if (!checked()) return real_time;
    return !is_port(undisturbed) && (real_time || !is_write(undisturbed));
  }
  std::int32_t samples_kept(const Packet& undisturbed, bool real_time) const override {
    const bool trigger = is_write(undisturbed) && undisturbed.bytes.size() == 3;
    // A pass whose waiting work fails doesn't count its sample, though it has it.
    if (real_time && is_write(undisturbed) && !trigger) return count;
    // A timed pass counts behind its trigger and behind the delay, in which the timer ticks.
    if (!real_time && (trigger || (polling && is_control_read(undisturbed)))) return count + 1;
    return PanelFaults::samples_kept(undisturbed, real_time);
  }
  void everywhere() {
    make_ready();
    for (const bool real_time : {true, false}) {
      SCOPED_TRACE(real_time ? "real time" : "timed");
      pull_the_plug_everywhere(real_time);
      fail_everywhere(real_time, boards::statuses::transfer_failed);
    }
  }
};

TEST_P(EightRegisterFaults, UnderExternalTiming) {
  external_timing = true;
  everywhere();
}
TEST_P(EightRegisterFaults, WhilePolling) {
  polling = true;
  everywhere();
}
TEST_P(EightRegisterFaults, WithAWriteThatWaitsForTheLoop) {
  options = true;
  everywhere();
}

INSTANTIATE_TEST_SUITE_P(Each, EightRegisterFaults, ::testing::Values("frmKVT71344", "frmKVT71356"),
                         panel_name);

}  // namespace
}  // namespace varzelin::testing
