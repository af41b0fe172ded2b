#include "platform/macos/views/LayoutConstraints.h"

namespace vistrel::platform::macos {

namespace {

NSLayoutAttribute nsLayoutAttribute(LayoutAttribute attribute) {
  switch (attribute) {
    case LayoutAttribute::leading:
      return NSLayoutAttributeLeading;
    case LayoutAttribute::trailing:
      return NSLayoutAttributeTrailing;
    case LayoutAttribute::top:
      return NSLayoutAttributeTop;
    case LayoutAttribute::bottom:
      return NSLayoutAttributeBottom;
    case LayoutAttribute::centerX:
      return NSLayoutAttributeCenterX;
    case LayoutAttribute::centerY:
      return NSLayoutAttributeCenterY;
  }
  return NSLayoutAttributeNotAnAttribute;
}

NSView* realizedEnd(const std::weak_ptr<View>& end, const FindRealized& findRealized) {
  const auto view = end.lock();
  return view ? findRealized(*view) : nil;
}

}  // namespace

NSArray<NSLayoutConstraint*>* layoutConstraints(const View& container,
                                                const FindRealized& findRealized) {
  NSMutableArray<NSLayoutConstraint*>* made = [NSMutableArray array];
  for (const LayoutConstraint& constraint : container.constraints()) {
    NSView* first = realizedEnd(constraint.first, findRealized);
    NSView* second = realizedEnd(constraint.second, findRealized);
    if (first == nil || second == nil) continue;
    [made addObject:[NSLayoutConstraint
                        constraintWithItem:first
                                 attribute:nsLayoutAttribute(constraint.firstAttribute)
                                 relatedBy:NSLayoutRelationEqual
                                    toItem:second
                                 attribute:nsLayoutAttribute(constraint.secondAttribute)
                                multiplier:1
                                  constant:constraint.constant]];
  }
  return made;
}

}  // namespace vistrel::platform::macos
