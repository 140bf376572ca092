// The buttons around a sensor panel's chart.
#include <algorithm>
#include <cmath>

#include "panels/common/sensor_panel.h"
#include "waveform/trace.h"

namespace varzelin {

void SensorPanel::cmdWaveformINit_Click() {
  DrawGrid(program, Picture1);
  draw_labels();
  Save_Screen(store, Picture1);
}

void SensorPanel::cmdDrawTrace_Click() {
  store.Trace_Y.fill(1);
  for (int block = 1; block <= 8; ++block) {
    const std::int32_t row = forms::CLng(plot_rows - 100.0 * block * (plot_rows / 1000.0));
    for (int column = 50 * (block - 1); column < 50 * block; ++column) {
      store.Trace_Y[static_cast<std::size_t>(column)] = row == 0 ? 1 : row;
    }
  }
  Plot_Trace(Picture1, store.Trace_Y);
}

void SensorPanel::cmdScale_Click() {
  store.Scale_Max = forms::CLng(forms::Val(txtScale.Text) + 1);
  store.Scale_Min = forms::CLng(forms::Val(txtScaleMin.Text));
  // For a negative minimum this is narrower than the real range; the automatic re-scale adds instead.
  store.Scale_Span = forms::to_int32(std::int64_t{store.Scale_Max} - std::abs(std::int64_t{store.Scale_Min}));
  build_value_labels();
  draw_labels();
  Restore_Screen(store, Picture1);
}

bool SensorPanel::auto_scale_possible() const {
  constexpr std::int32_t too_few = 5;
  return store.Sample_Count > too_few && store.Sample_Value[slot(store.Sample_Count - 1)] != 0;
}

void SensorPanel::choose_auto_scale() {
  std::int32_t maximum = -99999;
  for (std::size_t i = 1; i <= slot(); ++i) maximum = std::max(maximum, store.Sample_Value[i]);
  txtScale.Text = forms::CStr(forms::Int(1.15 * maximum));
}

void SensorPanel::cmdAutoScale_Click() {
  DoEvents();
  if (!auto_scale_possible()) return;
  store.GraphUnit1 = "Scaled";
  store.GraphUnit2 = "Scaled";
  choose_auto_scale();
  DoEvents();
  store.Scale_Min = auto_scale_minimum();
  store.Scale_Max = forms::CLng(forms::Int(forms::Val(txtScale.Text)) + 1);
  txtScaleMin.Text = std::to_string(store.Scale_Min);
  store.Scale_Span = forms::to_int32(std::abs(std::int64_t{store.Scale_Min}) + store.Scale_Max);
  DoEvents();
  build_value_labels();
  store.Label_Right = store.Label_Left;
  draw_labels();
  store.Sample_Run = false_flag;
  DoEvents(100);
  restart_collection();
}

void SensorPanel::cmdSaveScreen_Click() {
  cmdSaveScreen.Enabled = false;
  Save_Screen(store, Picture1);
  cmdSaveScreen.Enabled = true;
}

void SensorPanel::cmdRestoreScreen_Click() {
  store.Sample_Run = false_flag;
  cmdCollectData.Enabled = false;
  cmdStopData.Enabled = false;
  DoEvents(2000);  // lets the running loop leave
  Sleep(100);
  cmdRestoreScreen.Enabled = false;
  Restore_Screen(store, Picture1);
  cmdRestoreScreen.Enabled = true;
  cmdCollectData.Enabled = true;
}

}  // namespace varzelin
