// HFS names to POSIX components and back, and the names of the two forks.
#include "HFSNames.h"

#include <cstring>

namespace xpcs {

namespace {

constexpr UniCharCount kMaxNameUnits = 255;
constexpr UniChar kReplacement = 0xFFFD;
constexpr char kResourceForkName[] = "RESOURCE_FORK";

bool isHighSurrogate(UniChar unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(UniChar unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void appendUtf8(char32_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    out += static_cast<char>(0xE0 | (c >> 12));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (c >> 18));
    out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

// Decodes one UTF-8 sequence at `pos` and moves past it; a malformed byte is taken alone
// and gives U+FFFD.
char32_t decodeUtf8(const std::string& in, std::size_t& pos) {
  const auto lead = static_cast<unsigned char>(in[pos++]);
  if (lead < 0x80) return lead;
  int extra = 0;
  char32_t c = 0;
  char32_t minimum = 0;
  if ((lead & 0xE0) == 0xC0) {
    extra = 1, c = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    extra = 2, c = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    extra = 3, c = lead & 0x07, minimum = 0x10000;
  } else {
    return kReplacement;
  }
  std::size_t at = pos;
  for (int i = 0; i < extra; ++i, ++at) {
    if (at >= in.size() || (static_cast<unsigned char>(in[at]) & 0xC0) != 0x80) return kReplacement;
    c = (c << 6) | (static_cast<unsigned char>(in[at]) & 0x3F);
  }
  if (c < minimum || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return kReplacement;
  pos = at;
  return c;
}

}  // namespace

OSErr posixComponentOfName(UniCharCount length, const UniChar* name, std::string& component) {
  if (name == nullptr && length > 0) return paramErr;
  if (length > kMaxNameUnits) return errFSNameTooLong;
  component.clear();
  for (UniCharCount i = 0; i < length; ++i) {
    const UniChar unit = name[i];
    // ":" separates HFS names: inside one it would stand for "/" on disk.
    if (unit == 0 || unit == ':' || isLowSurrogate(unit)) return bdNamErr;
    if (isHighSurrogate(unit)) {
      if (i + 1 >= length || !isLowSurrogate(name[i + 1])) return bdNamErr;
      appendUtf8(0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (name[i + 1] - 0xDC00), component);
      ++i;
    } else {
      appendUtf8(unit == '/' ? ':' : unit, component);
    }
  }
  if (component.empty() || component == "." || component == "..") return bdNamErr;
  return noErr;
}

void nameOfPosixComponent(const std::string& component, HFSUniStr255& name) {
  name.length = 0;
  std::size_t pos = 0;
  while (pos < component.size()) {
    char32_t c = decodeUtf8(component, pos);
    if (c == ':') c = '/';
    if (c < 0x10000) {
      if (name.length >= kMaxNameUnits) return;
      name.unicode[name.length++] = static_cast<UniChar>(c);
    } else {
      if (name.length + UniCharCount{2} > kMaxNameUnits) return;
      name.unicode[name.length++] = static_cast<UniChar>(0xD800 + ((c - 0x10000) >> 10));
      name.unicode[name.length++] = static_cast<UniChar>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
  }
}

OSErr forkOfName(UniCharCount length, const UniChar* name, Fork& fork) {
  if (length == 0) {
    fork = Fork::kData;
    return noErr;
  }
  if (name == nullptr) return paramErr;
  if (length != std::strlen(kResourceForkName)) return errFSBadForkName;
  for (UniCharCount i = 0; i < length; ++i) {
    if (name[i] != static_cast<UniChar>(kResourceForkName[i])) return errFSBadForkName;
  }
  fork = Fork::kResource;
  return noErr;
}

void nameOfFork(Fork fork, HFSUniStr255& name) {
  name.length = 0;
  if (fork == Fork::kResource) {
    for (const char* c = kResourceForkName; *c != '\0'; ++c) name.unicode[name.length++] = static_cast<UniChar>(*c);
  }
}

}  // namespace xpcs
