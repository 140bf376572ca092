#include "boards/usb/usb_board.h"

#include <libusb.h>

#include <algorithm>
#include <thread>
#include <utility>

#include "boards/usb/bulk_transfer.h"
#include "boards/usb/device.h"
#include "boards/usb/statuses.h"

namespace boards {
namespace {

using namespace std::chrono_literals;

// Notifications needn't be quicker than a person plugs, and a connect yields 10,000 times.
constexpr auto turn = 1ms;
// The system tells of a board before it has configured it. How often, and how long, claiming such a
// board is tried again.
constexpr auto claim_turn = 10ms;
constexpr auto claim_patience = 500ms;
// Meanwhile each yield takes this long, so that the 10,000 yields of a connect last as long as the patience.
constexpr auto claim_yield = 50us;

bool is_not_ready(Status status) {
  return status == LIBUSB_ERROR_NOT_FOUND || status == LIBUSB_ERROR_NO_DEVICE;
}

// An endpoint address is a byte; a number beyond must not become another pipe's.
bool is_pipe(std::int32_t pipe) {
  return pipe >= 0 && pipe <= 0xFF;
}

}  // namespace

UsbBoard::~UsbBoard() {
  end_session();
}

std::string UsbBoard::library() {
  const libusb_version& version = *libusb_get_version();
  return "libusb " + std::to_string(version.major) + '.' + std::to_string(version.minor) + '.' +
         std::to_string(version.micro) + " (LGPL 2.1)";
}

std::string UsbBoard::VB_Stat2Str(Status status) const {
  return usb::text(status);
}

std::int32_t UsbBoard::urb_status(Status status) const {
  return usb::urb_status(status);
}

// ---- The session

Status UsbBoard::do_init(Handle& session, const MatchRow& match, EventTable events) {
  auto opened = std::make_unique<Session>(last_session_ + 1, match, std::move(events));
  if (const Status status = opened->context.open(watch_)) return status;
  end_session();
  session_ = std::move(opened);
  session = ++last_session_;
  next_turn_ = {};
  return success;
}

Status UsbBoard::do_uninit(Handle session) {
  if (!is_open(session)) return LIBUSB_ERROR_INVALID_PARAM;
  if (session_->looked && !session_->found) advise(usb::no_board_text);
  end_session();
  return success;
}

// The kit's handle is a number here: nothing of the system's is behind it that could be closed.
Status UsbBoard::do_close_handle(Handle session) {
  return is_open(session) ? success : static_cast<Status>(LIBUSB_ERROR_INVALID_PARAM);
}

void UsbBoard::end_session() {
  board_.reset();
  arrival_ = {};
  session_.reset();
}

// ---- Notifications

void UsbBoard::deliver_notifications() {
  if (!session_) return;
  const auto now = Clock::now();
  if (now < next_turn_) {
    if (arrival_.device) std::this_thread::sleep_for(claim_yield);
    return;
  }
  const bool changed = session_->context.changed(now);
  if (changed || arrival_.device || (board_ && board_->gone)) look_for_boards(now);
  next_turn_ = now + (arrival_.device ? claim_turn : turn);
}

void UsbBoard::look_for_boards(Clock::time_point now) {
  const Handle session = session_->handle;
  const auto boards = session_->context.boards();
  session_->looked = true;
  session_->found |= !boards.empty();
  if (board_) {
    const bool listed = std::ranges::find(boards, board_->device) != boards.end();
    if (!listed || board_->gone) let_go(!listed || board_->unplugged);
    // The notification may have ended the session.
    if (!is_open(session)) return;
  }
  if (boards.empty()) {
    arrival_ = {};
  } else if (!board_) {
    attach(boards, now);
  }
}

void UsbBoard::let_go(bool unplugged) {
  const Handle device = release();
  board_.reset();
  if (device == 0) return;
  if (unplugged) advise(usb::unplugged_text);
  if (const auto detach = session_->events.detach) detach(device);
}

Handle UsbBoard::release() {
  board_->gone = false;
  board_->open.reset();
  return std::exchange(board_->handle, 0);
}

void UsbBoard::attach(const std::vector<usb::DevicePtr>& boards, Clock::time_point now) {
  if (arrival_.device != boards.front()) arrival_ = {boards.front(), now + claim_patience};
  Board board{.device = boards.front()};
  board.refusal = usb::read_descriptors(board.device.get(), board.info);
  if (board.refusal == success) board.refusal = usb::open_board(board.device.get(), board.open);
  if (is_not_ready(board.refusal) && now < arrival_.give_up) return;
  arrival_ = {};
  // Where nothing tells that a board has gone, the list keeps it.
  if (board.refusal == LIBUSB_ERROR_NO_DEVICE) {
    board_ = std::move(board);
    return;
  }

  const Handle device = board.handle = ++last_device_;
  const Status refusal = board.refusal;
  const DeviceInfo info = board.info;
  board_ = std::move(board);
  const auto attach = session_->events.attach;
  const bool accepted = attach && attach(device, info);
  if (!accepted && board_ && board_->handle == device) release();
  if (boards.size() > 1) tell_number(boards);
  if (refusal != success) advise(usb::text(refusal));
}

void UsbBoard::tell_number(const std::vector<usb::DevicePtr>& boards) {
  const UsbPlace place = usb::place_of(boards.front().get());
  const std::string text = std::to_string(boards.size()) +
                           " boards are plugged in. The program works with the first one, on bus " +
                           std::to_string(place.bus) + ", device " + std::to_string(place.device);
  if (on_remark) on_remark(text);
  advise(text);
}

void UsbBoard::advise(const std::string& text) {
  if (on_advice && advised_.insert(text).second) on_advice(text);
}

// ---- The device

Status UsbBoard::admit(Handle device) const {
  if (!board_) return LIBUSB_ERROR_NO_DEVICE;
  const bool in_use = device != 0 && board_->handle == device;
  // A board that was refused is no board in use; why it was is what the user has to know.
  return in_use || board_->refusal != success ? board_->refusal : static_cast<Status>(LIBUSB_ERROR_NO_DEVICE);
}

// The detach comes with the very next turn: a program that meets a failure may soon end the session.
void UsbBoard::has_gone() {
  board_->gone = true;
  next_turn_ = {};
}

Status UsbBoard::concluded(Status status) {
  if (status == LIBUSB_ERROR_NO_DEVICE) {
    board_->unplugged = true;
    has_gone();
  }
  return status;
}

Status UsbBoard::do_get_device_info(Handle device, DeviceInfo& info) {
  if (const Status status = admit(device)) return status;
  info = board_->info;
  return success;
}

Status UsbBoard::do_set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate) {
  if (const Status status = admit(device)) return status;
  const Status status = libusb_set_interface_alt_setting(board_->open.get(), interface_number, alternate);
  if (status == success) usb::select(board_->info, interface_number, alternate);
  return concluded(status);
}

