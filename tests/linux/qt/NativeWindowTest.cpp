#include <gtest/gtest.h>
#include <vector>

#include "platform/linux/qt/windows/NativeWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

const QRect before(10, 10, 300, 127);
const QRect wanted(10, 10, 300, 120);
const QSize minimum(160, 120);

/// Asks the desktop for nothing where it believes the window to be there, as the toolkit does.
class BelievingNative {
 public:
  explicit BelievingNative(const QRect& believed) : believed_(believed) {}

  QRect geometry() const { return believed_; }
  void setGeometry(const QRect& geometry) {
    if (geometry == believed_) return;
    believed_ = geometry;
    requests_.push_back(geometry);
  }
  void setMinimumSize(QSize /*size*/) {}

  const std::vector<QRect>& requests() const { return requests_; }

 private:
  QRect believed_;
  std::vector<QRect> requests_;
};

TEST(NativeWindow, IsAskedForOnce) {
  BelievingNative native(before);
  placeNative(native, before, wanted, minimum);
  EXPECT_EQ(native.requests(), std::vector{wanted});
}

TEST(NativeWindow, IsAskedForAlsoWhereALateAnswerHasTheToolkitBelieveItIsThere) {
  BelievingNative native(wanted);
  placeNative(native, before, wanted, minimum);
  ASSERT_FALSE(native.requests().empty());
  EXPECT_EQ(native.requests().back(), wanted);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
