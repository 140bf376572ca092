// A program without a front end: dialogs are answered at once, nothing is shown.
#pragma once

#include <optional>
#include <string>

#include "forms/runtime.h"

namespace varzelin::benchmarks {

class NoFrontEnd final : public forms::FrontEnd {
 public:
  int message_box(const forms::MessageBox& box) override { return box.answers().front(); }
  std::optional<std::string> input_box(const forms::InputBoxRequest&) override { return std::nullopt; }
  std::optional<std::string> file_dialog(const forms::FileDialog&) override { return file; }
  void runtime_error(const forms::RunTimeError& error) override { throw error; }
  void idle(std::optional<forms::Clock::Duration>) override {}
  std::optional<std::string> file;
};

}  // namespace varzelin::benchmarks
