#include "bridge/program.h"

#include <filesystem>

namespace varzelin {

Program::Program(forms::Clock& clock, boards::Driver& board, forms::FrontEnd& front_end)
    : driver(board), runtime(clock, front_end), forms(runtime) {
  std::error_code unknown_folder;
  application_folder = std::filesystem::current_path(unknown_folder).string();
  runtime.poll = [this] { driver.deliver_notifications(); };
}

}  // namespace varzelin
