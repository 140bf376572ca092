#include "console/store_commands.h"

#include "bridge/store_access.h"
#include "console/values.h"

namespace console {
namespace {

using varzelin::Store;
using varzelin::StoreVariable;

constexpr std::string_view front_form = "Active_Form";  // a form, not a value: looked at only

std::string_view variable_name(const DottedName& name) {
  return name.parts.size() == 2 ? std::string_view(name.parts[1].name) : std::string_view();
}

const StoreVariable& find_variable(const DottedName& name) {
  const StoreVariable* variable = varzelin::find_store_variable(variable_name(name));
  if (!variable) throw Refused{"no such variable: " + name.text};
  return *variable;
}

// The element that the name's indices choose.
struct Element {
  std::size_t i = 0;
  std::size_t j = 0;
};
Element find_element(const StoreVariable& variable, const Store& store, const DottedName& name) {
  const auto& indices = name.parts[1].indices;
  if (indices.size() != static_cast<std::size_t>(variable.dimensions)) refuse_element(name.text);
  Element element;
  for (std::size_t dimension = 0; dimension < indices.size(); ++dimension) {
    const auto index = static_cast<std::size_t>(indices[dimension]);
    if (index >= variable.size(store, static_cast<int>(dimension))) refuse_element(name.text);
    (dimension == 0 ? element.i : element.j) = index;
  }
  return element;
}

void write_row(const StoreVariable& variable, const Store& store, std::size_t i, Json& answer) {
  answer.begin_array();
  for (std::size_t j = 0; j < variable.size(store, 1); ++j) write(answer, variable.get(store, i, j));
  answer.end_array();
}

void write_whole(const StoreVariable& variable, const Store& store, Json& answer) {
  answer.begin_array();
  for (std::size_t i = 0; i < variable.size(store, 0); ++i) {
    if (variable.dimensions == 2) {
      write_row(variable, store, i, answer);
    } else {
      write(answer, variable.get(store, i, 0));
    }
  }
  answer.end_array();
}

}  // namespace

bool is_store_name(const DottedName& name) {
  return name.first(1) == "store";
}

void get_variable(Context& context, const DottedName& name, Json& answer) {
  const Store& store = context.program.store;
  if (variable_name(name) == front_form && name.parts[1].indices.empty()) {
    store.Active_Form ? answer.value(store.Active_Form->name()) : answer.null();
    return;
  }
  const StoreVariable& variable = find_variable(name);
  if (variable.dimensions > 0 && name.parts[1].indices.empty()) {
    write_whole(variable, store, answer);
  } else {
    const auto [i, j] = find_element(variable, store, name);
    write(answer, variable.get(store, i, j));
  }
}

Action set_variable(Context& context, const DottedName& name, const std::string& text) {
  Store& store = context.program.store;
  if (variable_name(name) == front_form) throw Refused{"read only: " + name.text};
  const StoreVariable& variable = find_variable(name);
  const Element element = find_element(variable, store, name);
  const auto value = parse_like(variable.get(store, element.i, element.j), text);
  // Nothing runs when a variable is set, so trying it is doing it.
  if (!variable.set(store, element.i, element.j, value)) throw Refused{"out of range: " + text};
  return [] {};
}

}  // namespace console
