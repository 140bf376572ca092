// Kinds that show something: labels, frames, lamps and pictures.
#include <QAccessible>
#include <QApplication>
#include <QGroupBox>
#include <QLabel>

#include "forms/controls.h"
#include "forms/picture.h"
#include "window/binding.h"
#include "window/lamp.h"
#include "window/look.h"
#include "window/names.h"
#include "window/picture_view.h"

namespace window {
namespace {

class LabelBinding final : public Binding {
 public:
  LabelBinding(forms::Label& label, QWidget* parent)
      : Binding(label), label_(label), text_(new QLabel(parent)) {
    text_->setTextFormat(Qt::PlainText);
    adopt(text_);
  }

  void show() override {
    const QString caption = to_plain_caption(label_.Caption.get());
    if (caption != text_->text()) {
      set_label_text(*text_, caption);
      QAccessibleEvent said(text_, QAccessible::NameChanged);  // with a name of its own Qt tells no change
      if (!text_->accessibleName().isEmpty()) QAccessible::updateAccessibility(&said);
    }
    show_colors();
    Binding::show();
  }

 private:
  // The system's colours are the platform's own palette. Others are the program's, where the text can be
  // read.
  void show_colors() {
    const auto own = [](forms::Color color, forms::Color system) {
      return color == system ? std::optional<QColor>() : to_qt(color);
    };
    const TextColors colors{QPalette::WindowText, QPalette::Window,
                            own(label_.ForeColor, forms::clr_button_text),
                            own(label_.BackColor, forms::clr_button_face)};
    const QPalette palette = palette_of(colors, QApplication::palette(text_));
    if (palette == shown_colors_) return;
    shown_colors_ = palette;
    text_->setAutoFillBackground(colors.ground.has_value());
    text_->setMargin(colors.ground ? gap / 2 : 0);
    text_->setPalette(palette);
  }

  forms::Label& label_;
  QLabel* text_;
  QPalette shown_colors_;
};

class FrameBinding final : public Binding {
 public:
  FrameBinding(forms::Frame& frame, QWidget* parent)
      : Binding(frame), frame_(frame), box_(new QGroupBox(parent)) {
    adopt(box_);
  }
  void show() override {
    const QString caption = to_caption(frame_.Caption.get());
    if (caption != box_->title()) box_->setTitle(caption);
    Binding::show();
  }

 private:
  forms::Frame& frame_;
  QGroupBox* box_;
};

class ShapeBinding final : public Binding {
 public:
  ShapeBinding(forms::Shape& shape, QWidget* parent)
      : Binding(shape), shape_(shape), lamp_(new Lamp(parent)) {
    adopt(lamp_);
  }
  void show() override {
    lamp_->set_color(shape_.FillColor);
    Binding::show();
  }

 private:
  forms::Shape& shape_;
  Lamp* lamp_;
};

class PictureBinding final : public Binding {
 public:
  PictureBinding(forms::PictureBox& picture, QWidget* parent)
      : Binding(picture), view_(new PictureView(picture, parent)) {
    adopt(view_);
  }
  void show() override {
    view_->show_changes();
    Binding::show();
  }

 private:
  PictureView* view_;
};

}  // namespace

std::unique_ptr<Binding> bind_display(forms::Control& control, QWidget* parent) {
  if (auto* label = dynamic_cast<forms::Label*>(&control))
    return std::make_unique<LabelBinding>(*label, parent);
  if (auto* frame = dynamic_cast<forms::Frame*>(&control))
    return std::make_unique<FrameBinding>(*frame, parent);
  if (auto* shape = dynamic_cast<forms::Shape*>(&control))
    return std::make_unique<ShapeBinding>(*shape, parent);
  return std::make_unique<PictureBinding>(dynamic_cast<forms::PictureBox&>(control), parent);
}

}  // namespace window
