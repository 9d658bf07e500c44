#include "vex/ui/wait_procs.h"

#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"

namespace vex {

TLongTaskThread::TLongTaskThread(uint32_t Count, uint32_t Delay, TSyncProc P)
    : Proc(std::move(P)), Count(Count), Delay(Delay) {}

void TLongTaskThread::SetProc(TSyncProc AProc) { Proc = std::move(AProc); }

void TLongTaskThread::Run() {
  cancelled_.store(false, std::memory_order_relaxed);
  // The negated count wraps as a 32-bit value, as the counter is signed.
  Value = static_cast<int32_t>(0u - Count);
  SyncValue();
  Value = 0;
  Start();
}

void TLongTaskThread::SyncValue() {
  if (Proc) Synchronize([this] { Proc(Value); });
}

void TLongTaskThread::Execute() {
  // The checks come before each tick, so a cancel takes effect within one Delay.
  while (!Terminated() && !Cancelled() && static_cast<int64_t>(Value) < int64_t{Count}) {
    ++Value;
    SyncValue();
    Sleep(Delay);
  }
}

std::unique_ptr<TLongTaskThread> WaitForEndOfMainProc(const TMainProc& MainProc,
                                                      const TSyncProc& SyncProc, uint32_t Count,
                                                      uint32_t Delay, bool Wait) {
  auto thread = std::make_unique<TLongTaskThread>(Count, Delay, SyncProc);
  thread->SetPriority(tpIdle);
  thread->FreeOnTerminate = false;
  thread->Run();
  if (MainProc) MainProc(thread.get());
  if (Wait) thread->WaitFor();
  return thread;
}

bool ExecuteMainProc(const TMainProc& MainProc, const TSyncProc& SyncProc, uint32_t Count,
                     uint32_t Delay, bool RaiseException) {
  const bool answered = WaitForEndOfMainProc(MainProc, SyncProc, Count, Delay, true)->Cancelled();
  if (RaiseException && !answered) {
    throw Exception(Format(u"No response was received within timeout of %d ms",
                           {static_cast<int32_t>(Count * Delay)}));
  }
  return answered;
}

void StopLongTaskThread(TObject* Obj) {
  auto* thread = dynamic_cast<TLongTaskThread*>(Obj);
  if (thread != nullptr && !thread->Suspended()) thread->Cancel();
}

}  // namespace vex
