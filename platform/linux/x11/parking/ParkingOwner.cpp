#include "platform/linux/x11/parking/ParkingOwner.h"

#include "platform/linux/x11/server/ProcessToken.h"
#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/UnseenWindow.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// On the owner's window: its process's token.
constexpr auto ownerMark = "_VISTREL_PARKING_OWNER";

}  // namespace

ParkingOwner::ParkingOwner(Connection& connection) : window_(makeUnseenWindow(connection)) {
  const std::uint32_t token = processToken();
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window_.id(),
                      connection.atom(ownerMark), XCB_ATOM_CARDINAL, 32, 1, &token);
}

OwnerId ParkingOwner::id() const { return {window_.id(), processToken()}; }

bool isAlive(Connection& connection, const OwnerId& owner) {
  return propertyOf(connection, owner.window, ownerMark).firstValue() == owner.token;
}

}  // namespace vistrel::platform::linux_desktop
