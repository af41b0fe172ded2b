#include "platform/linux/qt/QtWindows.h"

#include <QFontMetricsF>
#include <QPushButton>
#include <algorithm>
#include <cmath>
#include <string>

#include "platform/Alert.h"
#include "platform/Controls.h"
#include "platform/linux/SettingsAdvice.h"
#include "platform/linux/XdgDirectories.h"
#include "platform/linux/qt/menus/PickEntry.h"
#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/PlainText.h"
#include "platform/linux/qt/panel/PanelPeer.h"
#include "platform/linux/qt/space/Pointer.h"
#include "platform/linux/qt/widgets/AlertBox.h"
#include "platform/linux/qt/widgets/TitledPeer.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr double buttonMargin = 14;

SavedFrames savedFramesOfPerson() {
  const auto state = xdgStateHome();
  return SavedFrames(state.empty() ? state : state / "vistrel");
}

std::shared_ptr<PickEntry> pickEntryOf(const Session& session) {
  return session.windowPicking ? PickEntry::make(*session.windowPicking) : nullptr;
}

Size sizeOf(const Label& label) {
  const QSizeF size =
      QFontMetricsF(qtFont(label.font())).size(0, QString::fromStdString(label.stringValue()));
  return {std::ceil(size.width()), std::ceil(size.height())};
}

Size sizeOf(const Button& button) {
  QPushButton measured(withoutMnemonics(button.title()));
  measured.setFont(qtFont({}));
  measured.setFlat(!button.isBordered());
  const QSize size = measured.sizeHint();
  // Some styles leave long titles hardly any margin.
  const double titleWidth = QFontMetricsF(measured.font()).horizontalAdvance(measured.text());
  return {std::ceil(std::max<double>(size.width(), titleWidth + 2 * buttonMargin)),
          static_cast<double>(size.height())};
}

}  // namespace

QtWindows::QtWindows(const Session& session)
    : session_(session),
      host_(
          std::make_shared<PeerHost>(session.layout, savedFramesOfPerson(), pickEntryOf(session))),
      screens_(*session.monitors, *session.dockAreas, *session.layout,
               {.changed =
                    [this] {
                      session_.clearMonitors();
                      if (host_->isOpen()) host_->screensDidChange();
                    },
                .roomChanged = [this] { session_.clearMonitors(); }}) {}

std::unique_ptr<WindowPeer> QtWindows::makePeer(Window& window, bool isPanel) {
  if (isPanel) {
    return std::make_unique<PanelPeer>(
        window, host_,
        PanelPeer::Providers{*session_.panelWindows, *session_.contextMenuKeys,
                             *session_.windowActivation, *session_.sourceSituations,
                             session_.mayHaveForeignWindows, session_.confinesWindows});
  }
  return std::make_unique<TitledPeer>(window, host_, mirroringNotice(session_.facts()));
}

Point QtWindows::mouseLocation() { return pointerLocation(*session_.layout->get()); }

Size QtWindows::intrinsicContentSize(const Control& control) {
  if (const auto* label = dynamic_cast<const Label*>(&control)) return sizeOf(*label);
  if (const auto* button = dynamic_cast<const Button*>(&control)) return sizeOf(*button);
  return {};
}

int QtWindows::runModal(const Alert& alert) {
  if (!host_->isOpen()) return answerOfClosing(alert);
  return runAlertBox(alert);
}

void QtWindows::finish() { host_->close(); }

}  // namespace vistrel::platform::linux_desktop
