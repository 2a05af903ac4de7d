// Retain, release, equality and hashing of every CF object; the allocator constants.
#include "CFObject.h"

#include <climits>

struct __CFAllocator : xpcf::Object {
  __CFAllocator() : Object(xpcf::kAllocatorType) { makeImmortal(); }
};

namespace {

__CFAllocator gSystemAllocator;
__CFAllocator gMallocAllocator;
__CFAllocator gNullAllocator;

}  // namespace

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFAllocatorRef kCFAllocatorSystemDefault = &gSystemAllocator;
const CFAllocatorRef kCFAllocatorMalloc = &gMallocAllocator;
const CFAllocatorRef kCFAllocatorNull = &gNullAllocator;

namespace xpcf {

CFIndex Object::retainCount() const {
  return immortal_ ? LONG_MAX : refCount_.load(std::memory_order_relaxed);
}

}  // namespace xpcf

namespace {

xpcf::Object* object(CFTypeRef cf) {
  return static_cast<xpcf::Object*>(const_cast<void*>(cf));
}

}  // namespace

extern "C" CFTypeRef CFRetain(CFTypeRef cf) {
  if (cf != nullptr) object(cf)->retain();
  return cf;
}

extern "C" void CFRelease(CFTypeRef cf) {
  if (cf != nullptr && object(cf)->release()) delete object(cf);
}

extern "C" CFIndex CFGetRetainCount(CFTypeRef cf) {
  return cf == nullptr ? 0 : object(cf)->retainCount();
}

extern "C" Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2) {
  if (cf1 == cf2) return true;
  if (cf1 == nullptr || cf2 == nullptr) return false;
  return object(cf1)->typeID() == object(cf2)->typeID() && object(cf1)->equals(*object(cf2));
}

extern "C" CFHashCode CFHash(CFTypeRef cf) {
  return cf == nullptr ? 0 : object(cf)->hash();
}

extern "C" CFTypeID CFGetTypeID(CFTypeRef cf) {
  return cf == nullptr ? 0 : object(cf)->typeID();
}
