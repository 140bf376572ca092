#include "console/utf8.h"

namespace console {
namespace {

struct Form {
  std::size_t length;
  std::uint32_t first_bits;
  std::uint32_t smallest;
};

bool form_of(unsigned char lead, Form& form) {
  if (lead < 0x80) {
    form = {1, lead, 0};
  } else if ((lead & 0xE0) == 0xC0) {
    form = {2, lead & 0x1Fu, 0x80};
  } else if ((lead & 0xF0) == 0xE0) {
    form = {3, lead & 0x0Fu, 0x800};
  } else if ((lead & 0xF8) == 0xF0) {
    form = {4, lead & 0x07u, 0x10000};
  } else {
    return false;
  }
  return true;
}

}  // namespace

std::size_t utf8_length(std::string_view text) {
  Form form;
  if (!form_of(static_cast<unsigned char>(text[0]), form) || text.size() < form.length) return 0;
  std::uint32_t code_point = form.first_bits;
  for (std::size_t i = 1; i < form.length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return 0;
    code_point = code_point << 6 | (byte & 0x3Fu);
  }
  const bool surrogate = code_point >= 0xD800 && code_point <= 0xDFFF;
  return code_point < form.smallest || code_point > 0x10FFFF || surrogate ? 0 : form.length;
}

void append_utf8(std::string& text, std::uint32_t code_point) {
  const auto add = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto continued = [&](int shift) { add(0x80 | (code_point >> shift & 0x3F)); };
  if (code_point < 0x80) {
    add(code_point);
  } else if (code_point < 0x800) {
    add(0xC0 | code_point >> 6);
    continued(0);
  } else if (code_point < 0x10000) {
    add(0xE0 | code_point >> 12);
    continued(6);
    continued(0);
  } else {
    add(0xF0 | code_point >> 18);
    continued(12);
    continued(6);
    continued(0);
  }
}

}  // namespace console
