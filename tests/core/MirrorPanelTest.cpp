#include <gtest/gtest.h>

#include "mirror/LiveDotColors.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Font;
using platform::FontWeight;
using platform::View;

static_assert(!std::is_default_constructible_v<WindowMirrorHUDController>);
static_assert(!std::is_default_constructible_v<StreamOutput>);

class MirrorPanelTest : public MirrorTest {
 protected:
  static WindowRecord sized(double width, double height) {
    return std::make_shared<ShareableWindow>(
        ShareableWindow{.windowID = 5, .frame = rect(0, 0, width, height)});
  }
};

TEST_F(MirrorPanelTest, TakesWhatItNeedsFromItsSource) {
  makeMirror(openSource([](ShareableWindow& w) {
    w.windowID = 4711;
    w.title = "Inbox";
    w.owningApplication =
        std::make_shared<platform::SharedApplication>(platform::SharedApplication{"Mail", 321});
    w.frame = rect(0, 0, 900, 600);
  }));
  EXPECT_EQ(mirror_->windowID(), 4711U);
  EXPECT_EQ(inside(*mirror_).sourceTitle(), "Inbox");
  EXPECT_EQ(inside(*mirror_).appName(), "Mail");
  EXPECT_EQ(inside(*mirror_).sourcePID(), 321);
  EXPECT_EQ(inside(*mirror_).aspect(), 1.5);
  EXPECT_EQ(inside(*mirror_).sourcePointSize(), (Size{900, 600}));
  EXPECT_EQ(mirror_->displayName(), "Mail — Inbox");
}

TEST_F(MirrorPanelTest, NamesWhatItsSourceLeavesOut) {
  makeMirror(sized(900, 600));
  EXPECT_EQ(inside(*mirror_).sourceTitle(), "Untitled");
  EXPECT_EQ(inside(*mirror_).appName(), "Window");
  EXPECT_EQ(inside(*mirror_).sourcePID(), -1);
  EXPECT_EQ(partsOf(*mirror_).titleLabel->stringValue(), "Window — Untitled");
}

TEST_F(MirrorPanelTest, KeepsAnEmptyTitle) {
  makeMirror(openSource("Mail", ""));
  EXPECT_EQ(inside(*mirror_).sourceTitle(), "");
  EXPECT_EQ(partsOf(*mirror_).titleLabel->stringValue(), "Mail — ");
}

TEST_F(MirrorPanelTest, TakesASourceWithoutSizeAsOnePoint) {
  makeMirror(sized(0, -40));
  EXPECT_EQ(inside(*mirror_).sourcePointSize(), (Size{1, 1}));
  EXPECT_EQ(inside(*mirror_).aspect(), 1);
  EXPECT_EQ(mirror_->panel()->frame().size, (Size{220, 246}));
}

TEST_F(MirrorPanelTest, HasNothingToShowAtFirst) {
  makeMirror(sized(900, 600));
  EXPECT_EQ(inside(*mirror_).stream(), nullptr);
  EXPECT_EQ(inside(*mirror_).streamOutput(), nullptr);
  EXPECT_EQ(inside(*mirror_).lastImage(), nullptr);
  EXPECT_EQ(inside(*mirror_).lastFrameAt(), platform::Date::distantPast());
  EXPECT_EQ(inside(*mirror_).freshnessTimer(), nullptr);
  EXPECT_EQ(inside(*mirror_).captureWidth(), 0);
  EXPECT_EQ(inside(*mirror_).captureHeight(), 0);
  EXPECT_FALSE(inside(*mirror_).rolledUp());
  EXPECT_EQ(inside(*mirror_).frameBeforeRollUp(), std::nullopt);
  EXPECT_FALSE(mirror_->panel()->isVisible());
  EXPECT_TRUE(capture().contentRequests().empty());
}

