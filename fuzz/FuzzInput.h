// Fuzz input as host values: a cursor over the input's bytes, host texts made of
// them, and the check that stops a run when a property breaks.
#ifndef XPTOOLKIT_FUZZ_FUZZINPUT_H
#define XPTOOLKIT_FUZZ_FUZZINPUT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "text/HostValues.h"

/// Reports the broken property with its place and aborts, which libFuzzer records
/// as a crash with the input that caused it.
#define FUZZ_CHECK(condition)                                                               \
  do {                                                                                      \
    if (!(condition)) {                                                                     \
      std::fprintf(stderr, "%s:%d: property broken: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                         \
    }                                                                                       \
  } while (0)

namespace fuzz {

/// Reads the input front to back; past its end every read gives zeros, so that
/// any input is a whole case.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  uint8_t Byte() { return at_ < size_ ? data_[at_++] : 0; }

  /// A number below `bound` (> 0) from the next two bytes.
  uint32_t Below(uint32_t bound) {
    const uint32_t high = Byte();
    return ((high << 8) | Byte()) % bound;
  }

  /// The next `n` bytes, fewer at the end.
  std::string Bytes(size_t n) {
    const size_t take = n < size_ - at_ ? n : size_ - at_;
    std::string bytes(reinterpret_cast<const char*>(data_ + at_), take);
    at_ += take;
    return bytes;
  }

  std::string Rest() { return Bytes(size_ - at_); }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t at_ = 0;
};

/// One character per byte, U+0000-U+00FF, as the codecs' texts hold their bytes.
inline std::u16string ByteChars(const std::string& bytes) {
  std::u16string units(bytes.size(), u'\0');
  for (size_t i = 0; i < bytes.size(); ++i) units[i] = static_cast<unsigned char>(bytes[i]);
  return units;
}

/// The bytes as upper-case hex digits, two characters a byte.
inline std::u16string HexChars(const std::string& bytes) {
  static const char digits[] = "0123456789ABCDEF";
  std::u16string hex;
  for (unsigned char b : bytes) hex += {char16_t(digits[b >> 4]), char16_t(digits[b & 15])};
  return hex;
}

/// Replaces `text` by exactly `units`.
inline void SetText(fmx::TextAutoPtr& text, const std::u16string& units) {
  text->AssignUnicodeWithLength(reinterpret_cast<const unsigned short*>(units.data()),
                                static_cast<uint32_t>(units.size()));
}

/// A host text of one character per byte.
inline void SetByteChars(fmx::TextAutoPtr& text, const std::string& bytes) { SetText(text, ByteChars(bytes)); }

/// A host text of the bytes taken in pairs as UTF-16 units of any value, lone
/// surrogates included.
inline void SetUnits(fmx::TextAutoPtr& text, const std::string& bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (size_t i = 0; i < units.size(); ++i) {
    units[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) << 8 |
                                     static_cast<unsigned char>(bytes[2 * i + 1]));
  }
  SetText(text, units);
}

/// The rest of the input as untrusted text: by the next byte's low bit, one
/// character per byte (where the formats live) or free UTF-16 units.
inline void SetUntrustedText(fmx::TextAutoPtr& text, Input& input) {
  const bool units = input.Byte() & 1;
  const std::string rest = input.Rest();
  units ? SetUnits(text, rest) : SetByteChars(text, rest);
}

inline std::u16string UnitsOf(const fmx::Text& text) {
  std::u16string units(text.GetSize(), u'\0');
  text.GetUnicode(reinterpret_cast<unsigned short*>(units.data()), 0, static_cast<uint32_t>(units.size()));
  return units;
}

/// The body of a target with two cases: an odd first byte runs `roundTrip` on the rest
/// of the input (a value built from it must come back whole), an even one `untrusted`
/// (the rest read as untrusted text must keep the target's bounds).
inline int RoundTripOrUntrusted(const uint8_t* data, size_t size, void (*roundTrip)(Input&),
                                void (*untrusted)(Input&)) {
  Input input(data, size);
  (input.Byte() & 1 ? roundTrip : untrusted)(input);
  return 0;
}

}  // namespace fuzz

#endif  // XPTOOLKIT_FUZZ_FUZZINPUT_H
