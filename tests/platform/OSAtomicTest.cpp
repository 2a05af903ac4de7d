// Apple's bit numbering of the atomic bit operations: from the top bit of the first byte.
#include <libkern/OSAtomic.h>

#include <cstdint>

#include <gtest/gtest.h>

namespace {

TEST(OSAtomic, BitNIsCountedFromTheTopOfByteNOver8) {
  const struct {
    uint32_t bit;
    std::size_t byte;
    uint8_t mask;
  } cases[] = {{0, 0, 0x80}, {7, 0, 0x01}, {8, 1, 0x80}, {13, 1, 0x04}, {31, 3, 0x01}};
  for (const auto& c : cases) {
    volatile uint8_t bytes[4] = {};
    EXPECT_FALSE(OSAtomicTestAndSetBarrier(c.bit, bytes)) << c.bit;
    EXPECT_EQ(bytes[c.byte], c.mask) << c.bit;
    EXPECT_TRUE(OSAtomicTestAndSetBarrier(c.bit, bytes)) << c.bit;
    bytes[c.byte] = 0xFF;
    EXPECT_TRUE(OSAtomicTestAndClearBarrier(c.bit, bytes)) << c.bit;
    EXPECT_EQ(bytes[c.byte], static_cast<uint8_t>(~c.mask)) << c.bit;
    EXPECT_FALSE(OSAtomicTestAndClearBarrier(c.bit, bytes)) << c.bit;
  }
}

}  // namespace
