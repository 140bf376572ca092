// The bench of a simulated board: the light on the sensor, the target in front of it, the resistor beside it,
// the plug. What is moved here changes the board at once, also while a handler of the program runs.
#pragma once

#include <QWidget>
#include <functional>

class QCheckBox;
class QDoubleSpinBox;
class QGridLayout;
class QComboBox;
class QHBoxLayout;

namespace boards {
class SimulatedBoard;
}

namespace window {

class BenchWindow final : public QWidget {
 public:
  BenchWindow(boards::SimulatedBoard& board, const QString& title_suffix);
  // Shows what the program did to the board: the sensor in its socket.
  void show_board();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // A slider and a box for one quantity.
  struct Quantity {
    const char* name;
    const char* caption;
    const char* unit;
    const char* tip;
    double low;
    double high;
    int decimals;
    bool logarithmic;
    double value;
    std::function<void(double)> set;
  };
  void add_quantity(QGridLayout& grid, const Quantity& quantity);
  // A button for each light source: it sets the light and its infrared part.
  QHBoxLayout* source_buttons();
  QCheckBox* add_switch(const char* name, const QString& caption, const QString& tip, bool on,
                        std::function<void(bool)> set);
  QComboBox* resistor_list();

  boards::SimulatedBoard& board_;
  QComboBox* model_;
};

}  // namespace window
