#include "tree.h"

#include <QDBusArgument>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QRegularExpression>
#include <map>

namespace varzelin::testing {
namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* action_interface = "org.a11y.atspi.Action";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

// AT-SPI's numbers, which stay; its words have changed.
const std::map<uint, QString> roles{
    {7, "check box"},    {11, "combo box"},     {16, "dialog"},      {20, "filler"},       {23, "frame"},
    {29, "label"},       {31, "list"},          {32, "list item"},   {33, "menu"},         {35, "menu item"},
    {37, "page tab"},    {38, "page tab list"}, {43, "push button"}, {44, "radio button"}, {51, "slider"},
    {52, "spin button"}, {55, "table"},         {56, "table cell"},  {61, "text"},         {79, "text"}};

QVariant answer(const QDBusConnection& bus, const QString& service, const QString& path,
                const QString& interface, const QString& method, const QVariantList& arguments = {}) {
  QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
  call.setArguments(arguments);
  const QDBusMessage reply = bus.call(call);
  return reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty()
             ? reply.arguments().front()
             : QVariant();
}

QVariant property(const QDBusConnection& bus, const QString& service, const QString& path,
                  const QString& name) {
  return answer(bus, service, path, properties, "Get", {accessible, name}).value<QDBusVariant>().variant();
}

}  // namespace

QString Part::name() const {
  return property(bus_, service_, path_, "Name").toString();
}

QString Part::description() const {
  return property(bus_, service_, path_, "Description").toString();
}

bool Part::showing() const {
  return has_state(25);
}

bool Part::takes_focus() const {
  return has_state(11);
}

bool Part::has_state(int number) const {
  constexpr int bits = 32;
  const auto words = answer(bus_, service_, path_, accessible, "GetState").value<QDBusArgument>();
  if (words.currentType() != QDBusArgument::ArrayType) return false;
  QList<uint> all;
  words >> all;
  return all.size() > number / bits && (all[number / bits] >> (number % bits) & 1) != 0;
}

QString Part::role() const {
  const auto number = answer(bus_, service_, path_, accessible, "GetRole").toUInt();
  const auto found = roles.find(number);
  return found == roles.end() ? "role " + QString::number(number) : found->second;
}

std::vector<Part> Part::children() const {
  const auto list = answer(bus_, service_, path_, accessible, "GetChildren").value<QDBusArgument>();
  std::vector<Part> parts;
  if (list.currentType() != QDBusArgument::ArrayType) return parts;
  list.beginArray();
  while (!list.atEnd()) {
    QString service;
    QDBusObjectPath path;
    list.beginStructure();
    list >> service >> path;
    list.endStructure();
    if (!path.path().endsWith("/null")) parts.emplace_back(bus_, service, path.path());
  }
  list.endArray();
  return parts;
}

QStringList Part::actions() const {
  const auto list = answer(bus_, service_, path_, action_interface, "GetActions").value<QDBusArgument>();
  QStringList names;
  if (list.currentType() != QDBusArgument::ArrayType) return names;
  list.beginArray();
  while (!list.atEnd()) {
    QString name, description, keys;
    list.beginStructure();
    list >> name >> description >> keys;
    list.endStructure();
    names << name;
  }
  list.endArray();
  return names;
}

bool Part::act(const QString& action) const {
  const auto number = actions().indexOf(action);
  return number >= 0 &&
         answer(bus_, service_, path_, action_interface, "DoAction", {static_cast<int>(number)}).toBool();
}

QString Part::text() const {
  constexpr int to_the_end = -1;
  return answer(bus_, service_, path_, "org.a11y.atspi.Text", "GetText", {0, to_the_end}).toString();
}

void Part::set_value(double value) const {
  answer(bus_, service_, path_, properties, "Set",
         {"org.a11y.atspi.Value", "CurrentValue", QVariant::fromValue(QDBusVariant(value))});
}

bool Part::set_text(const QString& text) const {
  return answer(bus_, service_, path_, "org.a11y.atspi.EditableText", "SetTextContents", {text}).toBool();
}

bool Part::walk(const std::function<bool(const Part&)>& visit) const {
  if (!visit(*this)) return false;
  for (const Part& child : children()) {
    if (!child.walk(visit)) return false;
  }
  return true;
}

namespace {

template <class Fits>
std::optional<Part> find_in(const Part& top, const QString& role, const QString& name, Fits fits) {
  const auto wanted = QRegularExpression::fromWildcard(name);
  std::optional<Part> found;
  top.walk([&](const Part& part) {
    if (wanted.match(part.name()).hasMatch() && part.role() == role && fits(part)) found = part;
    return !found;
  });
  return found;
}

}  // namespace

std::optional<Part> Part::find(const QString& role, const QString& name) const {
  return find_in(*this, role, name, [](const Part&) { return true; });
}

std::optional<Part> Part::find_showing(const QString& role, const QString& name) const {
  return find_in(*this, role, name, [](const Part& part) { return part.showing(); });
}

std::optional<Part> desktop() {
  const QString address =
      answer(QDBusConnection::sessionBus(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
          .toString();
  if (address.isEmpty()) return std::nullopt;
  const QDBusConnection bus = QDBusConnection::connectToBus(address, "accessibility");
  if (!bus.isConnected()) return std::nullopt;
  return Part(bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root");
}

}  // namespace varzelin::testing
