#include "bridge/program.h"

#include <filesystem>

#include "bridge/log.h"

namespace varzelin {

Program::Program(forms::Clock& clock, boards::Driver& board, forms::FrontEnd& front_end)
    : driver(board), runtime(clock, front_end), forms(runtime) {
  std::error_code unknown_folder;
  application_folder = std::filesystem::current_path(unknown_folder).string();
  driver.on_remark = [this](const std::string& text) { Log_Info(*this, text); };
  driver.on_wait = [this] { runtime.front_end().wait(); };
  runtime.poll = [this] { driver.deliver_notifications(); };
}

Program::~Program() {
  driver.on_remark = nullptr;
  driver.on_wait = nullptr;
}

}  // namespace varzelin
