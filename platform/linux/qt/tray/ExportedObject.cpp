#include "platform/linux/qt/tray/ExportedObject.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QTextStream>
#include <cassert>

#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

void describe(QTextStream& xml, const QStringList& types, const char* direction) {
  for (const QString& type : types) {
    xml << "<arg type=\"" << type << "\" direction=\"" << direction << "\"/>";
  }
}

}  // namespace

ExportedObject::ExportedObject(QDBusConnection bus, QString path, QString interface)
    : bus_(std::move(bus)),
      path_(std::move(path)),
      interface_(std::move(interface)),
      propertyMethods_{
          {QStringLiteral("Get"),
           {{"s", "s"}, {"v"}, [this](const auto& arguments) { return property(arguments); }}},
          {QStringLiteral("GetAll"),
           {{"s"}, {"a{sv}"}, [this](const auto& arguments) { return allProperties(arguments); }}},
      } {
  bus_.registerVirtualObject(path_, this);
}

ExportedObject::~ExportedObject() { bus_.unregisterObject(path_); }

void ExportedObject::addMethod(const QString& name, Types arguments, Types results, Call call) {
  methods_[name] = {std::move(arguments), std::move(results), std::move(call)};
}

void ExportedObject::addProperty(const QString& name, QString type, QVariant value) {
  properties_[name] = {std::move(type), std::move(value)};
}

void ExportedObject::emitSignal(const QString& name, const QVariantList& arguments) {
  QDBusMessage message = QDBusMessage::createSignal(path_, interface_, name);
  message.setArguments(arguments);
  bus_.send(message);
}

bool ExportedObject::handleMessage(const QDBusMessage& message,
                                   const QDBusConnection& /*connection*/) {
  assert(isMainThread());
  const Method* const method = methodFor(message);
  if (method == nullptr) return false;
  const auto results = message.signature() == method->arguments.join(QString())
                           ? method->call(message.arguments())
                           : std::nullopt;
  bus_.send(results ? message.createReply(*results)
                    : message.createErrorReply(QDBusError::InvalidArgs, QString()));
  return true;
}

/// The interface may be left out (D-Bus specification, "Message Types").
const ExportedObject::Method* ExportedObject::methodFor(const QDBusMessage& message) const {
  const QString interface = message.interface();
  const auto& methods = interface == propertiesInterface ? propertyMethods_ : methods_;
  if (&methods == &methods_ && !isOurs(interface)) return nullptr;
  const auto found = methods.find(message.member());
  return found == methods.end() ? nullptr : &found->second;
}

bool ExportedObject::isOurs(const QVariant& interface) const {
  const QString name = interface.toString();
  return name.isEmpty() || name == interface_;
}

std::optional<QVariantList> ExportedObject::property(const QVariantList& arguments) const {
  const auto found = properties_.find(arguments[1].toString());
  if (!isOurs(arguments[0]) || found == properties_.end()) return std::nullopt;
  return QVariantList{QVariant::fromValue(QDBusVariant(found->second.value))};
}

std::optional<QVariantList> ExportedObject::allProperties(const QVariantList& arguments) const {
  if (!isOurs(arguments[0])) return std::nullopt;
  QVariantMap values;
  for (const auto& [name, property] : properties_) values[name] = property.value;
  return QVariantList{values};
}

QString ExportedObject::introspect(const QString& /*path*/) const {
  QString text;
  QTextStream xml(&text);
  xml << "<interface name=\"" << interface_ << "\">";
  for (const auto& [name, property] : properties_) {
    xml << "<property name=\"" << name << "\" type=\"" << property.type << "\" access=\"read\"/>";
  }
  for (const auto& [name, method] : methods_) {
    xml << "<method name=\"" << name << "\">";
    describe(xml, method.arguments, "in");
    describe(xml, method.results, "out");
    xml << "</method>";
  }
  for (const auto& [name, arguments] : signals_) {
    xml << "<signal name=\"" << name << "\">";
    describe(xml, arguments, "out");
    xml << "</signal>";
  }
  xml << "</interface>";
  return text;
}

}  // namespace vistrel::platform::linux_desktop