TEST_F(MirrorPanelTest, HandlesSamplesOnAQueueOfItsOwn) {
  makeMirror(sized(900, 600));
  EXPECT_EQ(inside(*mirror_).sampleQueue()->label(), "com.tollbeck.vistrel.capture");
  EXPECT_EQ(inside(*mirror_).sampleQueue()->qualityOfService(),
            platform::QualityOfService::userInteractive);
  ASSERT_EQ(capture().imageContexts().size(), 1U);
  EXPECT_FALSE(capture().imageContexts().front().useSoftwareRenderer);
}

TEST_F(MirrorPanelTest, FloatsOnEverySpaceWithoutTakingPart) {
  makeMirror(sized(900, 600));
  const MirrorPanel& panel = *mirror_->panel();
  EXPECT_EQ(panel.styleMask(), 136U);
  EXPECT_EQ(panel.backing(), platform::BackingStore::buffered);
  EXPECT_TRUE(panel.isPanel());
  EXPECT_TRUE(panel.isFloatingPanel());
  EXPECT_TRUE(panel.becomesKeyOnlyIfNeeded());
  EXPECT_TRUE(panel.canBecomeKey());
  EXPECT_EQ(panel.level(), 25);
  EXPECT_EQ(panel.collectionBehavior(), 257U);
  EXPECT_FALSE(panel.hidesOnDeactivate());
  EXPECT_FALSE(panel.isOpaque());
  EXPECT_EQ(panel.backgroundColor(), Color::clear());
  EXPECT_TRUE(panel.hasShadow());
  EXPECT_FALSE(panel.isReleasedWhenClosed());
  EXPECT_EQ(panel.appearance(), platform::Appearance::darkAqua);
  EXPECT_EQ(panel.contentMinSize(), (Size{160, 120}));
}

TEST_F(MirrorPanelTest, StacksItsViewsWithTheGripOnTop) {
  makeMirror(sized(900, 600));
  const std::shared_ptr<View> content = partsOf(*mirror_).content;
  const std::shared_ptr<View> statusLabel = partsOf(*mirror_).statusLabel;
  const std::shared_ptr<View> grip = partsOf(*mirror_).grip;
  EXPECT_EQ(mirror_->panel()->contentView(), partsOf(*mirror_).card);
  EXPECT_THAT(partsOf(*mirror_).card->subviews(),
              ElementsAre(content, partsOf(*mirror_).titleBar, statusLabel, grip));
  const std::shared_ptr<View> icon = partsOf(*mirror_).brandIcon;
  const std::shared_ptr<View> title = partsOf(*mirror_).titleLabel;
  const std::shared_ptr<View> close = partsOf(*mirror_).closeButton;
  EXPECT_THAT(partsOf(*mirror_).titleBar->subviews(),
              ElementsAre(icon, partsOf(*mirror_).liveDot, title, close));
  EXPECT_TRUE(partsOf(*mirror_).card->constraints().empty());
  EXPECT_TRUE(partsOf(*mirror_).grip->translatesAutoresizingMaskIntoConstraints());
}

TEST_F(MirrorPanelTest, DrawsARoundedDarkCard) {
  makeMirror(sized(900, 600));
  const platform::Layer& card = *partsOf(*mirror_).card->layer();
  EXPECT_EQ(card.cornerRadius(), 10);
  EXPECT_TRUE(card.masksToBounds());
  EXPECT_EQ(card.borderWidth(), 1);
  EXPECT_EQ(card.borderColor(), Color::white(0.18));
  EXPECT_EQ(card.backgroundColor(), Color::black());
  EXPECT_EQ(partsOf(*mirror_).titleBar->layer()->backgroundColor(), Color::black(0.55));
}

TEST_F(MirrorPanelTest, CarriesItsBrandIcon) {
  makeMirror(sized(900, 600));
  const platform::ImageView& icon = *partsOf(*mirror_).brandIcon;
  EXPECT_EQ(icon.image(), (platform::SymbolImage{"rectangle.on.rectangle.angled", "Vistrel", 13,
                                                 FontWeight::semibold}));
  EXPECT_EQ(icon.contentTintColor(), Color::srgb(0.4, 0.78, 1.0));
  EXPECT_EQ(icon.imageScaling(), platform::ImageScaling::proportionallyDown);
  EXPECT_EQ(icon.toolTip(), "Vistrel — live window mirror");
}

