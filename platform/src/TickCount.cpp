// TickCount and Delay: sixtieths of a second since the system started, on POSIX clocks.
#include <CoreServices/CoreServices.h>

#include <cerrno>
#include <cstdint>
#include <time.h>

namespace {

// Boot time counts the time the machine slept, as the tick count of a Mac does; where
// the system lacks it, the monotonic clock is the closest reading.
#ifdef CLOCK_BOOTTIME
constexpr clockid_t kTickClock = CLOCK_BOOTTIME;
#else
constexpr clockid_t kTickClock = CLOCK_MONOTONIC;
#endif

constexpr std::uint64_t kTicksPerSecond = 60;
constexpr std::uint64_t kNanosPerSecond = 1000000000;

// Full-width ticks, so that Delay keeps counting when TickCount's 32 bits wrap.
std::uint64_t ticksNow() {
  timespec now{};
  clock_gettime(kTickClock, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * kTicksPerSecond +
         static_cast<std::uint64_t>(now.tv_nsec) * kTicksPerSecond / kNanosPerSecond;
}

// The first instant at which ticksNow() reads `ticks`: rounding up, so a wake-up there
// has never arrived early.
timespec instantOfTick(std::uint64_t ticks) {
  timespec at{};
  at.tv_sec = static_cast<time_t>(ticks / kTicksPerSecond);
  at.tv_nsec = static_cast<long>(((ticks % kTicksPerSecond) * kNanosPerSecond + kTicksPerSecond - 1) /
                                 kTicksPerSecond);
  return at;
}

}  // namespace

extern "C" UInt32 TickCount(void) {
  return static_cast<UInt32>(ticksNow());
}

extern "C" void Delay(unsigned long numTicks, unsigned long* finalTicks) {
  const std::uint64_t target = ticksNow() + numTicks;
  const timespec wakeUp = instantOfTick(target);
  // A signal cuts the sleep short, so the loop sleeps again until the tick has come. A
  // system that cannot sleep on this clock is waited out one tick at a time instead.
  while (ticksNow() < target) {
    const int rc = clock_nanosleep(kTickClock, TIMER_ABSTIME, &wakeUp, nullptr);
    if (rc != 0 && rc != EINTR) {
      const timespec oneTick{0, static_cast<long>(kNanosPerSecond / kTicksPerSecond)};
      nanosleep(&oneTick, nullptr);
    }
  }
  if (finalTicks != nullptr) {
    *finalTicks = TickCount();
  }
}
