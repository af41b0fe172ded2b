#pragma once

#include <QString>
#include <string>

namespace vistrel::platform::linux_desktop {

/// In one line, for a menu: a tab, by which desktops take the rest for a key's name, becomes a wide
/// blank and a line feed a blank.
QString inOneLine(QString text);

/// In one line, character by character: only what is both a control character and white, and what
/// separates lines and paragraphs, becomes a blank, several in a row one.
QString withoutLineBreaks(const QString& text);

/// For a menu that another program shows (com.canonical.dbusmenu), where "_" marks an access key
/// and "__" is one "_": the text as it is.
QString withoutAccessKeys(QString text);

/// The same for a menu that Qt hands over, which makes a "_" of the first "&" (6.4.2).
QString withoutAccessKeysForQt(const QString& text);

/// For places where the toolkit reads "&" as the mark of a mnemonic: the text as it is.
QString withoutMnemonics(const std::string& text);

/// For places where the toolkit may read text as markup: the text as it is.
QString withoutMarkup(const std::string& text);

/// As much of a text as any line on a screen could hold, with an ellipsis where it was cut. For the
/// titles that other programs make up: Qt 6.4.2 lays out all of a text to show the first few
/// words of it, which takes a fifth of a second for 250,000 characters.
QString readableBeginning(const QString& text);

}  // namespace vistrel::platform::linux_desktop
