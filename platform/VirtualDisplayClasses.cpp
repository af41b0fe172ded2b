#include "platform/VirtualDisplayClasses.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <map>
#include <utility>

namespace vistrel::platform {

namespace {

using Arguments = std::vector<RuntimeValue>;
using Objects = std::vector<std::shared_ptr<RuntimeObject>>;

template <class T>
const T& as(const RuntimeValue& value) {
  const T* const content = std::get_if<T>(&value);
  if (content == nullptr) std::abort();
  return *content;
}

template <class T>
T property(RuntimeObject& object, const char* name) {
  return as<T>(object.send(name));
}

class TableClass;

/// A value for each property of its class.
class TableObject final : public RuntimeObject {
 public:
  explicit TableObject(std::shared_ptr<const TableClass> itsClass);
  TableObject(const TableObject&) = delete;
  TableObject& operator=(const TableObject&) = delete;
  ~TableObject() override {
    if (whenReleased_) whenReleased_();
  }

  RuntimeValue send(std::string_view selector, const Arguments& arguments) override;

  RuntimeValue value(const std::string& property) const { return values_.at(property); }
  /// `value` must be of the property's type.
  void setValue(const std::string& property, const RuntimeValue& value) {
    RuntimeValue& current = values_.at(property);
    if (current.index() != value.index()) std::abort();
    current = value;
  }
  void setWhenReleased(Block block) { whenReleased_ = std::move(block); }

 private:
  const std::shared_ptr<const TableClass> class_;
  std::map<std::string, RuntimeValue> values_;
  Block whenReleased_;
};

struct TableProperty {
  RuntimeProperty declared;
  /// Its type is the property's.
  RuntimeValue initial;
};

/// An initialiser answers whether there is an object after it.
struct TableMethod {
  std::string selector;
  std::size_t argumentCount;
  std::function<RuntimeValue(TableObject& self, const Arguments& arguments)> call;
};

/// A class as one table: its methods, then the getters and setters that its properties stand for.
class TableClass final : public RuntimeClass, public std::enable_shared_from_this<TableClass> {
 public:
  TableClass(std::vector<TableProperty> properties, std::vector<TableMethod> methods)
      : properties_(std::move(properties)), methods_(std::move(methods)) {
    for (const TableProperty& each : properties_) addAccessors(each.declared);
  }

  std::vector<RuntimeProperty> properties() const override {
    std::vector<RuntimeProperty> declared;
    for (const TableProperty& each : properties_) declared.push_back(each.declared);
    return declared;
  }

  std::vector<std::string> selectors() const override {
    std::vector<std::string> selectors;
    for (const TableMethod& each : methods_) selectors.push_back(each.selector);
    return selectors;
  }

  std::shared_ptr<RuntimeObject> make(std::string_view initializer,
                                      const Arguments& arguments) override {
    const auto object = std::make_shared<TableObject>(shared_from_this());
    if (initializer == "init") return object;
    return as<bool>(object->send(initializer, arguments)) ? object : nullptr;
  }

  const std::vector<TableProperty>& table() const { return properties_; }

  const TableMethod& methodNamed(std::string_view selector) const {
    const auto found = std::find_if(methods_.begin(), methods_.end(), [&](const auto& method) {
      return method.selector == selector;
    });
    if (found == methods_.end()) std::abort();
    return *found;
  }

