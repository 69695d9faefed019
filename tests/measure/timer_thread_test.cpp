#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "qxbase/framework/exception.h"
#include "qxbase/measure/timer_thread.h"
#include "tests/framework/print_qstring.h"

using namespace qx;
using namespace std::chrono_literals;

namespace {

constexpr auto Patience = 20s;  // only a broken thread ever waits this long

// Notes the thread of every handler call.
struct TCalls {
    std::mutex Lock;
    std::condition_variable Changed;
    std::vector<std::thread::id> Threads;

    std::size_t Note()
    {
        std::scoped_lock lock(Lock);
        Threads.push_back(std::this_thread::get_id());
        Changed.notify_all();
        return Threads.size();
    }
    bool WaitForCount(std::size_t Count)
    {
        std::unique_lock lock(Lock);
        return Changed.wait_for(lock, Patience, [&] { return Threads.size() >= Count; });
    }
    std::vector<std::thread::id> Snapshot()
    {
        std::scoped_lock lock(Lock);
        return Threads;
    }
};

QString FatalMessage(const THVKTimerThread& Thread)
{
    try {
        if (auto error = Thread.GetFatalError()) std::rethrow_exception(error);
    } catch (const Exception& e) {
        return e.Message();
    }
    return "<none>";
}

class TEventClosingThread : public THVKTimerThread {
public:
    void CloseWakeUpEvent() { GetWakeUpEvent().Close(); }
};

}  // namespace

TEST(AutoResetEvent, SignalsCollapseIntoOneWaitAndClosingAbandonsWaits)
{
    TQXAutoResetEvent event;
    EXPECT_EQ(event.WaitFor(0ms), wrTimeout);
    for (int i = 0; i < 3; ++i) event.SetEvent();
    EXPECT_EQ(event.WaitFor(0ms), wrSignaled);
    EXPECT_EQ(event.WaitFor(-5ms), wrTimeout);
    // A time-out beyond the clock's range must not overflow into an instant time-out.
    event.SetEvent();
    EXPECT_EQ(event.WaitFor(std::chrono::milliseconds::max()), wrSignaled);

    std::promise<TWaitResult> result;
    std::thread waiter([&] { result.set_value(event.WaitFor()); });
    event.Close();
    waiter.join();
    EXPECT_EQ(result.get_future().get(), wrAbandoned);
    event.SetEvent();
    EXPECT_EQ(event.WaitFor(0ms), wrAbandoned);
}

TEST(TimerThread, TerminateOrDestructionWithoutASignalGivesOneLastCallOnTheThread)
{
    TCalls calls;
    {
        THVKTimerThread thread;
        thread.SetOnAsyncTimer([&] { calls.Note(); });
        thread.Terminate();
        ASSERT_TRUE(thread.WaitFor(Patience));
        ASSERT_EQ(calls.Snapshot(), std::vector{thread.GetThreadId()});
        EXPECT_NE(thread.GetThreadId(), std::this_thread::get_id());
        EXPECT_FALSE(thread.GetFatalError());
    }
    {
        THVKTimerThread thread;
        thread.SetOnAsyncTimer([&] { calls.Note(); });
    }
    EXPECT_EQ(calls.Snapshot().size(), 2u);
}

// The first handler replaces itself on the running thread; the last call asks the thread to
// end, which makes it the last although the request signalled the event again.
TEST(TimerThread, EverySignalGivesOneCallAndTerminateDuringACallMakesItTheLast)
{
    constexpr std::size_t N = 5;
    TCalls calls;
    THVKTimerThread thread;
    thread.SetOnAsyncTimer([&] {
        calls.Note();
        thread.SetOnAsyncTimer([&] {
            if (calls.Note() == N) thread.Terminate();
        });
    });
    for (std::size_t i = 1; i <= N; ++i) {
        thread.Signal();
        ASSERT_TRUE(calls.WaitForCount(i)) << "call " << i;
    }
    ASSERT_TRUE(thread.WaitFor(Patience));
    EXPECT_EQ(calls.Snapshot().size(), N);
}

TEST(TimerThread, HandlerExceptionOrClosedEventEndsTheThreadWithAKeptError)
{
    THVKTimerThread failing;
    failing.SetOnAsyncTimer([] { throw Exception("sensor gone"); });
    failing.Signal();
    ASSERT_TRUE(failing.WaitFor(Patience));
    EXPECT_EQ(FatalMessage(failing), "sensor gone");

    TCalls calls;
    TEventClosingThread closed;
    closed.SetOnAsyncTimer([&] { calls.Note(); });
    closed.CloseWakeUpEvent();
    ASSERT_TRUE(closed.WaitFor(Patience));
    EXPECT_EQ(FatalMessage(closed), "TimerThread: WaitResult = 2?");
    EXPECT_TRUE(calls.Snapshot().empty());
}

// Destroying the thread object from its own handler must neither join the thread with itself
// nor let the loop call again or touch freed state.
TEST(TimerThread, HandlerMayDestroyItsOwnThreadObject)
{
    struct TSentinel {
        std::promise<void> Released;
        ~TSentinel() { Released.set_value(); }
    };
    auto sentinel = std::make_shared<TSentinel>();
    std::future<void> released = sentinel->Released.get_future();
    auto owner = std::make_unique<THVKTimerThread>();
    std::atomic<int> calls{0};
    owner->SetOnAsyncTimer([&owner, &calls, sentinel = std::move(sentinel)] {
        ++calls;
        owner.reset();
    });
    owner->Signal();
    // The handler's captures are released only once the thread has ended.
    ASSERT_EQ(released.wait_for(Patience), std::future_status::ready);
    EXPECT_EQ(calls.load(), 1);
}
