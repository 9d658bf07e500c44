#include "vex/ui/win_utils.h"

#include <time.h>

#include "vex/platform/thread.h"

namespace vex {

namespace {
constexpr int64_t kNanosecondsPerSecond = 1000000000;
}  // namespace

void TWinUtils::ExecuteProcInThread(TSimpleProc Proc, uint32_t Delay) {
  if (Delay != 0) TThread::Sleep(Delay);
  TThread::CreateAnonymousThread(std::move(Proc))->Start();
}

int64_t TWinUtils::GetTimeFrequency() {
  timespec resolution{};
  return clock_getres(CLOCK_MONOTONIC, &resolution) == 0 ? kNanosecondsPerSecond : -1;
}

int64_t TWinUtils::GetTimeCounter() {
  timespec now{};
  if (clock_gettime(CLOCK_MONOTONIC, &now) != 0) return -1;
  return int64_t{now.tv_sec} * kNanosecondsPerSecond + now.tv_nsec;
}

}  // namespace vex
