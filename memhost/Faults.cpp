// The in-memory host's fault seam: host operations that fail on demand.
#include <cstring>
#include <mutex>
#include <string>
#include <vector>

#include "Internal.h"

namespace memhost {
namespace detail {

std::atomic<uint32_t> gPendingFaults{0};
thread_local int64_t gLiveValues = 0;

namespace {

struct Fault {
  std::string operation;  // "*" for any
  int32_t code;
  uint32_t skip;
};

std::mutex gFaultsLock;
std::vector<Fault> gFaults;

}  // namespace

bool FaultDue(const char* operation, fmx::HostErrorRecord& err) {
  std::lock_guard<std::mutex> lock(gFaultsLock);
  bool fired = false;
  for (size_t i = 0; i < gFaults.size();) {
    Fault& f = gFaults[i];
    if (f.operation != "*" && f.operation != operation) {
      ++i;
      continue;
    }
    // Each fault counts the calls it sees on its own; two due at once fire on
    // consecutive calls, never together.
    if (f.skip > 0) {
      --f.skip;
      ++i;
    } else if (!fired) {
      err.code = f.code;
      gFaults.erase(gFaults.begin() + static_cast<std::ptrdiff_t>(i));
      gPendingFaults.store(static_cast<uint32_t>(gFaults.size()), std::memory_order_relaxed);
      fired = true;
    } else {
      ++i;
    }
  }
  return fired;
}

}  // namespace detail

void InjectFault(const char* operation, int32_t code, uint32_t skip) {
  std::lock_guard<std::mutex> lock(detail::gFaultsLock);
  detail::gFaults.push_back({operation ? operation : "*", code, skip});
  detail::gPendingFaults.store(static_cast<uint32_t>(detail::gFaults.size()), std::memory_order_relaxed);
}

void ClearFaults() {
  std::lock_guard<std::mutex> lock(detail::gFaultsLock);
  detail::gFaults.clear();
  detail::gPendingFaults.store(0, std::memory_order_relaxed);
}

uint32_t PendingFaults() { return detail::gPendingFaults.load(std::memory_order_relaxed); }

int64_t LiveValues() { return detail::gLiveValues; }

}  // namespace memhost
