// Threads and the hand-over of calls to the main thread. A worker calls Synchronize to run a
// function on the main thread and waits for it; the main thread runs queued calls when it calls
// CheckSynchronize, or while it waits for a thread. A toolkit installs hooks so that its event
// loop is woken when a call is queued and keeps running while the main thread waits.
//
//   class TCounter : public TThread {
//     void Execute() override { Synchronize([&] { label = u"done"; }); }
//   };
//   TCounter t; t.Start(); t.WaitFor();   // on the main thread: serves the Synchronize call
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

/// A call handed to another thread.
using TThreadMethod = std::function<void()>;
/// The body of an anonymous thread.
using TThreadProc = std::function<void()>;

/// The thread that loaded the library (the one that ran its static initialisation).
std::thread::id MainThreadID();
/// True on the main thread.
bool IsMainThread();

/// Hooks a toolkit installs to fit the hand-over into its event loop. Both may be null.
struct TMainThreadHooks {
  /// Called on the queuing thread after a call was queued for the main thread (and when a
  /// thread ends): the toolkit arranges for the main thread to call CheckSynchronize soon.
  void (*Wake)() = nullptr;
  /// Called on the main thread while it waits for a thread: runs the toolkit's pending events,
  /// blocking until at least one arrives (a Wake counts). Without it the wait blocks on the
  /// queue alone.
  void (*ServeEvents)() = nullptr;
};

/// Installs the hooks (replacing the previous ones); returns the previous ones.
TMainThreadHooks SetMainThreadHooks(const TMainThreadHooks& hooks);

/// Runs Method on the main thread and returns when it has run; an exception raised by Method
/// is raised again here. Called on the main thread, Method runs at once.
void Synchronize(const TThreadMethod& Method);

/// On the main thread: runs every queued call. When the queue is empty it first waits up to
/// TimeoutMs milliseconds for a call (0 = do not wait). Returns true when a call was run.
/// Raises EThread on another thread.
bool CheckSynchronize(int32_t TimeoutMs = 0);

/// Wakes the main thread: a CheckSynchronize waiting for work returns, and the Wake hook is
/// called.
void WakeMainThread();

enum TThreadPriority : uint8_t {
  tpIdle,
  tpLowest,
  tpLower,
  tpNormal,
  tpHigher,
  tpHighest,
  tpTimeCritical
};

/// A thread object. It is created suspended: Start runs Execute on a new thread. (A base class
/// cannot start a thread in its constructor, since the derived Execute does not exist yet; a
/// class that runs as soon as it is made calls Start at the end of its own constructor.) For
/// the same reason a derived class that its owner frees calls TerminateAndWait in its own
/// destructor, so that Execute has ended before the derived members go away.
class TThread : public TObject {
 public:
  TThread();
  ~TThread() override;
  TThread(const TThread&) = delete;
  TThread& operator=(const TThread&) = delete;

  /// Starts the thread. Raises EThread when it was already started.
  void Start();
  /// Asks the thread to stop: sets Terminated, which Execute is expected to check.
  void Terminate();
  /// Waits until Execute has returned and returns ReturnValue. On the main thread the wait
  /// keeps running synchronized calls (and the toolkit's events), so a worker that
  /// synchronizes meanwhile does not deadlock. Raises EThread for a FreeOnTerminate thread and
  /// when called on the thread itself.
  int32_t WaitFor();

  bool Terminated() const { return terminated_.load(std::memory_order_relaxed); }
  /// True until Start.
  bool Suspended() const { return !started_.load(); }
  /// True once Execute (and OnTerminate) have finished.
  bool Finished() const { return finished_.load(); }

  /// When true the object deletes itself after Execute; the owner must not touch it once
  /// started. Set before Start.
  bool FreeOnTerminate = false;
  /// Called on the main thread, through Synchronize, after Execute returned.
  std::function<void(TObject* Sender)> OnTerminate;
  int32_t ReturnValue = 0;

  TThreadPriority Priority() const { return priority_; }
  /// tpIdle runs the thread under SCHED_IDLE; the levels below normal raise its nice value;
  /// levels above normal need privileges the process usually lacks and stay normal.
  void SetPriority(TThreadPriority value);

  /// The exception that ended Execute, if any.
  std::exception_ptr FatalException() const { return fatal_; }

  /// A thread running Proc, created suspended and freeing itself when done; call Start.
  static TThread* CreateAnonymousThread(TThreadProc Proc);
  /// Sleeps the calling thread.
  static void Sleep(uint32_t Milliseconds);

  String ClassName() const override { return u"TThread"; }

 protected:
  virtual void Execute() = 0;
  /// Runs Method on the main thread (see the free Synchronize).
  void Synchronize(const TThreadMethod& Method) { vex::Synchronize(Method); }
  /// When the thread was started and not yet joined: Terminate, WaitFor and join.
  void TerminateAndWait();

 private:
  void Run();
  void ApplyPriority();

  std::thread thread_;
  std::mutex mutex_;
  std::condition_variable finished_cv_;
  std::atomic<bool> started_{false};
  std::atomic<bool> finished_{false};
  std::atomic<bool> terminated_{false};
  TThreadPriority priority_ = tpNormal;
  std::exception_ptr fatal_;
};

}  // namespace vex
