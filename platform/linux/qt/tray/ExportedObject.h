#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace vistrel::platform::linux_desktop {

/// An object of ours on a bus, with one interface besides those that every object has. Other
/// programs are not trusted: calls that do not fit are refused. Main thread.
class ExportedObject : public QDBusVirtualObject {
 public:
  ~ExportedObject() override;

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
  QString introspect(const QString& path) const override;

 protected:
  /// Without a bus that can be reached it is there for nobody.
  ExportedObject(QDBusConnection bus, QString path, QString interface);

  /// D-Bus signatures, one for each value.
  using Types = QStringList;
  /// Gets arguments of the method's types and gives values of its results' types; none when the
  /// arguments name something that is not there.
  using Call = std::function<std::optional<QVariantList>(const QVariantList& arguments)>;

  void addMethod(const QString& name, Types arguments, Types results, Call call);
  /// One that never changes.
  void addProperty(const QString& name, QString type, QVariant value);
  void addSignal(const QString& name, Types arguments) { signals_[name] = std::move(arguments); }
  void emitSignal(const QString& name, const QVariantList& arguments);

 private:
  struct Method {
    Types arguments;
    Types results;
    Call call;
  };
  struct Property {
    QString type;
    QVariant value;
  };

  const Method* methodFor(const QDBusMessage& message) const;
  bool isOurs(const QVariant& interface) const;
  std::optional<QVariantList> property(const QVariantList& arguments) const;
  std::optional<QVariantList> allProperties(const QVariantList& arguments) const;

  QDBusConnection bus_;
  const QString path_;
  const QString interface_;
  std::map<QString, Method> methods_;
  std::map<QString, Property> properties_;
  std::map<QString, Types> signals_;
  /// Of `org.freedesktop.DBus.Properties`.
  const std::map<QString, Method> propertyMethods_;
};

}  // namespace vistrel::platform::linux_desktop
