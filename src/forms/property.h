// Properties of forms and controls: values that tell their owner when they change, and that can be
// looked at and set by name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "forms/color.h"

namespace forms {

using Value = std::variant<bool, std::int32_t, double, std::string, Color>;

class PropertyBase;

// Whatever has properties.
class PropertyOwner {
 public:
  PropertyOwner() = default;
  PropertyOwner(const PropertyOwner&) = delete;
  PropertyOwner& operator=(const PropertyOwner&) = delete;
  virtual ~PropertyOwner() = default;

  // In the order of declaration.
  const std::vector<PropertyBase*>& properties() const { return properties_; }
  // Null when there is no property of that name.
  PropertyBase* find_property(std::string_view name) const;

 protected:
  friend class PropertyBase;
  // Whether a whole-number property may take this value; asked before it does.
  virtual bool accepts(const PropertyBase& /*property*/, std::int32_t /*value*/) const { return true; }
  // Called after a property took a value that differs from the one before.
  virtual void property_changed(PropertyBase& property) = 0;

 private:
  std::vector<PropertyBase*> properties_;
};

class PropertyBase {
 public:
  // `name` has to outlive the property: a literal.
  PropertyBase(PropertyOwner& owner, const char* name) : owner_(owner), name_(name) {
    owner.properties_.push_back(this);
  }
  PropertyBase(const PropertyBase&) = delete;
  PropertyBase& operator=(const PropertyBase&) = delete;
  virtual ~PropertyBase() = default;

  const char* name() const { return name_; }
  virtual Value value() const = 0;
  // Sets it as program code would, with the events that this raises. The value's type has to be the
  // property's own; raises type_mismatch otherwise.
  virtual void set_value(const Value& value) = 0;

 protected:
  void changed() { owner_.property_changed(*this); }
  // Raises invalid_property_value when the owner doesn't accept the value.
  void check(std::int32_t value) const;

 private:
  PropertyOwner& owner_;
  const char* name_;
};

[[noreturn]] void raise_type_mismatch();

template <class T>
class Property final : public PropertyBase {
 public:
  Property(PropertyOwner& owner, const char* name, T initial = {})
      : PropertyBase(owner, name), value_(std::move(initial)) {}

  Property& operator=(const T& value) {
    if constexpr (std::is_same_v<T, std::int32_t>) check(value);
    if (!(value == value_)) {
      value_ = value;
      changed();
    }
    return *this;
  }
  Property& operator=(const Property& other) { return *this = other.value_; }

  const T& get() const { return value_; }
  operator const T&() const { return value_; }
  operator std::string_view() const requires std::is_same_v<T, std::string> { return value_; }

  // Adds to a text in place, so that a long log stays cheap to write.
  void append(std::string_view more) requires std::is_same_v<T, std::string> {
    if (more.empty()) return;
    value_.append(more);
    changed();
  }

  // Puts another beginning in the place of the first `count` characters.
  void replace_front(std::size_t count, std::string_view with) requires std::is_same_v<T, std::string> {
    value_.replace(0, count, with);
    changed();
  }

  // Sets the value without a check and without telling the owner: for the owner's own use.
  void set_quietly(T value) { value_ = std::move(value); }

  Value value() const override { return value_; }
  void set_value(const Value& value) override {
    if (const T* own = std::get_if<T>(&value)) {
      *this = *own;
    } else {
      raise_type_mismatch();
    }
  }

 private:
  T value_;
};

using TextProperty = Property<std::string>;

inline std::string operator+(const TextProperty& a, std::string_view b) {
  return std::string(a.get()).append(b);
}
inline std::string operator+(std::string_view a, const TextProperty& b) {
  return std::string(a).append(b.get());
}
inline std::string operator+(const TextProperty& a, const TextProperty& b) {
  return std::string(a.get()).append(b.get());
}
inline bool operator==(const TextProperty& a, std::string_view b) {
  return a.get() == b;
}
inline bool operator==(const TextProperty& a, const TextProperty& b) {
  return a.get() == b.get();
}

}  // namespace forms
