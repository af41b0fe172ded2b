#include "platform/simulated/SimulatedVirtualDisplays.h"

#include <string_view>
#include <utility>

namespace vistrel::platform::simulated {

namespace {

using Arguments = std::vector<RuntimeValue>;

using Objects = std::vector<std::shared_ptr<RuntimeObject>>;

struct Words {
  std::string operator()(std::monostate) const { return "nil"; }
  std::string operator()(bool yes) const { return yes ? "YES" : "NO"; }
  std::string operator()(std::uint32_t number) const { return std::to_string(number); }
  std::string operator()(double number) const { return inWords(number); }
  std::string operator()(Size size) const {
    return inWords(size.width) + "x" + inWords(size.height);
  }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(GlobalQueue queue) const {
    return "queue " + std::to_string(queue.identifier) + "," + std::to_string(queue.flags);
  }
  std::string operator()(const Block& block) const { return block ? "block" : "nil"; }
  std::string operator()(const std::shared_ptr<RuntimeObject>& object) const {
    return object ? "object" : "nil";
  }
  std::string operator()(const Objects& objects) const {
    return std::to_string(objects.size()) + " objects";
  }
};

std::string inWords(const std::string& className, std::string_view selector,
                    const Arguments& arguments) {
  std::string words = className + " " + std::string(selector);
  for (const RuntimeValue& argument : arguments) {
    words.append(" ").append(std::visit(Words(), argument));
  }
  return words;
}

/// Writes down what is sent to an object.
class JournaledObject : public RuntimeObject {
 public:
  JournaledObject(std::string className, std::shared_ptr<RuntimeObject> object,
                  const OddVirtualDisplayClasses& oddities, CallJournal& journal)
      : className_(std::move(className)),
        object_(std::move(object)),
        oddities_(oddities),
        journal_(journal) {}

  RuntimeValue send(std::string_view selector, const Arguments& arguments) override;
  const std::shared_ptr<RuntimeObject>& object() const { return object_; }

 private:
  const std::string className_;
  const std::shared_ptr<RuntimeObject> object_;
  const OddVirtualDisplayClasses& oddities_;
  CallJournal& journal_;
};

std::shared_ptr<RuntimeObject> inner(const std::shared_ptr<RuntimeObject>& object) {
  const auto journaled = std::dynamic_pointer_cast<JournaledObject>(object);
  return journaled ? journaled->object() : object;
}

/// The arguments with the objects behind the journaled ones: what a method asks these on its way is
/// its own business.
Arguments inner(Arguments arguments) {
  for (RuntimeValue& argument : arguments) {
    if (auto* object = std::get_if<std::shared_ptr<RuntimeObject>>(&argument)) {
      *object = inner(*object);
    } else if (auto* objects = std::get_if<Objects>(&argument)) {
      for (auto& each : *objects) each = inner(each);
    }
  }
  return arguments;
}

RuntimeValue JournaledObject::send(std::string_view selector, const Arguments& arguments) {
  journal_.add(inWords(className_, selector, arguments));
  auto answer = object_->send(selector, inner(arguments));
  const auto odd = oddities_.answers.find(selector);
  return odd == oddities_.answers.end() ? answer : odd->second;
}

class JournaledClass : public RuntimeClass {
 public:
  JournaledClass(std::string name, std::shared_ptr<RuntimeClass> itsClass,
                 const OddVirtualDisplayClasses& oddities, CallJournal& journal)
      : name_(std::move(name)),
        class_(std::move(itsClass)),
        oddities_(oddities),
        journal_(journal) {}

  std::vector<RuntimeProperty> properties() const override { return class_->properties(); }
  std::vector<std::string> selectors() const override { return class_->selectors(); }

  std::shared_ptr<RuntimeObject> make(std::string_view initializer,
                                      const Arguments& arguments) override {
    journal_.add(inWords(name_, initializer, arguments));
    if (oddities_.makingNothing.contains(name_)) return nullptr;
    auto object = class_->make(initializer, inner(arguments));
    if (!object) return nullptr;
    return std::make_shared<JournaledObject>(name_, std::move(object), oddities_, journal_);
  }

 private:
  const std::string name_;
  const std::shared_ptr<RuntimeClass> class_;
  const OddVirtualDisplayClasses& oddities_;
  CallJournal& journal_;
};

}  // namespace

std::optional<DisplayID> SimulatedVirtualDisplayServer::createDisplay(
    const VirtualDisplayDescriptor& descriptor) {
  if (script_.refusesDescriptors) return std::nullopt;
  descriptors_.push_back(descriptor);
  const DisplayID display = script_.givesNoID ? 0 : displays_.takeID();
  live_.insert(display);
  return display;
}

bool SimulatedVirtualDisplayServer::applySettings(DisplayID display,
                                                  const VirtualDisplaySettings& settings) {
  if (script_.rejectsSettings) return false;
  settings_.push_back(settings);
  const VirtualDisplayMode& mode = settings.modes.at(0);
  const double pixelsPerPoint = settings.hiDPI ? 2 : 1;
  const Rect bounds{script_.origin, {mode.width / pixelsPerPoint, mode.height / pixelsPerPoint}};
  if (script_.onlineAfter == 0) {
    displays_.setBounds(display, bounds);
  } else if (script_.onlineAfter) {
    mainAsyncAfter(*script_.onlineAfter, [weak = weak_from_this(), display, bounds] {
      const auto self = weak.lock();
      if (self && self->live_.contains(display)) self->displays_.setBounds(display, bounds);
    });
  }
  return true;
}

void SimulatedVirtualDisplayServer::removeDisplay(DisplayID display) {
  live_.erase(display);
  displays_.remove(display);
}

SimulatedVirtualDisplays::SimulatedVirtualDisplays(SimulatedDisplays& displays,
                                                   CallJournal& journal)
    : server_(std::make_shared<SimulatedVirtualDisplayServer>(displays)),
      classes_(server_),
      journal_(journal) {}

std::shared_ptr<RuntimeClass> SimulatedVirtualDisplays::classNamed(const std::string& name) {
  if (missing_.contains(name)) return nullptr;
  auto found = classes_.classNamed(name);
  if (!found) return nullptr;
  return std::make_shared<JournaledClass>(name, std::move(found), oddities_, journal_);
}

}  // namespace vistrel::platform::simulated
