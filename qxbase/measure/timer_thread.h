#pragma once

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <thread>

#include "qxbase/framework/export.h"
#include "qxbase/measure/auto_reset_event.h"

namespace qx {

using TThreadTimerNotifyEvent = std::function<void()>;

// A worker thread that sleeps on an auto-reset wake-up event and calls OnAsyncTimer on its own
// thread each time the event is signalled; signals that arrive during a call collapse into one
// further call. The owner signals it (normally from a periodic timer on the user-interface
// thread) and hands the handler's results back to that thread itself.
//
// The thread runs from construction on, one priority step above normal where the system
// allows it. Terminate ends it: the loop tests the request only before it waits, so a request
// made while the thread waits (or any time between construction and the first call) brings
// one last OnAsyncTimer call, while a request made during a call makes that call the last.
// An exception of the handler, or a wait that ends without the signal, ends the thread; the
// exception is kept for GetFatalError and written to the debug output, never thrown across
// the thread.
class QXBASE_EXPORT THVKTimerThread {
public:
    // Starts the thread and returns once it runs. Raises std::system_error when no thread can
    // be created.
    THVKTimerThread();
    // Terminates the thread (with its last call, see above) and waits until it has ended. When
    // the handler destroys the object on the thread itself, the thread is not waited for; it
    // ends once the handler returns, without a further call.
    virtual ~THVKTimerThread();
    THVKTimerThread(const THVKTimerThread&) = delete;
    THVKTimerThread& operator=(const THVKTimerThread&) = delete;

    // May be called from any thread, also from the handler. A call already under way finishes
    // with the handler it started with.
    void SetOnAsyncTimer(TThreadTimerNotifyEvent Handler);
    // The thread already runs after construction, so this does nothing.
    void Start();
    // Asks the thread to end, then signals the wake-up event. Does not wait.
    void Terminate();
    // Signals the wake-up event; ignored once the thread has ended or the object is going away.
    void Signal();
    bool GetTerminated() const noexcept;

    // Waits until the thread has ended; true when it has, false when Timeout passed first.
    // Called on the thread itself it returns false at once.
    bool WaitFor(std::chrono::milliseconds Timeout) const;
    bool GetFinished() const;
    // What ended the thread: nullptr while it runs and after an orderly end; otherwise the
    // exception of the handler, or qx::Exception "TimerThread: WaitResult = <n>?" when the
    // wake-up event was closed under the waiting thread (n is the TWaitResult).
    std::exception_ptr GetFatalError() const;
    // Whether the thread got the priority one step above normal (needs the right to raise
    // priorities; without it the thread runs at normal priority).
    bool GetPriorityRaised() const;
    std::thread::id GetThreadId() const noexcept { return FThreadId; }

protected:
    TQXAutoResetEvent& GetWakeUpEvent() noexcept;

private:
    struct TState;

    static void Run(std::shared_ptr<TState> State);
    static void Execute(TState& State);

    // Shared with the running thread, so that the thread can outlive the object when the
    // handler destroys it.
    std::shared_ptr<TState> FState;
    std::thread FThread;
    std::thread::id FThreadId;
};

}  // namespace qx
