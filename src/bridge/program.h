// One running program: its clock, message loop, driver, shared store and forms. A test makes as many
// as it likes. Which forms there are is the shell's business (shell/application.h).
#pragma once

#include <string>
#include <vector>

#include "boards/driver.h"
#include "bridge/store.h"
#include "forms/form_set.h"
#include "forms/runtime.h"

namespace varzelin {

class Program {
 public:
  // All three outlive the program.
  Program(forms::Clock& clock, boards::Driver& driver, forms::FrontEnd& front_end);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  Store store;
  boards::Driver& driver;
  forms::Runtime runtime;
  forms::FormSet forms;

  // The folder of the program's files, where the measurement file is proposed. The current folder
  // unless a front end sets another.
  std::string application_folder;

  // The libraries in use, each with version and licence, for the about box. Front ends and boards that
  // use one add it.
  std::vector<std::string> libraries;
};

}  // namespace varzelin
