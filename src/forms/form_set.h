// All forms of a program: which can be made, which are loaded, which is in front.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "forms/form.h"

namespace forms {

class FormSet {
 public:
  // Makes a form of the given name.
  using Factory = std::function<std::unique_ptr<Form>(std::string name)>;

  explicit FormSet(Runtime& runtime) : runtime_(runtime) {}
  ~FormSet();
  FormSet(const FormSet&) = delete;
  FormSet& operator=(const FormSet&) = delete;

  Runtime& runtime() const { return runtime_; }

  void add(std::string name, Factory factory);
  bool knows(std::string_view name) const;
  // In the order of adding.
  std::vector<std::string> names() const;

  // The default instance of a form, loaded first when it isn't (Form_Load runs to its end). The
  // name has to be known.
  Form& touch(std::string_view name);
  template <class F>
  F& touch() {
    return static_cast<F&>(touch(F::form_name));
  }
  // Another instance of a form, loaded: "name#2", "name#3", ...
  Form& touch_another(std::string_view name);
  // The loaded form of that name, or null. Loads nothing.
  Form* loaded(std::string_view name) const;
  // Loaded forms in the order of loading.
  const std::vector<Form*>& all_loaded() const { return order_; }
  // The visible form that came forward last; null when nothing is visible.
  Form* front() const;

  // Brings a form on screen and to the front; Form_Activate runs when it wasn't in front already.
  // A form that was unloaded stays off screen, whatever a handler of it still does.
  void show(Form& form);
  // Takes it off screen. The visible form that then is in front is activated.
  void hide(Form& form);
  // Query, Form_Unload, off screen, gone. False when the form refused. The object itself lives until
  // no handler on the stack works on it.
  bool unload(Form& form, int unload_mode = 1);
  // Unload by name. A form that isn't loaded is loaded first, its dialogs answered with Cancel unseen.
  // A name that isn't known does nothing.
  void unload(std::string_view name);

  // The message loop: frees unloaded forms. All of them, when no handler is on the stack,
  void sweep();
  // and those that no handler on the stack works on, at any time.
  void free_unused();

  // Front ends are told when a form appears in the set and before it leaves it.
  std::function<void(Form&)> on_loaded;
  std::function<void(Form&)> on_unloaded;

 private:
  Form& load(std::string_view base_name, std::string name);
  void activate_front(const Form* before);

  Runtime& runtime_;
  std::vector<std::pair<std::string, Factory>> factories_;
  std::vector<std::unique_ptr<Form>> forms_;
  std::vector<Form*> order_;
  std::vector<Form*> z_order_;  // visible forms, the front one last
  std::vector<std::unique_ptr<Form>> unloaded_;
};

}  // namespace forms
