#include "platform/linux/qt/menus/ShownMenu.h"

#include <QAction>
#include <QActionEvent>
#include <QApplication>
#include <QFontMetrics>
#include <QScreen>
#include <QSignalBlocker>
#include <QStyleOptionMenuItem>
#include <QTimer>
#include <algorithm>
#include <cassert>
#include <utility>

#include "platform/Dispatch.h"
#include "platform/linux/CurrentThread.h"
#include "platform/linux/qt/menus/ActiveWindow.h"
#include "platform/linux/qt/menus/ScrollingMenuStyle.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/Legibility.h"
#include "platform/linux/qt/paint/PlainText.h"

namespace vistrel::platform::linux_desktop {

namespace {

/// Longer titles are cut at their tail, in points.
constexpr int widestTitle = 560;

QString titleInOneLine(const MenuItem& item, const QFontMetrics& metrics) {
  const QString line = inOneLine(readableBeginning(QString::fromStdString(item.title())));
  return metrics.elidedText(line, Qt::ElideRight, widestTitle);
}

/// Control stands in for Command.
QKeySequence shortcutOf(const MenuItem& item) {
  if (item.keyEquivalent().empty()) return {};
  return QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(item.keyEquivalent()));
}

}  // namespace

class ShownMenu::Follower : public MenuPeer {
 public:
  explicit Follower(ShownMenu& menu) : menu_(menu) {}
  void itemsDidChange() override { menu_.itemsDidChange(); }

 private:
  ShownMenu& menu_;
};

class ShownMenu::Line : public QAction {
 public:
  Line(const std::shared_ptr<MenuItem>& item, const QString& text, ShownMenu& menu)
      : QAction(text, &menu) {
    setSeparator(item->isSeparatorItem());
    setShortcut(shortcutOf(*item));
    if (item->submenu()) setMenu(new ShownMenu(item->submenu(), &menu, menu.shower_));
    standFor(item);
    QObject::connect(this, &QAction::triggered, this,
                     [this] { mainQueue().async([chosen = item_] { performAction(chosen); }); });
  }

  /// Whether a line for `item`, with that text, would look the same but for its state.
  bool fits(const MenuItem& item, const QString& itemText) const {
    return text() == itemText && isSeparator() == item.isSeparatorItem() &&
           item_->submenu() == item.submenu() && shortcut() == shortcutOf(item);
  }
  const MenuItem& item() const { return *item_; }
  void standFor(const std::shared_ptr<MenuItem>& item) {
    item_ = item;
    setEnabled(item->isEnabled());
    const bool isOn = item->state() == MenuItemState::on;
    setCheckable(isOn);
    setChecked(isOn);
  }

 private:
  std::shared_ptr<MenuItem> item_;
};

ShownMenu::ShownMenu(std::shared_ptr<Menu> menu, QWidget* parent, Shower shower)
    : QMenu(parent),
      menu_(std::move(menu)),
      shower_(shower),
      follower_(std::make_shared<Follower>(*this)) {
  setStyle(scrollingMenuStyle());
  setFont(menuFont());
  menu_->setPeer(follower_);
  refill();
  QObject::connect(this, &QMenu::aboutToShow, this, [this] {
    // The headers among the lines are disabled.
    setPalette(withLegibleDisabledLines(QApplication::palette(this)));
    menu_->update();
    refill();
  });
}

ShownMenu::~ShownMenu() = default;

void ShownMenu::setVisible(bool visible) {
  // Closing gives the keyboard back to the active window.
  if (!visible && isVisible()) acknowledgeActiveWindow();
  QMenu::setVisible(visible);
}

// Qt 6.4.2 lays an open menu out anew for each line that comes, goes or changes, which takes a
// minute for thousands. It is laid out once they are all there.
void ShownMenu::actionEvent(QActionEvent* event) {
  const bool visible = isVisible();
  setAttribute(Qt::WA_WState_Visible, false);
  QMenu::actionEvent(event);
  setAttribute(Qt::WA_WState_Visible, visible);
}

void ShownMenu::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const {
  QMenu::initStyleOption(option, action);
  if (shower_ == Shower::program) return;
  // A key's name may follow.
  const MenuItem& item = static_cast<const Line*>(action)->item();
  option->text.replace(0, action->text().size(), drawnTextOf(item));
}

void ShownMenu::itemsDidChange() {
  assert(isMainThread());
  if (std::exchange(isStale_, true)) return;
  // Once for all the changes of one refill. The desktop's own bar may show it while this does not.
  QTimer::singleShot(0, this, [this] { refill(); });
}

void ShownMenu::refill() {
  assert(isMainThread());
  if (!std::exchange(isStale_, false)) return;
  const QString highlighted = activeAction() == nullptr ? QString() : activeAction()->text();
  const auto& items = menu_->items();
  const QList<QAction*> lines = actions();
  qsizetype kept = 0;
  for (; kept < lines.size() && kept < static_cast<qsizetype>(items.size()); ++kept) {
    const auto& item = items[static_cast<std::size_t>(kept)];
    auto* const line = static_cast<Line*>(lines[kept]);
    if (!line->fits(*item, textOf(*item))) break;
    line->standFor(item);
  }
  setUpdatesEnabled(false);
  std::for_each(lines.begin() + kept, lines.end(), [](QAction* line) { delete line; });
  std::for_each(items.begin() + kept, items.end(), [this](const auto& item) { appendLine(item); });
  // The toolkit makes room for the texts that it is told.
  if (shower_ == Shower::desktopsBar) makeRoomForDrawnTexts();
  setUpdatesEnabled(true);
  if (!isVisible()) return;
  layOutAnew();
  highlight(highlighted);
}

QString ShownMenu::textOf(const MenuItem& item) const {
  if (shower_ == Shower::program) return drawnTextOf(item);
  return withoutAccessKeysForQt(titleInOneLine(item, fontMetrics()));
}

QString ShownMenu::drawnTextOf(const MenuItem& item) const {
  return withoutMnemonics(titleInOneLine(item, fontMetrics()).toStdString());
}

void ShownMenu::makeRoomForDrawnTexts() {
  QMenu drawn;
  drawn.setFont(font());
  for (const auto& item : menu_->items()) drawn.addAction(drawnTextOf(*item));
  setMinimumWidth(drawn.sizeHint().width());
}

void ShownMenu::appendLine(const std::shared_ptr<MenuItem>& item) {
  addAction(new Line(item, textOf(*item), *this));
}

void ShownMenu::highlight(const QString& text) {
  if (text.isEmpty() || activeAction() != nullptr) return;
  const QList<QAction*> lines = actions();
  const auto found =
      std::find_if(lines.begin(), lines.end(), [&](QAction* line) { return line->text() == text; });
  if (found != lines.end()) setActiveAction(*found);
}

void ShownMenu::layOutAnew() {
  const QRect available = screen()->availableGeometry();
  const int top = actions().isEmpty() ? 0 : actionGeometry(actions().first()).top();
  const bool hasScrolled = top < 0;
  if (hasScrolled || sizeHint().height() - top > available.height()) {
    // The toolkit finds out only as it opens a menu whether it scrolls.
    const QSignalBlocker isOpenAlready(this);
    popup(pos());
    if (activeAction() != nullptr) setActiveAction(activeAction());
    return;
  }
  resize(sizeHint());
  const int overhang = frameGeometry().bottom() - available.bottom();
  if (overhang > 0) move(x(), std::max(available.top(), y() - overhang));
}

}  // namespace vistrel::platform::linux_desktop