TEST_F(MirrorPanelTest, StartsWithAGreenRoundDot) {
  makeMirror(sized(900, 600));
  EXPECT_EQ(partsOf(*mirror_).liveDot->layer()->cornerRadius(), 4);
  EXPECT_EQ(dot(), Color::srgb(0.3, 0.85, 0.45));
}

TEST_F(MirrorPanelTest, TitlesItselfWithApplicationAndWindow) {
  makeMirror(openSource("Mail", "Inbox"));
  const platform::Label& label = *partsOf(*mirror_).titleLabel;
  EXPECT_EQ(label.stringValue(), "Mail — Inbox");
  EXPECT_EQ(label.toolTip(), "Mail — Inbox");
  EXPECT_EQ(label.font(), (Font{11, FontWeight::semibold}));
  EXPECT_EQ(label.textColor(), Color::white());
  EXPECT_EQ(label.lineBreakMode(), platform::LineBreakMode::truncatingTail);
}

TEST_F(MirrorPanelTest, OffersACloseButton) {
  makeMirror(sized(900, 600));
  const platform::Button& button = *partsOf(*mirror_).closeButton;
  EXPECT_FALSE(button.isBordered());
  EXPECT_EQ(button.title(), "✕");
  ASSERT_TRUE(button.attributedStyle());
  EXPECT_EQ(button.attributedStyle()->font, (Font{12, FontWeight::bold}));
  EXPECT_EQ(button.attributedStyle()->color, Color::white(0.75));
  EXPECT_EQ(button.action().selector(), "closeClicked");
  EXPECT_EQ(button.action().target(), mirror_);
}

TEST_F(MirrorPanelTest, NamesWhatOnlyEyesCouldTell) {
  using enum platform::AccessibilityRole;
  makeMirror(openSource("Mail", "Inbox"));
  EXPECT_EQ(partsOf(*mirror_).card->accessibilityRole(), none);
  EXPECT_EQ(partsOf(*mirror_).card->accessibilityLabel(), "Mail — Inbox");
  EXPECT_EQ(partsOf(*mirror_).content->accessibilityRole(), image);
  EXPECT_EQ(partsOf(*mirror_).content->accessibilityLabel(), "Mail — Inbox");
  EXPECT_EQ(partsOf(*mirror_).brandIcon->accessibilityLabel(), "Vistrel");
  EXPECT_EQ(partsOf(*mirror_).liveDot->accessibilityRole(), image);
  EXPECT_EQ(partsOf(*mirror_).closeButton->accessibilityLabel(), "Close");
  EXPECT_EQ(partsOf(*mirror_).statusLabel->accessibilityRole(), status);
  EXPECT_EQ(partsOf(*mirror_).grip->accessibilityRole(), growArea);
  EXPECT_EQ(partsOf(*mirror_).grip->accessibilityLabel(), "Resize");
}

TEST_F(MirrorPanelTest, HidesItsStatusAtFirst) {
  makeMirror(sized(900, 600));
  const platform::Label& label = *partsOf(*mirror_).statusLabel;
  EXPECT_TRUE(label.isHidden());
  EXPECT_EQ(label.stringValue(), "");
  EXPECT_EQ(label.font(), (Font{11, FontWeight::regular}));
  EXPECT_EQ(label.textColor(), Color::white(0.85));
  EXPECT_EQ(label.alignment(), platform::TextAlignment::center);
  EXPECT_EQ(label.lineBreakMode(), platform::LineBreakMode::wordWrapping);
  EXPECT_EQ(label.maximumNumberOfLines(), 3);
}

