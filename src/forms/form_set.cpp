#include "forms/form_set.h"

#include <algorithm>
#include <stdexcept>

#include "forms/runtime.h"

namespace forms {

FormSet::~FormSet() {
  runtime_.free_unloaded_of(nullptr);
  unloaded_.clear();
  while (!forms_.empty()) forms_.pop_back();
}

void FormSet::add(std::string name, Factory factory) {
  factories_.emplace_back(std::move(name), std::move(factory));
}

bool FormSet::knows(std::string_view name) const {
  return std::ranges::any_of(factories_, [&](const auto& entry) { return entry.first == name; });
}

std::vector<std::string> FormSet::names() const {
  std::vector<std::string> names;
  for (const auto& [name, factory] : factories_) names.push_back(name);
  return names;
}

Form* FormSet::loaded(std::string_view name) const {
  const auto found = std::ranges::find_if(order_, [&](const Form* form) { return form->name() == name; });
  return found == order_.end() ? nullptr : *found;
}

Form& FormSet::load(std::string_view base_name, std::string name) {
  const auto factory =
      std::ranges::find_if(factories_, [&](const auto& entry) { return entry.first == base_name; });
  if (factory == factories_.end()) throw std::logic_error("no such form: " + std::string(base_name));
  Form& form = *forms_.emplace_back(factory->second(std::move(name)));
  order_.push_back(&form);
  runtime_.keep(form);
  if (on_loaded) on_loaded(form);
  form.Form_Load();
  return form;
}

Form& FormSet::touch(std::string_view name) {
  Form* form = loaded(name);
  if (!form) return load(name, std::string(name));
  runtime_.keep(*form);
  return *form;
}

Form& FormSet::touch_another(std::string_view name) {
  for (int number = 2;; ++number) {
    std::string instance = std::string(name) + "#" + std::to_string(number);
    if (!loaded(instance)) return load(name, std::move(instance));
  }
}

Form* FormSet::front() const {
  return z_order_.empty() ? nullptr : z_order_.back();
}

void FormSet::activate_front(const Form* before) {
  Form* now = front();
  if (!now || now == before) return;
  runtime_.keep(*now);
  now->Form_Activate();
}

void FormSet::show(Form& form) {
  if (std::ranges::find(order_, &form) == order_.end()) return;
  const Form* before = front();
  form.visible_ = true;
  std::erase(z_order_, &form);
  z_order_.push_back(&form);
  runtime_.mark(form);
  activate_front(before);
}

void FormSet::hide(Form& form) {
  if (!form.visible_) return;
  const Form* before = front();
  form.visible_ = false;
  std::erase(z_order_, &form);
  runtime_.mark(form);
  activate_front(before);
}

bool FormSet::unload(Form& form, int unload_mode) {
  if (!form.loaded()) return true;
  runtime_.keep(form);
  const auto is_form = [&](const auto& owned) { return owned.get() == &form; };
  bool cancel = false;
  form.Form_QueryUnload(cancel, unload_mode);
  if (!cancel) form.Form_Unload(cancel);
  const auto owned = std::ranges::find_if(forms_, is_form);
  if (cancel || owned == forms_.end()) return !cancel;
  for (Control* control : form.controls()) {
    if (control->kind() == Kind::Timer) control->Enabled = false;
  }
  hide(form);
  if (on_unloaded) on_unloaded(form);
  std::erase(order_, &form);
  form.loaded_ = false;
  const auto still_owned = std::ranges::find_if(forms_, is_form);
  if (still_owned != forms_.end()) {
    unloaded_.push_back(std::move(*still_owned));
    forms_.erase(still_owned);
    runtime_.free_unloaded_of(this);
  }
  return true;
}

void FormSet::unload(std::string_view name) {
  if (!knows(name)) return;
  Form* form = loaded(name);
  if (!form) {
    const Runtime::SilentDialogs silent(runtime_);
    form = &touch(name);
  }
  unload(*form);
}

void FormSet::sweep() {
  unloaded_.clear();
}

void FormSet::free_unused() {
  std::erase_if(unloaded_, [&](const auto& form) { return !runtime_.is_kept(*form); });
  if (unloaded_.empty()) runtime_.free_unloaded_of(nullptr);
}

}  // namespace forms
