// The shared variables by name, for the console and the tests.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "bridge/store.h"

namespace varzelin {

using StoreValue = std::variant<std::int64_t, double, std::string>;

// One shared variable: a single value, an array, or (Screen_Pixels) a table by column and row.
struct StoreVariable {
  std::string_view name;
  int dimensions;  // 0, 1 or 2
  // The bounds of each dimension in use; 0 for those that aren't. An empty Xfer_Buf has size 0.
  std::size_t (*size)(const Store&, int dimension);
  StoreValue (*get)(const Store&, std::size_t i, std::size_t j);
  // False when the value doesn't fit the variable's type or range.
  bool (*set)(Store&, std::size_t i, std::size_t j, const StoreValue& value);
};

std::span<const StoreVariable> store_variables();
// Null when there is no variable of that name.
const StoreVariable* find_store_variable(std::string_view name);

}  // namespace varzelin
