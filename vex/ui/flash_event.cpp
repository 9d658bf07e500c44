#include "vex/ui/flash_event.h"

namespace vex {

TFlashThread::TFlashThread(TNotifyEvent Event, TObject* Sender, int32_t Delay)
    : Delay(Delay), Event(std::move(Event)), Sender(Sender) {
  FreeOnTerminate = true;
}

void TFlashThread::Execute() {
  if (Terminated() || Delay < 1) return;
  Sleep(static_cast<uint32_t>(Delay));
  if (Event) Synchronize([this] { Event(Sender); });
}

void FlashEventWithDelay(TNotifyEvent Event, TObject* Sender, int32_t Delay) {
  (new TFlashThread(std::move(Event), Sender, Delay))->Start();
}

}  // namespace vex
