// The accessibility tree of a program as a screen reader has it: over the accessibility bus.
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace varzelin::testing {

// A part of the tree. It may go at any time; what is asked of one that is gone is empty.
class Part {
 public:
  Part(QDBusConnection bus, QString service, QString path)
      : bus_(std::move(bus)), service_(std::move(service)), path_(std::move(path)) {}

  QString name() const;
  QString role() const;  // "push button", "radio button", "label", ...
  QString description() const;
  bool showing() const;
  bool takes_focus() const;
  std::vector<Part> children() const;
  QStringList actions() const;
  // False: it has no such action.
  bool act(const QString& action) const;
  // Of a box. Setting replaces it.
  QString text() const;
  bool set_text(const QString& text) const;
  // Of a slider or a box for a number.
  void set_value(double value) const;

  // Calls visit(part) for this one and all below, parents first. False ends the walk.
  bool walk(const std::function<bool(const Part&)>& visit) const;
  // The first below whose role and name are these; in the name '*' stands for anything.
  std::optional<Part> find(const QString& role, const QString& name) const;
  // The same among those that are on screen.
  std::optional<Part> find_showing(const QString& role, const QString& name) const;

 private:
  bool has_state(int number) const;

  QDBusConnection bus_;
  QString service_;
  QString path_;
};

// What all programs hang on. None: there is no accessibility bus.
std::optional<Part> desktop();

}  // namespace varzelin::testing
