#pragma once

namespace vistrel::fake {

/// An object has gone: another at its address is another one.
void forgetObject(const void* gone);

}  // namespace vistrel::fake
