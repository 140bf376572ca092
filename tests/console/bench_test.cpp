// Dialogs and the simulated board through the console.

#include "support/console_fixture.h"

namespace console_test {
namespace {

using ConsoleDialogs = ConsoleTest;
using ConsoleBoard = ConsoleTest;

std::string box_note(int buttons, const std::string& answer) {
  return "* msgbox {\"title\":\"Title\",\"text\":\"Text\",\"buttons\":" + std::to_string(buttons) +
         ",\"answer\":\"" + answer + "\"}";
}

TEST_F(ConsoleDialogs, MessageBoxesWithoutAQueuedAnswer) {
  EXPECT_EQ(run({"click frmBench.cmdBoxes", "get frmBench.lblLog.Caption"}),
            (Lines{box_note(0, "OK"), box_note(49, "OK"), box_note(3, "Cancel"), box_note(4, "No"),
                   box_note(5, "Cancel"), "ok", "ok \"Load Activate 1 1 2 7 2\""}));
}

TEST_F(ConsoleDialogs, QueuedMessageBoxAnswers) {
  EXPECT_EQ(
      run({"answer msgbox OK", "answer msgbox Cancel", "answer msgbox Yes", "answer msgbox No",
           "answer msgbox Retry", "click frmBench.cmdBoxes", "get frmBench.lblLog.Caption"}),
      (Lines{"ok", "ok", "ok", "ok", "ok", box_note(0, "OK"), box_note(49, "Cancel"), box_note(3, "Yes"),
             box_note(4, "No"), box_note(5, "Retry"), "ok", "ok \"Load Activate 1 2 6 7 4\""}));
}

TEST_F(ConsoleDialogs, AnAnswerThatTheBoxLacksIsUsedUp) {
  const Lines written = run({"answer msgbox Retry", "answer msgbox Cancel", "click frmBench.cmdBoxes"});
  EXPECT_EQ(written[2], box_note(0, "OK"));
  EXPECT_EQ(written[3], box_note(49, "Cancel"));
  EXPECT_EQ(written[4], box_note(3, "Cancel"));
}

TEST_F(ConsoleDialogs, InputBox) {
  const std::string note =
      "* inputbox {\"title\":\"Title\",\"prompt\":\"Prompt\",\"default\":\"7\",\"answer\":";
  EXPECT_EQ(run({"click frmBench.cmdAsk", "answer inputbox \"1 2\"", "answer inputbox cancel",
                 "answer inputbox \"\"", "click frmBench.cmdAsk", "click frmBench.cmdAsk",
                 "click frmBench.cmdAsk", "get frmBench.lblLog.Caption"}),
            (Lines{note + "null}", "ok", "ok", "ok", "ok", note + "\"1 2\"}", "ok", note + "null}", "ok",
                   note + "\"\"}", "ok", "ok \"Load Activate none 1 2 none \""}));
}

TEST_F(ConsoleDialogs, FileDialogs) {
  const auto note = [](const std::string& kind, const std::string& name, const std::string& answer) {
    return "* file {\"kind\":\"" + kind + "\",\"title\":\"Open\",\"filter\":\"Text|*.txt\",\"filename\":\"" +
           name + "\",\"answer\":" + answer + "}";
  };
  EXPECT_EQ(run({"answer file cancel", "answer file /tmp/new.txt", "click frmBench.cmdFile",
                 "click frmBench.cmdFile", "get frmBench.lblLog.Caption"}),
            (Lines{"ok", "ok", note("open", "old.txt", "null"), note("save", "old.txt", "\"/tmp/new.txt\""),
                   "ok", note("open", "old.txt", "null"), note("save", "old.txt", "null"), "ok",
                   "ok \"Load Activate old.txt /tmp/new.txt old.txt old.txt\""}));
}

TEST_F(ConsoleDialogs, AnswersThatAreRefused) {
  EXPECT_EQ(run({"answer", "answer msgbox", "answer msgbox ok", "answer msgbox Abort", "answer colour red",
                 "answer file a b"}),
            (Lines{"error missing argument: msgbox|inputbox|file", "error missing argument: ANSWER",
                   "error no such button: ok", "error no such button: Abort", "error no such dialog: colour",
                   "error too many arguments: b"}));
}

TEST_F(ConsoleBoard, MountAndUnmount) {
  EXPECT_EQ(run({"board mount KVT71385"}), Lines{"ok"});
  EXPECT_EQ(board.mounted_model(), "KVT71385");
  EXPECT_EQ(board.mounted_address(), 0x88);
  EXPECT_EQ(run({"board mount KVT71346/7 0x72"}), Lines{"ok"});
  EXPECT_EQ(board.mounted_address(), 0x72);
  EXPECT_EQ(run({"board mount KVT1", "board mount KVT71385 89", "board mount KVT71385 100", "board mount",
                 "board mount KVT71385 xx", "board mount KVT71385 88 1"}),
            (Lines{"error no such model: KVT1", "error not a write address: the lowest bit is set",
                   "error out of range: 100", "error missing argument: MODEL",
                   "error not a hexadecimal number: xx", "error too many arguments: 1"}));
  EXPECT_EQ(board.mounted_model(), "KVT71346/7");
  EXPECT_EQ(run({"board unmount 1", "board unmount"}), (Lines{"error too many arguments: 1", "ok"}));
  EXPECT_EQ(board.mounted_model(), "");
}

TEST_F(ConsoleBoard, SceneAndNoise) {
  EXPECT_EQ(run({"board scene light 12.5", "board scene ir 3", "board scene distance 40",
                 "board scene resistor 250000", "board noise 2"}),
            Lines(5, "ok"));
  EXPECT_EQ(board.scene().light_lux, 12.5);
  EXPECT_EQ(board.scene().ir_counts, 3);
  EXPECT_EQ(board.scene().distance_mm, 40);
  EXPECT_EQ(board.scene().external_resistor_ohms, 250000);
  EXPECT_EQ(board.noise(), 2);
  EXPECT_EQ(run({"board scene heat 1", "board scene light", "board scene light x", "board scene light 1 2",
                 "board scene resistor 0", "board noise -1", "board noise"}),
            (Lines{"error no such part of the scene: heat", "error missing argument: VALUE",
                   "error not a number: x", "error too many arguments: 2",
                   "error out of range: a resistor without ohms", "error out of range: a width below 0",
                   "error missing argument: COUNTS"}));
  EXPECT_EQ(board.scene().external_resistor_ohms, 250000);
}

TEST_F(ConsoleBoard, Registers) {
  EXPECT_EQ(
      run({"board register 1", "board mount KVT71385", "board register 6", "board register 06 5A",
           "board register 0x6", "board register F0", "board register F0 1", "board register",
           "board register 1 100"}),
      (Lines{"error no sensor mounted", "ok", "ok 255", "ok", "ok 90", "error no such register: F0",
             "error no such register: F0", "error missing argument: ADDRESS", "error out of range: 100"}));
}

TEST_F(ConsoleBoard, Ports) {
  EXPECT_EQ(run({"board port B 5A", "board port C 0", "board port D 1", "board port BC 1", "board port B"}),
            (Lines{"ok", "ok", "error no such port: D", "error no such port: BC",
                   "error missing argument: VALUE"}));
  EXPECT_EQ(board.port('B'), 0x5A);
  EXPECT_EQ(board.port('C'), 0x00);
}

TEST_F(ConsoleBoard, RepliesAreBytesInAnyGrouping) {
  board.set_timing(false);
  EXPECT_EQ(run({"board reply 2 a0 00", "click frmBench.cmdTransfer", "packets"}).back(),
            "ok [{\"pipe\":2,\"size\":3,\"data\":\"02 89 0A\",\"status\":0,\"time\":0.001},"
            "{\"pipe\":130,\"size\":3,\"data\":\"02 A0 00\",\"status\":0,\"time\":0.001}]");
  EXPECT_NE(run({"board reply 02A000FF", "click frmBench.cmdTransfer", "packets"})
                .back()
                .find("\"data\":\"02 A0 00\""),
            std::string::npos);

  EXPECT_EQ(run({"board reply 01", "board port-reply 01 02", "board clear", "board clear"}),
            (Lines{"ok", "ok", "ok 2", "ok 0"}));
  EXPECT_EQ(run({"board reply", "board reply 123", "board reply 0g", "board reply \"\"", "board port-reply",
                 "board clear", "board clear 1"}),
            (Lines{"error missing argument: HEX", "error not hexadecimal bytes: 123",
                   "error not hexadecimal bytes: 0g", "error not hexadecimal bytes: ",
                   "error missing argument: HEX", "ok 0", "error too many arguments: 1"}));
}

TEST_F(ConsoleBoard, FailedTransfers) {
  board.set_timing(false);
  const auto statuses = [&](const std::string& order) {
    const Lines written = run({order, "click frmBench.cmdTransfer", "driver"});
    std::string found;
    for (std::size_t at = 0;
         (at = written.back().find("WDU_Transfer\",\"status\":", at)) != std::string::npos;) {
      at += 23;
      found += written.back().substr(at, written.back().find(',', at) - at) + " ";
    }
    board.clear();
    board.plug();
    return found;
  };
  board.queue_reply({1});
  EXPECT_EQ(statuses("board fail 1"), std::to_string(boards::statuses::time_out) + " 0 ");
  board.queue_reply({1});
  EXPECT_EQ(statuses("board fail 1 7 after 1"), "0 7 ");
  board.queue_reply({1});
  EXPECT_EQ(statuses("board fail 1 after 1"), "0 " + std::to_string(boards::statuses::time_out) + " ");
  EXPECT_EQ(statuses("board fail 2 FFFFFFFF"), "-1 -1 ");
  EXPECT_EQ(run({"board fail", "board fail x", "board fail -1", "board fail 1 0", "board fail 1 7 later 1",
                 "board fail 1 7 after", "board fail 1 7 after 1 1", "board fail 1 100000000"}),
            (Lines{"error missing argument: N", "error not a whole number: x", "error out of range: -1",
                   "error not a failure: 0", "error not after: later", "error missing argument: M",
                   "error too many arguments: 1", "error not a hexadecimal number: 100000000"}));
  EXPECT_EQ(board.transfers_to_fail(), 0u);
}

TEST_F(ConsoleBoard, FailedCalls) {
  EXPECT_EQ(
      run({"board fail-call WDU_VB_Uninit 7", "board fail-call WDU_VB_Uninit", "board fail-call",
           "board fail-call Nothing", "board fail-call WDU_VB_Init 0", "board fail-call WDU_VB_Init 7 7"}),
      (Lines{"ok", "ok", "error missing argument: CALL", "error no such call: Nothing",
             "error not a failure: 0", "error too many arguments: 7"}));
}

TEST_F(ConsoleBoard, PlugDriverAndTiming) {
  EXPECT_EQ(run({"board unplug"}), Lines{"ok"});
  EXPECT_FALSE(board.plugged());
  EXPECT_EQ(run({"board plug"}), Lines{"ok"});
  EXPECT_TRUE(board.plugged());
  EXPECT_EQ(run({"board driver off"}), Lines{"ok"});
  EXPECT_FALSE(board.driver_present());
  EXPECT_EQ(run({"board driver on"}), Lines{"ok"});
  EXPECT_TRUE(board.driver_present());
  EXPECT_EQ(run({"board timing none"}), Lines{"ok"});
  EXPECT_FALSE(board.timing());
  EXPECT_EQ(run({"board timing real"}), Lines{"ok"});
  EXPECT_TRUE(board.timing());
  EXPECT_EQ(
      run({"board driver", "board driver maybe", "board timing on", "board plug 1", "board", "board burn"}),
      (Lines{"error missing argument: on|off", "error neither on nor off: maybe",
             "error neither real nor none: on", "error too many arguments: 1",
             "error missing argument: COMMAND", "error no such command: board burn"}));
}

// A board that is not simulated, and that nobody calls.
class OtherBoard final : public boards::Driver {
 public:
  std::string VB_Stat2Str(boards::Status) const override { return ""; }
  void deliver_notifications() override {}
  std::string board_name() const override { return "other board"; }

