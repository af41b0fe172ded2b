#include "platform/linux/qt/menus/ScrollingMenuStyle.h"

#include <QProxyStyle>

namespace vistrel::platform::linux_desktop {
namespace {

class ScrollingMenuStyle final : public QProxyStyle {
 public:
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override {
    if (hint == SH_Menu_Scrollable) return 1;
    return QProxyStyle::styleHint(hint, option, widget, returned);
  }
};

}  // namespace

QStyle* scrollingMenuStyle() {
  static auto* const style = new ScrollingMenuStyle;
  return style;
}

}  // namespace vistrel::platform::linux_desktop
