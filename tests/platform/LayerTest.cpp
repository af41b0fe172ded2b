#include <gtest/gtest.h>

#include "platform/Image.h"
#include "platform/Layer.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

struct CustomLayerView : View {
  std::unique_ptr<Layer> makeBackingLayer() override {
    auto layer = std::make_unique<Layer>();
    layer->setContentsGravity(ContentsGravity::resizeAspect);
    return layer;
  }
};

class LayerTest : public testing::Test {
 protected:
  std::vector<ViewChange> changesTold() const {
    std::vector<ViewChange> changes;
    for (const auto& call : desktop_.windows().historyOf(*window_)->calls) {
      if (call.viewChange) changes.push_back(*call.viewChange);
    }
    return changes;
  }

  mutable simulated::SimulatedBackend desktop_;
  std::shared_ptr<Window> window_ =
      makeOwnedByMain<Window>(rect(0, 0, 100, 100), styleBorderless, BackingStore::buffered, false);
};

TEST_F(LayerTest, IsMadeByTheViewWhenFirstWanted) {
  CustomLayerView view;
  EXPECT_EQ(view.layer(), nullptr);
  view.setWantsLayer(true);
  ASSERT_NE(view.layer(), nullptr);
  EXPECT_EQ(view.layer()->contentsGravity(), ContentsGravity::resizeAspect);
  const Layer* made = view.layer();
  view.setWantsLayer(true);
  EXPECT_EQ(view.layer(), made);
  view.setWantsLayer(false);
  EXPECT_FALSE(view.wantsLayer());
}

TEST_F(LayerTest, TellsThePeerOfAColourThatDiffers) {
  window_->contentView()->setWantsLayer(true);
  const auto before = changesTold().size();
  window_->contentView()->layer()->setBackgroundColor(Color::black());
  window_->contentView()->layer()->setBackgroundColor(Color::black());
  const auto told = changesTold();
  ASSERT_EQ(told.size(), before + 1);
  EXPECT_EQ(told.back(), ViewChange::appearance);
}

TEST_F(LayerTest, TellsThePeerOfEveryPicture) {
  window_->contentView()->setWantsLayer(true);
  const auto before = changesTold().size();
  const auto image = std::make_shared<const Image>();
  window_->contentView()->layer()->setContents(image);
  window_->contentView()->layer()->setContents(image);
  const auto told = changesTold();
  ASSERT_EQ(told.size(), before + 2);
  EXPECT_EQ(told.back(), ViewChange::layerContents);
}

TEST_F(LayerTest, KeepsWhatItIsGivenOutsideAnyWindow) {
  Layer layer;
  layer.setCornerRadius(10);
  layer.setBorderWidth(1);
  layer.setBorderColor(Color::white(0.18));
  layer.setMasksToBounds(true);
  layer.setContentsScale(2);
  EXPECT_EQ(layer.cornerRadius(), 10);
  EXPECT_EQ(layer.borderWidth(), 1);
  EXPECT_EQ(layer.borderColor(), Color::white(0.18));
  EXPECT_TRUE(layer.masksToBounds());
  EXPECT_EQ(layer.contentsScale(), 2);
}

}  // namespace
}  // namespace vistrel::platform
