// Scroll bars and tab controls.
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>

#include "forms/controls.h"
#include "forms/user.h"
#include "window/binding.h"

namespace window {
namespace {

class ScrollBinding final : public Binding {
 public:
  ScrollBinding(forms::ScrollBar& bar, QWidget* parent)
      : Binding(bar),
        bar_(bar),
        slider_(
            new QScrollBar(bar.kind() == forms::Kind::HScrollBar ? Qt::Horizontal : Qt::Vertical, parent)) {
    adopt(slider_);
    slider_->setFocusPolicy(Qt::StrongFocus);
    connect(slider_, &QScrollBar::valueChanged, this, [this](int value) {
      if (!showing_) post([this, value] { forms::user::scroll(bar_, value); });
    });
  }

  void show() override {
    showing_ = true;
    slider_->setRange(std::min(bar_.Min.get(), bar_.Max.get()), std::max(bar_.Min.get(), bar_.Max.get()));
    slider_->setInvertedAppearance(bar_.Min > bar_.Max);
    slider_->setPageStep(bar_.LargeChange);
    slider_->setSingleStep(bar_.SmallChange);
    if (!ahead()) slider_->setValue(bar_.Value);
    showing_ = false;
    Binding::show();
  }

 protected:
  void released(QPoint) override {}

 private:
  forms::ScrollBar& bar_;
  QScrollBar* slider_;
  bool showing_ = false;
};

class TabsBinding final : public Binding {
 public:
  TabsBinding(forms::SSTab& tabs, QWidget* parent)
      : Binding(tabs), tabs_(tabs), pages_(new QTabWidget(parent)) {
    adopt(pages_);
    connect(pages_, &QTabWidget::currentChanged, this, [this](int tab) {
      if (!showing_ && tab >= 0) post([this, tab] { tabs_.Tab = tab; });
    });
  }

  void show() override {
    showing_ = true;
    if (!ahead()) pages_->setCurrentIndex(tabs_.Tab);
    showing_ = false;
    Binding::show();
  }

 protected:
  void released(QPoint) override {}

 private:
  forms::SSTab& tabs_;
  QTabWidget* pages_;
  bool showing_ = false;
};

}  // namespace

std::unique_ptr<Binding> bind_range(forms::Control& control, QWidget* parent) {
  if (auto* tabs = dynamic_cast<forms::SSTab*>(&control)) return std::make_unique<TabsBinding>(*tabs, parent);
  return std::make_unique<ScrollBinding>(dynamic_cast<forms::ScrollBar&>(control), parent);
}

}  // namespace window
