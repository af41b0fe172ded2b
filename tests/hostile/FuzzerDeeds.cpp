#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <sys/stat.h>
#include <xcb/shape.h>

#include "tests/hostile/Fuzzer.h"
#include "tests/hostile/RawSource.h"

namespace vistrel::hostile {

namespace {

constexpr std::size_t mostWindows = 40;

constexpr std::array<std::string_view, 17> properties{"_NET_WM_NAME",
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
                                                      "_NET_WM_WINDOW_OPACITY",
                                                      "_NET_WM_ICON"};

/// Those by which a display's manager, compositor and tray are known, and the program's instance.
constexpr std::array<std::string_view, 4> selections{"WM_S0", "_NET_WM_CM_S0",
                                                     "_NET_SYSTEM_TRAY_S0", "_VISTREL_INSTANCE"};

constexpr std::array<std::string_view, 12> desktopWords{"[Desktop Entry]\n",
                                                        "Type=Application\n",
                                                        "Name=",
                                                        "Name[de]=",
                                                        "StartupWMClass=",
                                                        "Exec=\"",
                                                        "Hidden=true\n",
                                                        "\n",
                                                        "=",
                                                        "[",
                                                        "\\",
                                                        "NoDisplay="};

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

}  // namespace

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
  // Far off, but not where 16 bits end: Xvfb 21.1.7 itself crashes over redirected windows there.
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

void Fuzzer::takeSelection() {
  const auto name = selections.at(static_cast<std::size_t>(below(selections.size())));
  const auto owner = oneIn(3) ? xcb_window_t{XCB_WINDOW_NONE} : someWindow();
  xcb_set_selection_owner(program_->get(), owner, person_.atom(name), XCB_CURRENT_TIME);
  xcb_convert_selection(program_->get(), someWindow(), person_.atom(name), someAtom(), someAtom(),
                        XCB_CURRENT_TIME);
}

std::string Fuzzer::someDesktopText() {
  std::string text = oneIn(2) ? "[Desktop Entry]\nType=Application\n" : "";
  for (int i = below(20); i > 0; --i) {
    text += desktopWords.at(static_cast<std::size_t>(below(desktopWords.size())));
    if (oneIn(3)) text += someBytes();
  }
  return text;
}

void Fuzzer::writeDesktopFile() {
  const auto folder = display_.home() / "data/applications";
  std::filesystem::create_directories(folder);
  const auto file = folder / (std::to_string(below(30)) + ".desktop");
  std::filesystem::remove_all(file);
  switch (below(8)) {
    case 0:
      return std::filesystem::create_symlink(std::to_string(below(30)) + ".desktop", file);
    case 1:
      static_cast<void>(std::filesystem::create_directory(file));
      return;
    case 2:
      static_cast<void>(mkfifo(file.c_str(), S_IRWXU));
      return;
    case 3:
      return;
    default:
      std::ofstream(file, std::ios::binary) << someDesktopText();
  }
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
  ++listsAsked_;
  const auto desktopWindows =
      oneIn(2) ? platform::DesktopWindows::excluded : platform::DesktopWindows::included;
  const auto listedWindows =
      oneIn(2) ? platform::ListedWindows::onScreen : platform::ListedWindows::all;
  service_.request(desktopWindows, listedWindows,
                   [answers = answers_](const auto&, const auto&) { ++*answers; });
}

}  // namespace vistrel::hostile
