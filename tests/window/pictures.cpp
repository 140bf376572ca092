// Takes the pictures of docs/images that are made from here: each "test" saves one into the folder that
// the variable PICTURES names. scripts/take-pictures runs it.
#include <QAbstractButton>
#include <QLabel>
#include <QTabWidget>
#include <QTimer>

#include "support/window_of_program.h"

namespace varzelin::testing {
namespace {

struct Pictures : WindowOfProgram {
  std::string form;

  void open(int row) {
    choose_model(row);
    form = program.forms.front()->name();
    window_of(form).resize(1358, 730);
    turn();
  }
  void full_layout() {
    QTest::mouseDClick(&widget<QLabel>(form, "Label13"), Qt::LeftButton);
    turn();
  }
  void click(const char* button) {
    widget<QAbstractButton>(form, button).click();
    turn();
  }
  void page(const QString& title) {
    auto& tabs = *window_of(form).content()->findChild<QTabWidget*>();
    for (int i = 0; i < tabs.count(); ++i) {
      if (tabs.tabText(i) == title) tabs.setCurrentIndex(i);
    }
    turn();
  }
  void save(const QString& name) {
    windows.show_changes();
    QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QString path = qEnvironmentVariable("PICTURES", ".") + "/" + name + ".png";
    EXPECT_TRUE(window_of(form).grab().save(path)) << path.toStdString();
  }
  // Collects under light that moves, and stops after so many samples.
  void collect(std::int32_t samples, const std::function<void()>& in_the_end) {
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, &user, [&] {
      const std::int32_t count = program.store.Sample_Count;
      board.scene().light_lux = 450 + 350 * std::sin(count / 30.0) + 120 * std::sin(count / 7.0);
      if (count < samples) return;
      in_the_end();
      widget<QAbstractButton>(form, "cmdStopData").click();
    });
    user.start(0);
    click("cmdCollectData");
    turn();
  }
};

constexpr int kvt71388 = 2;
constexpr int kvt71385 = 5;
constexpr int kvt71390 = 7;
constexpr int kvt71392 = 9;

TEST_F(Pictures, MultiFunction) {
  open(kvt71385);
  click("OptMeasure(5)");
  collect(380, [&] { save("kvt71385"); });
}

TEST_F(Pictures, Look) {
  for (const int row : {kvt71388, kvt71385, kvt71390, kvt71392}) {
    open(row);
    const QString name = QString::fromStdString("look-" + form);
    save(name);
    page("Interrupt");
    save(name + "-interrupt");
    page("Details and Cover");
    page("Details");
    save(name + "-details");
    full_layout();
    for (const char* each :
         {"Registers", "Timing", "Interrupt", "Last Triggered Reading", "Device and File"}) {
      page(each);
      save(name + "-full-" + each);
    }
    program.runtime.dispatch([&] { program.forms.unload(*program.forms.loaded(form)); });
    show("frmStartup");
  }
}

}  // namespace
}  // namespace varzelin::testing
