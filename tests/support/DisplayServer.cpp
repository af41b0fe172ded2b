#include "tests/support/DisplayServer.h"

#include <fstream>
#include <stdexcept>
#include <xcb/randr.h>

#include "tests/support/XConnection.h"

namespace vistrel::testbed {
namespace {

// Room for some monitors beside the first.
constexpr int largestWidth = 6000;
constexpr int largestHeight = 2400;

// When the screen saver comes, in minutes: where nobody touches pointer or keys for long, mirrors
// are to go on.
constexpr const char* neverByItself = "0";

std::string sizeText(int width, int height) {
  return std::to_string(width) + "x" + std::to_string(height);
}

std::vector<std::string> xvfb(int width, int height) {
  return {"Xvfb", "-screen", "0", sizeText(width, height) + "x24", "-s", neverByItself};
}

// One monitor of one size, no devices, and nothing that belongs to the machine.
std::string xorgConfiguration(int width, int height) {
  const std::string mode = '"' + sizeText(width, height) + '"';
  const auto timing = [](int active) {
    return std::to_string(active) + ' ' + std::to_string(active + 8) + ' ' +
           std::to_string(active + 16) + ' ' + std::to_string(active + 32);
  };
  return R"(Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "card"
  Driver "dummy"
  VideoRam 256000
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5-1000
  VertRefresh 5-200
  Modeline )" +
         mode + " 100 " + timing(width) + ' ' + timing(height) + R"(
EndSection
Section "Screen"
  Identifier "screen"
  Device "card"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes )" +
         mode + R"(
  EndSubSection
EndSection
)";
}

std::vector<std::string> xorg(int width, int height, const std::filesystem::path& directory) {
  const std::filesystem::path configuration = directory / "xorg.conf";
  const std::filesystem::path noDirectory = directory / "xorg.conf.d";
  std::filesystem::create_directory(noDirectory);
  std::ofstream(configuration) << xorgConfiguration(width, height);
  return {"Xorg",
          "-config",
          configuration.string(),
          "-configdir",
          noDirectory.string(),
          "-logfile",
          (directory / "xorg.log").string(),
          "-novtswitch",
          "-sharevts",
          "-s",
          neverByItself};
}

template <class Reply>
XReply<Reply> answered(Reply* reply) {
  if (reply == nullptr) {
    throw std::runtime_error("the server refuses to set a monitor up");
  }
  return XReply<Reply>(reply);
}

void check(const XConnection& connection, xcb_void_cookie_t request) {
  const XReply<xcb_generic_error_t> error(xcb_request_check(connection.get(), request));
  if (error) {
    throw std::runtime_error("the server refuses to set a monitor up");
  }
}

xcb_randr_mode_t makeMode(const XConnection& connection, xcb_randr_output_t output, int width,
                          int height) {
  const std::string name = sizeText(width, height);
  xcb_randr_mode_info_t mode{};
  mode.width = static_cast<std::uint16_t>(width);
  mode.height = static_cast<std::uint16_t>(height);
  mode.name_len = static_cast<std::uint16_t>(name.size());
  const auto reply = answered(xcb_randr_create_mode_reply(
      connection.get(),
      xcb_randr_create_mode(connection.get(), connection.root(), mode,
                            static_cast<std::uint32_t>(name.size()), name.data()),
      nullptr));
  check(connection, xcb_randr_add_output_mode_checked(connection.get(), output, reply->mode));
  return reply->mode;
}

// The server starts with a monitor that fills the largest screen there can be.
void makeRoomAroundMonitor(const XConnection& connection, int width, int height) {
  xcb_connection_t* const xcb = connection.get();
  answered(xcb_randr_query_version_reply(xcb, xcb_randr_query_version(xcb, 1, 5), nullptr));
  const auto resources = answered(xcb_randr_get_screen_resources_current_reply(
      xcb, xcb_randr_get_screen_resources_current(xcb, connection.root()), nullptr));
  const xcb_randr_crtc_t crtc = *xcb_randr_get_screen_resources_current_crtcs(resources.get());
  const xcb_randr_output_t output =
      *xcb_randr_get_screen_resources_current_outputs(resources.get());
  const xcb_randr_mode_t mode = makeMode(connection, output, width, height);
  answered(xcb_randr_set_crtc_config_reply(
      xcb,
      xcb_randr_set_crtc_config(xcb, crtc, XCB_CURRENT_TIME, resources->config_timestamp, 0, 0,
                                mode, XCB_RANDR_ROTATION_ROTATE_0, 1, &output),
      nullptr));
  constexpr int pixelsPerMillimetre = 4;
  check(connection, xcb_randr_set_screen_size_checked(
                        xcb, connection.root(), static_cast<std::uint16_t>(width),
                        static_cast<std::uint16_t>(height),
                        static_cast<std::uint32_t>(width / pixelsPerMillimetre),
                        static_cast<std::uint32_t>(height / pixelsPerMillimetre)));
  check(connection, xcb_randr_set_output_primary_checked(xcb, connection.root(), output));
}

}  // namespace

std::vector<std::string> commandOf(DisplayServer server, int width, int height,
                                   const std::filesystem::path& directory) {
  switch (server) {
    case DisplayServer::fixed:
      break;
    case DisplayServer::growable:
      return xvfb(largestWidth, largestHeight);
    case DisplayServer::xorg:
      return xorg(width, height, directory);
  }
  return xvfb(width, height);
}

void setUpMonitor(DisplayServer server, const std::string& display, int width, int height) {
  if (server == DisplayServer::growable) {
    makeRoomAroundMonitor(XConnection(display), width, height);
  }
}

}  // namespace vistrel::testbed
