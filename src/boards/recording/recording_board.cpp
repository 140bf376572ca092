#include "boards/recording/recording_board.h"

#include <cstdio>
#include <utility>

#include "boards/hex.h"
#include "boards/recording/recording_format.h"

namespace boards {
namespace {

std::string milliseconds(double time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", time);
  return text;
}

std::string no_result() {
  return {};
}

}  // namespace

RecordingBoard::RecordingBoard(Driver& driver, const forms::Clock& clock, std::ostream& out)
    : driver_(driver), clock_(clock), out_(out) {
  driver_.on_advice = [this](const std::string& text) {
    if (on_advice) on_advice(text);
  };
  driver_.on_remark = [this](const std::string& text) {
    if (on_remark) on_remark(text);
  };
  out_ << recording::header << "\nboard " << driver_.board_name() << std::endl;
}

RecordingBoard::~RecordingBoard() {
  driver_.on_advice = nullptr;
  driver_.on_remark = nullptr;
}

void RecordingBoard::write(double time, const std::string& text) {
  out_ << milliseconds(time) << ' ' << text << std::endl;
}

void RecordingBoard::note_device_info(const DeviceInfo& info) {
  const std::string text = recording::device_info(info);
  if (std::exchange(device_info_written_, text) != text) out_ << "device " << text << std::endl;
}

template <class Call, class Result>
Status RecordingBoard::recorded(const std::string& request, Call&& call, Result&& result) {
  const double begin = clock_.milliseconds();
  const Status status = call();
  const double took = clock_.milliseconds() - begin;
  if (status != success && texts_written_.insert(status).second) {
    out_ << "text " << status << ' ' << driver_.VB_Stat2Str(status) << std::endl;
  }
  const std::string results = result();
  write(begin, request + " -> " + std::to_string(status) + ' ' + milliseconds(took) +
                   (results.empty() ? "" : ' ' + results));
  return status;
}

template <class Call>
Status RecordingBoard::recorded(const std::string& request, Call&& call) {
  return recorded(request, std::forward<Call>(call), no_result);
}

void RecordingBoard::model_chosen(std::string_view model) {
  write(clock_.milliseconds(), recording::request::model_chosen(model));
  driver_.model_chosen(model);
}

Status RecordingBoard::do_init(Handle& session, const MatchRow& match, EventTable events) {
  EventTable table;
  table.attach = [this, attach = events.attach](Handle device, const DeviceInfo& info) {
    note_device_info(info);
    write(clock_.milliseconds(), recording::request::attach(device));
    const bool accepted = attach && attach(device, info);
    write(clock_.milliseconds(), recording::request::attached(device, accepted));
    return accepted;
  };
  table.detach = [this, detach = events.detach](Handle device) {
    write(clock_.milliseconds(), recording::request::detach(device));
    if (detach) detach(device);
    write(clock_.milliseconds(), recording::request::detached(device));
  };
  Status status = success;
  return recorded(
      recording::request::init(match),
      [&] { return status = driver_.WDU_VB_Init(session, match, std::move(table)); },
      [&] { return status == success ? std::to_string(session) : std::string(); });
}

Status RecordingBoard::do_uninit(Handle session) {
  return recorded(recording::request::uninit(session), [&] { return driver_.WDU_VB_Uninit(session); });
}

Status RecordingBoard::do_close_handle(Handle session) {
  return recorded(recording::request::close_handle(session), [&] { return driver_.CloseHandle(session); });
}

Status RecordingBoard::do_get_device_info(Handle device, DeviceInfo& info) {
  return recorded(recording::request::get_device_info(device), [&] {
    const Status status = driver_.WDU_GetDeviceInfo(device, info);
    if (status == success) note_device_info(info);
    return status;
  });
}

Status RecordingBoard::do_set_interface(Handle device, std::int32_t interface_number,
                                        std::int32_t alternate) {
  return recorded(recording::request::set_interface(device, interface_number, alternate),
                  [&] { return driver_.WDU_SetInterface(device, interface_number, alternate); });
}

Status RecordingBoard::do_reset_device(Handle device) {
  return recorded(recording::request::reset_device(device), [&] { return driver_.WDU_ResetDevice(device); });
}

Status RecordingBoard::do_reset_pipe(Handle device, std::int32_t pipe) {
  return recorded(recording::request::reset_pipe(device, pipe),
                  [&] { return driver_.WDU_ResetPipe(device, pipe); });
}

Status RecordingBoard::do_transfer(Handle device, std::int32_t pipe, bool read,
                                   std::span<std::uint8_t> buffer, std::size_t& transferred) {
  return recorded(
      recording::request::transfer(device, pipe, read, buffer),
      [&] { return driver_.WDU_Transfer(device, pipe, read, buffer, transferred); },
      [&] { return read ? hex(buffer.first(transferred)) : std::to_string(transferred); });
}

}  // namespace boards
