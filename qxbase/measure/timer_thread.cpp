#include "qxbase/measure/timer_thread.h"

#include <QString>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

#include "qxbase/framework/debug_output.h"
#include "qxbase/framework/exception.h"

#if defined(__linux__)
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace qx {

namespace {

// One step above normal is one nice level down for the calling thread. Lowering the nice value
// needs a privilege (CAP_SYS_NICE or RLIMIT_NICE), so failing is a normal outcome.
bool RaiseOwnPriority() noexcept
{
#if defined(__linux__)
    const auto tid = static_cast<id_t>(::syscall(SYS_gettid));
    errno = 0;
    const int nice = ::getpriority(PRIO_PROCESS, tid);
    if (errno != 0 || nice <= PRIO_MIN) return false;
    return ::setpriority(PRIO_PROCESS, tid, nice - 1) == 0;
#else
    return false;
#endif
}

}  // namespace

struct THVKTimerThread::TState {
    TQXAutoResetEvent FEvent;
    std::atomic<bool> FTerminated{false};
    mutable std::mutex FLock;  // guards the fields below
    mutable std::condition_variable FChanged;
    TThreadTimerNotifyEvent FOnAsyncTimer;
    bool FStarted = false;
    bool FFinished = false;
    bool FPriorityRaised = false;
    std::exception_ptr FFatalError;
};

THVKTimerThread::THVKTimerThread() : FState(std::make_shared<TState>())
{
    FThread = std::thread(&THVKTimerThread::Run, FState);
    FThreadId = FThread.get_id();
    std::unique_lock lock(FState->FLock);
    FState->FChanged.wait(lock, [this] { return FState->FStarted; });
}

THVKTimerThread::~THVKTimerThread()
{
    Terminate();
    if (FThread.joinable()) {
        // A thread cannot wait for itself; it sees the request once the handler returns.
        if (std::this_thread::get_id() == FThreadId) FThread.detach();
        else FThread.join();
    }
    FState->FEvent.Close();
}

void THVKTimerThread::SetOnAsyncTimer(TThreadTimerNotifyEvent Handler)
{
    {
        std::scoped_lock lock(FState->FLock);
        std::swap(FState->FOnAsyncTimer, Handler);
    }
    // Handler now holds the old one: its captures are released here, outside the lock.
}

void THVKTimerThread::Start() {}

void THVKTimerThread::Terminate()
{
    FState->FTerminated.store(true);
    FState->FEvent.SetEvent();
}

void THVKTimerThread::Signal()
{
    FState->FEvent.SetEvent();
}

bool THVKTimerThread::GetTerminated() const noexcept
{
    return FState->FTerminated.load();
}

bool THVKTimerThread::WaitFor(std::chrono::milliseconds Timeout) const
{
    std::unique_lock lock(FState->FLock);
    if (std::this_thread::get_id() == FThreadId) return FState->FFinished;
    return FState->FChanged.wait_for(lock, Timeout, [this] { return FState->FFinished; });
}

bool THVKTimerThread::GetFinished() const
{
    std::scoped_lock lock(FState->FLock);
    return FState->FFinished;
}

std::exception_ptr THVKTimerThread::GetFatalError() const
{
    std::scoped_lock lock(FState->FLock);
    return FState->FFatalError;
}

bool THVKTimerThread::GetPriorityRaised() const
{
    std::scoped_lock lock(FState->FLock);
    return FState->FPriorityRaised;
}

TQXAutoResetEvent& THVKTimerThread::GetWakeUpEvent() noexcept
{
    return FState->FEvent;
}

void THVKTimerThread::Run(std::shared_ptr<TState> State)
{
    const bool raised = RaiseOwnPriority();
    {
        std::scoped_lock lock(State->FLock);
        State->FPriorityRaised = raised;
        State->FStarted = true;
    }
    State->FChanged.notify_all();

    std::exception_ptr error;
    try {
        Execute(*State);
    } catch (const std::exception& e) {
        error = std::current_exception();
        KSDebugOutputString(QString::fromUtf8(e.what()));
    } catch (...) {
        error = std::current_exception();
    }
    {
        std::scoped_lock lock(State->FLock);
        State->FFatalError = error;
        State->FFinished = true;
    }
    State->FChanged.notify_all();
}

// The request is tested before each wait but the first: no request can come before the
// constructor has returned, and so a Terminate right after construction gets its last call
// even when this thread has not reached its wait yet.
void THVKTimerThread::Execute(TState& State)
{
    do {
        const TWaitResult result = State.FEvent.WaitFor();
        if (result != wrSignaled)
            throw Exception(QString::asprintf("TimerThread: WaitResult = %d?", static_cast<int>(result)));
        TThreadTimerNotifyEvent handler;
        {
            std::scoped_lock lock(State.FLock);
            handler = State.FOnAsyncTimer;
        }
        if (handler) handler();
    } while (!State.FTerminated.load());
}

}  // namespace qx