 private:
  boards::Status do_init(boards::Handle&, const boards::MatchRow&, boards::EventTable) override { return 1; }
  boards::Status do_uninit(boards::Handle) override { return 1; }
  boards::Status do_close_handle(boards::Handle) override { return 1; }
  boards::Status do_get_device_info(boards::Handle, boards::DeviceInfo&) override { return 1; }
  boards::Status do_set_interface(boards::Handle, std::int32_t, std::int32_t) override { return 1; }
  boards::Status do_reset_device(boards::Handle) override { return 1; }
  boards::Status do_reset_pipe(boards::Handle, std::int32_t) override { return 1; }
  boards::Status do_transfer(boards::Handle, std::int32_t, bool, std::span<std::uint8_t>,
                             std::size_t&) override {
    return 1;
  }
};

TEST_F(ConsoleBoard, CommandsAreRefusedOnAnotherBoard) {
  OtherBoard other;
  EXPECT_EQ(
      run_console(clock, other, "board plug\nboard nonsense\nboard\nclick frmBench.cmdTransfer\npackets\n"),
      (Lines{"error no simulated board", "error no simulated board", "error no simulated board", "ok",
             "ok [{\"pipe\":2,\"size\":3,\"data\":\"\",\"status\":1,\"time\":0.001},"
             "{\"pipe\":130,\"size\":3,\"data\":\"\",\"status\":1,\"time\":0.001}]"}));
}

}  // namespace
}  // namespace console_test
