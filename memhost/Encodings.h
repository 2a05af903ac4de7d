// Byte encodings of the in-memory host: bytes <-> UTF-16 in each of the host's
// 37 encodings (numbers 0-36), on ICU converters and tables of our own.
#ifndef XPTOOLKIT_MEMHOST_ENCODINGS_H
#define XPTOOLKIT_MEMHOST_ENCODINGS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace memhost {

/// True for the host's encoding numbers 0-36.
bool IsHostEncoding(int32_t encoding);

/// The encoding Native (0) stands for: 4 (ASCII_Mac) unless switched.
int32_t NativeEncoding();

/// Makes Native (0) stand for another host encoding (1-36); others are ignored.
void SetNativeEncoding(int32_t encoding);

/// Decodes `size` bytes in a host encoding (0-36) and appends the UTF-16 units
/// to `out`. NUL bytes become U+0000; malformed or unmapped bytes become U+FFFD.
void DecodeBytes(int32_t encoding, const char* bytes, size_t size, std::u16string& out);

/// Encodes `size` units in a host encoding (0-36) into `out`, writing at most
/// `capacity` bytes and never part of a character; writes no NUL. Characters the
/// encoding cannot hold become "?". Returns the number of bytes written.
size_t EncodeUnits(int32_t encoding, const char16_t* units, size_t size, char* out, size_t capacity);

}  // namespace memhost

#endif  // XPTOOLKIT_MEMHOST_ENCODINGS_H
