// Readers of the XML and old-style property list texts that bundles carry.
#include "PropertyLists.h"

#include <CoreFoundation/CFString.h>

#include "CFStringInternal.h"

#include <cstdint>

namespace {

bool isSpace(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f' || c == u'\v';
}

int hexValue(char16_t c) {
  if (c >= u'0' && c <= u'9') return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

void appendCodePoint(std::u16string& out, std::uint32_t c) {
  if (c > 0xFFFF) {
    out.push_back(static_cast<char16_t>(0xD7C0 + (c >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
  } else {
    out.push_back(static_cast<char16_t>(c));
  }
}

// Just enough XML for property lists: elements, text with entities and CDATA, and the
// prolog, doctype and comments skipped.
class XMLReader {
 public:
  explicit XMLReader(std::u16string_view text) : text_(text) {}

  struct Tag {
    std::u16string name;
    bool closing = false;
    bool empty = false;  // <name/>
  };

  // The next tag, skipping text between tags, comments, declarations and instructions.
  std::optional<Tag> nextTag() {
    while (true) {
      const size_t open = text_.find(u'<', pos_);
      if (open == std::u16string_view::npos) return std::nullopt;
      pos_ = open;
      if (skipped(u"<!--", u"-->") || skipped(u"<?", u"?>") || skipped(u"<!", u">")) continue;
      const size_t close = text_.find(u'>', pos_);
      if (close == std::u16string_view::npos) return std::nullopt;
      std::u16string_view inside = text_.substr(pos_ + 1, close - pos_ - 1);
      pos_ = close + 1;
      Tag tag;
      if (!inside.empty() && inside.front() == u'/') {
        tag.closing = true;
        inside.remove_prefix(1);
      }
      if (!inside.empty() && inside.back() == u'/') {
        tag.empty = true;
        inside.remove_suffix(1);
      }
      size_t end = 0;
      while (end < inside.size() && !isSpace(inside[end])) ++end;
      tag.name = std::u16string(inside.substr(0, end));
      return tag;
    }
  }

  // The text up to the closing tag of `name`, entities and CDATA sections read.
  std::optional<std::u16string> textUntilClose(const std::u16string& name) {
    std::u16string out;
    while (pos_ < text_.size()) {
      const char16_t c = text_[pos_];
      if (text_.substr(pos_).rfind(u"<![CDATA[", 0) == 0) {
        const size_t end = text_.find(u"]]>", pos_);
        if (end == std::u16string_view::npos) return std::nullopt;
        out += text_.substr(pos_ + 9, end - pos_ - 9);
        pos_ = end + 3;
      } else if (c == u'<') {
        const auto tag = nextTag();
        if (!tag || !tag->closing || tag->name != name) return std::nullopt;
        return out;
      } else if (c == u'&') {
        if (!readEntity(out)) return std::nullopt;
      } else {
        out.push_back(c);
        ++pos_;
      }
    }
    return std::nullopt;
  }

  // Skips the content of an element whose opening tag was read, nested elements included.
  bool skipElement(const Tag& open) {
    if (open.empty) return true;
    int depth = 1;
    while (depth > 0) {
      const auto tag = nextTag();
      if (!tag) return false;
      if (tag->closing) {
        --depth;
      } else if (!tag->empty) {
        ++depth;
      }
    }
    return true;
  }

 private:
  bool skipped(std::u16string_view start, std::u16string_view end) {
    if (text_.substr(pos_).rfind(start, 0) != 0) return false;
    const size_t found = text_.find(end, pos_ + start.size());
    pos_ = found == std::u16string_view::npos ? text_.size() : found + end.size();
    return true;
  }

  bool readEntity(std::u16string& out) {
    const size_t semicolon = text_.find(u';', pos_);
    if (semicolon == std::u16string_view::npos) return false;
    const std::u16string_view name = text_.substr(pos_ + 1, semicolon - pos_ - 1);
    pos_ = semicolon + 1;
    if (name == u"lt") {
      out.push_back(u'<');
    } else if (name == u"gt") {
      out.push_back(u'>');
    } else if (name == u"amp") {
      out.push_back(u'&');
    } else if (name == u"quot") {
      out.push_back(u'"');
    } else if (name == u"apos") {
      out.push_back(u'\'');
    } else if (name.size() > 1 && name[0] == u'#') {
      const bool hex = name[1] == u'x' || name[1] == u'X';
      std::uint32_t value = 0;
      for (size_t k = hex ? 2 : 1; k < name.size(); ++k) {
        const int digit = hexValue(name[k]);
        if (digit < 0 || (!hex && digit > 9)) return false;
        value = value * (hex ? 16 : 10) + static_cast<std::uint32_t>(digit);
        if (value > 0x10FFFF) return false;
      }
      appendCodePoint(out, value);
    } else {
      return false;
    }
    return true;
  }

  std::u16string_view text_;
  size_t pos_ = 0;
};

// Apple's old-style property list text, as .strings files use it.
class StringsReader {
 public:
  explicit StringsReader(std::u16string_view text) : text_(text) {}

  std::optional<xpcf::StringTable> read() {
    xpcf::StringTable table;
    skipSpaceAndComments();
    // The entries may stand inside the braces of an old-style dictionary.
    const bool braced = at(pos_) == u'{';
    if (braced) ++pos_;
    while (true) {
      skipSpaceAndComments();
      if (braced && at(pos_) == u'}') {
        ++pos_;
        skipSpaceAndComments();
        return pos_ == text_.size() ? std::optional(table) : std::nullopt;
      }
      if (pos_ == text_.size()) return braced ? std::nullopt : std::optional(table);
      auto key = readString();
      if (!key) return std::nullopt;
      skipSpaceAndComments();
      std::u16string value = *key;  // "key"; alone stands for "key" = "key";
      if (at(pos_) == u'=') {
        ++pos_;
        skipSpaceAndComments();
        auto read = readString();
        if (!read) return std::nullopt;
        value = std::move(*read);
        skipSpaceAndComments();
      }
      if (at(pos_) != u';') return std::nullopt;
      ++pos_;
      table[std::move(*key)] = std::move(value);
    }
  }

 private:
  char16_t at(size_t i) const { return i < text_.size() ? text_[i] : u'\0'; }

  void skipSpaceAndComments() {
    while (pos_ < text_.size()) {
      if (isSpace(text_[pos_])) {
        ++pos_;
      } else if (at(pos_) == u'/' && at(pos_ + 1) == u'*') {
        const size_t end = text_.find(u"*/", pos_ + 2);
        pos_ = end == std::u16string_view::npos ? text_.size() : end + 2;
      } else if (at(pos_) == u'/' && at(pos_ + 1) == u'/') {
        const size_t end = text_.find(u'\n', pos_);
        pos_ = end == std::u16string_view::npos ? text_.size() : end + 1;
      } else {
        return;
      }
    }
  }

  static bool isUnquotedChar(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
           std::u16string_view(u"_$+/:.-").find(c) != std::u16string_view::npos;
  }

  std::optional<std::u16string> readString() {
    if (at(pos_) == u'"') return readQuoted();
    const size_t start = pos_;
    while (pos_ < text_.size() && isUnquotedChar(text_[pos_])) ++pos_;
    if (pos_ == start) return std::nullopt;
    return std::u16string(text_.substr(start, pos_ - start));
  }

  std::optional<std::u16string> readQuoted() {
    std::u16string out;
    ++pos_;
    while (pos_ < text_.size()) {
      const char16_t c = text_[pos_++];
      if (c == u'"') return out;
      if (c != u'\\') {
        out.push_back(c);
        continue;
      }
      if (pos_ >= text_.size()) return std::nullopt;
      const char16_t escaped = text_[pos_++];
      switch (escaped) {
        case u'a': out.push_back(u'\a'); break;
        case u'b': out.push_back(u'\b'); break;
        case u'f': out.push_back(u'\f'); break;
        case u'n': out.push_back(u'\n'); break;
        case u'r': out.push_back(u'\r'); break;
        case u't': out.push_back(u'\t'); break;
        case u'v': out.push_back(u'\v'); break;
        case u'U': {
          // Up to four hex digits name one UTF-16 unit.
          std::uint32_t value = 0;
          for (int digits = 0; digits < 4 && hexValue(at(pos_)) >= 0; ++digits) {
            value = value * 16 + static_cast<std::uint32_t>(hexValue(text_[pos_++]));
          }
          out.push_back(static_cast<char16_t>(value));
          break;
        }
        default:
          if (escaped >= u'0' && escaped <= u'7') {
            // Up to three octal digits name a byte of the NeXTSTEP character set, whose
            // ASCII half is all that text files use.
            std::uint32_t value = static_cast<std::uint32_t>(escaped - u'0');
            for (int digits = 1; digits < 3 && at(pos_) >= u'0' && at(pos_) <= u'7'; ++digits) {
              value = value * 8 + static_cast<std::uint32_t>(text_[pos_++] - u'0');
            }
            out.push_back(static_cast<char16_t>(value));
          } else {
            out.push_back(escaped);  // \" \\ \' and any other character stand for themselves
          }
      }
    }
    return std::nullopt;
  }

  std::u16string_view text_;
  size_t pos_ = 0;
};

bool looksLikeXML(std::u16string_view text) {
  size_t i = 0;
  while (i < text.size() && isSpace(text[i])) ++i;
  return text.substr(i).rfind(u"<?xml", 0) == 0 || text.substr(i).rfind(u"<!DOCTYPE", 0) == 0 ||
         text.substr(i).rfind(u"<plist", 0) == 0;
}

}  // namespace

namespace xpcf {

std::optional<std::u16string> fileText(std::string_view bytes) {
  const auto opensWith = [&](std::string_view mark) { return bytes.substr(0, mark.size()) == mark; };
  if (opensWith("\xFE\xFF") || opensWith("\xFF\xFE")) return decode(bytes, kCFStringEncodingUTF16, true);
  if (opensWith("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return decode(bytes, kCFStringEncodingUTF8, false);
}

std::optional<StringTable> readXMLPropertyList(std::u16string_view text) {
  XMLReader reader(text);
  auto tag = reader.nextTag();
  if (!tag || tag->name != u"plist" || tag->closing) return std::nullopt;
  tag = reader.nextTag();
  if (!tag || tag->name != u"dict" || tag->closing) return std::nullopt;
  StringTable table;
  if (tag->empty) return table;
  while (true) {
    tag = reader.nextTag();
    if (!tag) return std::nullopt;
    if (tag->closing && tag->name == u"dict") return table;
    if (tag->name != u"key" || tag->closing) return std::nullopt;
    auto key = tag->empty ? std::optional(std::u16string()) : reader.textUntilClose(u"key");
    if (!key) return std::nullopt;
    const auto value = reader.nextTag();
    if (!value || value->closing) return std::nullopt;
    if (value->name == u"string") {
      auto string = value->empty ? std::optional(std::u16string()) : reader.textUntilClose(u"string");
      if (!string) return std::nullopt;
      table[std::move(*key)] = std::move(*string);
    } else if (!reader.skipElement(*value)) {
      return std::nullopt;
    }
  }
}

std::optional<StringTable> readStringsTable(std::u16string_view text) {
  if (looksLikeXML(text)) return readXMLPropertyList(text);
  return StringsReader(text).read();
}

}  // namespace xpcf
