#include "window/tips.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "forms/form.h"
#include "window/look.h"

namespace window {
namespace {

// A line without a form is for all that have the control. One for the form goes before, and one for an
// element before that of its array.
struct Tip {
  std::string_view form;
  std::string_view control;
  std::string_view words;
};

constexpr std::array tips{
    // --- start and about ---
    Tip{"frmStartup", "cboDeviceSelect", "Opens the panel of this sensor"},
    Tip{"frmStartup", "OptRev(0)", "The sensor is of the first chip revision"},
    Tip{"frmStartup", "OptRev(1)", "The sensor is of the second chip revision"},
    Tip{"frmStartup", "cmdAbout", "The program's version, and whose libraries it uses"},
    Tip{"frmStartup", "Picture1", "Light on a sensor"},
    Tip{"frmAbout2", "cmdOK", "Closes this box"},
    Tip{"frmAbout2", "cmdSysInfo", "Notes in the log that there is no system information here"},

    // --- all sensor panels ---
    Tip{"", "LstDeviceSel", "The sensor's bus address: a row puts it into the boxes below"},
    Tip{"", "txtI2CAddr", "Bus address as the datasheet has it, 7 bits, hexadecimal"},
    Tip{"", "txtI2cXmitAdr", "The address as it goes over the bus, with the read bit clear, hexadecimal"},
    Tip{"", "ShpHandleStatus", "Green once the panel is loaded"},
    Tip{"", "ShpAttach", "Green: the last transfer worked. Red: it failed"},
    Tip{"", "shpSample", "Blinks with each sample of a timed run"},
    Tip{"", "cmdSample", "Starts a timed run: trigger, wait, read, again and again"},
    Tip{"", "cmdEndSampling", "Ends the timed run behind the sample under way"},
    Tip{"", "cmdCollectData",
        "Reads at the sample interval and lets the chart scroll. The first ten readings settle"},
    Tip{"", "cmdStopData", "Ends the collection. Its readings stay for \"Write to Disk\""},
    Tip{"", "cmdAbort", "Asks a timed run to end"},
    Tip{"", "CboIntTime",
        "The timed run waits this row's number behind each trigger: row 0 not at all, row 8 8 ms"},
    Tip{"", "txtInterval", "Milliseconds from reading to reading. Enter starts a collection with it"},
    Tip{"", "txtSampling_Delay", "Milliseconds that the timed run waits for a conversion"},
    Tip{"", "txtReading", "The latest reading"},
    Tip{"", "txtReading2", "The latest second reading, where a measurement has two"},
    Tip{"", "txtReading3", "The latest count as it was read"},
    Tip{"", "txtADCRaw", "The latest count as it was read"},
    Tip{"", "txtTime3", "Milliseconds from the latest trigger to its reading"},
    Tip{"", "txtTime1", "Milliseconds between the latest two triggers"},
    Tip{"", "txtSampleByte(0)",
        "First byte of the last reply: how many bytes came; 0 when the sensor didn't answer"},
    Tip{"", "txtSampleByte", "Byte of the last reply, hexadecimal"},
    Tip{"", "txtADHex", "The last triggered count, hexadecimal"},
    Tip{"", "txtADDec", "The last triggered count"},
    Tip{"", "Picture1", "The latest 400 readings, the newest at the right"},
    Tip{"", "Picture2", "The chart's scales"},
    Tip{"", "txtScaleMin", "The chart's lower end, taken by \"Manual Re-Scale\""},
    Tip{"", "txtScale2", "The upper end of the right-hand scale"},
    Tip{"", "txtScaleMin2", "The lower end of the right-hand scale"},
    Tip{"", "cmdWaveformINit", "Draws the grid and the labels anew, and keeps them as the empty chart"},
    Tip{"", "cmdDrawTrace", "Draws a staircase that shows whether the chart works"},
    Tip{"", "cmdScale", "Takes the chart's ends from the boxes above"},
    Tip{"", "cmdAutoScale", "Fits the scale to the readings so far and starts the collection anew"},
    Tip{"", "cmdSaveScreen",
        "Keeps the chart as it is as the empty chart, on which the next traces are drawn"},
    Tip{"", "cmdRestoreScreen", "Ends the collection and takes the trace away"},

    // --- what several panels have ---
    Tip{"frmKVT71346", "lst_MainOptions", "Shows one section of the panel and hides the others"},
    Tip{"frmKVT71346", "OptMode(0)", "Measures what the list beside says"},
    Tip{"frmKVT71346", "OptMode(1)", "Switches the sensor off until another mode is chosen"},
    Tip{"frmKVT71346", "OptMode(2)", "Looks whether the sensor answers, and says Good or Fail"},
    Tip{"frmKVT71346", "txtModeByte", "The mode as it goes to the sensor, hexadecimal"},
    Tip{"", "OptMode(0)", "The sensor measures"},
    Tip{"", "OptMode(1)", "Switches the sensor off"},
    Tip{"", "OptMode(2)", "Looks whether the sensor answers, and says Good or Fail"},
    Tip{"", "LstMode2", "Which diode, or which of both, is measured"},
    Tip{"", "OptTimeBase(0)", "The sensor's own clock times the conversions"},
    Tip{"", "OptTimeBase(1)", "Sync commands time the conversions"},
    Tip{"", "OptMeasure", "What is measured, and how often"},
    Tip{"", "OptITime", "Width of the conversion in bits: a wider one takes longer"},
    Tip{"", "OptGain", "Full scale of the light, in lux"},
    Tip{"", "ChkCommand", "A bit of the command register"},
    Tip{"", "OptGraph", "What the chart shows"},
    Tip{"", "txtRegHex", "Byte to write to the register, hexadecimal"},
    Tip{"", "txtRegRd", "Byte that was read from the register, hexadecimal"},
    Tip{"", "cmdWrtReg", "Writes the byte above to the register"},
    Tip{"", "cmdRDReg", "Reads the register"},
    Tip{"frmKVT71338", "cmdSetControl", "Reads the register into its box"},
    Tip{"", "cmdSetCommand", "Writes the byte of its box to the first register"},
    Tip{"", "cmdSetControl", "Writes the byte of its box to the second register"},
    Tip{"", "cmdSetIntHigh", "Writes the upper limit of the interrupt"},
    Tip{"", "cmdSetIntLow", "Writes the lower limit of the interrupt"},
    Tip{"", "cmdRead_All", "Reads back what was written. What differs turns red"},
    Tip{"", "cmdRead_Measurements", "Reads the registers with the results"},
    Tip{"", "cmdRead_ADC", "Reads the registers with the count"},
    Tip{"", "cmdReadTB", "Reads the registers with the time base's count"},
    Tip{"", "cmdSync", "Sends the sync command that ends one conversion and begins the next"},
    Tip{"", "txtICycHex", "Clock cycles of the last triggered integration, hexadecimal"},
    Tip{"", "txtICYCDec", "Clock cycles of the last triggered integration"},
    Tip{"", "ShpInd",
        "Changes its green with each access that worked. Red: it didn't, or what was read differs"},
    Tip{"", "ShpIndrd", "Changes its green with each read. Red: what was read differs from what was written"},
    Tip{"", "ShpIndwr", "Changes its green with each write"},

    // --- interrupt ---
    Tip{"", "txtIUpperLimit", "The sensor interrupts above this count"},
    Tip{"", "txtILowerLimit", "The sensor interrupts below this count"},
    Tip{"", "cmdClearInt", "Clears the sensor's interrupt flag"},
    Tip{"", "txtPbInt", "Levels of port B, hexadecimal. Bit 7 is the interrupt pin"},
    Tip{"", "ChkIpol", "Looks at the interrupt again and again"},
    Tip{"", "ShpISample", "Blinks with each look at the interrupt"},
    Tip{"", "ShpINt", "Red: the sensor's interrupt flag is set"},
    Tip{"", "ShpINTexternal", "Red: the interrupt pin is low"},
    Tip{"", "optINTP", "So many readings in a row must be beyond a limit before the sensor interrupts"},

    // --- converter for light, infrared and proximity ---
    Tip{"", "OptMeasMode(0)", "A triggered reading shows the count"},
    Tip{"", "OptMeasMode(1)", "A triggered reading shows the time base"},
    Tip{"", "OptExtTime(0)", "The sensor's own clock times the conversions"},
    Tip{"", "OptExtTime(1)", "Sync commands time the conversions"},
    Tip{"", "ChkEOC1", "Sends this sync command in each reading"},
    Tip{"", "OptPSrc", "Current of the infrared emitter in proximity"},
    Tip{"", "OptMFreq", "Modulation of the infrared emitter in kHz. DC: none"},
    Tip{"", "OptIRMode(0)", "Proximity counts from 0"},
    Tip{"", "OptIRMode(1)", "Proximity has a sign, without the ambient infrared"},
    Tip{"", "txtProx_IR", "Of the last pair of a proximity and an infrared reading"},
    Tip{"", "ShpOVRange", "Red: the count of the last pair is at the end of its range"},
    Tip{"", "cmdProx_IR", "Takes a proximity and an infrared reading and shows their difference"},
    Tip{"", "OptGainMode(0)", "The range stays as it is set"},
    Tip{"", "OptGainMode(1)", "The range follows the readings"},
    Tip{"", "OptIRDRMode(0)", "The emitter's current stays as it is set"},
    Tip{"", "OptIRDRMode(1)", "The emitter's current follows the readings"},
    Tip{"", "txtGainTrip(0)", "Above this part of full scale the next coarser range is taken"},
    Tip{"", "txtGainTrip(1)", "Below this part of full scale the next finer range is taken"},
    Tip{"", "chkAutoAuto", "The chart's scale follows the readings by itself"},
    Tip{"", "txtADMax", "Extreme of the readings since they were cleared"},
    Tip{"", "cmdClearHist", "Begins the extremes anew"},
    Tip{"", "ChkCover", "Works out the light as behind a cover"},
    Tip{"", "cmdALS_IR", "Takes a light and an infrared reading and corrects the light for the cover"},
    Tip{"frmProxOff", "txtProxOff",
        "Counts that are subtracted from proximity at this current and modulation"},

    // --- proximity filter ---
    Tip{"", "txtCorrectionConstant", "Added to the difference where infrared is at its threshold or above"},
    Tip{"", "txtProxGrossDelta", "After more rejections in a row than this a new level is taken for good"},
    Tip{"", "txtHighThreshold", "Above it the target is there"},
    Tip{"", "txtLowThreshold", "Below it the target is gone"},
    Tip{"", "txtProxADJ", "Proximity minus infrared, corrected"},
    Tip{"", "txtMaxChange", "The largest change that is still accepted, in counts"},
    Tip{"", "txtPROXGross", "The filter's weighted average"},
    Tip{"", "ChStab", "Waits in each reading until two pairs in a row differ by little"},
    Tip{"", "txtStabDif", "Two pairs that differ by less percent than this are stable"},
    Tip{"", "txtStabDelay", "Milliseconds between the pairs"},
    Tip{"", "cmdRead", "Reads what was triggered"},
    Tip{"", "cmdBatchShow", "Opens the fixed sequence of light, infrared and proximity"},

    // --- external resistor ---
    Tip{"frmKVT71338", "ChkExternalTime", "Sync commands time the conversions"},
    Tip{"frmKVT71338", "OptPwr(0)", "Switches the converter off"},
    Tip{"frmKVT71338", "OptPwr(1)", "Switches the converter on"},
    Tip{"frmKVT71338", "OptMeasQty(0)", "The sensor converts all the time"},
    Tip{"frmKVT71338", "OptMeasQty(1)", "The sensor converts once with each command"},
    Tip{"frmKVT71338", "ChkOneShot", "Each reading sends the one shot command"},
    Tip{"frmKVT71338", "ChkSync", "Each reading sends this sync command"},
    Tip{"frmKVT71338", "txtADC_Reading", "The latest count"},
    Tip{"frmKVT71338", "txtCaclulated_Lux", "The light worked out of the latest count"},
    Tip{"frmKVT71338", "txtTimeBaseReading", "The latest count of the time base"},
    Tip{"frmKVT71338", "OptREXT", "Puts this external resistor into the calculator"},
    Tip{"frmKVT71338", "txtREXT", "The external resistor, ohms"},
    Tip{"frmKVT71338", "txtRREF", "The resistor that the datasheet's figures are for, ohms"},
    Tip{"frmKVT71338", "txtFOSC_Freq", "Clock that the resistor gives, kHz"},
    Tip{"frmKVT71338", "txtFoscPeriod", "Period of that clock, milliseconds"},
    Tip{"frmKVT71338", "txtClockCounts2", "Clock periods of an integration"},
    Tip{"frmKVT71338", "txtCalcITIme", "Time of an integration, milliseconds"},
    Tip{"frmKVT71338", "txtFSR", "Full scale of the range with this resistor, lux"},
    Tip{"frmKVT71338", "txtFSR2", "Full scale of the range with this resistor, lux"},
    Tip{"frmKVT71338", "txt2N", "Counts of full scale"},
    Tip{"frmKVT71338", "txtLFactor", "Lux per count"},

    // --- interrupt test ---
    Tip{"frm71385INTR", "OptResolution", "Width of the conversion in bits"},
    Tip{"frm71385INTR", "txtLuxThreshold", "Not in use: \"Least ALS\" below decides"},
    Tip{"frm71385INTR", "cmdWriteLimits", "Writes both thresholds to the sensor"},
    Tip{"frm71385INTR", "cmdSampleII", "Looks at the interrupt pin"},
    Tip{"frm71385INTR", "cmdClearIntr", "Clears the sensor's interrupt flag"},
    Tip{"frm71385INTR", "cmdRecordLux", "Takes the present light down"},
    Tip{"frm71385INTR", "mcdRecordProx", "Takes the present proximity down"},
    Tip{"frm71385INTR", "ShpALSCompare", "Green: the comparison came out so"},

    // --- workbench ---
    Tip{"frmI2C_General", "shpUSBCon(0)", "Green while the session with the board is open"},
    Tip{"frmI2C_General", "shpUSBCon(1)", "Green while it is closed"},
    Tip{"frmI2C_General", "txthDriver", "The driver's handle"},
    Tip{"frmI2C_General", "cbNoc", "What became of opening the driver"},
    Tip{"frmI2C_General", "txtActualWrtAddress", "The address as a write puts it on the bus, hexadecimal"},
    Tip{"frmI2C_General", "txtActualReadAddress", "The address as a read puts it on the bus, hexadecimal"},
    Tip{"frmI2C_General", "VScroll1", "Scrolls the table of registers"},
    Tip{"frmI2C_General", "HScroll1", "Scrolls the table of registers"},
    Tip{"frmI2C_General", "SSTab1", "The rows of the registers"},
    Tip{"frmI2C_General", "Reg_Desc", "What the register is for, in your words"},
    Tip{"frmI2C_General", "shpBwrite", "Changes its green with each write. Red: not acknowledged"},
    Tip{"frmI2C_General", "Shape1", "Changes its green with each read. Red: it failed"},
    Tip{"frmI2C_General", "txtsbwr", "Byte that the button above writes, hexadecimal"},
    Tip{"frmI2C_General", "txtReadByte", "Byte that was read, hexadecimal"},
    Tip{"frmI2C_General", "cmdRead", "Reads a single byte"},
    Tip{"frmI2C_General", "Shape2", "Changes its green with each transfer. Red: it failed"},
    Tip{"frmI2C_General", "Shape3", "Green: the last single byte was acknowledged. Red: it was not"},
    Tip{"frmI2C_General", "Txtlog", "What the session with the board has done"},
    Tip{"frmI2C_General", "shpLogStatus", "Red: the log has an error that nothing has made up for yet"},
    Tip{"frmI2C_General", "cmdClearLog", "Empties the log"},
    Tip{"frmI2C_General", "cmdexit", "Leaves the program"},

    // --- scripts ---
    Tip{"frmScriptOps", "vbalGrid1",
        "The script's rows. One that is chosen is executed; what differs turns red"},
    Tip{"frmScriptOps", "txtI2CAdr", "Bus address of rows that name none, hexadecimal"},
    Tip{"frmScriptOps", "txtScriptLine1", "When the script was loaded"},
    Tip{"frmScriptOps", "cmdReload2", "Loads the same file again"},
    Tip{"frmScriptOps", "txtTotLines", "Rows of the script"},
    Tip{"frmScriptOps", "txttotReads", "Rows that read"},
    Tip{"frmScriptOps", "txtRdPass", "Reads that brought what the script expects"},
    Tip{"frmScriptOps", "txtRdFails", "Reads that brought something else"},
    Tip{"frmScriptOps", "cmdExecAll", "Executes all rows once"},
    Tip{"frmScriptOps", "cmdRunContinuous", "Executes all rows again and again"},
    Tip{"frmScriptOps", "cmdAbort", "Ends the execution behind the row under way"},
    Tip{"frmScriptOps", "chkAOF", "A read that fails ends the execution"},
    Tip{"frmScriptOps", "txtRunning", "The row under way"},
    Tip{"frmScriptOps", "txtLoopCount", "How often all rows were executed"},
    Tip{"frmScriptOps", "optSend", "Not in use: a script sends"},
    Tip{"frmScriptOps", "optReceive", "Not in use: a script receives"},
    Tip{"frmScriptOps", "txtI2CAdrOut", "Not in use"},
    Tip{"frmScriptOps", "txtI2CIntAdrOut", "Not in use"},
    Tip{"frmScriptOps", "txtI2CBytesOut", "Not in use"},
    Tip{"frmScriptOps", "cmdSendSerial", "Not in use: a script sends"},
    Tip{"frmScriptOps", "txtI2CAdrIn", "Not in use"},
    Tip{"frmScriptOps", "txtI2CIntAdrIn", "Not in use"},
    Tip{"frmScriptOps", "txtI2CBytesIN", "Not in use"},
    Tip{"frmScriptOps", "cmdReceiveSerial", "Not in use: a script receives"},
    Tip{"frmScriptOps", "Command1", "Marks the second row"},
    Tip{"ALS_Batch", "OptSource", "The light source that the ratio of infrared to light speaks for"},
    Tip{"ALS_Batch", "OptPrxADJ", "How proximity was corrected for infrared"},
    Tip{"ALS_Batch", "cmdScript1", "Runs the sequence: light, infrared, proximity"},
    Tip{"ALS_Batch", "cmdWriteI2C", "Opens the session with the board and closes it"},
    Tip{"ALS_Batch", "cmdReadi2c", "Opens the session with the board and closes it"},

    // --- ports ---
    Tip{"frmGPIO", "chkOutEn", "Checked: the pin is an output"},
    Tip{"frmGPIO", "chkOutEnc", "Checked: the pin is an output"},
    Tip{"frmGPIO", "ChLed1", "Checked: the LED's pin is an output"},
    Tip{"frmGPIO", "ChkBData", "Level that is written to the pin"},
    Tip{"frmGPIO", "ChkCData", "Level that is written to the pin"},
    Tip{"frmGPIO", "ChKLedData", "Level that is written to the LED's pin"},
    Tip{"frmGPIO", "txtPCHex", "Output enables of the port, hexadecimal"},
    Tip{"frmGPIO", "txtPCHexData", "Data of the port, hexadecimal"},
    Tip{"frmGPIO", "shpGpioWr", "Light green: what was read is what was written"},
    Tip{"frmGPIO", "cmdReadGPIO", "Not in use: \"Write\" reads both ports back"},
    Tip{"frmGPIO", "cmdGPIO_Write", "Writes both ports and reads them back"},
};

}  // namespace

QString tip_of(const forms::Control& control) {
  const std::string& form_name = control.form().name();
  const std::string_view form = std::string_view(form_name).substr(0, form_name.find('#'));
  const std::string element = control.full_name();
  const auto closeness = [&](const Tip& tip) {
    const bool is_element = tip.control == element;
    if (!is_element && tip.control != control.name()) return 0;
    if (!tip.form.empty() && tip.form != form) return 0;
    return 1 + is_element + 2 * !tip.form.empty();
  };
  const auto best = std::ranges::max_element(tips, {}, closeness);
  return closeness(*best) == 0 ? QString() : to_qt(std::string(best->words));
}

}  // namespace window
