// Memory Manager pointer blocks on the C library's heap.
#include <CoreServices/MacErrors.h>
#include <CoreServices/MacMemory.h>

#include <cstdlib>

namespace {

thread_local OSErr lastMemoryError = noErr;

Ptr allocate(Size byteCount, bool clear) {
  if (byteCount < 0) {
    lastMemoryError = paramErr;
    return nullptr;
  }
  // A block of no bytes is still a block of its own, as on Apple systems.
  const auto bytes = static_cast<std::size_t>(byteCount > 0 ? byteCount : 1);
  void* block = clear ? std::calloc(1, bytes) : std::malloc(bytes);
  lastMemoryError = block != nullptr ? OSErr{noErr} : OSErr{memFullErr};
  return static_cast<Ptr>(block);
}

}  // namespace

extern "C" {

Ptr NewPtr(Size byteCount) { return allocate(byteCount, false); }

Ptr NewPtrClear(Size byteCount) { return allocate(byteCount, true); }

void DisposePtr(Ptr p) {
  std::free(p);
  lastMemoryError = noErr;
}

OSErr MemError(void) { return lastMemoryError; }

}  // extern "C"
