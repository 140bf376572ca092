#include "window/bench_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QTimer>
#include <cmath>
#include <utility>

#include "boards/simulated/light_sources.h"
#include "boards/simulated/models.h"
#include "boards/simulated/simulated_board.h"
#include "window/caption_button.h"
#include "window/look.h"
#include "window/mnemonics.h"

namespace window {
namespace {

constexpr int slider_steps = 1000;

// A logarithmic slider has its own place for values that a logarithm doesn't reach.
double at_position(int position, double low, double high, bool logarithmic) {
  const double part = position / static_cast<double>(slider_steps);
  if (!logarithmic) return low + part * (high - low);
  return position == 0 ? 0 : low * std::pow(high / low, part);
}

int position_of(double value, double low, double high, bool logarithmic) {
  double part = (value - low) / (high - low);
  if (logarithmic) part = value <= low ? 0 : std::log(value / low) / std::log(high / low);
  return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * slider_steps));
}

}  // namespace

BenchWindow::BenchWindow(boards::SimulatedBoard& board, const QString& title_suffix)
    : board_(board), model_(new QComboBox(this)) {
  setObjectName("Bench");
  setWindowTitle("Simulated Bench" + title_suffix);
  const boards::Scene& scene = board.scene();

  auto* quantities = new QGridLayout;
  quantities->setSpacing(gap);
  quantities->setHorizontalSpacing(2 * gap);
  add_quantity(*quantities, {"light", "&Light", " lx", "Visible light on the sensor", 0.01, 100000, 2, true,
                             scene.light_lux, [this](double value) { board_.scene().light_lux = value; }});
  add_quantity(*quantities, {"infrared", "&Infrared", " counts",
                             "Infrared part, in counts of the infrared diode", 0, 65535, 0, false,
                             scene.ir_counts, [this](double value) { board_.scene().ir_counts = value; }});
  add_quantity(*quantities,
               {"distance", "&Target distance", " mm", "From the sensor to the target in front of it", 0, 500,
                0, false, scene.distance_mm, [this](double value) { board_.scene().distance_mm = value; }});
  add_quantity(*quantities, {"noise", "&Noise", " counts", "Full width of the noise on the readings", 0, 500,
                             0, false, board.noise(), [this](double value) { board_.set_noise(value); }});
  auto* scene_box = new QGroupBox("Scene", this);
  auto* scene_lines = new QVBoxLayout(scene_box);
  scene_lines->addLayout(quantities);
  scene_lines->addLayout(source_buttons());

  auto* switches = new QHBoxLayout;
  switches->setSpacing(4 * gap);
  switches->addWidget(add_switch("plugged", "Board &plugged in", "Pulls the board's plug, or puts it back",
                                 board.plugged(), [this](bool on) { on ? board_.plug() : board_.unplug(); }));
  switches->addWidget(add_switch("answers", "Sensor &answers",
                                 "Without it the sensor doesn't acknowledge anything on the bus",
                                 board.sensor_answers(), [this](bool on) { board_.set_sensor_answers(on); }));
  switches->addStretch();
  model_->setObjectName("model");
  model_->setAccessibleName("Sensor in the socket");
  model_->setToolTip("Puts another sensor into the socket, at bus address 88");
  model_->addItem("(empty)");
  for (const auto& model : boards::simulated_models()) model_->addItem(to_qt(std::string(model)));
  connect(model_, &QComboBox::activated, this, [this](int row) {
    if (row == 0) {
      board_.unmount();
    } else {
      board_.mount(model_->itemText(row).toStdString());
    }
  });
  auto* parts = new QHBoxLayout;
  parts->addWidget(new QLabel("In the socket:", this));
  parts->addWidget(model_);
  parts->addStretch();
  parts->addWidget(new QLabel("External resistor:", this));
  parts->addWidget(resistor_list());
  auto* board_box = new QGroupBox("Board", this);
  auto* board_lines = new QVBoxLayout(board_box);
  board_lines->addLayout(switches);
  board_lines->addLayout(parts);

  auto* outermost = new QVBoxLayout(this);
  outermost->setSpacing(gap);
  outermost->setContentsMargins(gap, gap, gap, gap);
  outermost->addWidget(scene_box);
  outermost->addWidget(board_box);
  outermost->addStretch();

  mark_keys(*this);
  auto* refresh = new QTimer(this);
  connect(refresh, &QTimer::timeout, this, [this] {
    if (isVisible()) show_board();
  });
  refresh->start(500);
  show_board();
  resize(60 * fontMetrics().averageCharWidth() + 200, sizeHint().height());
}

