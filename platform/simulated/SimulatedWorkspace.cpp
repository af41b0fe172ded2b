#include "platform/simulated/SimulatedWorkspace.h"

#include <cstddef>
#include <string_view>

namespace vistrel::platform::simulated {
namespace {

/// The code points of UTF-8 text; a byte that fits nowhere stands for itself.
std::u32string codePoints(std::string_view text) {
  std::u32string points;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i++]);
    const int following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
    char32_t point = following == 0 ? lead : lead & (0x3FU >> static_cast<unsigned>(following));
    for (int n = 0; n < following && i < text.size(); ++n) {
      point = (point << 6U) | (static_cast<unsigned char>(text[i++]) & 0x3FU);
    }
    points.push_back(point);
  }
  return points;
}

char32_t folded(char32_t c) {
  const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
  if (within(U'A', U'Z')) return c + 32;
  if (within(0xC0, 0xDE) && c != 0xD7) return c + 32;     // À to Þ without ×
  if (within(0x391, 0x3A9) && c != 0x3A2) return c + 32;  // Α to Ω
  if (within(0x410, 0x42F)) return c + 32;                // А to Я
  if (within(0x400, 0x40F)) return c + 80;                // Ѐ to Џ
  return c;
}

std::u32string foldedCodePoints(std::string_view text) {
  std::u32string points = codePoints(text);
  for (char32_t& point : points) point = folded(point);
  return points;
}

/// Takes down who was activated.
class RecordedApplication : public RunningApplication {
 public:
  RecordedApplication(std::int32_t processID, std::vector<std::int32_t>& activated)
      : processID_(processID), activated_(activated) {}

  bool activate(ActivationOptions /*options*/) override {
    activated_.push_back(processID_);
    return true;
  }

 private:
  const std::int32_t processID_;
  std::vector<std::int32_t>& activated_;
};

}  // namespace

bool SimulatedWorkspace::openURL(const std::string& url) {
  openedURLs_.push_back(url);
  return opensURLs_;
}

bool SimulatedWorkspace::openNewInstance(const std::string& bundlePath) {
  startedInstances_.push_back(bundlePath);
  return startsInstances_;
}

std::shared_ptr<RunningApplication> SimulatedWorkspace::runningApplication(std::int32_t processID) {
  if (!running_.contains(processID)) return nullptr;
  return std::make_shared<RecordedApplication>(processID, activated_);
}

std::optional<std::string> SimulatedWorkspace::bundleInfo(const std::string& key) {
  const auto found = bundleInfo_.find(key);
  return found == bundleInfo_.end() ? std::nullopt : found->second;
}

ComparisonResult SimulatedWorkspace::localizedCaseInsensitiveCompare(const std::string& a,
                                                                     const std::string& b) {
  const int order = foldedCodePoints(a).compare(foldedCodePoints(b));
  if (order == 0) return ComparisonResult::same;
  return order < 0 ? ComparisonResult::ascending : ComparisonResult::descending;
}

}  // namespace vistrel::platform::simulated
