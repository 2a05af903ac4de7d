// CFURL: file URLs over POSIX paths, relative ones resolved against a base folder.
#include "CFURLInternal.h"

#include "CFObject.h"
#include "CFStringInternal.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <vector>

struct __CFURL : xpcf::Object {
  __CFURL(std::string path, CFURLRef base);
  bool equals(const Object& other) const override {
    const auto& url = static_cast<const __CFURL&>(other);
    return path == url.path && CFEqual(base.get(), url.base.get());
  }
  CFHashCode hash() const override { return CFHash(string.get()); }
  bool isDirectory() const { return !path.empty() && path.back() == '/'; }

  // The path bytes as given: absolute, or relative to `base`.
  const std::string path;
  const xpcf::Owned<CFURLRef> base;
  const xpcf::Owned<CFStringRef> string;
};

namespace {

// Bytes that stand for themselves in a URL path; every other byte is percent-encoded.
bool isPathByte(unsigned char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::strchr("-._~!$&'()*+,;=:@/", c) != nullptr;
}

std::string percentEncoded(const std::string& path) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (const char byte : path) {
    const auto c = static_cast<unsigned char>(byte);
    if (c != 0 && isPathByte(c)) {
      out += byte;
    } else {
      out += '%';
      out += kHex[c >> 4];
      out += kHex[c & 0xF];
    }
  }
  return out;
}

CFStringRef urlString(const std::string& path, bool relative) {
  // Escapes and ASCII only, so the UTF-8 reading cannot fail.
  return xpcf::makeStringFromUTF8((relative ? "" : "file://") + percentEncoded(path));
}

__CFURL* urlOf(CFURLRef url) {
  return xpcf::cast<__CFURL>(url, xpcf::kURLType);
}

// Removes "." and ".." segments as URL resolution does (RFC 3986, 5.2.4).
std::string withoutDotSegments(const std::string& path) {
  std::vector<std::string> segments;
  size_t start = 1;
  bool endsAsFolder = false;
  while (start <= path.size()) {
    size_t end = path.find('/', start);
    if (end == std::string::npos) end = path.size();
    const std::string segment = path.substr(start, end - start);
    endsAsFolder = segment == "." || segment == "..";
    if (segment == "..") {
      if (!segments.empty()) segments.pop_back();
    } else if (segment != ".") {
      segments.push_back(segment);
    }
    start = end + 1;
  }
  std::string out;
  for (const std::string& segment : segments) out += "/" + segment;
  if (out.empty() || endsAsFolder) out += '/';
  return out;
}

std::string currentDirectory() {
  std::vector<char> buffer(PATH_MAX);
  while (getcwd(buffer.data(), buffer.size()) == nullptr) {
    if (errno != ERANGE) return {};
    buffer.resize(buffer.size() * 2);
  }
  return buffer.data();
}

std::string lastComponentOf(const std::string& path) {
  std::string trimmed = path;
  if (trimmed.size() > 1 && trimmed.back() == '/') trimmed.pop_back();
  if (trimmed == "/") return trimmed;
  const size_t slash = trimmed.rfind('/');
  return slash == std::string::npos ? trimmed : trimmed.substr(slash + 1);
}

CFURLRef makeURL(std::string path, bool isDirectory, CFURLRef base) {
  if (path.empty()) return nullptr;
  if (isDirectory && path.back() != '/') path += '/';
  return new __CFURL(std::move(path), base);
}

}  // namespace

__CFURL::__CFURL(std::string path, CFURLRef base)
    : Object(xpcf::kURLType),
      path(std::move(path)),
      base(xpcf::retained(base)),
      string(urlString(this->path, base != nullptr)) {}

namespace xpcf {

CFURLRef makeFileURL(std::string path, bool isDirectory) {
  if (path.empty() || path.front() == '/') return makeURL(std::move(path), isDirectory, nullptr);
  // Relative paths keep the current directory of their making, as Apple's do.
  const std::string cwd = currentDirectory();
  if (cwd.empty()) return makeURL(std::move(path), isDirectory, nullptr);
  const Owned<CFURLRef> base(makeURL(cwd, true, nullptr));
  return makeURL(std::move(path), isDirectory, base.get());
}

std::optional<std::string> absolutePathOf(CFURLRef url) {
  const __CFURL* object = urlOf(url);
  if (object == nullptr) return std::nullopt;
  if (!object->base || object->path.front() == '/') return object->path;
  const auto basePath = absolutePathOf(object->base.get());
  if (!basePath) return std::nullopt;
  return withoutDotSegments(basePath->substr(0, basePath->rfind('/') + 1) + object->path);
}

}  // namespace xpcf

