// Waiting and background work: the tick sequences, the timeout, cancelling, the self-freeing
// threads and the counter. Every host callback must arrive on the main thread (the test's own).
// These run under ThreadSanitizer in the tsan preset.
#include "vex/ui/wait_procs.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/ui/back_thread.h"
#include "vex/ui/flash_event.h"
#include "vex/ui/win_utils.h"

namespace vex {
namespace {

// Records the progress values and whether each arrived on the main thread.
struct Ticks {
  std::vector<int32_t> values;
  int off_main = 0;
  TSyncProc Proc() {
    return [this](int32_t v) {
      if (!IsMainThread()) ++off_main;
      values.push_back(v);
    };
  }
};

int64_t ElapsedMs(int64_t since) {
  return (TWinUtils::GetTimeCounter() - since) * 1000 / TWinUtils::GetTimeFrequency();
}

// Serves the main-thread queue until done() or the limit passes.
template <class Done>
void ServeUntil(Done done, int limit_ms = 5000) {
  const int64_t start = TWinUtils::GetTimeCounter();
  while (!done() && ElapsedMs(start) < limit_ms) CheckSynchronize(10);
}

TEST(WaitProcs, AWaitNobodyStopsTicksToCountAndTimesOut) {
  Ticks ticks;
  EXPECT_FALSE(ExecuteMainProc(nullptr, ticks.Proc(), 3, 100, false));
  EXPECT_EQ(ticks.values, (std::vector<int32_t>{-3, 1, 2, 3}));
  EXPECT_EQ(ticks.off_main, 0);

  Ticks again;
  EXPECT_EQ(test::MessageOf<Exception>(
                [&] { ExecuteMainProc([](TObject*) {}, again.Proc(), 3, 100, true); }),
            u"No response was received within timeout of 300 ms");
  EXPECT_EQ(again.values, (std::vector<int32_t>{-3, 1, 2, 3}));
}

TEST(WaitProcs, AStopFromMainProcEndsTheWaitWithinOneDelay) {
  Ticks ticks;
  bool handed_waiter = false;
  const int64_t start = TWinUtils::GetTimeCounter();
  EXPECT_TRUE(ExecuteMainProc(
      [&](TObject* thread) {
        handed_waiter = dynamic_cast<TLongTaskThread*>(thread) != nullptr;
        StopLongTaskThread(thread);
      },
      ticks.Proc(), 50, 100, true));
  EXPECT_LT(ElapsedMs(start), 1000);  // 50 ticks would take 5 s
  ASSERT_FALSE(ticks.values.empty());
  EXPECT_EQ(ticks.values[0], -50);
  EXPECT_LE(ticks.values.size(), 2u);
  EXPECT_TRUE(handed_waiter);
}

TEST(WaitProcs, AStopFromATickEndsBeforeTheNextTick) {
  Ticks ticks;
  TObject* waiter = nullptr;
  auto thread = WaitForEndOfMainProc([&](TObject* t) { waiter = t; },
                                     [&](int32_t v) {
                                       ticks.values.push_back(v);
                                       if (v == 2) StopLongTaskThread(waiter);
                                     },
                                     5, 10, true);
  EXPECT_TRUE(thread->Cancelled());
  EXPECT_EQ(ticks.values, (std::vector<int32_t>{-5, 1, 2}));
  EXPECT_EQ(thread->Value, 2);
  EXPECT_EQ(thread->Priority(), tpIdle);
}

TEST(WaitProcs, ACountOfZeroGivesOnlyZeroAndAZeroTimeout) {
  Ticks ticks;
  EXPECT_FALSE(ExecuteMainProc(nullptr, ticks.Proc(), 0, 100, false));
  EXPECT_EQ(ticks.values, std::vector<int32_t>{0});
  EXPECT_EQ(test::MessageOf<Exception>([&] { ExecuteMainProc(nullptr, nullptr, 0, 100, true); }),
            u"No response was received within timeout of 0 ms");
}

TEST(WaitProcs, WithoutWaitTheThreadRunsOnWhileTheCallerGoesOn) {
  Ticks ticks;
  auto thread = WaitForEndOfMainProc(nullptr, ticks.Proc(), 3, 20, false);
  EXPECT_EQ(ticks.values, std::vector<int32_t>{-3});  // the total arrives before the return
  EXPECT_FALSE(thread->Suspended());
  thread->WaitFor();
  EXPECT_EQ(ticks.values, (std::vector<int32_t>{-3, 1, 2, 3}));
  EXPECT_FALSE(thread->Cancelled());
}

TEST(WaitProcs, AnExceptionInATickEndsTheWorkerAndCountsAsATimeout) {
  auto thread = WaitForEndOfMainProc(
      nullptr,
      [](int32_t v) {
        if (v == 1) throw EConvertError(u"bad tick");
      },
      5, 10, true);
  EXPECT_EQ(thread->Value, 1);
  ASSERT_TRUE(thread->FatalException());
  EXPECT_THROW(std::rethrow_exception(thread->FatalException()), EConvertError);
  EXPECT_FALSE(thread->Cancelled());
}

TEST(WaitProcs, StopLongTaskThreadIgnoresEverythingButAStartedWaiter) {
  StopLongTaskThread(nullptr);
  TObject other;
  StopLongTaskThread(&other);
  TLongTaskThread not_started(3, 10, nullptr);
  StopLongTaskThread(&not_started);
  EXPECT_FALSE(not_started.Cancelled());
  not_started.Cancel();
  EXPECT_TRUE(not_started.Cancelled());
  not_started.Run();  // Run clears the flag
  EXPECT_FALSE(not_started.Cancelled());
  StopLongTaskThread(&not_started);
  EXPECT_TRUE(not_started.Cancelled());
}

struct BackEvents {
  std::vector<int32_t> counters;
  bool terminated = false;
  int off_main = 0;
};

TEST(BackThread, CountGivesExactlyThatManyDisplayEventsThenTheTerminatedEvent) {
  struct Case {
    int32_t count;
    std::vector<int32_t> counters;
  };
  for (const Case& c : {Case{2, {1, 2}}, Case{-1, {}}}) {
    BackEvents ev;
    new TBackThread(
        5, c.count,
        [&](TObject* sender) {
          if (!IsMainThread()) ++ev.off_main;
          ev.counters.push_back(dynamic_cast<TBackThread*>(sender)->Counter);
        },
        [&](TObject*) {
          EXPECT_FALSE(ev.terminated);
          ev.terminated = true;
        });
    ServeUntil([&] { return ev.terminated; });
    EXPECT_TRUE(ev.terminated) << c.count;
    EXPECT_EQ(ev.counters, c.counters) << c.count;
    EXPECT_EQ(ev.off_main, 0);
  }
}

TEST(BackThread, CountZeroTicksUntilTheHostTerminatesIt) {
  BackEvents ev;
  new TBackThread(
      2, 0,
      [&](TObject* sender) {
        auto* thread = dynamic_cast<TBackThread*>(sender);
        ev.counters.push_back(thread->Counter);
        if (ev.counters.size() == 4) thread->Terminate();
      },
      [&](TObject*) { ev.terminated = true; });
  ServeUntil([&] { return ev.terminated; });
  EXPECT_TRUE(ev.terminated);
  EXPECT_EQ(ev.counters, (std::vector<int32_t>{0, 0, 0, 0}));  // Counter moves only with Count > 0
}

TEST(FlashEvent, FiresOnceAfterTheDelayAndNeverForADelayBelowOne) {
  TObject sender;
  std::vector<TObject*> fired;
  auto record = [&](TObject* s) {
    EXPECT_TRUE(IsMainThread());
    fired.push_back(s);
  };
  FlashEventWithDelay(record, &sender, 0);
  FlashEventWithDelay(record, &sender, -5);
  auto* terminated_first = new TFlashThread(record, &sender, 1);
  terminated_first->Terminate();
  terminated_first->Start();
  const int64_t start = TWinUtils::GetTimeCounter();
  FlashEventWithDelay(record, &sender, 50);
  ServeUntil([&] { return !fired.empty(); });
  EXPECT_GE(ElapsedMs(start), 50);
  ServeUntil([] { return false; },
             100);  // give the others time to fire, wrongly
  EXPECT_EQ(fired, std::vector<TObject*>{&sender});
}

TEST(WinUtils, ExecuteProcInThreadBlocksTheCallerForTheDelayThenRunsOnAnotherThread) {
  std::atomic<bool> ran{false};
  std::atomic<bool> on_main{true};
  const int64_t start = TWinUtils::GetTimeCounter();
  TWinUtils::ExecuteProcInThread(
      [&] {
        on_main = IsMainThread();
        ran = true;
      },
      200);
  EXPECT_GE(ElapsedMs(start), 200);
  ServeUntil([&] { return ran.load(); });
  EXPECT_TRUE(ran);
  EXPECT_FALSE(on_main);
}

TEST(WinUtils, TheCounterIsMonotonicWithAPositiveFrequency) {
  EXPECT_GT(TWinUtils::GetTimeFrequency(), 0);
  const int64_t a = TWinUtils::GetTimeCounter();
  TThread::Sleep(2);
  const int64_t b = TWinUtils::GetTimeCounter();
  EXPECT_GT(a, 0);
  EXPECT_GT(b, a);
  EXPECT_GE((b - a) * 1000 / TWinUtils::GetTimeFrequency(), 2);
}

}  // namespace
}  // namespace vex
