#include "told_apart.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace varzelin::testing {
namespace {

// What has its name from its place in a list or table, or that of the tab in front.
bool is_named_by_its_place(const QString& role) {
  static const std::set<QString> roles{"list item", "menu item", "table cell", "page tab list"};
  return roles.contains(role);
}

// The program tells a lamp's colour as the description of what else is a text.
bool is_lamp(const Part& part) {
  static const std::set<QString> colours{"off", "dark green", "dark red", "light green", "red"};
  return colours.contains(part.description());
}

void expect_meaning(const Part& lamp, const std::string& title) {
  const QString name = lamp.name();
  const QString meaning = name.section(": ", -1);
  EXPECT_EQ(lamp.role(), "label") << title << ": " << name.toStdString();
  EXPECT_FALSE(name.section(": ", 0, -2).isEmpty()) << title << ": a lamp says " << name.toStdString();
  EXPECT_FALSE(meaning.isEmpty() || meaning == lamp.description())
      << title << ": a lamp says " << name.toStdString();
}

}  // namespace

void expect_told_apart(const Part& window) {
  const std::string title = window.name().toStdString();
  EXPECT_FALSE(title.empty());
  std::map<QString, QString> names;
  // Qt's dialogs have hidden parts in two versions.
  const bool only_showing = window.role() == "dialog";
  window.walk([&](const Part& part) {
    if (only_showing && !part.showing()) return true;
    const QString role = part.role();
    const QString name = part.name();
    EXPECT_TRUE(role != "filler" || name.isEmpty()) << title << ": a filler is called " << name.toStdString();
    if (is_lamp(part)) expect_meaning(part, title);
    if (!part.takes_focus() && part.actions().isEmpty()) return true;
    EXPECT_TRUE(!name.isEmpty() || role == "table cell") << title << ": a nameless " << role.toStdString();
    if (is_named_by_its_place(role)) return true;
    const auto [first, is_new] = names.emplace(name, role);
    EXPECT_TRUE(is_new) << title << ": " << name.toStdString() << " is a " << first->second.toStdString()
                        << " and a " << role.toStdString();
    return true;
  });
  EXPECT_FALSE(names.empty()) << title;
}

int lamps_of(const Part& window) {
  int lamps = 0;
  window.walk([&](const Part& part) {
    if (is_lamp(part)) ++lamps;
    return true;
  });
  return lamps;
}

}  // namespace varzelin::testing
