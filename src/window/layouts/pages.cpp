#include "window/layouts/pages.h"

#include <QEvent>
#include <QLayout>
#include <QTabWidget>

#include "window/look.h"

namespace window {
namespace {

// Takes a page away while its frame is hidden.
class PageOfFrame final : public QObject {
 public:
  PageOfFrame(QTabWidget& tabs, int page, QWidget& frame) : QObject(&tabs), tabs_(tabs), page_(page) {
    frame.installEventFilter(this);
    tabs.setTabVisible(page, !frame.isHidden());
  }

 protected:
  bool eventFilter(QObject* frame, QEvent* event) override {
    if (event->type() == QEvent::ShowToParent) tabs_.setTabVisible(page_, true);
    if (event->type() == QEvent::HideToParent) tabs_.setTabVisible(page_, false);
    return QObject::eventFilter(frame, event);
  }

 private:
  QTabWidget& tabs_;
  const int page_;
};

}  // namespace

QTabWidget* pages() {
  auto* tabs = new QTabWidget;
  tabs->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  return tabs;
}

int add_page(QTabWidget& tabs, const QString& title, QLayout* inside) {
  inside->setContentsMargins(gap, gap, gap, gap);
  auto* page = new QWidget;
  page->setLayout(inside);
  return tabs.addTab(page, title);
}

void add_page_of(QWidget& frame, QTabWidget& tabs, const QString& title, QLayout* inside) {
  new PageOfFrame(tabs, add_page(tabs, title, inside), frame);
}

}  // namespace window
