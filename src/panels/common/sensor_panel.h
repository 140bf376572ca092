// The pattern that all sensor panels repeat: load order, the two sampling loops and their stop
// buttons, the interval, the chart's buttons, the device list, the exit and the measurement file. A
// family derives from it and fills in what its sensors do; the loops themselves are this class's alone.
#pragma once

#include <optional>
#include <string>

#include "bridge/run_state.h"
#include "panels/common/bus_panel.h"

namespace varzelin {

// What one pass of the real-time loop brings.
struct Measurement {
  std::int32_t value = 0;                             // goes to Sample_Value
  std::optional<std::int32_t> second = std::nullopt;  // goes to Sample_Value2, where there is one
  std::int32_t raw = 0;                               // the count as read
  std::int32_t reading = 0;                           // for the chart and the box, in display units
};

class SensorPanel : public BusPanel, public Measuring {
 public:
  // The last slot of Sample_Value: the count stays there, and later samples overwrite it.
  static constexpr std::int32_t last_sample = 1010;
  // Samples that are stored but reach neither the count nor the trace, while the sensor settles.
  static constexpr std::int32_t settling_samples = 10;

  // The measurement file leaves out the slots before, as the trace does.
  static constexpr std::int32_t first_written = 11;

  SensorPanel(Program& owner, const PanelModel& panel_model);

  void Form_Load() override;

  RunState run_state() const override;

  // --- handlers ---
  void cmdSample_Click();
  void cmdCollectData_Click();
  void cmdAbort_Click();
  virtual void cmdEndSampling_Click();
  virtual void cmdStopData_Click();
  void TmrSample_Timer();
  void Tmr_Integration_Timer();
  void txtInterval_KeyPress(int& KeyAscii);
  void txtInterval_LostFocus();
  virtual void txtScale_Click();
  virtual void LstDeviceSel_MouseUp();
  void Command4_Click();
  void frmAbout_Click();

  void cmdWaveformINit_Click();
  void cmdDrawTrace_Click();
  void cmdScale_Click();
  virtual void cmdAutoScale_Click();
  void cmdSaveScreen_Click();
  void cmdRestoreScreen_Click();

  void cmdBrowse_Click();
  void cmdStartRec_Click(int Index);

  // --- for parts and for forms that work the panel ---

  // A loop of it is on the stack, and has the bus.
  bool loop_runs() const { return collecting_ || sampling_; }
  // Puts a count's bytes together as texts, the high byte's in front of the low byte's.
  static void show_count_of_bytes(const TextBox& high, const TextBox& low, TextBox& hex, TextBox& decimal);

 protected:
  // --- what a family fills in: the load ---

  // Lookup tables, lists, hidden controls.
  virtual void load_model() {}
  // The time axis at load.
  virtual void build_time_labels_at_load() { build_time_labels(store.IntervalMs); }
  // The default register image and its boxes.
  virtual void load_register_image() {}
  // The end of the load.
  virtual void finish_load() {}

  // --- the timed loop: start of a sample, count, reading, deferred work ---

  // Whether it may start; says why not.
  virtual bool sampling_allowed() { return true; }
  // Sets the panel up, and puts it back: controls beyond the pattern's that are out of the way.
  virtual void sampling_starts() {}
  virtual void sampling_ended() {}
  // Starts a conversion and waits until its reading is to be fetched.
  virtual void start_sample();
  virtual void fetch_sample() { Record_Triggered_Light_Count(); }
  // Behind a reading.
  virtual void sampling_pass_ends() {}
  virtual void run_sampling_work() {}
  // Behind the last pass.
  virtual void fetch_last_trigger();

  // --- the real-time loop: pace, measurement, deferred work, trigger, chart ---

