// OSAtomic bit operations on the compiler's atomic builtins, sequentially consistent so
// that they order the memory around them as Apple's barrier variants do.
#include <libkern/OSAtomic.h>

#include <cstdint>

namespace {

volatile std::uint8_t* byteOf(std::uint32_t n, volatile void* address) {
  return static_cast<volatile std::uint8_t*>(address) + (n >> 3);
}

std::uint8_t maskOf(std::uint32_t n) { return static_cast<std::uint8_t>(0x80u >> (n & 7)); }

}  // namespace

extern "C" bool OSAtomicTestAndSetBarrier(uint32_t n, volatile void* theAddress) {
  const std::uint8_t mask = maskOf(n);
  return (__atomic_fetch_or(byteOf(n, theAddress), mask, __ATOMIC_SEQ_CST) & mask) != 0;
}

extern "C" bool OSAtomicTestAndClearBarrier(uint32_t n, volatile void* theAddress) {
  const std::uint8_t mask = maskOf(n);
  return (__atomic_fetch_and(byteOf(n, theAddress), static_cast<std::uint8_t>(~mask), __ATOMIC_SEQ_CST) & mask) != 0;
}
