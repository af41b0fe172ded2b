#pragma once

#include <QPalette>

namespace vistrel::platform::linux_desktop {

/// How well two colours stand out from one another, from 1 to 21 (WCAG 2.1, "contrast ratio").
double contrast(const QColor& a, const QColor& b);

/// The same palette, in which the disabled lines of a menu can be read as well: they keep their
/// colour where it has a contrast of 4.5 (WCAG 2.1, 1.4.3), else they get the palest of the enabled
/// ones' that has. Where these have less themselves, it is theirs.
QPalette withLegibleDisabledLines(const QPalette& palette);

}  // namespace vistrel::platform::linux_desktop
