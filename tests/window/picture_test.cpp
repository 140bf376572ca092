// Picture surfaces on screen.
#include <QPaintEvent>

#include "support/sample_form.h"
#include "support/window_program.h"
#include "window/picture_view.h"

namespace varzelin::testing {
namespace {

// Remembers what was painted.
struct PaintWatch : QObject {
  QRegion painted;
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

struct WindowPicture : WindowProgram {
  SampleForm* form = nullptr;
  window::PictureView* view = nullptr;
  PaintWatch watch;

  void SetUp() override {
    program.forms.add(SampleForm::form_name, [this](const std::string&) {
      auto made = std::make_unique<SampleForm>(program.forms);
      form = made.get();
      return made;
    });
    show(SampleForm::form_name);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window_of(SampleForm::form_name)));
    view = &widget<window::PictureView>(SampleForm::form_name, "pic");
    view->setFixedSize(300, 100);
    turn();
    view->installEventFilter(&watch);
    watch.painted = {};
  }
  QColor color_at(int column, int row) {
    return view->grab().toImage().pixelColor(static_cast<int>((column + 0.5) * view->scale_x()),
                                             static_cast<int>((row + 0.5) * view->scale_y()));
  }
};

TEST_F(WindowPicture, PixelsAreRedGreenBlueFromTheLowByte) {
  for (int row = 8; row < 13; ++row) {
    for (int column = 18; column < 23; ++column) {
      form->pic.SetPixelV(column, row, static_cast<std::int32_t>(forms::RGB(0x10, 0x80, 0xF0).value));
    }
  }
  form->pic.Refresh();
  turn();
  EXPECT_EQ(color_at(20, 10), QColor(0x10, 0x80, 0xF0));
  EXPECT_EQ(color_at(40, 10), QColor(Qt::white));
}

TEST_F(WindowPicture, OnlyColumnsThatWereDrawnOnArePaintedAgain) {
  form->pic.SetPixelV(50, 5, 0);
  form->pic.SetPixelV(52, 5, 0);
  form->pic.Refresh();
  turn();
  const QRect painted = watch.painted.boundingRect();
  EXPECT_GT(painted.width(), 0);
  EXPECT_LE(painted.width(), 30);
  EXPECT_TRUE(painted.contains(QRect(50 * 3, 10, 3 * 3, 3)));
}

TEST_F(WindowPicture, NothingDrawnIsNothingPainted) {
  form->pic.Refresh();
  turn();
  EXPECT_TRUE(watch.painted.isEmpty());
}

TEST_F(WindowPicture, PrintedTextIsDrawnWhereItStands) {
  form->pic.CurrentX = 20;
  form->pic.CurrentY = 10;
  form->pic.Print("88");
  turn();
  const QImage image = view->grab().toImage();
  int dark = 0;
  for (int y = 20; y < 44; ++y) {
    for (int x = 60; x < 110; ++x) dark += image.pixelColor(x, y).lightness() < 128;
  }
  EXPECT_GT(dark, 10);
  form->pic.Cls();
  turn();
  EXPECT_EQ(view->grab().toImage().pixelColor(70, 30), QColor(Qt::white));
}

TEST_F(WindowPicture, ASurfaceOnAnotherScalesWithIt) {
  auto& child = widget<window::PictureView>(SampleForm::form_name, "picTop");
  view->stand_on_it(child, QPoint(10, 5));
  view->setFixedSize(200, 150);
  QApplication::processEvents();
  EXPECT_EQ(child.geometry(), QRect(20, 15, 40, 30));
}

constexpr std::int32_t black = 0;

TEST_F(WindowPicture, AGridIsToldFromABlackTraceAndKeepsItsPixels) {
  for (int column = 0; column < 100; ++column) form->pic.SetPixelV(column, 24, black);  // lines of the grid
  for (int row = 0; row < 50; ++row) form->pic.SetPixelV(40, row, black);
  for (int column = 0; column < 100; ++column) {  // a trace that is level, beside a line and on one
    const int middle = column < 70 ? 17 : 24;
    for (const int row : {middle - 1, middle, middle + 1}) form->pic.SetPixelV(column, row, black);
  }
  form->pic.Refresh();
  view->setFixedSize(100, 50);  // a pixel for a pixel
  turn();
  EXPECT_EQ(color_at(20, 24), QColor(Qt::black));
  view->tell_grid_apart();
  turn();
  const QColor grid = color_at(20, 24);
  EXPECT_GE(grid.lightness(), 100);
  EXPECT_LE(grid.lightness(), 160);
  EXPECT_EQ(color_at(40, 5), grid);
  EXPECT_EQ(color_at(40, 24), grid);
  EXPECT_EQ(color_at(20, 17), QColor(Qt::black));
  EXPECT_EQ(color_at(80, 24), QColor(Qt::black));
  EXPECT_EQ(form->pic.GetPixel(20, 24), black);
}

// Of the trace of the panels: a change of range has a colour, and stays in it on the grid.
TEST_F(WindowPicture, AColourStaysWhatItIs) {
  view->tell_grid_apart();
  for (const int row : {23, 24, 25})
    form->pic.SetPixelV(20, row, static_cast<std::int32_t>(forms::clr_red.value));
  form->pic.Refresh();
  view->setFixedSize(100, 50);
  turn();
  EXPECT_EQ(color_at(20, 24), QColor(Qt::red));
}

TEST_F(WindowPicture, ATimeAxisHasItsUnit) {
  const auto ink_of = [this](const char* text) {
    form->pic.Cls();
    form->pic.CurrentX = 2;
    form->pic.CurrentY = 10;
    form->pic.Print(text);
    turn();
    const QImage image = view->grab().toImage();
    int dark = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) dark += image.pixelColor(x, y).lightness() < 128;
    }
    return dark;
  };
  const int whole_number = ink_of("0");
  const int time = ink_of("0.00");
  view->name_unit_of_axis(10);
  const int samples = ink_of("0") - whole_number;
  const int seconds = ink_of("0.00") - time;
  EXPECT_GT(seconds, 5);
  EXPECT_GT(samples, 3 * seconds);
}

}  // namespace
}  // namespace varzelin::testing