  // Whether it may start; says why not, or makes it so.
  virtual bool collection_allowed() { return true; }
  // Sets the panel up; also when the collection is begun anew.
  virtual void collection_starts() {}
  // The vertical scale as a collection begins. Raises overflow for a text that is no scale.
  virtual void take_scale();
  // The session is open, and the loop about to begin.
  virtual void session_held() {}
  // The session is open, the first pass not begun; also when the collection is begun anew.
  virtual void collection_connected() {}
  virtual void collection_ended() {}
  // A pass begins, before its wait.
  virtual void begin_pass() {}
  // Whether a pass waits until it is due. Otherwise the measurement takes the time that it takes.
  virtual bool paced() const { return true; }
  virtual Measurement measure() = 0;
  virtual void run_collection_work() {}
  // Starts the conversion that the next pass reads.
  virtual void start_next_conversion() { Trig_KVT7134X(); }
  // The pixel row of the latest measurement, within the plot. It may still correct the reading.
  virtual std::int32_t measurement_row();
  virtual void show_measurement();
  // A pass is over: history, auto-range, scale follower.
  virtual void end_pass() {}

  // --- the automatic re-scale ---

  // Whether there are samples enough to go by, and the last one is of use.
  virtual bool auto_scale_possible() const;
  // Puts the new scale into txtScale.
  virtual void choose_auto_scale();
  // The lower end that goes with it.
  virtual std::int32_t auto_scale_minimum() const { return 0; }

  // --- both ---

  // Starts a conversion and sets TriggerDone.
  virtual void Trig_KVT7134X() = 0;
  // Fetches the reading of a trigger into Sample_Value(Sample_Count), and shows it.
  virtual void Record_Triggered_Light_Count() = 0;
  // Header line of the measurement file, up to the interval.
  virtual std::string data_file_header() = 0;

  // --- steps for a family's handlers ---

  std::int32_t interval_of_text() const;  // milliseconds, whole part of txtInterval's value
  // The pace of a collection, milliseconds.
  virtual std::int32_t pace_of_text() const { return interval_of_text(); }
  void set_pace(std::int32_t interval_ms) { interval_ms_ = interval_ms; }
  // Scale_Max of a scale box by the formula of the load.
  std::int32_t scale_of(const TextBox& box) const;
  // Waits by Tmr_Integration until IntegrationMs exceeds a second.
  void wait_integration();
  // Stops a running collection and says whether there was one: what handlers begin with that change the
  // measurement under it. restart_collection() begins it anew.
  bool stop_running_collection();
  void restart_collection();
  // The reply's status and count bytes in txtSampleByte, and the count in txtADHex and txtADDec.
  void show_reply_bytes();
  // A button of the loops comes or goes, or is enabled or not.
  void offer(forms::Control& button, bool offered);
  // What a stop button does to the heartbeat.
  virtual void end_heartbeat() { shpSample.Visible = false; }
  // Turns both LEDs of the GPIO panel over and writes the ports.
  void toggle_leds();
  void show_comm_test(bool good);
  // A slot of Sample_Value; raises subscript_out_of_range outside 0 to last_sample.
  static std::size_t slot(std::int64_t sample);
  std::size_t slot() const { return slot(store.Sample_Count); }

  bool overtaken() const final;
  // The real-time loop, or its start, is on the stack.
  bool in_collection() const { return collecting_; }

 private:
  void fill_device_list();
  void fill_delay_list();
  void load_chart();
  void build_time_labels(std::int32_t interval_ms);
  void build_value_labels();  // Label_Left from Scale_Min in tenths of Scale_Span
  void draw_labels();
  void clear_samples();
  void reset_trace();
  void count_sample();  // one more sample, up to last_sample
  void show_count();
  void advance_trace();

  // --- what becomes of a run (run_state.cpp) ---