Status UsbBoard::do_reset_device(Handle device) {
  if (const Status status = admit(device)) return status;
  const Status status = libusb_reset_device(board_->open.get());
  // Not found: the board came back from the reset as another one, or not at all.
  if (status == LIBUSB_ERROR_NOT_FOUND) has_gone();
  return concluded(status);
}

Status UsbBoard::do_reset_pipe(Handle device, std::int32_t pipe) {
  if (const Status status = admit(device)) return status;
  if (!is_pipe(pipe)) return LIBUSB_ERROR_INVALID_PARAM;
  return concluded(libusb_clear_halt(board_->open.get(), static_cast<unsigned char>(pipe)));
}

Status UsbBoard::do_transfer(Handle device, std::int32_t pipe, bool read, std::span<std::uint8_t> buffer,
                             std::size_t& transferred) {
  transfer_place_.reset();
  if (const Status status = admit(device)) return status;
  if (!is_pipe(pipe) || to_host(pipe) != read) return LIBUSB_ERROR_INVALID_PARAM;
  transfer_place_ = usb::place_of(board_->device.get());
  const usb::BulkTransfer wanted{static_cast<unsigned char>(pipe), buffer, transfer_timeout_ms};
  return concluded(
      usb::run_transfer(session_->context.get(), board_->open.get(), wanted, transferred, on_wait));
}

}  // namespace boards
