#include "boards/recording/recording_format.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <sstream>

#include "boards/hex.h"

namespace boards::recording {
namespace {

std::string hexadecimal(unsigned value, int digits) {
  char text[9];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

std::string number(std::int64_t value) {
  return ' ' + std::to_string(value);
}

std::string pipe_number(std::int32_t pipe) {
  return ' ' + hexadecimal(static_cast<unsigned>(pipe), 2);
}

// Takes words in turn; after the first that isn't what was wanted it has failed.
class Words {
 public:
  explicit Words(std::string_view text) {
    std::istringstream in{std::string(text)};
    for (std::string word; in >> word;) words_.push_back(word);
  }

  bool take(std::string_view wanted) {
    const bool is_next = !at_end() && words_[next_] == wanted;
    if (is_next) ++next_;
    return is_next;
  }
  template <class Number>
  Number hexadecimal() {
    return number<Number>(16);
  }
  template <class Number>
  Number decimal() {
    return number<Number>(10);
  }
  bool failed() const { return failed_; }
  bool at_end() const { return next_ == words_.size(); }

 private:
  template <class Number>
  Number number(int base) {
    Number result{};
    if (at_end()) {
      failed_ = true;
      return result;
    }
    const std::string& word = words_[next_++];
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), result, base);
    if (error != std::errc() || end != word.data() + word.size()) failed_ = true;
    return result;
  }

  std::vector<std::string> words_;
  std::size_t next_ = 0;
  bool failed_ = false;
};

}  // namespace

namespace request {

std::string init(const MatchRow& match) {
  return "WDU_VB_Init " + hexadecimal(match.vendor_id, 4) + ' ' + hexadecimal(match.product_id, 4);
}
std::string uninit(Handle session) {
  return "WDU_VB_Uninit" + number(session);
}
std::string close_handle(Handle session) {
  return "CloseHandle" + number(session);
}
std::string get_device_info(Handle device) {
  return "WDU_GetDeviceInfo" + number(device);
}
std::string set_interface(Handle device, std::int32_t interface_number, std::int32_t alternate) {
  return "WDU_SetInterface" + number(device) + number(interface_number) + number(alternate);
}
std::string reset_device(Handle device) {
  return "WDU_ResetDevice" + number(device);
}
std::string reset_pipe(Handle device, std::int32_t pipe) {
  return "WDU_ResetPipe" + number(device) + pipe_number(pipe);
}
std::string transfer(Handle device, std::int32_t pipe, bool read, std::span<const std::uint8_t> buffer) {
  const std::string begin = "WDU_Transfer" + number(device) + pipe_number(pipe);
  if (read) return begin + " read" + number(static_cast<std::int64_t>(buffer.size()));
  return begin + " write" + (buffer.empty() ? "" : ' ' + hex(buffer));
}
std::string model_chosen(std::string_view model) {
  return "model " + std::string(model);
}
std::string attach(Handle device) {
  return "attach" + number(device);
}
std::string attached(Handle device, bool accepted) {
  return "attached" + number(device) + (accepted ? " accepted" : " rejected");
}
std::string detach(Handle device) {
  return "detach" + number(device);
}
std::string detached(Handle device) {
  return "detached" + number(device);
}

}  // namespace request

std::optional<std::vector<std::uint8_t>> parse_bytes(std::string_view text) {
  std::vector<std::uint8_t> result;
  Words words(text);
  while (!words.at_end()) result.push_back(words.hexadecimal<std::uint8_t>());
  if (words.failed()) return std::nullopt;
  return result;
}

std::string printable(std::string_view text) {
  constexpr std::size_t longest = 200;
  std::string result;
  for (const char character : text.substr(0, longest)) {
    const auto code = static_cast<unsigned char>(character);
    if (code >= 0x20 && code != 0x7F) {
      result += character;
    } else {
      result += "\\x" + hex(std::array{std::uint8_t{code}});
    }
  }
  return text.size() > longest ? result + "..." : result;
}

std::string device_info(const DeviceInfo& info) {
  std::string result = hexadecimal(info.vendor_id, 4) + ' ' + hexadecimal(info.product_id, 4) + " active" +
                       number(static_cast<std::int64_t>(info.active_configuration)) +
                       number(static_cast<std::int64_t>(info.active_interface)) +
                       number(static_cast<std::int64_t>(info.active_alternate));
  for (const auto& configuration : info.configurations) {
    result += " configuration" + number(configuration.value);
    for (const auto& interface : configuration.interfaces) {
      result += " interface" + number(interface.number);
      for (const auto& setting : interface.alternates) {
        const std::uint8_t classes[] = {setting.interface_class, setting.interface_subclass,
                                        setting.interface_protocol};
        result += " alternate" + number(setting.number) + ' ' + hex(classes);
        for (const auto& pipe : setting.pipes) {
          result += " pipe" + pipe_number(pipe.address) + ' ' + hexadecimal(pipe.attributes, 2) +
                    number(pipe.max_packet) + number(pipe.interval);
        }
      }
    }
  }
  return result;
}

std::optional<DeviceInfo> parse_device_info(std::string_view text) {
  Words words(text);
  DeviceInfo info;
  info.vendor_id = words.hexadecimal<std::uint16_t>();
  info.product_id = words.hexadecimal<std::uint16_t>();
  if (!words.take("active")) return std::nullopt;
  info.active_configuration = words.decimal<std::size_t>();
  info.active_interface = words.decimal<std::size_t>();
  info.active_alternate = words.decimal<std::size_t>();
  while (words.take("configuration")) {
    auto& configuration = info.configurations.emplace_back();
    configuration.value = words.decimal<std::uint8_t>();
    while (words.take("interface")) {
      auto& interface = configuration.interfaces.emplace_back();
      interface.number = words.decimal<std::uint8_t>();
      while (words.take("alternate")) {
        auto& setting = interface.alternates.emplace_back();
        setting.number = words.decimal<std::uint8_t>();
        setting.interface_class = words.hexadecimal<std::uint8_t>();
        setting.interface_subclass = words.hexadecimal<std::uint8_t>();
        setting.interface_protocol = words.hexadecimal<std::uint8_t>();
        while (words.take("pipe")) {
          auto& pipe = setting.pipes.emplace_back();
          pipe.address = words.hexadecimal<std::uint8_t>();
          pipe.attributes = words.hexadecimal<std::uint8_t>();
          pipe.max_packet = words.decimal<std::uint16_t>();
          pipe.interval = words.decimal<std::uint8_t>();
        }
      }
    }
  }
  // Of a device that couldn't be read nothing is known; otherwise the program takes the active setting
  // without a look whether there is one.
  const bool has_active =
      info.configurations.empty() ||
      (info.active_configuration < info.configurations.size() &&
       info.active_interface < info.configurations[info.active_configuration].interfaces.size() &&
       info.active_alternate < info.configurations[info.active_configuration]
                                   .interfaces[info.active_interface]
                                   .alternates.size());
  if (words.failed() || !words.at_end() || !has_active) return std::nullopt;
  return info;
}

}  // namespace boards::recording