  // Facts of the present run, or of the last one.
  struct Run {
    RunState::Kind kind = RunState::Kind::none;
    RunState::End end = RunState::End::run_time_error;  // until it comes to another one
    std::int32_t readings = 0;
    std::int32_t unanswered = 0;
    std::int64_t first_ms = 0;  // timeGetTime of the first reading and of the latest
    std::int64_t latest_ms = 0;
    std::int32_t missing_before = 0;  // the panel's counts when the run, or its present pass, began
    std::int32_t failed_before = 0;
  };
  void run_begins(RunState::Kind kind);
  void run_took_reading();
  void run_ends();
  void run_is_over();
  bool board_gone() const { return store.Dev_Ctx.device == 0; }

  void start_sampling();
  void timed_pass();
  void end_sampling();
  void start_collection(std::int32_t interval_ms);
  // The run-time error that ended it, if one did.
  std::optional<forms::RunTimeError> collect(std::int32_t interval_ms);
  void collection_pass();
  void whole_pass();
  // Waits until the sample of time `due` is to be taken.
  void pace(std::int64_t due);
  void commit(const Measurement& measurement);
  void end_collection();
  void write_data_file();

  Run run_;
  bool sampling_ = false;         // the timed loop is on the stack
  bool collecting_ = false;       // the real-time loop
  bool begun_anew_ = false;       // a collection began since the loop's pass began
  bool begins_ = false;           // it hasn't had its first pass
  int loop_depth_ = 0;            // handlers on the stack where the real-time loop runs
  std::int32_t interval_ms_ = 0;  // pace of the collection
  std::int64_t last_mark_ = 0;    // timeGetTime of the last trigger
  std::int64_t due_ = 0;

 public:
  // --- controls ---
  Menu frmAbout{*this, "frmAbout", {.Caption = "About"}};

  Frame FrmDevice{*this, "FrmDevice", {.Caption = "Device"}};
  ListBox LstDeviceSel{*this, "LstDeviceSel", {.Container = &FrmDevice}};
  Label lblI2CAddr{*this, "lblI2CAddr", {.Caption = "I2C Address (7 bit)", .Container = &FrmDevice}};
  TextBox txtI2CAddr{*this, "txtI2CAddr", {.Text = "44", .Container = &FrmDevice}};
  Label lblI2cXmitAdr{*this, "lblI2cXmitAdr", {.Caption = "Transmitted (8 bit)", .Container = &FrmDevice}};
  TextBox txtI2cXmitAdr{*this, "txtI2cXmitAdr", {.Text = "88", .Container = &FrmDevice}};
  Label LblCommTest{*this, "LblCommTest", {.Visible = false}};

  Frame frmMode{*this, "frmMode", {.Caption = "Mode & Status"}};
  Frame frmTimeBase{*this, "frmTimeBase", {.Caption = "Sampling Time Base Control"}};

  Shape ShpAttach{*this, "ShpAttach"};
  Label Label13{*this, "Label13", {.Caption = "USB Comm"}};
  Shape ShpHandleStatus{*this, "ShpHandleStatus"};
  Label lblHandleStatus{*this, "lblHandleStatus", {.Caption = "Panel Loaded"}};
  Shape shpSample{*this, "shpSample", {.Visible = false}};
  Label Label18{*this, "Label18", {.Caption = ""}};
  Label lblCapturedReadings{*this, "lblCapturedReadings", {.Caption = "Captured Readings"}};
  Label lblLoop_Count{*this, "lblLoop_Count", {.Caption = ""}};

  CommandButton cmdSample;
  CommandButton cmdEndSampling{*this, "cmdEndSampling", {.Caption = "Stop Sampling", .Visible = false}};
  CommandButton cmdCollectData{*this, "cmdCollectData", {.Caption = "Collect / Graph Real Time Data"}};
  CommandButton cmdStopData{*this, "cmdStopData", {.Caption = "Stop Data Acquisition", .Visible = false}};
  CommandButton cmdAbort{*this, "cmdAbort", {.Caption = "Terminate"}};
  Label lblDelay{*this, "lblDelay", {.Caption = "Delay Trigger to Read (mS)"}};
  ControlArray<ComboBox> CboIntTime{*this, "CboIntTime", {{5, Design{}}}};
  Label lblInterval{*this, "lblInterval", {.Caption = "Sample Interval (mS)"}};
  TextBox txtInterval;

