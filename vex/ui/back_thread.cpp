#include "vex/ui/back_thread.h"

#include <algorithm>

namespace vex {

TBackThread::TBackThread(int32_t Step, int32_t Count, TNotifyEvent DisplayEvent,
                         TNotifyEvent OnTerminated)
    : Step(Step),
      Count(Count),
      DisplayEvent(std::move(DisplayEvent)),
      OnTerminated(std::move(OnTerminated)) {
  FreeOnTerminate = true;
  Start();  // the last statement: the object is complete before Execute can run
}

void TBackThread::Execute() {
  while (!Terminated() && !Suspended() && (Count == 0 || Counter < Count)) {
    if (Count > 0) ++Counter;
    Sleep(static_cast<uint32_t>(std::max(Step, 0)));
    if (DisplayEvent) Synchronize([this] { DisplayEvent(this); });
  }
  if (OnTerminated) Synchronize([this] { OnTerminated(this); });
}

}  // namespace vex
