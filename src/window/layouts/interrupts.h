// The interrupt of a sensor.
#pragma once

class QGroupBox;
class QLayout;

namespace window {

class Arranger;

QGroupBox* interrupt_limits_group(Arranger& place);
// Its flag, its pin, and the polling of both.
QGroupBox* interrupt_status_group(Arranger& place);
// The button that clears the flag and nothing else.
QLayout* clear_command(Arranger& place);

}  // namespace window
