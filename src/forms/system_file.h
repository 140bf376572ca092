// The system's handle of a file, and its errors in the platform's numbers.
#pragma once

#include <utility>

namespace forms {

// Closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~Descriptor() { close(); }

  int get() const { return descriptor_; }
  // False on failure, which is told by errno.
  bool close();

 private:
  int descriptor_;
};

// Takes the numbers of standard input, output and error where the process was begun without them: else the
// next file that is opened would be read or written as one of them. Using them stays an error.
void take_standard_descriptors();

// A system error while a file is opened, read or written.
[[noreturn]] void raise_system_error(int system_error);

}  // namespace forms