TEST_F(MirrorPanelTest, SizesItsContentFromTheSource) {
  makeMirror(sized(1000, 500));
  EXPECT_EQ(mirror_->panel()->frame().size, (Size{340, 196}));
  makeMirror(sized(400, 200));
  EXPECT_EQ(mirror_->panel()->frame().width(), 220);
  makeMirror(sized(2000, 1000));
  EXPECT_EQ(mirror_->panel()->frame().width(), 520);
}

TEST_F(MirrorPanelTest, PlacesItselfInTheTopLeftOfTheVisibleArea) {
  makeMirror(sized(1000, 500), 3);
  EXPECT_EQ(mirror_->panel()->frame(), rect(116, 563, 340, 196));
}

TEST_F(MirrorPanelTest, KeepsItsBottomEdgeOnTheScreenWhileItStepsRight) {
  makeMirror(sized(1000, 500), 60);
  EXPECT_EQ(mirror_->panel()->frame().origin, (Point{1712, 49}));
}

TEST_F(MirrorPanelTest, PlacesItselfWithoutAScreenAsOnAnOrdinaryOne) {
  windows().setScreens({});
  makeMirror(sized(1000, 500));
  EXPECT_EQ(mirror_->panel()->frame().origin, (Point{32, 672}));
}

TEST_F(MirrorPanelTest, PlacesItselfOnTheMainScreenWhenItIsOnNone) {
  const Rect far = rect(5000, 5000, 1000, 800);
  windows().setScreens({{.frame = far, .visibleFrame = far}});
  makeMirror(sized(1000, 500));
  EXPECT_EQ(mirror_->panel()->frame().origin, (Point{5032, 5572}));
}

TEST_F(MirrorPanelTest, PlacesItselfOnTheScreenThatShowsItRatherThanTheMainOne) {
  const Rect primary = rect(0, 0, 1440, 900);
  const Rect second = rect(1440, 0, 1000, 800);
  windows().setScreens(
      {{.frame = primary, .visibleFrame = primary}, {.frame = second, .visibleFrame = second}});
  windows().setMainScreen(platform::Screen{.frame = second, .visibleFrame = second});
  makeMirror(sized(1000, 500));
  EXPECT_EQ(mirror_->panel()->frame().origin, (Point{32, 672}));
}

TEST_F(MirrorPanelTest, LaysItsViewsOutForTheCardsSize) {
  makeMirror(sized(1000, 500));
  desktop_.turnMainQueue();
  EXPECT_EQ(partsOf(*mirror_).titleBar->frame(), rect(0, 0, 340, 26));
  EXPECT_EQ(partsOf(*mirror_).brandIcon->frame(), rect(8, 5, 17, 16));
  EXPECT_EQ(partsOf(*mirror_).liveDot->frame(), rect(30, 9, 8, 8));
  EXPECT_EQ(partsOf(*mirror_).closeButton->frame(), rect(316, 4, 18, 18));
  EXPECT_EQ(partsOf(*mirror_).titleLabel->frame(), rect(44, 5, 268, 16));
  EXPECT_EQ(partsOf(*mirror_).content->frame(), rect(0, 26, 340, 170));
  EXPECT_EQ(partsOf(*mirror_).statusLabel->frame(), rect(12, 87, 316, 48));
  EXPECT_EQ(partsOf(*mirror_).grip->frame(), rect(324, 180, 16, 16));
}

TEST_F(MirrorPanelTest, LaysItsViewsOutAnewWhenAPersonResizesIt) {
  makeMirror(sized(1000, 500));
  windows().moveWindow(*mirror_->panel(), rect(0, 0, 400, 300));
  EXPECT_EQ(partsOf(*mirror_).content->frame(), rect(0, 26, 400, 274));
  EXPECT_EQ(partsOf(*mirror_).grip->frame(), rect(384, 284, 16, 16));
}

TEST_F(MirrorPanelTest, LeavesTheStatusAsItIsWhenItLaysItsViewsOut) {
  makeMirror(sized(1000, 500));
  mirror_->showStatus("text");
  mirror_->relayout();
  EXPECT_EQ(status(), "text");
}

}  // namespace
}  // namespace vistrel
