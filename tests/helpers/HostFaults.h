// Host calls made to fail on demand: one run with a fault, and a sweep that fails each
// host call of a sample in turn.
#ifndef XPTOOLKIT_TESTS_HOSTFAULTS_H
#define XPTOOLKIT_TESTS_HOSTFAULTS_H

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "MemHost.h"

namespace testing_host {

struct FaultRun {
  bool fired;  // the fault was reported by a host call
  bool threw;  // the call left by the exception of the fault's code
};

/// Runs `call` with the call after `skip` further calls of `operation` ("*": any) failing
/// with `code` (1: out of memory, 2: a host error). Checks that an exception is the
/// code's own and that no host value outlives the run.
template <class Call>
FaultRun RunWithFault(const char* operation, int32_t code, uint32_t skip, Call&& call) {
  const int64_t live = memhost::LiveValues();
  memhost::InjectFault(operation, code, skip);
  bool threw = false;
  try {
    call();
  } catch (const std::bad_alloc&) {
    threw = true;
    EXPECT_EQ(code, 1) << "out of memory for another code";
  } catch (const std::exception&) {
    threw = true;
    EXPECT_EQ(code, 2) << "a host error for another code";
  }
  const bool fired = memhost::PendingFaults() == 0;
  memhost::ClearFaults();
  EXPECT_EQ(memhost::LiveValues(), live) << "host values left behind";
  return {fired, threw};
}

/// Fails the first, second, ... host call of `call` with `code` until a run makes no call
/// left to fail; `afterEach(threw)` follows every run that had its fault. Returns how
/// many runs threw (a fault on a delete is reported but not thrown: destructors never throw).
template <class Call, class AfterEach>
int SweepHostFaults(int32_t code, Call&& call, AfterEach&& afterEach) {
  int failures = 0;
  for (uint32_t skip = 0;; ++skip) {
    SCOPED_TRACE(testing::Message() << "host call " << skip << " fails with " << code);
    const FaultRun run = RunWithFault("*", code, skip, call);
    if (!run.fired) {
      EXPECT_FALSE(run.threw) << "threw without a failed host call";
      return failures;
    }
    failures += run.threw;
    afterEach(run.threw);
  }
}

template <class Call>
int SweepHostFaults(int32_t code, Call&& call) {
  return SweepHostFaults(code, call, [](bool) {});
}

}  // namespace testing_host

#endif  // XPTOOLKIT_TESTS_HOSTFAULTS_H