  Label Label16{*this, "Label16", {.Caption = "Lux Reading"}};
  TextBox txtReading{*this, "txtReading"};
  Label Label17{*this, "Label17", {.Caption = "Reading 2"}};
  TextBox txtReading2{*this, "txtReading2"};
  Label Label6{*this, "Label6", {.Caption = "Command to Record Time (mS)", .Visible = false}};
  TextBox txtTime3{*this, "txtTime3", {.Visible = false}};
  Label Label14{*this, "Label14", {.Caption = "Command to Command Time (mS)", .Visible = false}};
  TextBox txtTime1{*this, "txtTime1", {.Visible = false}};

  Label lblSampleByte{*this, "lblSampleByte", {.Caption = "Reply Bytes"}};
  ControlArray<TextBox> txtSampleByte;
  Label lblADHex{*this, "lblADHex", {.Caption = "AD Count Hex"}};
  TextBox txtADHex{*this, "txtADHex"};
  Label lblADDec{*this, "lblADDec", {.Caption = "AD Count Dec"}};
  TextBox txtADDec{*this, "txtADDec"};

  PictureBox Picture2;  // the labels, behind the plot
  PictureBox Picture1;  // the plot
  CommandButton cmdWaveformINit{*this, "cmdWaveformINit", {.Caption = "Init Waveform"}};
  CommandButton cmdDrawTrace{*this, "cmdDrawTrace", {.Caption = "DrawTrace"}};
  CommandButton cmdScale{*this, "cmdScale", {.Caption = "Manual Re-Scale"}};
  CommandButton cmdAutoScale{*this, "cmdAutoScale", {.Caption = "Automatic Re-Scale"}};
  CommandButton cmdSaveScreen{*this, "cmdSaveScreen", {.Caption = "Save Screen"}};
  CommandButton cmdRestoreScreen{*this, "cmdRestoreScreen", {.Caption = "Clear Graph"}};
  Label lblScale{*this, "lblScale", {.Caption = "Scale Max"}};
  TextBox txtScale;
  Label lblScaleMin{*this, "lblScaleMin", {.Caption = "Scale Min"}};
  TextBox txtScaleMin{*this, "txtScaleMin", {.Text = "0"}};

  Frame frmDataRecord{*this, "frmDataRecord", {.Caption = "Save Measurements to File"}};
  CheckBox chkAppend{*this,
                     "chkAppend",
                     {.Caption = "Append",
                      .ToolTipText = "If check, data is appended to end of Measurement file, if uncheck file "
                                     "is overwritten with present data only.",
                      .Container = &frmDataRecord}};
  CommandButton cmdBrowse{*this,
                          "cmdBrowse",
                          {.Caption = "Browse",
                           .ToolTipText = "Use this to select file where measurement data will be written.",
                           .Container = &frmDataRecord}};
  ControlArray<CommandButton> cmdStartRec{
      *this,
      "cmdStartRec",
      {{0, Design{.Caption = "Write to Disk",
                  .ToolTipText = "Click here to save measurement to disk file.",
                  .Container = &frmDataRecord}}}};
  TextBox txtFilePath{*this,
                      "txtFilePath",
                      {.ToolTipText = "Contains Path + File name where measurement data will be written.",
                       .Container = &frmDataRecord}};
  CommonDialog CommonDialog2{*this, "CommonDialog2"};

  CommandButton Command4;

  Timer TmrSample{*this, "TmrSample", {.Enabled = false, .Interval = 1000}};
  Timer Tmr_Integration{*this, "Tmr_Integration", {.Enabled = false, .Interval = 25}};
};

}  // namespace varzelin
