// TBackThread: a self-freeing ticker that raises a display event on the main thread every Step
// milliseconds, Count times (0 = until the host terminates it), then a terminated event.
//
//   new TBackThread(500, 0, [&](TObject*) { clock.Repaint(); }, nullptr);   // runs at once
#pragma once

#include <cstdint>

#include "vex/platform/string_list.h"
#include "vex/platform/thread.h"

namespace vex {

/// Starts as soon as it is constructed and frees itself when it ends: the host must not free
/// it nor keep the pointer past the terminated event.
class TBackThread : public TThread {
 public:
  TBackThread(int32_t Step, int32_t Count, TNotifyEvent DisplayEvent, TNotifyEvent OnTerminated);

  int32_t Counter = 0;
  int32_t Step;
  /// Number of display events; 0 ticks until terminated, a negative count gives none (only the
  /// terminated event).
  int32_t Count;
  TNotifyEvent DisplayEvent;
  TNotifyEvent OnTerminated;

  String ClassName() const override { return u"TBackThread"; }

 protected:
  void Execute() override;
};

}  // namespace vex