void BenchWindow::add_quantity(QGridLayout& grid, const Quantity& quantity) {
  auto* slider = new QSlider(Qt::Horizontal, this);
  auto* box = new QDoubleSpinBox(this);
  slider->setRange(0, slider_steps);
  slider->setPageStep(slider_steps / 20);
  slider->setMinimumWidth(30 * fontMetrics().averageCharWidth());
  slider->setObjectName(QString(quantity.name) + "_slider");
  box->setRange(quantity.logarithmic ? 0 : quantity.low, quantity.high);
  box->setDecimals(quantity.decimals);
  box->setSuffix(quantity.unit);
  box->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
  box->setKeyboardTracking(false);
  box->setAlignment(Qt::AlignRight);
  box->setObjectName(quantity.name);
  const QString caption = QString(quantity.caption).remove('&');
  slider->setAccessibleName(caption + " slider");
  box->setAccessibleName(caption);
  slider->setToolTip(quantity.tip);
  box->setToolTip(quantity.tip);

  const auto to_slider = [slider, quantity](double value) {
    const QSignalBlocker quiet(slider);
    slider->setValue(position_of(value, quantity.low, quantity.high, quantity.logarithmic));
  };
  box->setValue(quantity.value);
  to_slider(quantity.value);
  connect(slider, &QSlider::valueChanged, this, [box, quantity](int position) {
    const double value = at_position(position, quantity.low, quantity.high, quantity.logarithmic);
    const QSignalBlocker quiet(box);
    box->setValue(value);
    quantity.set(value);
  });
  connect(box, &QDoubleSpinBox::valueChanged, this, [to_slider, quantity](double value) {
    to_slider(value);
    quantity.set(value);
  });

  auto* label = new QLabel(quantity.caption, this);
  label->setBuddy(box);
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(caption) + gap);
  const int line = grid.rowCount();
  grid.addWidget(label, line, 0);
  grid.addWidget(slider, line, 1);
  grid.addWidget(box, line, 2);
}

QHBoxLayout* BenchWindow::source_buttons() {
  auto* line = new QHBoxLayout;
  line->setSpacing(gap);
  line->addWidget(new QLabel("Light as of:", this));
  for (const boards::LightSource& source : boards::light_sources) {
    const QString name = to_qt(std::string(source.name));
    auto* button = new CaptionButton(this);
    button->setText(name);
    button->setObjectName(name);
    button->setToolTip(
        QString("%1 lx with %2 counts of infrared").arg(source.light_lux).arg(source.ir_counts));
    connect(button, &QPushButton::clicked, this, [this, source] {
      findChild<QDoubleSpinBox*>("light")->setValue(source.light_lux);
      findChild<QDoubleSpinBox*>("infrared")->setValue(source.ir_counts);
    });
    line->addWidget(button);
  }
  line->addStretch();
  return line;
}

QCheckBox* BenchWindow::add_switch(const char* name, const QString& caption, const QString& tip, bool on,
                                   std::function<void(bool)> set) {
  auto* box = new QCheckBox(caption, this);
  box->setObjectName(name);
  box->setToolTip(tip);
  box->setChecked(on);
  connect(box, &QCheckBox::toggled, this, std::move(set));
  return box;
}

QComboBox* BenchWindow::resistor_list() {
  auto* list = new QComboBox(this);
  list->setObjectName("resistor");
  list->setAccessibleName("External resistor");
  list->setToolTip("The resistor that sets the clock and the ranges of KVT71338");
  for (const int ohms : {500'000, 250'000, 100'000}) {
    list->addItem(QString("%1 kOhm").arg(ohms / 1000), ohms);
  }
  list->setCurrentIndex(
      list->findData(static_cast<int>(std::as_const(board_).scene().external_resistor_ohms)));
  connect(list, &QComboBox::activated, this,
          [this, list](int row) { board_.scene().external_resistor_ohms = list->itemData(row).toInt(); });
  return list;
}

void BenchWindow::show_board() {
  const std::string& model = board_.mounted_model();
  model_->setCurrentIndex(model.empty() ? 0 : model_->findText(to_qt(model)));
  const auto in_step = [this](const char* name, bool on) {
    auto* box = findChild<QCheckBox*>(name);
    const QSignalBlocker quiet(box);
    box->setChecked(on);
  };
  in_step("plugged", board_.plugged());
  in_step("answers", board_.sensor_answers());
}

void BenchWindow::showEvent(QShowEvent* event) {
  show_board();
  QWidget::showEvent(event);
}

}  // namespace window
