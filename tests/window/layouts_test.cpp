// The parts that several layouts share, on a form of their own.
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "forms/controls.h"
#include "support/window_program.h"
#include "window/arranger.h"
#include "window/caption_button.h"
#include "window/layouts/options.h"
#include "window/layouts/register_block.h"

namespace varzelin::testing {
namespace {

// Option buttons 0, 2, 3, 4 and 6, and two registers, of which one is only read.
struct PartsForm final : forms::Form {
  explicit PartsForm(forms::FormSet& set) : Form(set, "frmParts", "Parts") {}
  forms::ControlArray<forms::OptionButton> opt{*this, "opt", {{6, {}}, {0, {}}, {2, {}}, {3, {}}, {4, {}}}};
  forms::ControlArray<forms::Label> lbl{*this, "lbl", forms::captioned({"r0", "r1"})};
  forms::ControlArray<forms::TextBox> hex{*this, "hex", {{0, {}}}};
  forms::ControlArray<forms::TextBox> rd{*this, "rd", {{0, {}}, {1, {}}}};
  forms::CommandButton write{*this, "write", {.Caption = "Write the register that this line is about"}};
  forms::CommandButton read{*this, "read", {.Caption = "Read"}};
  forms::ControlArray<forms::Shape> lamp{*this, "lamp", {{0, {}}, {1, {}}}};
};

struct WindowLayouts : WindowProgram {
  PartsForm* form = nullptr;
  void SetUp() override {
    program.forms.add("frmParts", [this](const std::string&) {
      auto made = std::make_unique<PartsForm>(program.forms);
      form = made.get();
      return made;
    });
    show("frmParts");
  }
  static QString at(const QGridLayout& grid, int line, int column) {
    const QLayoutItem* item = grid.itemAtPosition(line, column);
    return item ? item->widget()->objectName() : QString();
  }
};

TEST_F(WindowLayouts, ElementsWithGapsInTheirNumbersStandInFullColumns) {
  QWidget& content = *window_of("frmParts").content();
  window::Arranger place(*form, content);
  const std::unique_ptr<QGridLayout> grid(window::elements(place, "opt", 2));
  EXPECT_EQ(at(*grid, 0, 0), "opt(0)");
  EXPECT_EQ(at(*grid, 1, 0), "opt(2)");
  EXPECT_EQ(at(*grid, 2, 0), "opt(3)");
  EXPECT_EQ(at(*grid, 0, 1), "opt(4)");
  EXPECT_EQ(at(*grid, 1, 1), "opt(6)");
  EXPECT_EQ(grid->count(), 5);
}

TEST_F(WindowLayouts, ARegisterBlockHasItsWidgetsInColumnsAndNamesThem) {
  QWidget& content = *window_of("frmParts").content();
  window::Arranger place(*form, content);
  auto* write = place.as<window::CaptionButton>("write");
  const std::unique_ptr<QGridLayout> grid(
      window::register_block(place, {{.name = "R0",
                                      .label = place("lbl", 0),
                                      .write_box = place("hex", 0),
                                      .write_button = write,
                                      .write_lamp = place("lamp", 0),
                                      .read_box = place("rd", 0)},
                                     {.name = "R1",
                                      .label = place("lbl", 1),
                                      .read_box = place("rd", 1),
                                      .read_button = place.as<window::CaptionButton>("read"),
                                      .read_lamp = place("lamp", 1)}}));
  const QStringList first{"lbl(0)", "hex(0)", "write", "lamp(0)", "rd(0)", "", ""};
  const QStringList second{"lbl(1)", "", "", "", "rd(1)", "read", "lamp(1)"};
  for (int column = 0; column < first.size(); ++column) {
    EXPECT_EQ(at(*grid, 1, column), first[column]);
    EXPECT_EQ(at(*grid, 2, column), second[column]);
  }
  const auto named = [&](const char* name) { return widget<QWidget>("frmParts", name).accessibleName(); };
  EXPECT_EQ(named("hex(0)"), "R0 to write");
  EXPECT_EQ(named("lamp(0)"), "R0 written");
  EXPECT_EQ(named("rd(1)"), "R1 as read");
  EXPECT_EQ(named("lamp(1)"), "R1 read");
  EXPECT_EQ(write->sizeHint().height(), place("read")->sizeHint().height());
}

}  // namespace
}  // namespace varzelin::testing
