#pragma once

namespace vistrel::platform {

/// Colours that the desktop's theme decides. Backends resolve them when they draw; the components
/// of the `Color` are the value where no theme is asked.
enum class SystemColor { none, label, secondaryLabel, systemRed, systemGreen };

/// An sRGB colour, components from 0 to 1, not premultiplied.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  SystemColor system = SystemColor::none;

  static constexpr Color srgb(double r, double g, double b, double a = 1) { return {r, g, b, a}; }
  static constexpr Color black(double alpha = 1) { return {0, 0, 0, alpha}; }
  static constexpr Color white(double alpha = 1) { return {1, 1, 1, alpha}; }
  static constexpr Color clear() { return {0, 0, 0, 0}; }
  static constexpr Color label() { return {0, 0, 0, 0.85, SystemColor::label}; }
  static constexpr Color secondaryLabel() { return {0, 0, 0, 0.5, SystemColor::secondaryLabel}; }
  static constexpr Color systemRed() { return {1, 0.23, 0.19, 1, SystemColor::systemRed}; }
  static constexpr Color systemGreen() { return {0.16, 0.65, 0.27, 1, SystemColor::systemGreen}; }

  friend bool operator==(const Color&, const Color&) = default;
};

}  // namespace vistrel::platform
