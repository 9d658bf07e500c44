// TThread and the main-thread hand-over. These run under ThreadSanitizer in the tsan preset.
#include "vex/platform/thread.h"

#include <gtest/gtest.h>
#include <sched.h>

#include <atomic>
#include <chrono>

#include "test_support.h"
#include "vex/platform/exceptions.h"

namespace vex {
namespace {

// A thread whose body is a lambda, freed by its owner.
class TLambdaThread : public TThread {
 public:
  explicit TLambdaThread(std::function<void(TLambdaThread&)> body) : body_(std::move(body)) {}
  ~TLambdaThread() override { TerminateAndWait(); }
  using TThread::Synchronize;

 protected:
  void Execute() override { body_(*this); }

 private:
  std::function<void(TLambdaThread&)> body_;
};

TEST(Thread, TheTestProgramRunsOnTheMainThread) {
  EXPECT_TRUE(IsMainThread());
  EXPECT_EQ(MainThreadID(), std::this_thread::get_id());
}

TEST(Thread, WaitForOnTheMainThreadServesTenThousandSynchronizedCalls) {
  int counter = 0;  // touched only on the main thread
  int off_main = 0;
  TLambdaThread worker([&](TLambdaThread& self) {
    for (int i = 0; i < 10000; ++i) {
      self.Synchronize([&] {
        if (!IsMainThread()) ++off_main;
        ++counter;
      });
    }
    self.ReturnValue = 7;
  });
  EXPECT_TRUE(worker.Suspended());
  worker.Start();
  EXPECT_FALSE(worker.Suspended());
  EXPECT_EQ(worker.WaitFor(), 7);
  EXPECT_TRUE(worker.Finished());
  EXPECT_EQ(counter, 10000);
  EXPECT_EQ(off_main, 0);
}

TEST(Thread, AnExceptionInASynchronizedCallIsRaisedInTheWorker) {
  String caught;
  TLambdaThread worker([&](TLambdaThread& self) {
    caught = test::MessageOf<EConvertError>(
        [&] { self.Synchronize([] { throw EConvertError(u"bad value"); }); });
    self.Synchronize([] { throw EAbort(u"ends Execute"); });
  });
  worker.Start();
  worker.WaitFor();
  EXPECT_EQ(caught, u"bad value");
  ASSERT_TRUE(worker.FatalException());
  EXPECT_THROW(std::rethrow_exception(worker.FatalException()), EAbort);
}

TEST(Thread, CheckSynchronizeRunsQueuedCallsOnlyOnTheMainThread) {
  EXPECT_FALSE(CheckSynchronize(0));
  EXPECT_FALSE(CheckSynchronize(20));  // waits, nothing comes

  std::atomic<bool> raised{false};
  std::atomic<bool> ran{false};
  TLambdaThread worker([&](TLambdaThread& self) {
    try {
      CheckSynchronize(0);
    } catch (const EThread&) {
      raised = true;
    }
    self.Synchronize([&] { ran = true; });
  });
  worker.Start();
  bool served = false;
  for (int i = 0; i < 100 && !served; ++i) served = CheckSynchronize(100);
  EXPECT_TRUE(served);
  EXPECT_TRUE(ran);
  worker.WaitFor();
  EXPECT_TRUE(raised);
}

std::atomic<int> g_wakes{0};
std::atomic<int> g_serves{0};

TEST(Thread, TheToolkitHooksAreWokenAndServeTheWait) {
  g_wakes = 0;
  g_serves = 0;
  TMainThreadHooks previous = SetMainThreadHooks({[] { ++g_wakes; },
                                                  [] {
                                                    ++g_serves;
                                                    CheckSynchronize(5);
                                                  }});
  int runs = 0;
  TLambdaThread worker([&](TLambdaThread& self) {
    TThread::Sleep(30);
    self.Synchronize([&] { ++runs; });
  });
  worker.Start();
  worker.WaitFor();
  SetMainThreadHooks(previous);
  EXPECT_EQ(runs, 1);
  EXPECT_GE(g_wakes.load(), 1);
  EXPECT_GE(g_serves.load(), 1);
}

TEST(Thread, TerminateIsSeenByTheLoopAndTheDestructorStopsARunningThread) {
  std::atomic<int> loops{0};
  {
    TLambdaThread worker([&](TLambdaThread& self) {
      while (!self.Terminated()) {
        ++loops;
        TThread::Sleep(1);
      }
    });
    worker.Start();
    while (loops.load() == 0) TThread::Sleep(1);
  }  // the destructor terminates and waits
  EXPECT_GT(loops.load(), 0);
}

TEST(Thread, IdlePriorityRunsTheThreadUnderSchedIdle) {
  std::atomic<int> policy{-1};
  TLambdaThread worker([&](TLambdaThread&) { policy = sched_getscheduler(0); });
  worker.SetPriority(tpIdle);
  EXPECT_EQ(worker.Priority(), tpIdle);
  worker.Start();
  worker.WaitFor();
  EXPECT_EQ(policy.load(), SCHED_IDLE);
}

TEST(Thread, MisuseRaisesEThread) {
  TLambdaThread never_started([](TLambdaThread&) {});
  EXPECT_THROW(never_started.WaitFor(), EThread);

  TLambdaThread twice([](TLambdaThread&) {});
  twice.Start();
  EXPECT_THROW(twice.Start(), EThread);
  twice.WaitFor();

  String from_itself;
  TLambdaThread self_wait([&](TLambdaThread& self) {
    from_itself = test::MessageOf<EThread>([&] { self.WaitFor(); });
  });
  self_wait.Start();
  self_wait.WaitFor();
  EXPECT_FALSE(from_itself.empty());
}

TEST(Thread, AnAnonymousThreadRunsItsProcAndFreesItselfAfterOnTerminate) {
  std::atomic<bool> body_ran{false};
  bool terminated_on_main = false;
  TThread* thread = TThread::CreateAnonymousThread([&] { body_ran = true; });
  EXPECT_TRUE(thread->FreeOnTerminate);
  EXPECT_THROW(thread->WaitFor(), EThread);
  thread->OnTerminate = [&](TObject*) { terminated_on_main = IsMainThread(); };
  thread->Start();
  for (int i = 0; i < 500 && !terminated_on_main; ++i) CheckSynchronize(10);
  EXPECT_TRUE(body_ran);
  EXPECT_TRUE(terminated_on_main);
}

}  // namespace
}  // namespace vex
