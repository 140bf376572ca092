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

}  // namespace
}  // namespace varzelin::testing
