// The reference-counted base of every CF object, and ownership of CF references in C++.
#ifndef XPPLATFORM_SRC_CFOBJECT_H
#define XPPLATFORM_SRC_CFOBJECT_H

#include <CoreFoundation/CFBase.h>

#include <atomic>
#include <utility>

namespace xpcf {

// Type numbers of the CF classes provided here; their values mean nothing outside.
enum TypeID : CFTypeID {
  kAllocatorType = 2,
  kStringType,
  kURLType,
  kBundleType,
  kErrorType,
  kDateType,
  kTimeZoneType,
  kLocaleType,
  kDateFormatterType,
};

class Object {
 public:
  explicit Object(CFTypeID type) : typeID_(type) {}
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  CFTypeID typeID() const { return typeID_; }
  // Only called with an object of the same type.
  virtual bool equals(const Object& other) const { return this == &other; }
  virtual CFHashCode hash() const { return reinterpret_cast<CFHashCode>(this); }

  void retain() {
    if (!immortal_) refCount_.fetch_add(1, std::memory_order_relaxed);
  }
  // Adds a reference unless the last one is already gone: for registries that hand out
  // objects that may be on their way to being freed.
  bool tryRetain() {
    if (immortal_) return true;
    CFIndex count = refCount_.load(std::memory_order_relaxed);
    while (count > 0 && !refCount_.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) {
    }
    return count > 0;
  }
  // Returns true when this dropped the last reference.
  bool release() {
    return !immortal_ && refCount_.fetch_sub(1, std::memory_order_acq_rel) == 1;
  }
  CFIndex retainCount() const;
  // Constant objects (CFSTR, allocators) ignore retain and release.
  void makeImmortal() { immortal_ = true; }

 private:
  const CFTypeID typeID_;
  std::atomic<CFIndex> refCount_{1};
  bool immortal_ = false;
};

// The object behind `cf` when it is one of type `type`, else null: every entry point checks
// its arguments this way, so that a wrong or null reference gives Apple's failure result
// instead of a crash.
template <class T>
T* cast(CFTypeRef cf, CFTypeID type) {
  auto* object = static_cast<Object*>(const_cast<void*>(cf));
  return object != nullptr && object->typeID() == type ? static_cast<T*>(object) : nullptr;
}

// One reference to a CF object, released when the holder goes.
template <class Ref>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Ref ref) : ref_(ref) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  Owned(Owned&& other) noexcept : ref_(std::exchange(other.ref_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(ref_, other.ref_);
    return *this;
  }
  ~Owned() { CFRelease(ref_); }

  Ref get() const { return ref_; }
  Ref release() { return std::exchange(ref_, nullptr); }
  explicit operator bool() const { return ref_ != nullptr; }

 private:
  Ref ref_ = nullptr;
};

// A new reference to a C++-held object, as a Create call hands it out.
template <class Ref>
Ref retained(Ref ref) {
  return static_cast<Ref>(CFRetain(ref));
}

}  // namespace xpcf

#endif
