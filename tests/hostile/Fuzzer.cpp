#include "tests/hostile/Fuzzer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <sstream>
#include <xcb/shape.h>

#include "platform/linux/x11/StrayErrors.h"
#include "tests/hostile/RawSource.h"
#include "tests/hostile/ServerResources.h"
#include "tests/support/Poll.h"
#include "tests/support/XWindows.h"

namespace vistrel::hostile {

namespace x11 = platform::linux_desktop;
using testbed::Rect;

namespace {

constexpr std::size_t mostWindows = 40;
constexpr int checkEvery = 250;
constexpr testbed::Point awayFromEverything{1270, 1010};

constexpr std::array<std::string_view, 16> properties{"_NET_WM_NAME",
                                                      "WM_NAME",
                                                      "WM_CLASS",
                                                      "WM_CLIENT_MACHINE",
                                                      "_NET_WM_PID",
                                                      "_NET_WM_WINDOW_TYPE",
                                                      "_NET_FRAME_EXTENTS",
                                                      "_GTK_FRAME_EXTENTS",
                                                      "_GTK_APPLICATION_ID",
                                                      "WM_STATE",
                                                      "_NET_WM_STATE",
                                                      "WM_TRANSIENT_FOR",
                                                      "_NET_WM_NAME",
                                                      "_NET_SUPPORTING_WM_CHECK",
                                                      "WM_NORMAL_HINTS",
                                                      "_NET_WM_WINDOW_OPACITY"};

constexpr std::array<std::string_view, 10> atoms{"UTF8_STRING",
                                                 "STRING",
                                                 "COMPOUND_TEXT",
                                                 "CARDINAL",
                                                 "ATOM",
                                                 "WINDOW",
                                                 "_NET_WM_WINDOW_TYPE_NORMAL",
                                                 "_NET_WM_WINDOW_TYPE_DOCK",
                                                 "_NET_WM_WINDOW_TYPE_DESKTOP",
                                                 "_NET_WM_WINDOW_TYPE_COMBO"};

constexpr const char* checkProperty = "_NET_SUPPORTING_WM_CHECK";
constexpr const char* listProperty = "_NET_CLIENT_LIST";

testbed::XReply<xcb_get_window_attributes_reply_t> attributesOf(
    const testbed::XConnection& connection, xcb_window_t window) {
  return testbed::XReply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(
      connection.get(), xcb_get_window_attributes(connection.get(), window), nullptr));
}

bool isToBeListed(const testbed::XConnection& connection, xcb_window_t window) {
  const auto attributes = attributesOf(connection, window);
  return attributes && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
         attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<xcb_window_t> childrenOf(const testbed::XConnection& connection, xcb_window_t window) {
  const testbed::XReply<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection.get(), xcb_query_tree(connection.get(), window), nullptr));
  if (!tree) return {};
  const auto* first = xcb_query_tree_children(tree.get());
  return {std::reverse_iterator(first + tree->children_len), std::reverse_iterator(first)};
}

/// Of a property; 0 when there is none.
int formatOf(const testbed::XConnection& connection, xcb_window_t window, std::string_view name) {
  const testbed::XReply<xcb_get_property_reply_t> reply(
      xcb_get_property_reply(connection.get(),
                             xcb_get_property(connection.get(), 0, window, connection.atom(name),
                                              XCB_GET_PROPERTY_TYPE_ANY, 0, 0),
                             nullptr));
  return reply ? reply->format : 0;
}

/// The first window with WM_STATE `depth` generations below `window`.
std::optional<xcb_window_t> withStateAt(const testbed::XConnection& connection, xcb_window_t window,
                                        int depth) {
  if (depth == 0) {
    const bool hasState = formatOf(connection, window, "WM_STATE") != 0;
    return hasState ? std::optional(window) : std::nullopt;
  }
  for (const auto child : childrenOf(connection, window)) {
    if (const auto found = withStateAt(connection, child, depth - 1)) return found;
  }
  return std::nullopt;
}

xcb_window_t clientIn(const testbed::XConnection& connection, xcb_window_t top) {
  constexpr int deepest = 4;
  for (int depth = 0; depth < deepest; ++depth) {
    if (const auto found = withStateAt(connection, top, depth)) return *found;
  }
  return top;
}

std::string textOf(const std::vector<xcb_window_t>& windows) {
  std::ostringstream text;
  for (const auto each : windows) text << " 0x" << std::hex << each;
  return text.str();
}

}  // namespace

