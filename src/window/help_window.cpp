#include "window/help_window.h"

#include <QTextBrowser>
#include <QVBoxLayout>

#include "window/look.h"
#include "window/names.h"

namespace window {
namespace {

constexpr const char* first_steps =
    "<h3>First steps</h3><ol>"
    "<li>Pick the sensor in \"Device Select\".</li>"
    "<li>Set what it measures at the left. KVT71346/7 opens powered down: choose a diode in the list of "
    "modes.</li>"
    "<li>Start the collection (F5). The first ten readings let the sensor settle, then the chart "
    "scrolls.</li>"
    "<li>On the simulated board: \"Simulated Bench\" in the \"Windows\" menu moves the light.</li>"
    "<li>Stop (Shift+F5), then write the readings to the file that is named in the panel (Ctrl+S).</li>"
    "<li>\"Choose a Sensor\" in the \"Windows\" menu goes on with another sensor, \"Quit\" leaves "
    "(Ctrl+Q).</li>"
    "</ol>";
constexpr const char* other_keys =
    "<p>Tab goes through a window as it is read; it passes boxes that only show a result, which a click "
    "reaches. "
    "The arrows move the cursor of a list or a table, Enter or the space bar chooses its row. Enter and the "
    "space bar "
    "press a button, Alt with the underlined letter or digit does so from anywhere in the window. In a table "
    "of registers the letters of \"Write\" and \"Read\" lead to the first button, and the arrows go on among "
    "the buttons. In a box that waits for a "
    "click Ctrl+Enter is the click, Ctrl+Shift+Enter the double click. Escape closes the windows that only "
    "show "
    "something.</p>";

QString keys_of(const std::vector<MenuOfWindow>& menus) {
  QString rows;
  for (const MenuOfWindow& menu : menus) {
    for (const MenuEntry& entry : menu.entries) {
      if (entry.keys.isEmpty()) continue;
      rows += "<tr><td>" + entry.keys.toString(QKeySequence::NativeText).toHtmlEscaped() +
              "</td><td>&nbsp;&nbsp;" + QString(entry.text).remove('&').toHtmlEscaped() + "</td></tr>";
    }
  }
  return "<h3>Keys</h3><table>" + rows + "</table>";
}

}  // namespace

HelpWindow::HelpWindow(const std::vector<MenuOfWindow>& menus, const QString& title_suffix) {
  setObjectName("Help");
  setWindowTitle("First Steps and Keys" + title_suffix);
  auto* page = new QTextBrowser(this);
  page->setObjectName("page");
  page->setAccessibleName("First steps and keys");
  name_scroll_bars(*page, "the page");
  page->setHtml(first_steps + keys_of(menus) + other_keys);
  auto* outermost = new QVBoxLayout(this);
  outermost->setContentsMargins(gap, gap, gap, gap);
  outermost->addWidget(page);
  resize(on_screen(*this, {80 * fontMetrics().averageCharWidth(), 32 * fontMetrics().height()}));
}

}  // namespace window
