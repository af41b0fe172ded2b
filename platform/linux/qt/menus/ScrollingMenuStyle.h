#pragma once

class QStyle;

namespace vistrel::platform::linux_desktop {

/// The desktop's style, but for menus that are longer than the screen: they scroll. Qt 6.4.2 and
/// most of its styles put their lines into columns, of which a person reaches those that the screen
/// has room for. For all menus of the process, and never destroyed.
QStyle* scrollingMenuStyle();

}  // namespace vistrel::platform::linux_desktop
