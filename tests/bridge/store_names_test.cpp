// The names by which the console and the tests reach the store, held against its declarations.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "bridge/store_access.h"

namespace varzelin::testing {
namespace {

std::string without_comments(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  std::string code;
  for (std::string line; std::getline(file, line);) code += line.substr(0, line.find("//")) + '\n';
  return code;
}

std::vector<std::string> matches(const std::string& text, const std::string& pattern) {
  const std::regex wanted(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), wanted), end; match != end; ++match) {
    found.push_back(match->str(1));
  }
  return found;
}

// What stands between two texts.
std::string between(const std::string& code, const std::string& before, const std::string& behind) {
  const std::size_t start = code.find(before);
  const std::size_t end = code.find(behind, start);
  if (start == std::string::npos || end == std::string::npos) {
    ADD_FAILURE() << "not found: " << before << " ... " << behind;
    return {};
  }
  return code.substr(start + before.size(), end - start - before.size());
}

// The names of a topic's variables. A declaration ends with the name, or with the name and its value.
std::vector<std::string> members_of(const std::string& code, const std::string& topic) {
  const std::string body = between(code, "struct " + topic + " {", "\n};");
  const auto names = matches(body, R"((\w+)\s*(?:=[^;]*|\{[^;]*\})?;)");
  EXPECT_EQ(static_cast<std::ptrdiff_t>(names.size()), std::ranges::count(body, ';')) << topic;
  return names;
}

TEST(StoreNames, AreThoseOfTheDeclarations) {
  const std::string code = without_comments(PROJECT_FOLDER "/src/bridge/store.h");
  std::string declared;
  for (const std::string& topic : matches(between(code, "struct Store :", "{"), R"((\w+))")) {
    for (const std::string& name : members_of(code, topic)) {
      if (name != "Active_Form") declared += name + '\n';  // a form, which the console tells by its name
    }
  }
  std::string listed;
  for (const StoreVariable& variable : store_variables()) listed += std::string(variable.name) + '\n';
  EXPECT_EQ(listed, declared);
}

}  // namespace
}  // namespace varzelin::testing
