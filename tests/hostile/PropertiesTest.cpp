#include <array>
#include <list>
#include <optional>
#include <unistd.h>

#include "tests/hostile/ListingTest.h"

namespace vistrel::hostile {
namespace {

using testing::ElementsAre;

std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

std::string hostName() {
  std::array<char, 256> name{};
  ::gethostname(name.data(), name.size() - 1);
  return name.data();
}

/// The bytes of a 32-bit property.
std::string valuesAsBytes(const std::vector<std::uint32_t>& values) {
  return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(values[0])};
}

using Properties = ListingTest;

TEST_F(Properties, TitlesAreWhatTheSourceSaysOfThem) {
  RawSource source(connection_, {});
  const auto titleOf = [&](std::string_view bytes) {
    set(source.id(), "_NET_WM_NAME", "UTF8_STRING", 8, bytes);
    return listed(source)->title;
  };
  for (const std::string& text :
       {std::string("x"), repeated("x", 10000), std::string("one\ntwo\r\n\tthree"),
        std::string("שלום עולם — مرحبا"),
        std::string("👩‍👩‍👧 🇩🇪 e\u0301\u0302\u0303"), std::string(" "),
        std::string()}) {
    EXPECT_EQ(titleOf(text), text);
  }
  EXPECT_EQ(titleOf("bad \xff\xfe \xc3( \xed\xa0\x80"),
            "bad \uFFFD\uFFFD \uFFFD( \uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(titleOf(std::string_view("before\0after", 12)), "before");
  EXPECT_EQ(titleOf(std::string_view("\0", 1)), "");
}

TEST_F(Properties, ATitleOfMegabytesIsCutToWhatAPersonMightRead) {
  RawSource source(connection_, {});
  set(source.id(), "_NET_WM_NAME", "UTF8_STRING", 8, repeated("€", 1 << 20));
  const auto title = listed(source)->title;
  ASSERT_TRUE(title);
  EXPECT_GE(title->size(), 10000u);
  EXPECT_LT(title->size(), std::size_t{1} << 20);
  EXPECT_TRUE(title->starts_with("€€€"));
}

TEST_F(Properties, ATitleThatIsNoTextGivesWayToTheOlderOne) {
  RawSource source(connection_, {});
  EXPECT_EQ(listed(source)->title, std::nullopt);
  for (const std::uint8_t format : {16, 32}) {
    set(source.id(), "_NET_WM_NAME", "CARDINAL", format, "notext!!");
    EXPECT_EQ(listed(source)->title, std::nullopt);
  }
  set(source.id(), "WM_NAME", "STRING", 16, "notext!!");
  EXPECT_EQ(listed(source)->title, std::nullopt);
  set(source.id(), "WM_NAME", "STRING", 8, "na\xefve");
  EXPECT_EQ(listed(source)->title, "naïve");
  set(source.id(), "WM_NAME", "COMPOUND_TEXT", 8, "\x1b%/1\x80\x89 \x1b$)C\xff");
  EXPECT_TRUE(listed(source)->title);
  set(source.id(), "WM_NAME", "ATOM", 8, "\xff");
  EXPECT_EQ(listed(source)->title, "\uFFFD");
}

TEST_F(Properties, TheApplicationIsFoundWithoutAnyHelpOfItsOwn) {
  RawSource source(connection_, {});
  const auto expectOwnProcess = [&] {
    const auto record = listed(source);
    ASSERT_NE(record->owningApplication, nullptr);
    EXPECT_EQ(record->owningApplication->processID, ::getpid());
    EXPECT_NE(record->owningApplication->applicationName, "");
  };
  expectOwnProcess();
  set(source.id(), "WM_CLIENT_MACHINE", "STRING", 8, "");
  set(source.id(), "WM_CLASS", "STRING", 8, "without any end");
  expectOwnProcess();
  set(source.id(), "WM_CLASS", "CARDINAL", 32, "12345678");
  expectOwnProcess();
  set(source.id(), "WM_CLIENT_MACHINE", "STRING", 8, hostName());
  for (const std::uint32_t nonsense : {0u, 0x00400000u, 0x80000000u, 0xffffffffu}) {
    set(source.id(), "_NET_WM_PID", "CARDINAL", 32, valuesAsBytes({nonsense}));
    expectOwnProcess();
  }
  set(source.id(), "_NET_WM_PID", "CARDINAL", 16, "ab");
  expectOwnProcess();
  set(source.id(), "_NET_WM_PID", "CARDINAL", 32, "");
  expectOwnProcess();
}

TEST_F(Properties, AnEnormousClassIsANameLikeAnyOther) {
  RawSource source(connection_, {});
  const auto name = repeated("Name", 40000);
  set(source.id(), "WM_CLASS", "STRING", 8, "instance" + std::string(1, '\0') + name);
  EXPECT_EQ(listed(source)->owningApplication->applicationName, name);
  set(source.id(), "_GTK_APPLICATION_ID", "UTF8_STRING", 8, "../../../etc/passwd");
  EXPECT_EQ(listed(source)->owningApplication->applicationName, name);
}

TEST_F(Properties, TheFirstTypeThatIsKnownCountsHoweverManyOthersComeBeforeIt) {
  RawSource source(connection_, {});
  EXPECT_EQ(listed(source)->windowLayer, 0);
  std::vector<std::uint32_t> types;
  for (std::uint32_t i = 0; i < 10000; ++i) types.push_back(0x1fffffff - i * 7919);
  set(source.id(), "_NET_WM_WINDOW_TYPE", "ATOM", 32, valuesAsBytes(types));
  EXPECT_EQ(listed(source)->windowLayer, 0);
  types.push_back(connection_.atom("_NET_WM_WINDOW_TYPE_DOCK"));
  types.push_back(connection_.atom("_NET_WM_WINDOW_TYPE_NORMAL"));
  set(source.id(), "_NET_WM_WINDOW_TYPE", "ATOM", 32, valuesAsBytes(types));
  EXPECT_GT(listed(source)->windowLayer, 0);
  set(source.id(), "_NET_WM_WINDOW_TYPE", "ATOM", 8, valuesAsBytes(types));
  EXPECT_EQ(listed(source)->windowLayer, 0);
}

TEST_F(Properties, AbsurdExtentsLeaveTheWindowAsItIs) {
  RawSource source(connection_, {});
  const platform::Rect area = platform::rect(20, 20, 200, 160);
  for (const auto& extents :
       std::vector<std::vector<std::uint32_t>>{{0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff},
                                               {0x80000000, 0, 0, 0},
                                               {0x7fffffff, 0x7fffffff, 1, 1},
                                               {32767, 0, 0, 0},
                                               {1, 2, 3}}) {
    for (const auto* property : {"_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS"}) {
      set(source.id(), property, "CARDINAL", 32, valuesAsBytes(extents));
      EXPECT_EQ(listed(source)->frame, area);
    }
  }
  // Mirrored it is as large as it is listed.
  source.paint(testbed::fourColours);
  TestMirror mirror(connection_, panelArea);
  mirror.start(source.id());
  EXPECT_TRUE(
      testbed::eventually([&] { return mirror.shows(testbed::fourColours, source.area()); }));
}

TEST_F(Properties, ThatChangeWhileTheWindowIsMirroredDisturbNothing) {
  RawSource source(connection_, {});
  source.paint(testbed::fourColours);
  TestMirror mirror(connection_, panelArea);
  mirror.start(source.id());
  for (std::uint32_t i = 0; i < 300; ++i) {
    set(source.id(), "_NET_WM_NAME", "UTF8_STRING", 8, repeated("title ", i));
    set(source.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", 32,
        valuesAsBytes({i % 99, i % 98, i % 79, i % 78}));
    EXPECT_EQ(listed(source)->title.value_or(""), repeated("title ", i));
  }
  xcb_delete_property(connection_.get(), source.id(), connection_.atom("_GTK_FRAME_EXTENTS"));
  connection_.sync();
  EXPECT_TRUE(
      testbed::eventually([&] { return mirror.shows(testbed::fourColours, source.area()); }));
}

using ClientList = ListingTest;

TEST_F(ClientList, NamesEachLivingWindowOnceWhateverStandsInIt) {
  RawSource lower(connection_, {});
  RawSource upper(connection_, {});
  RawSource unlisted(connection_, {});
  playManager();
  std::vector<std::uint32_t> list{lower.id(), connection_.root(), 0, lower.id()};
  for (std::uint32_t i = 0; i < 20000; ++i) list.push_back(0x1fffffff - i * 101);
  for (int i = 0; i < 5000; ++i) list.push_back(upper.id());
  for (const auto* property : {"_NET_CLIENT_LIST", "_NET_CLIENT_LIST_STACKING"}) {
    set(connection_.root(), property, "WINDOW", 32, valuesAsBytes(list));
    EXPECT_THAT(listedIds(), ElementsAre(upper.id(), lower.id())) << property;
  }
}

TEST_F(ClientList, IsDoneWithoutWhereItIsNoList) {
  RawSource lower(connection_, {});
  RawSource upper(connection_, {});
  const auto expectAllWindows = [&] {
    EXPECT_THAT(listedIds(), ElementsAre(upper.id(), lower.id(), manager_.id()));
  };
  expectAllWindows();
  playManager();
  expectAllWindows();
  set(connection_.root(), "_NET_CLIENT_LIST_STACKING", "STRING", 8, "no list");
  expectAllWindows();
  set(connection_.root(), "_NET_CLIENT_LIST", "WINDOW", 32, valuesAsBytes({lower.id()}));
  EXPECT_THAT(listedIds(), ElementsAre(lower.id()));
  // What a manager leaves behind that has gone.
  set(connection_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", 32, valuesAsBytes({0x1fffffff}));
  expectAllWindows();
  set(connection_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", 32, "");
  expectAllWindows();
}

TEST_F(ClientList, IsDoneWithoutUnderAManagerThatOnlyReparents) {
  RawSource frame(connection_, {});
  RawSource client(connection_, {});
  RawSource deepest(connection_, {});
  xcb_reparent_window(connection_.get(), client.id(), frame.id(), 0, 0);
  xcb_reparent_window(connection_.get(), deepest.id(), client.id(), 0, 0);
  connection_.sync();
  EXPECT_THAT(listedIds(), ElementsAre(frame.id(), manager_.id()));
  set(client.id(), "WM_STATE", "WM_STATE", 32, valuesAsBytes({1, 0}));
  set(deepest.id(), "WM_STATE", "WM_STATE", 32, valuesAsBytes({1, 0}));
  EXPECT_THAT(listedIds(), ElementsAre(client.id(), manager_.id()));
}

TEST_F(ClientList, IsDoneWithoutButNotByAskingAllThatAClientHolds) {
  RawSource frame(connection_, {});
  std::list<RawSource> parts;
  const auto holdParts = [&](std::size_t count) {
    while (parts.size() < count) {
      const auto& part = parts.emplace_back(connection_, RawSource::Options{});
      xcb_reparent_window(connection_.get(), part.id(), frame.id(), 0, 0);
    }
    connection_.sync();
  };
  holdParts(20);
  const auto lowest = parts.front().id();
  set(lowest, "WM_STATE", "WM_STATE", 32, valuesAsBytes({1, 0}));
  EXPECT_THAT(listedIds(), ElementsAre(lowest, manager_.id()));
  holdParts(500);
  EXPECT_THAT(listedIds(), ElementsAre(frame.id(), manager_.id()));
}

TEST_F(ClientList, IsReadInParts) {
  playManager();
  std::list<RawSource> sources;
  std::vector<std::uint32_t> list;
  for (int i = 0; i < 100; ++i)
    list.push_back(sources.emplace_back(connection_, RawSource::Options{}).id());
  set(connection_.root(), "_NET_CLIENT_LIST", "WINDOW", 32, valuesAsBytes(list));
  EXPECT_THAT(listedIds(), testing::ElementsAreArray(list.rbegin(), list.rend()));
}

}  // namespace
}  // namespace vistrel::hostile