 private:
  void addAccessors(const RuntimeProperty& declared) {
    const std::string& name = declared.name;
    methods_.push_back(
        {name, 0, [name](TableObject& self, const Arguments&) { return self.value(name); }});
    if (declared.attributes.find(",R") != std::string::npos) return;
    std::string capitalized = name;
    capitalized[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    methods_.push_back(
        {"set" + capitalized + ":", 1, [name](TableObject& self, const Arguments& arguments) {
           self.setValue(name, arguments[0]);
           return RuntimeValue();
         }});
  }

  std::vector<TableProperty> properties_;
  std::vector<TableMethod> methods_;
};

TableObject::TableObject(std::shared_ptr<const TableClass> itsClass) : class_(std::move(itsClass)) {
  for (const TableProperty& each : class_->table()) values_[each.declared.name] = each.initial;
}

RuntimeValue TableObject::send(std::string_view selector, const Arguments& arguments) {
  const TableMethod& method = class_->methodNamed(selector);
  if (arguments.size() != method.argumentCount) std::abort();
  return method.call(*this, arguments);
}

std::shared_ptr<RuntimeClass> descriptorClass() {
  return std::make_shared<TableClass>(
      std::vector<TableProperty>{
          {{"queue", R"(T@"NSObject<OS_dispatch_queue>",&,N)"}, GlobalQueue()},
          {{"name", R"(T@"NSString",C,N)"}, std::string()},
          {{"maxPixelsWide", "TI,N"}, 0U},
          {{"maxPixelsHigh", "TI,N"}, 0U},
          {{"sizeInMillimeters", "T{CGSize=dd},N"}, Size()},
          {{"productID", "TI,N"}, 0U},
          {{"vendorID", "TI,N"}, 0U},
          {{"serialNum", "TI,N"}, 0U},
          {{"terminationHandler", "T@?,C,N"}, Block()},
      },
      std::vector<TableMethod>());
}

std::shared_ptr<RuntimeClass> settingsClass() {
  return std::make_shared<TableClass>(
      std::vector<TableProperty>{
          {{"hiDPI", "TB,N"}, false},
          {{"modes", R"(T@"NSArray",C,N)"}, Objects()},
      },
      std::vector<TableMethod>());
}

RuntimeValue initMode(TableObject& self, const Arguments& arguments) {
  self.setValue("width", arguments[0]);
  self.setValue("height", arguments[1]);
  self.setValue("refreshRate", arguments[2]);
  return true;
}

std::shared_ptr<RuntimeClass> modeClass() {
  return std::make_shared<TableClass>(
      std::vector<TableProperty>{
          {{"width", "TI,R,N"}, 0U},
          {{"height", "TI,R,N"}, 0U},
          {{"refreshRate", "Td,R,N"}, 0.0},
      },
      std::vector<TableMethod>{{"initWithWidth:height:refreshRate:", 3, initMode}});
}

VirtualDisplayDescriptor descriptorOf(RuntimeObject& object) {
  return {.name = property<std::string>(object, "name"),
          .maxPixelsWide = property<std::uint32_t>(object, "maxPixelsWide"),
          .maxPixelsHigh = property<std::uint32_t>(object, "maxPixelsHigh"),
          .sizeInMillimeters = property<Size>(object, "sizeInMillimeters"),
          .productID = property<std::uint32_t>(object, "productID"),
          .vendorID = property<std::uint32_t>(object, "vendorID"),
          .serialNum = property<std::uint32_t>(object, "serialNum")};
}

VirtualDisplaySettings settingsOf(RuntimeObject& object) {
  VirtualDisplaySettings settings{.hiDPI = property<bool>(object, "hiDPI")};
  for (const auto& mode : property<Objects>(object, "modes")) {
    settings.modes.push_back({.width = property<std::uint32_t>(*mode, "width"),
                              .height = property<std::uint32_t>(*mode, "height"),
                              .refreshRate = property<double>(*mode, "refreshRate")});
  }
  return settings;
}

using WeakServer = std::weak_ptr<VirtualDisplayServer>;

RuntimeValue initDisplay(const WeakServer& weakServer, TableObject& self,
                         const Arguments& arguments) {
  const auto& descriptor = as<std::shared_ptr<RuntimeObject>>(arguments[0]);
  const auto server = weakServer.lock();
  const auto display = server ? server->createDisplay(descriptorOf(*descriptor)) : std::nullopt;
  if (!display) return false;
  self.setValue("displayID", *display);
  self.setWhenReleased([weakServer, display = *display] {
    mainQueue().async([weakServer, display] {
      if (const auto remaining = weakServer.lock()) remaining->removeDisplay(display);
    });
  });
  return true;
}

RuntimeValue applySettings(const WeakServer& weakServer, TableObject& self,
                           const Arguments& arguments) {
  const auto& settings = as<std::shared_ptr<RuntimeObject>>(arguments[0]);
  const auto server = weakServer.lock();
  return server &&
         server->applySettings(property<std::uint32_t>(self, "displayID"), settingsOf(*settings));
}

std::shared_ptr<RuntimeClass> displayClass(const WeakServer& server) {
  return std::make_shared<TableClass>(
      std::vector<TableProperty>{{{"displayID", "TI,R,N"}, 0U}},
      std::vector<TableMethod>{
          {"initWithDescriptor:", 1, std::bind_front(initDisplay, server)},
          {"applySettings:", 1, std::bind_front(applySettings, server)},
      });
}

}  // namespace

VirtualDisplayClasses::VirtualDisplayClasses(std::shared_ptr<VirtualDisplayServer> server)
    : server_(std::move(server)),
      classes_{{"CGVirtualDisplayDescriptor", descriptorClass()},
               {"CGVirtualDisplaySettings", settingsClass()},
               {"CGVirtualDisplayMode", modeClass()},
               {"CGVirtualDisplay", displayClass(server_)}} {}

std::shared_ptr<RuntimeClass> VirtualDisplayClasses::classNamed(const std::string& name) {
  const auto found = classes_.find(name);
  return found == classes_.end() || !server_->hostsVirtualDisplays() ? nullptr : found->second;
}

}  // namespace vistrel::platform
