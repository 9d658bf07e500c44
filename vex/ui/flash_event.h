// Fire one event once, after a delay, on the main thread, from a self-freeing thread.
//
//   FlashEventWithDelay([&](TObject*) { hint.Hide(); }, nullptr, 1500);
#pragma once

#include <cstdint>

#include "vex/platform/string_list.h"
#include "vex/platform/thread.h"

namespace vex {

/// Created suspended and marked to free itself; Start it and forget it.
class TFlashThread : public TThread {
 public:
  TFlashThread(TNotifyEvent Event, TObject* Sender, int32_t Delay);

  int32_t Delay;
  TNotifyEvent Event;
  TObject* Sender;

  String ClassName() const override { return u"TFlashThread"; }

 protected:
  /// Sleeps Delay ms and runs Event(Sender) on the main thread. A Delay below 1 never fires
  /// (deliberately not "at once"); nor does a thread terminated before it ran.
  void Execute() override;
};

/// Starts a TFlashThread for the event; it frees itself.
void FlashEventWithDelay(TNotifyEvent Event, TObject* Sender, int32_t Delay);

}  // namespace vex