Fuzzer::Fuzzer(const testbed::PrivateDisplay& display, std::uint64_t seed)
    : display_(display),
      random_(seed),
      person_(display.name()),
      pointer_(person_),
      lister_(x11::Connection::open()) {
  constexpr std::array<Rect, 3> panels{
      {{900, 20, 300, 240}, {900, 300, 220, 300}, {900, 620, 80, 40}}};
  for (const auto& panel : panels) mirrors_.push_back(std::make_unique<TestMirror>(person_, panel));
  openProgram();
  pointer_.moveTo(awayFromEverything);
  mirrorWellBehavedSource();
  resourcesAtStart_ = resources();
}

Fuzzer::~Fuzzer() = default;

void Fuzzer::openProgram() {
  program_ = std::make_unique<testbed::XConnection>(display_.name());
  windows_.clear();
}

/// What the server says to the program is of no interest, but has to be taken.
void Fuzzer::drainProgram() {
  program_->sync();
  while (const testbed::XReply<xcb_generic_event_t> event{xcb_poll_for_event(program_->get())}) {
  }
}

int Fuzzer::below(int bound) {
  return static_cast<int>(random_() % static_cast<std::uint64_t>(bound));
}

std::uint32_t Fuzzer::anything() {
  // The edges of what numbers can be are worth more than what lies between them.
  constexpr std::array<std::uint32_t, 10> edges{
      0, 1, 2, 0x7fff, 0x8000, 0xffff, 0x10000, 0x7fffffff, 0x80000000, 0xffffffff};
  if (oneIn(2)) return edges.at(static_cast<std::size_t>(below(edges.size())));
  return static_cast<std::uint32_t>(random_());
}

Fuzzer::Window* Fuzzer::ownWindow() {
  if (windows_.empty()) return nullptr;
  return &windows_[static_cast<std::size_t>(below(static_cast<int>(windows_.size())))];
}

xcb_window_t Fuzzer::someWindow() {
  switch (below(16)) {
    case 0:
      return anything();
    case 1:
      return person_.root();
    case 2:
      return someMirror().panel();
    default:
      const auto* own = ownWindow();
      return own ? own->id : xcb_window_t{XCB_WINDOW_NONE};
  }
}

TestMirror& Fuzzer::someMirror() {
  return *mirrors_[static_cast<std::size_t>(below(static_cast<int>(mirrors_.size())))];
}

std::string_view Fuzzer::somePropertyName() {
  return properties.at(static_cast<std::size_t>(below(properties.size())));
}

xcb_atom_t Fuzzer::someAtom() {
  if (oneIn(8)) return static_cast<xcb_atom_t>(1 + below(600));
  return person_.atom(atoms.at(static_cast<std::size_t>(below(atoms.size()))));
}

std::string Fuzzer::someBytes() {
  const int length = oneIn(400) ? 200000 : oneIn(20) ? below(8000) : below(40);
  std::string bytes(static_cast<std::size_t>(length / 4 * 4), '\0');
  for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
    const auto value = oneIn(8) ? someAtom() : anything();
    std::memcpy(bytes.data() + i, &value, sizeof(value));
  }
  return bytes;
}

void Fuzzer::createWindow() {
  if (windows_.size() >= mostWindows) return destroyWindow();
  constexpr std::array<std::pair<int, int>, 6> sizes{
      {{200, 160}, {200, 160}, {80, 60}, {1, 1}, {7000, 3}, {3, 7000}}};
  const auto [width, height] = sizes.at(static_cast<std::size_t>(below(sizes.size())));
  const auto* translucent = oneIn(5) ? otherVisual(person_, 32) : nullptr;
  auto* const xcb = program_->get();
  const Window window{xcb_generate_id(xcb), xcb_generate_id(xcb),
                      translucent ? std::uint8_t{32} : person_.screen().root_depth, std::nullopt};
  const auto visual = translucent ? translucent->visual_id : person_.screen().root_visual;
  const auto colours = xcb_generate_id(xcb);
  xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, colours, person_.root(), visual);
  const bool isInputOnly = oneIn(12);
  const std::array<std::uint32_t, 4> values{static_cast<std::uint32_t>(random_()), 0,
                                            static_cast<std::uint32_t>(below(2)), colours};
  const auto* own = oneIn(4) ? ownWindow() : nullptr;
  const std::uint32_t overrideRedirect = values[2];
  xcb_create_window(
      xcb, isInputOnly ? 0 : window.depth, window.id, own ? own->id : person_.root(),
      static_cast<std::int16_t>(below(900) - 100), static_cast<std::int16_t>(below(900) - 100),
      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
      static_cast<std::uint16_t>(isInputOnly || oneIn(2) ? 0 : below(20)),
      isInputOnly ? XCB_WINDOW_CLASS_INPUT_ONLY : XCB_WINDOW_CLASS_INPUT_OUTPUT,
      isInputOnly ? XCB_COPY_FROM_PARENT : visual,
      isInputOnly
          ? XCB_CW_OVERRIDE_REDIRECT
          : XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP,
      isInputOnly ? &overrideRedirect : values.data());
  xcb_free_colormap(xcb, colours);
  xcb_create_gc(xcb, window.pen, window.id, 0, nullptr);
  if (!oneIn(4)) xcb_map_window(xcb, window.id);
  windows_.push_back(window);
}

