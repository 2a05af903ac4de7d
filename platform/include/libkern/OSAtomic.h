// Apple's atomic bit operations (libkern/OSAtomic.h) with full memory barriers.
#ifndef XPPLATFORM_LIBKERN_OSATOMIC_H
#define XPPLATFORM_LIBKERN_OSATOMIC_H

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Bits are numbered as Apple numbers them, from the most significant bit of the first
// byte: bit n is the bit 0x80 >> (n & 7) of the byte at theAddress + (n >> 3), whatever
// the byte order of the machine.

/// Sets bit `n` and returns whether it was set before.
bool OSAtomicTestAndSetBarrier(uint32_t n, volatile void* theAddress);
/// Clears bit `n` and returns whether it was set before.
bool OSAtomicTestAndClearBarrier(uint32_t n, volatile void* theAddress);

#ifdef __cplusplus
}
#endif

#endif
