#include "vex/platform/thread.h"

#include <pthread.h>
#include <sched.h>

#include <chrono>
#include <deque>

#include "vex/platform/exceptions.h"

namespace vex {

namespace {

// One queued call; it lives on the stack of the thread that waits for it.
struct Request {
  const TThreadMethod* method;
  std::exception_ptr error;
  bool done = false;
};

struct MainQueue {
  std::mutex mutex;
  std::condition_variable work_cv;  // the main thread waits here for calls or a wake-up
  std::condition_variable done_cv;  // workers wait here for their call to have run
  std::deque<Request*> calls;
  uint64_t wakes = 0;  // bumped by WakeMainThread so that a waiting main thread sees it
};

// Never destroyed: a self-freeing thread may still be signalling it while the process exits.
MainQueue& Queue() {
  static MainQueue* queue = new MainQueue;
  return *queue;
}

const std::thread::id g_main_thread = std::this_thread::get_id();
std::atomic<void (*)()> g_wake_hook{nullptr};
std::atomic<void (*)()> g_serve_hook{nullptr};

void CallWakeHook() {
  if (auto hook = g_wake_hook.load(std::memory_order_acquire)) hook();
}

// Blocks, holding `lock` on the queue's mutex, until a call is queued or WakeMainThread was
// called after `since` was read, or the timeout passes.
void WaitForWork(std::unique_lock<std::mutex>& lock, uint64_t since,
                 std::chrono::milliseconds timeout) {
  MainQueue& q = Queue();
  q.work_cv.wait_for(lock, timeout, [&] { return !q.calls.empty() || q.wakes != since; });
}

// Runs every queued call; `lock` holds the queue's mutex on entry and is released on return.
// The mutex is released while a call runs and before its worker is woken, so the worker does not
// wake into a held lock.
bool RunQueuedCalls(std::unique_lock<std::mutex>& lock) {
  MainQueue& q = Queue();
  bool ran = false;
  bool more = !q.calls.empty();
  while (more) {
    Request* request = q.calls.front();
    q.calls.pop_front();
    lock.unlock();
    std::exception_ptr error;
    try {
      (*request->method)();
    } catch (...) {
      error = std::current_exception();
    }
    lock.lock();
    request->error = error;
    request->done = true;
    ran = true;
    more = !q.calls.empty();
    // The waiting worker may return and drop `request` as soon as the lock is released. A call
    // queued after this check has woken the main thread itself and is run on its next turn.
    lock.unlock();
    q.done_cv.notify_all();
    if (more) lock.lock();
  }
  if (lock.owns_lock()) lock.unlock();
  return ran;
}

class TAnonymousThread final : public TThread {
 public:
  explicit TAnonymousThread(TThreadProc proc) : proc_(std::move(proc)) { FreeOnTerminate = true; }

 protected:
  void Execute() override {
    if (proc_) proc_();
  }

