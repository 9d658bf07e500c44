// Waiting for a response with progress: a worker ticks Count times, Delay milliseconds apart,
// handing each tick to the main thread, until whoever receives the awaited response stops it
// with StopLongTaskThread. A wait that runs all its ticks has timed out.
//
//   bool answered = ExecuteMainProc(
//       [&](TObject* waiter) { SendRequest(waiter); },   // the reply handler stops `waiter`
//       [&](int32_t tick) { progress.SetValue(tick); }, 50, 100, true);   // 5 s, else raises
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

#include "vex/platform/object.h"
#include "vex/platform/thread.h"

namespace vex {

/// Receives the progress value: first -Count (the total), then 1, 2, ... one per tick.
using TSyncProc = std::function<void(int32_t Value)>;
/// Receives the waiting thread, to hand on to whoever will stop it.
using TMainProc = std::function<void(TObject* Thread)>;

/// The waiting thread. Created suspended, not freed on termination: its creator frees it.
class TLongTaskThread : public TThread {
 public:
  TLongTaskThread(uint32_t Count, uint32_t Delay, TSyncProc P);
  /// Stops a running worker (Terminate) and waits for it.
  ~TLongTaskThread() override { TerminateAndWait(); }

  /// Replaces Proc.
  void SetProc(TSyncProc AProc);
  /// Clears Cancelled, hands -Count to Proc (at once when called on the main thread), sets
  /// Value to 0 and starts the thread.
  void Run();
  /// Sets Cancelled; the worker sees it after its current sleep.
  void Cancel() { cancelled_.store(true, std::memory_order_relaxed); }
  /// Runs Proc(Value) on the main thread, the worker waiting until it has run.
  void SyncValue();
  bool Cancelled() const { return cancelled_.load(std::memory_order_relaxed); }

  TSyncProc Proc;
  /// The tick counter; read it from Proc (the worker is blocked meanwhile) or after the end.
  int32_t Value = 0;
  uint32_t Count;
  uint32_t Delay;

  String ClassName() const override { return u"TLongTaskThread"; }

 protected:
  void Execute() override;

 private:
  std::atomic<bool> cancelled_{false};
};

/// Starts a waiting thread at idle priority (Run), calls MainProc(thread) on the caller's
/// thread, and when Wait is true waits for the thread to end while serving its ticks. Returns
/// the thread; its Cancelled tells a response (true) from a timeout.
std::unique_ptr<TLongTaskThread> WaitForEndOfMainProc(const TMainProc& MainProc,
                                                      const TSyncProc& SyncProc, uint32_t Count,
                                                      uint32_t Delay, bool Wait);
/// Waits as above and returns whether the thread was stopped in time. A timeout returns false,
/// or with RaiseException raises "No response was received within timeout of <Count*Delay> ms".
bool ExecuteMainProc(const TMainProc& MainProc, const TSyncProc& SyncProc, uint32_t Count,
                     uint32_t Delay, bool RaiseException);
/// Cancels the wait when Obj is a started TLongTaskThread; ignores anything else (null too).
void StopLongTaskThread(TObject* Obj);

}  // namespace vex