void Fuzzer::mapWindow() {
  if (const auto* own = ownWindow()) xcb_map_window(program_->get(), own->id);
}

void Fuzzer::unmapWindow() {
  if (const auto* own = ownWindow()) xcb_unmap_window(program_->get(), own->id);
}

void Fuzzer::destroyWindow() {
  const auto* own = ownWindow();
  if (!own) return;
  // Windows inside it go as well: what is done to them from now on fails, as it would in a program.
  xcb_destroy_window(program_->get(), own->id);
  xcb_free_gc(program_->get(), own->pen);
  windows_.erase(windows_.begin() + (own - windows_.data()));
}

void Fuzzer::reparentWindow() {
  const auto* own = ownWindow();
  const auto* parent = ownWindow();
  if (!own) return;
  xcb_reparent_window(program_->get(), own->id, oneIn(2) ? person_.root() : parent->id,
                      static_cast<std::int16_t>(below(600)), static_cast<std::int16_t>(below(600)));
}

void Fuzzer::configureWindow() {
  const auto* own = ownWindow();
  if (!own) return;
  // Far off, but not where 16 bits end: Xvfb itself crashes over redirected windows there.
  const auto coordinate = [this] {
    return static_cast<std::uint32_t>(oneIn(20) ? below(12000) - 6000 : below(800));
  };
  const auto side = [this] { return std::uint32_t(oneIn(30) ? below(8000) : 1 + below(400)); };
  const std::array<std::uint32_t, 5> values{coordinate(), coordinate(), side(), side(),
                                            std::uint32_t(oneIn(4) ? below(30) : 0)};
  xcb_configure_window(program_->get(), own->id,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                           XCB_CONFIG_WINDOW_HEIGHT | XCB_CONFIG_WINDOW_BORDER_WIDTH,
                       values.data());
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  if (oneIn(3)) {
    xcb_configure_window(program_->get(), own->id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  }
}

void Fuzzer::shapeWindow() {
  const auto* own = ownWindow();
  if (!own) return;
  const xcb_rectangle_t part{
      static_cast<std::int16_t>(below(50)), static_cast<std::int16_t>(below(50)),
      static_cast<std::uint16_t>(below(200)), static_cast<std::uint16_t>(below(200))};
  xcb_shape_rectangles(program_->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                       XCB_CLIP_ORDERING_UNSORTED, own->id, 0, 0, 1, &part);
}

void Fuzzer::paint() {
  const auto* own = ownWindow();
  if (!own) return;
  const std::uint32_t pixel = static_cast<std::uint32_t>(random_());
  const xcb_rectangle_t part{
      static_cast<std::int16_t>(below(300) - 50), static_cast<std::int16_t>(below(300) - 50),
      static_cast<std::uint16_t>(below(200)), static_cast<std::uint16_t>(below(200))};
  xcb_change_gc(program_->get(), own->pen, XCB_GC_FOREGROUND, &pixel);
  xcb_poly_fill_rectangle(program_->get(), own->id, own->pen, 1, &part);
}

void Fuzzer::setProperty() {
  constexpr std::array<std::uint8_t, 3> formats{8, 16, 32};
  auto* own = ownWindow();
  if (!own) return;
  const auto name = somePropertyName();
  if (name == "_NET_WM_NAME") own->title.reset();
  const auto bytes = someBytes();
  const auto format = formats.at(static_cast<std::size_t>(below(3)));
  xcb_change_property(program_->get(), XCB_PROP_MODE_REPLACE, own->id, person_.atom(name),
                      someAtom(), format, static_cast<std::uint32_t>(bytes.size() / (format / 8)),
                      bytes.data());
}

void Fuzzer::setTitle() {
  auto* own = ownWindow();
  if (!own) return;
  own->title = "Title " + std::to_string(below(1000));
  xcb_change_property(program_->get(), XCB_PROP_MODE_REPLACE, own->id, person_.atom("_NET_WM_NAME"),
                      person_.atom("UTF8_STRING"), 8,
                      static_cast<std::uint32_t>(own->title->size()), own->title->data());
}

void Fuzzer::deleteProperty() {
  auto* own = ownWindow();
  if (!own) return;
  const auto name = somePropertyName();
  if (name == "_NET_WM_NAME") own->title.reset();
  xcb_delete_property(program_->get(), own->id, person_.atom(name));
}

void Fuzzer::setClientList() {
  std::vector<std::uint32_t> list;
  const int length = oneIn(50) ? 3000 : below(60);
  for (int i = 0; i < length; ++i) list.push_back(someWindow());
  if (oneIn(12)) {
    const auto bytes = someBytes();
    xcb_change_property(program_->get(), XCB_PROP_MODE_REPLACE, person_.root(),
                        person_.atom(listProperty), XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
  } else if (oneIn(12)) {
    xcb_delete_property(program_->get(), person_.root(), person_.atom(listProperty));
  } else {
    xcb_change_property(program_->get(), XCB_PROP_MODE_REPLACE, person_.root(),
                        person_.atom(listProperty), XCB_ATOM_WINDOW, 32,
                        static_cast<std::uint32_t>(list.size()), list.data());
  }
}

void Fuzzer::setManager() {
  const auto window = someWindow();
  for (const auto each : {person_.root(), window}) {
    xcb_change_property(program_->get(), XCB_PROP_MODE_REPLACE, each, person_.atom(checkProperty),
                        XCB_ATOM_WINDOW, 32, 1, &window);
  }
}

void Fuzzer::sendEvent() {
  std::array<std::uint32_t, 8> words{};
  for (auto& each : words) each = oneIn(2) ? someWindow() : anything();
  std::array<char, 32> bytes{};
  std::memcpy(bytes.data(), words.data(), sizeof(words));
  bytes[0] = static_cast<char>(2 + below(126));
  const auto mask = oneIn(2) ? std::uint32_t{XCB_EVENT_MASK_STRUCTURE_NOTIFY} : 0x1ffffff;
  xcb_send_event(program_->get(), 0, someWindow(), mask, bytes.data());
}

void Fuzzer::movePointer() { pointer_.moveTo({below(1280), below(1024)}); }

void Fuzzer::killProgram() {
  drainProgram();
  openProgram();
}

void Fuzzer::startMirror() {
  const auto source = someWindow();
  xcb_flush(program_->get());
  auto& mirror = someMirror();
  // The program does not offer its own windows.
  if (source != mirror.panel()) mirror.start(source);
}

void Fuzzer::stopMirror() { someMirror().stop(); }

void Fuzzer::configureMirror() {
  auto configuration = TestMirror::usualConfiguration();
  configuration.width = anything();
  configuration.minimumFrameInterval = {below(4) - 1, below(60)};
  configuration.showsCursor = oneIn(2);
  someMirror().configure(configuration);
}

void Fuzzer::resizePanel() { someMirror().resizePanel(1 + below(300), 1 + below(250)); }

void Fuzzer::list() {
  ++listings_;
  service_.request(oneIn(2), oneIn(2),
                   [answers = answers_](const auto&, const auto&) { ++*answers; });
}

std::optional<std::vector<xcb_window_t>> Fuzzer::managersList() {
  const auto check = person_.numbers(person_.root(), checkProperty);
  if (check.empty()) return std::nullopt;
  const auto echo = person_.numbers(check[0], checkProperty);
  if (echo.empty() || echo[0] != check[0]) return std::nullopt;
  if (formatOf(person_, person_.root(), listProperty) != 32) return std::nullopt;
  auto list = person_.numbers(person_.root(), listProperty);
  std::reverse(list.begin(), list.end());
  return list;
}

std::vector<xcb_window_t> Fuzzer::expectedIds() {
  std::vector<xcb_window_t> candidates;
  if (const auto managed = managersList()) {
    for (const auto each : *managed) {
      const bool isRepeated =
          std::find(candidates.begin(), candidates.end(), each) != candidates.end();
      if (each != person_.root() && !isRepeated) candidates.push_back(each);
    }
  } else {
    for (const auto top : childrenOf(person_, person_.root())) {
      if (isToBeListed(person_, top)) candidates.push_back(clientIn(person_, top));
    }
  }
  std::erase_if(candidates, [this](xcb_window_t each) { return !isToBeListed(person_, each); });
  return candidates;
}

std::string Fuzzer::wrongListing() {
  drainProgram();
  ++listings_;
  const auto content = x11::listWindows(*lister_, names_, x11::ScreenLayout(), false, true);
  std::vector<xcb_window_t> ids;
  for (const auto& each : content->windows) {
    ids.push_back(each->windowID);
    const auto own = std::find_if(windows_.begin(), windows_.end(), [&](const Window& window) {
      return window.id == each->windowID && window.title;
    });
    if (own != windows_.end() && own->title != each->title) return "a title is wrong";
  }
  const auto expected = expectedIds();
  if (ids == expected) return {};
  return "listed are" + textOf(ids) + " instead of" + textOf(expected);
}

std::string Fuzzer::defect() {
  const auto errors = x11::strayErrors();
  if (errors.count > 0) return "a request failed: " + errors.last;
  return wrongListing();
}

std::string Fuzzer::run(int rounds) {
  static constexpr std::array<Deed, 21> deeds{
      {{60, &Fuzzer::createWindow},   {60, &Fuzzer::mapWindow},      {40, &Fuzzer::unmapWindow},
       {30, &Fuzzer::destroyWindow},  {30, &Fuzzer::reparentWindow}, {80, &Fuzzer::configureWindow},
       {10, &Fuzzer::shapeWindow},    {150, &Fuzzer::paint},         {250, &Fuzzer::setProperty},
       {30, &Fuzzer::setTitle},       {40, &Fuzzer::deleteProperty}, {10, &Fuzzer::setClientList},
       {5, &Fuzzer::setManager},      {60, &Fuzzer::sendEvent},      {5, &Fuzzer::movePointer},
       {1, &Fuzzer::killProgram},     {15, &Fuzzer::startMirror},    {5, &Fuzzer::stopMirror},
       {5, &Fuzzer::configureMirror}, {5, &Fuzzer::resizePanel},     {4, &Fuzzer::list}}};
  const int total = std::accumulate(deeds.begin(), deeds.end(), 0,
                                    [](int sum, const Deed& each) { return sum + each.weight; });
  for (int i = 0; i < rounds; ++i) {
    int chosen = below(total);
    const auto* deed = deeds.data();
    for (; chosen >= deed->weight; ++deed) chosen -= deed->weight;
    (this->*deed->perform)();
    if (++rounds_ % checkEvery != 0) continue;
    for (const auto& each : mirrors_) each->turn();
    if (auto what = defect(); !what.empty()) return what;
  }
  return {};
}

void Fuzzer::mirrorWellBehavedSource() {
  RawSource source(person_, {});
  for (const auto& each : mirrors_) {
    each->resizePanel(120, 100);
    each->start(source.id());
  }
  source.paint(testbed::fourColours);
  for (const auto& each : mirrors_) {
    static_cast<void>(
        testbed::eventually([&] { return each->shows(testbed::fourColours, source.area()); }));
    each->stop();
    each->settle();
  }
}

std::string Fuzzer::mirrorsThatAreWrong() {
  RawSource source(person_, {});
  // Not those that are mirrored next, which the panels are not to show before their time.
  constexpr testbed::Quadrants colours{testbed::white, testbed::red, testbed::green, testbed::blue};
  std::string wrong;
  for (const auto& each : mirrors_) {
    each->resizePanel(150, 120);
    each->start(source.id());
  }
  source.paint(colours);
  for (const auto& each : mirrors_) {
    const bool isRight = testbed::eventually([&] { return each->shows(colours, source.area()); });
    if (!isRight) wrong = "a mirror does not show its source; " + each->startFailure();
  }
  return wrong;
}

std::vector<std::string> Fuzzer::resources() const {
  std::vector<std::string> all;
  for (const auto& each : mirrors_) {
    std::ostringstream text;
    text << resourcesOf(person_, each->idBase());
    all.push_back(text.str());
  }
  return all;
}

std::string Fuzzer::finish() {
  killProgram();
  pointer_.moveTo(awayFromEverything);
  if (auto wrong = mirrorsThatAreWrong(); !wrong.empty()) return wrong;
  for (const auto& each : mirrors_) each->stop();
  mirrorWellBehavedSource();
  for (const auto& each : mirrors_) {
    if (!testbed::eventually([&] { return each->answered() == each->asked(); })) {
      return "a stream's request has no answer";
    }
  }
  const auto now = resources();
  for (std::size_t i = 0; i < now.size(); ++i) {
    if (now[i] != resourcesAtStart_[i]) {
      return "the server holds other things than at first: " + now[i] + "; at first " +
             resourcesAtStart_[i];
    }
  }
  return defect();
}

int Fuzzer::samples() const {
  return std::accumulate(mirrors_.begin(), mirrors_.end(), 0,
                         [](int sum, const auto& each) { return sum + each->samples(); });
}

}  // namespace vistrel::hostile