 private:
  TThreadProc proc_;
};

}  // namespace

std::thread::id MainThreadID() { return g_main_thread; }

bool IsMainThread() { return std::this_thread::get_id() == g_main_thread; }

TMainThreadHooks SetMainThreadHooks(const TMainThreadHooks& hooks) {
  TMainThreadHooks previous;
  previous.Wake = g_wake_hook.exchange(hooks.Wake, std::memory_order_acq_rel);
  previous.ServeEvents = g_serve_hook.exchange(hooks.ServeEvents, std::memory_order_acq_rel);
  return previous;
}

void Synchronize(const TThreadMethod& Method) {
  if (IsMainThread()) {
    Method();
    return;
  }
  MainQueue& q = Queue();
  Request request{&Method, nullptr, false};
  std::unique_lock lock(q.mutex);
  q.calls.push_back(&request);
  q.work_cv.notify_one();  // only the main thread waits there
  if (g_wake_hook.load(std::memory_order_acquire)) {
    // A toolkit's hook takes its own event-queue locks: it is called without ours.
    lock.unlock();
    CallWakeHook();
    lock.lock();
  }
  q.done_cv.wait(lock, [&] { return request.done; });
  lock.unlock();
  if (request.error) std::rethrow_exception(request.error);
}

bool CheckSynchronize(int32_t TimeoutMs) {
  if (!IsMainThread()) {
    throw EThread("CheckSynchronize called from a thread that is not the main thread");
  }
  MainQueue& q = Queue();
  std::unique_lock lock(q.mutex);
  if (TimeoutMs > 0 && q.calls.empty()) {
    WaitForWork(lock, q.wakes, std::chrono::milliseconds(TimeoutMs));
  }
  return RunQueuedCalls(lock);
}

void WakeMainThread() {
  {
    std::lock_guard lock(Queue().mutex);
    ++Queue().wakes;
  }
  Queue().work_cv.notify_all();
  CallWakeHook();
}

// --- TThread ------------------------------------------------------------------------------------

TThread::TThread() = default;

TThread::~TThread() { TerminateAndWait(); }

void TThread::TerminateAndWait() {
  if (!thread_.joinable()) return;
  Terminate();
  WaitFor();
  thread_.join();
}

void TThread::Start() {
  std::lock_guard lock(mutex_);
  if (started_.load()) throw EThread("Cannot call Start on a running or terminated thread");
  started_ = true;
  thread_ = std::thread([this] { Run(); });
}

void TThread::Terminate() { terminated_.store(true, std::memory_order_relaxed); }

int32_t TThread::WaitFor() {
  if (FreeOnTerminate) throw EThread("Cannot call WaitFor on a FreeOnTerminate thread");
  if (!started_.load()) throw EThread("Cannot call WaitFor on a thread that was not started");
  if (std::this_thread::get_id() == thread_.get_id()) {
    throw EThread("A thread cannot wait for itself");
  }
  if (!IsMainThread()) {
    std::unique_lock lock(mutex_);
    finished_cv_.wait(lock, [&] { return finished_.load(); });
    return ReturnValue;
  }
  // The generation is read before the finished flag, so a wake-up sent by the ending thread
  // between the two is not lost.
  MainQueue& q = Queue();
  for (;;) {
    std::unique_lock lock(q.mutex);
    const uint64_t since = q.wakes;
    RunQueuedCalls(lock);
    if (finished_.load()) break;
    if (auto serve = g_serve_hook.load(std::memory_order_acquire)) {
      serve();
    } else {
      lock.lock();
      WaitForWork(lock, since, std::chrono::milliseconds(100));
    }
  }
  return ReturnValue;
}

void TThread::SetPriority(TThreadPriority value) {
  std::lock_guard lock(mutex_);
  priority_ = value;
  if (started_.load() && thread_.joinable() && !finished_.load()) ApplyPriority();
}

void TThread::ApplyPriority() {
  sched_param param{};
  param.sched_priority = 0;
  const int policy = priority_ == tpIdle ? SCHED_IDLE : SCHED_OTHER;
  // A refused change (no permission, thread gone) leaves the thread at its present priority.
  (void)pthread_setschedparam(thread_.native_handle(), policy, &param);
}

void TThread::Run() {
  {
    // Start holds the lock until thread_ is assigned.
    std::lock_guard lock(mutex_);
    ApplyPriority();
  }
  try {
    Execute();
  } catch (...) {
    fatal_ = std::current_exception();
  }
  if (OnTerminate) {
    try {
      vex::Synchronize([this] { OnTerminate(this); });
    } catch (...) {
      if (!fatal_) fatal_ = std::current_exception();
    }
  }
  if (FreeOnTerminate) {
    {
      std::lock_guard lock(mutex_);
      thread_.detach();
    }
    delete this;
    WakeMainThread();
    return;
  }
  {
    std::lock_guard lock(mutex_);
    finished_ = true;
  }
  finished_cv_.notify_all();
  WakeMainThread();
}

TThread* TThread::CreateAnonymousThread(TThreadProc Proc) {
  return new TAnonymousThread(std::move(Proc));
}

void TThread::Sleep(uint32_t Milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(Milliseconds));
}

}  // namespace vex
