#include "forms/property.h"

#include "forms/errors.h"

namespace forms {

PropertyBase* PropertyOwner::find_property(std::string_view name) const {
  for (PropertyBase* property : properties_) {
    if (name == property->name()) return property;
  }
  return nullptr;
}

void PropertyBase::check(std::int32_t value) const {
  if (!owner_.accepts(*this, value)) raise_error(invalid_property_value);
}

void raise_type_mismatch() {
  raise_error(type_mismatch);
}

}  // namespace forms
