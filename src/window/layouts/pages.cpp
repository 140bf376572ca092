#include "window/layouts/pages.h"

#include <QEvent>
#include <QLayout>
#include <QTabWidget>

#include "window/look.h"

namespace window {
namespace {

// Keeps a page in step with its frame.
class PageOfFrame final : public QObject {
 public:
  PageOfFrame(QTabWidget& tabs, int page, QWidget& frame, WhileHidden while_hidden)
      : QObject(&tabs), tabs_(tabs), page_(page), while_hidden_(while_hidden) {
    frame.installEventFilter(this);
    show(!frame.isHidden());
  }

 protected:
  bool eventFilter(QObject* frame, QEvent* event) override {
    if (event->type() == QEvent::ShowToParent) show(true);
    if (event->type() == QEvent::HideToParent) show(false);
    return QObject::eventFilter(frame, event);
  }

 private:
  void show(bool there) {
    if (while_hidden_ == WhileHidden::tab_is_grey) {
      tabs_.setTabEnabled(page_, there);
    } else {
      tabs_.setTabVisible(page_, there);
    }
  }

  QTabWidget& tabs_;
  const int page_;
  const WhileHidden while_hidden_;
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

void add_page_of(QWidget& frame, QTabWidget& tabs, const QString& title, QLayout* inside,
                 WhileHidden while_hidden) {
  new PageOfFrame(tabs, add_page(tabs, title, inside), frame, while_hidden);
}

}  // namespace window
