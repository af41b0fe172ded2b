#pragma once

#include <QString>
#include <string>

namespace vistrel::platform::linux_desktop {

/// For places where the toolkit reads "&" as the mark of a mnemonic: the text as it is.
QString withoutMnemonics(const std::string& text);

/// For places where the toolkit may read text as markup: the text as it is.
QString withoutMarkup(const std::string& text);

}  // namespace vistrel::platform::linux_desktop
