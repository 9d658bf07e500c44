// Hand-over of calls to the main thread: Synchronize round trips from one worker to a main
// thread that serves them, with CheckSynchronize alone and through the Qt event loop, beside
// the bare std::condition_variable ping-pong a C++ user would write instead.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "bench_ratios.h"
#include "vex/platform/thread.h"
#include "vex/qt/qt_module.h"

namespace {

// A worker that synchronizes an empty call over and over until told to stop.
class TPinger : public vex::TThread {
 public:
  explicit TPinger(std::atomic<int64_t>& served) : served_(served) {}
  ~TPinger() override { TerminateAndWait(); }

 protected:
  void Execute() override {
    while (!Terminated()) Synchronize([this] { served_.fetch_add(1, std::memory_order_relaxed); });
  }

 private:
  std::atomic<int64_t>& served_;
};

void BM_SynchronizeCheckSynchronize(benchmark::State& state) {
  std::atomic<int64_t> served{0};
  TPinger pinger(served);
  pinger.Start();
  for (auto _ : state) {
    while (!vex::CheckSynchronize(100)) {
    }
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SynchronizeCheckSynchronize)->UseRealTime();

void BM_SynchronizeQtEventLoop(benchmark::State& state) {
  static int argc = 1;
  static char name[] = "vex_thread_bench";
  static char* argv[] = {name, nullptr};
  QCoreApplication app(argc, argv);
  vex::qt::Install();
  std::atomic<int64_t> served{0};
  {
    TPinger pinger(served);
    pinger.Start();
    for (auto _ : state) {
      const int64_t target = served.load(std::memory_order_relaxed) + 1;
      while (served.load(std::memory_order_relaxed) < target) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
      }
    }
  }  // the pinger is stopped while the hooks still serve its last call
  vex::qt::Uninstall();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SynchronizeQtEventLoop)->UseRealTime();

// The alternative: one request flag and one condition variable each way.
void BM_CondVarPingPong(benchmark::State& state) {
  std::mutex mutex;
  std::condition_variable request_cv;
  std::condition_variable done_cv;
  bool requested = false;
  bool stop = false;
  std::thread worker([&] {
    std::unique_lock lock(mutex);
    while (!stop) {
      requested = true;
      request_cv.notify_one();
      done_cv.wait(lock, [&] { return !requested || stop; });
    }
  });
  for (auto _ : state) {
    std::unique_lock lock(mutex);
    request_cv.wait(lock, [&] { return requested; });
    requested = false;
    lock.unlock();
    done_cv.notify_one();
  }
  {
    std::lock_guard lock(mutex);
    stop = true;
  }
  done_cv.notify_one();
  worker.join();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CondVarPingPong)->UseRealTime();

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_SynchronizeCheckSynchronize", "BM_CondVarPingPong",
                                vex::bench::SpeedAtLeast(0.5)},
                               {"BM_SynchronizeQtEventLoop", "BM_CondVarPingPong",
                                vex::bench::SpeedAtLeast(0.5)});