extern "C" CFTypeID CFURLGetTypeID(void) {
  return xpcf::kURLType;
}

extern "C" CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef, CFStringRef filePath, CFURLPathStyle pathStyle,
                                                  Boolean isDirectory) {
  if (pathStyle != kCFURLPOSIXPathStyle) return nullptr;
  auto path = xpcf::utf8Of(filePath);
  return path ? xpcf::makeFileURL(std::move(*path), isDirectory != 0) : nullptr;
}

extern "C" CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* buffer, CFIndex bufLen,
                                                            Boolean isDirectory) {
  if (buffer == nullptr || bufLen <= 0) return nullptr;
  std::string path(reinterpret_cast<const char*>(buffer), static_cast<size_t>(bufLen));
  // A path ends at its first zero byte, as every POSIX call reads it.
  path.resize(std::strlen(path.c_str()));
  return xpcf::makeFileURL(std::move(path), isDirectory != 0);
}

extern "C" CFStringRef CFURLGetString(CFURLRef anURL) {
  const __CFURL* url = urlOf(anURL);
  return url != nullptr ? url->string.get() : nullptr;
}

extern "C" CFURLRef CFURLGetBaseURL(CFURLRef anURL) {
  const __CFURL* url = urlOf(anURL);
  return url != nullptr ? url->base.get() : nullptr;
}

extern "C" CFURLRef CFURLCopyAbsoluteURL(CFURLRef relativeURL) {
  const __CFURL* url = urlOf(relativeURL);
  if (url == nullptr) return nullptr;
  if (!url->base) return xpcf::retained(relativeURL);
  auto path = xpcf::absolutePathOf(relativeURL);
  return path ? makeURL(std::move(*path), false, nullptr) : nullptr;
}

extern "C" CFStringRef CFURLCopyFileSystemPath(CFURLRef anURL, CFURLPathStyle pathStyle) {
  const __CFURL* url = urlOf(anURL);
  if (url == nullptr || pathStyle != kCFURLPOSIXPathStyle) return nullptr;
  std::string path = url->path;
  if (path.size() > 1 && path.back() == '/') path.pop_back();
  return xpcf::makeStringFromUTF8(path);
}

extern "C" Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                                    CFIndex maxBufLen) {
  const __CFURL* object = urlOf(url);
  if (object == nullptr || buffer == nullptr || maxBufLen <= 0) return false;
  auto path = resolveAgainstBase ? xpcf::absolutePathOf(url) : std::optional<std::string>(object->path);
  if (!path) return false;
  if (path->size() > 1 && path->back() == '/') path->pop_back();
  if (static_cast<CFIndex>(path->size()) >= maxBufLen) return false;
  std::memcpy(buffer, path->c_str(), path->size() + 1);
  return true;
}

extern "C" Boolean CFURLHasDirectoryPath(CFURLRef anURL) {
  const __CFURL* url = urlOf(anURL);
  return url != nullptr && url->isDirectory();
}

extern "C" CFStringRef CFURLCopyLastPathComponent(CFURLRef url) {
  const __CFURL* object = urlOf(url);
  return object != nullptr ? xpcf::makeStringFromUTF8(lastComponentOf(object->path)) : nullptr;
}

extern "C" CFStringRef CFURLCopyPathExtension(CFURLRef url) {
  const __CFURL* object = urlOf(url);
  if (object == nullptr) return nullptr;
  const std::string last = lastComponentOf(object->path);
  const size_t dot = last.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == last.size()) return nullptr;
  return xpcf::makeStringFromUTF8(last.substr(dot + 1));
}

extern "C" CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef, CFURLRef url, CFStringRef pathComponent,
                                                          Boolean isDirectory) {
  const __CFURL* object = urlOf(url);
  const auto component = xpcf::utf8Of(pathComponent);
  if (object == nullptr || !component) return nullptr;
  std::string path = object->path;
  if (path.back() != '/') path += '/';
  return makeURL(path + *component, isDirectory != 0, object->base.get());
}

extern "C" CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef, CFURLRef url) {
  const __CFURL* object = urlOf(url);
  if (object == nullptr) return nullptr;
  std::string path = object->path;
  if (path == "/") return makeURL("/../", true, nullptr);  // what Apple's resolution gives
  if (path.back() == '/') path.pop_back();
  const size_t slash = path.rfind('/');
  return makeURL(slash == std::string::npos ? "./" : path.substr(0, slash + 1), true, object->base.get());
}
