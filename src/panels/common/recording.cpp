// The measurement file of a sensor panel: written after the fact from the samples that a loop left.
#include "bridge/log.h"
#include "panels/common/sensor_panel.h"

namespace varzelin {
namespace {

constexpr std::int32_t least_samples = 20;

}  // namespace

void SensorPanel::cmdBrowse_Click() {
  CommonDialog2.DialogTitle = "Select File For Recording";
  CommonDialog2.FileName = "";
  CommonDialog2.Filter = "All Files (*.*)|*.*|KVT7134x Data Files(*.txt)|*.txt";
  CommonDialog2.DefaultExt = "*.txt";
  CommonDialog2.ShowOpen();
  if (!CommonDialog2.FileName.get().empty()) txtFilePath.Text = CommonDialog2.FileName;
}

void SensorPanel::cmdStartRec_Click(int /*Index*/) {
  if (store.Sample_Count < least_samples) {
    MsgBox("Save More Measurements");
    return;
  }
  // After a failure the two buttons stay disabled and the file stays open, until something else
  // enables and closes them.
  try {
    store.Sample_Run = false_flag;
    cmdSample.Enabled = false;
    cmdCollectData.Enabled = false;
    write_data_file();
    Label18.Caption =
        forms::Str(store.Sample_Count - 10) + " Measurement set(s) written: " + Date() + " " + Time();
    cmdCollectData.Enabled = true;
    cmdSample.Enabled = true;
  } catch (const forms::RunTimeError& error) {
    Log_Put_Aside(program);
    MsgBox(error.text);
  }
}

void SensorPanel::write_data_file() {
  forms::Files& files = runtime().files;
  const int number = files.FreeFile();
  files.Open(txtFilePath.Text.get(),
             chkAppend.Value == 1 ? forms::Files::Mode::Append : forms::Files::Mode::Output, number);
  files.PrintLine(number, data_file_header() + ",Interval " + txtInterval.Text.get() + ", " + Date() + "," +
                              Time() + ", Qty" + forms::Str(store.Sample_Count - first_written));
  for (std::int32_t i = first_written; i < store.Sample_Count; ++i) {
    const std::size_t sample = slot(i);
    files.PrintLine(number, forms::Str(i - first_written) + "," + forms::Str(store.Sample_Value[sample]) +
                                "," + forms::Str(store.Sample_Value2[sample]));
  }
  files.PrintLine(number, "END");
  files.Close(number);
}

}  // namespace varzelin
