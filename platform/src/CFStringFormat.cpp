// CFStringCreateWithFormat: printf-style formatting of integer arguments into a CFString.
#include "CFStringInternal.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>

namespace {

// The arguments, in a struct so that helpers can take them from the one list in turn.
struct Arguments {
  va_list list;
};

enum class Length { None, Char, Short, Long, LongLong, IntMax, Size, PtrDiff };

using SignedSize = std::make_signed_t<std::size_t>;
using UnsignedPtrDiff = std::make_unsigned_t<std::ptrdiff_t>;

// Arguments narrower than int arrive promoted to int and are narrowed back, as printf does.
long long signedArgument(Arguments& args, Length length) {
  switch (length) {
    case Length::Char: return static_cast<signed char>(va_arg(args.list, int));
    case Length::Short: return static_cast<short>(va_arg(args.list, int));
    case Length::Long: return va_arg(args.list, long);
    case Length::LongLong: return va_arg(args.list, long long);
    case Length::IntMax: return va_arg(args.list, std::intmax_t);
    case Length::Size: return va_arg(args.list, SignedSize);
    case Length::PtrDiff: return va_arg(args.list, std::ptrdiff_t);
    case Length::None: break;
  }
  return va_arg(args.list, int);
}

unsigned long long unsignedArgument(Arguments& args, Length length) {
  switch (length) {
    case Length::Char: return static_cast<unsigned char>(va_arg(args.list, unsigned int));
    case Length::Short: return static_cast<unsigned short>(va_arg(args.list, unsigned int));
    case Length::Long: return va_arg(args.list, unsigned long);
    case Length::LongLong: return va_arg(args.list, unsigned long long);
    case Length::IntMax: return va_arg(args.list, std::uintmax_t);
    case Length::Size: return va_arg(args.list, std::size_t);
    case Length::PtrDiff: return va_arg(args.list, UnsignedPtrDiff);
    case Length::None: break;
  }
  return va_arg(args.list, unsigned int);
}

// Reads the length modifier at `i`, if any, and moves past it.
Length readLength(const std::u16string& format, size_t& i) {
  auto at = [&](size_t k) { return k < format.size() ? format[k] : u'\0'; };
  switch (at(i)) {
    case u'h':
      if (at(i + 1) == u'h') {
        i += 2;
        return Length::Char;
      }
      ++i;
      return Length::Short;
    case u'l':
      if (at(i + 1) == u'l') {
        i += 2;
        return Length::LongLong;
      }
      ++i;
      return Length::Long;
    case u'q': ++i; return Length::LongLong;
    case u'j': ++i; return Length::IntMax;
    case u'z': ++i; return Length::Size;
    case u't': ++i; return Length::PtrDiff;
    default: return Length::None;
  }
}

// Reads digits, or "*" taking an int argument; false when the number does not fit an int.
// A negative precision from "*" counts as none, as in printf.
bool readNumber(const std::u16string& format, size_t& i, Arguments& args, std::string& directive, bool isPrecision) {
  if (i < format.size() && format[i] == u'*') {
    const int value = va_arg(args.list, int);
    if (isPrecision && value < 0) {
      directive.pop_back();
    } else {
      directive += std::to_string(value);
    }
    ++i;
    return true;
  }
  long value = 0;
  while (i < format.size() && format[i] >= u'0' && format[i] <= u'9') {
    value = value * 10 + (format[i] - u'0');
    if (value > INT32_MAX) return false;
    directive += static_cast<char>(format[i]);
    ++i;
  }
  return true;
}

// Formats one converted value with the C library and appends it; the output is ASCII
// except for %c, whose byte is read as Latin-1.
template <class T>
bool appendPrinted(std::u16string& out, const std::string& directive, T value) {
  const int size = std::snprintf(nullptr, 0, directive.c_str(), value);
  if (size < 0) return false;
  std::string printed(static_cast<size_t>(size) + 1, '\0');
  std::snprintf(printed.data(), printed.size(), directive.c_str(), value);
  for (int k = 0; k < size; ++k) {
    out.push_back(static_cast<unsigned char>(printed[static_cast<size_t>(k)]));
  }
  return true;
}

std::optional<std::u16string> format(const std::u16string& format, Arguments& args) {
  std::u16string out;
  size_t i = 0;
  while (i < format.size()) {
    if (format[i] != u'%') {
      out.push_back(format[i++]);
      continue;
    }
    ++i;
    if (i < format.size() && format[i] == u'%') {
      out.push_back(u'%');
      ++i;
      continue;
    }
    std::string directive = "%";
    while (i < format.size() && std::u16string_view(u"-+ #0").find(format[i]) != std::u16string_view::npos) {
      directive += static_cast<char>(format[i++]);
    }
    if (!readNumber(format, i, args, directive, false)) return std::nullopt;
    if (i < format.size() && format[i] == u'.') {
      directive += '.';
      ++i;
      if (!readNumber(format, i, args, directive, true)) return std::nullopt;
    }
    const Length length = readLength(format, i);
    if (i >= format.size()) return std::nullopt;
    const char16_t conversion = format[i++];
    bool printed = false;
    switch (conversion) {
      case u'd':
      case u'i':
        printed = appendPrinted(out, directive + "ll" + static_cast<char>(conversion), signedArgument(args, length));
        break;
      case u'u':
      case u'o':
      case u'x':
      case u'X':
        printed = appendPrinted(out, directive + "ll" + static_cast<char>(conversion), unsignedArgument(args, length));
        break;
      case u'c':
        printed = appendPrinted(out, directive + "c", static_cast<int>(static_cast<unsigned char>(va_arg(args.list, int))));
        break;
      default: return std::nullopt;
    }
    if (!printed) return std::nullopt;
  }
  return out;
}

}  // namespace

extern "C" CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef, CFDictionaryRef, CFStringRef format,
                                                            va_list arguments) {
  const std::u16string* chars = xpcf::charsOf(format);
  if (chars == nullptr) return nullptr;
  Arguments args;
  va_copy(args.list, arguments);
  auto text = ::format(*chars, args);
  va_end(args.list);
  return text ? xpcf::makeString(std::move(*text)) : nullptr;
}

extern "C" CFStringRef CFStringCreateWithFormat(CFAllocatorRef alloc, CFDictionaryRef formatOptions,
                                                CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  CFStringRef string = CFStringCreateWithFormatAndArguments(alloc, formatOptions, format, arguments);
  va_end(arguments);
  return string;
}
