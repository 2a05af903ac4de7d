// Reading the property list texts of bundles: Info.plist and .strings tables.
#ifndef XPPLATFORM_SRC_PROPERTYLISTS_H
#define XPPLATFORM_SRC_PROPERTYLISTS_H

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace xpcf {

// Keys and their string values.
using StringTable = std::map<std::u16string, std::u16string>;

// The text of a file: UTF-16 when it opens with a byte order mark, else UTF-8 (an opening
// UTF-8 mark dropped); nothing for bytes that are neither.
std::optional<std::u16string> fileText(std::string_view bytes);
// The string values of the top dictionary of an XML property list; values of other types
// are left out. Nothing when the text is not such a list.
std::optional<StringTable> readXMLPropertyList(std::u16string_view text);
// A strings table: Apple's old-style syntax ("key" = "value"; with comments and escapes),
// or an XML property list. Nothing on a syntax error, as Apple then ignores the table.
std::optional<StringTable> readStringsTable(std::u16string_view text);

}  // namespace xpcf

#endif
