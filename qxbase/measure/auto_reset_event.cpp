#include "qxbase/measure/auto_reset_event.h"

namespace qx {

// Notifying under the lock: a released waiter may go on to destroy the event, which must not
// happen while the notifying thread still touches it.
void TQXAutoResetEvent::SetEvent()
{
    std::scoped_lock lock(FMutex);
    if (FClosed) return;
    FSignaled = true;
    FCondition.notify_one();
}

void TQXAutoResetEvent::ResetEvent()
{
    std::scoped_lock lock(FMutex);
    FSignaled = false;
}

TWaitResult TQXAutoResetEvent::WaitFor()
{
    std::unique_lock lock(FMutex);
    FCondition.wait(lock, [this] { return FSignaled || FClosed; });
    return Take();
}

TWaitResult TQXAutoResetEvent::WaitFor(std::chrono::milliseconds Timeout)
{
    // Beyond this the deadline would overflow the clock's range.
    constexpr auto Unlimited = std::chrono::hours(24 * 365 * 100);
    if (Timeout >= Unlimited) return WaitFor();
    if (Timeout < std::chrono::milliseconds::zero()) Timeout = std::chrono::milliseconds::zero();
    std::unique_lock lock(FMutex);
    if (!FCondition.wait_for(lock, Timeout, [this] { return FSignaled || FClosed; }))
        return wrTimeout;
    return Take();
}

void TQXAutoResetEvent::Close()
{
    std::scoped_lock lock(FMutex);
    FClosed = true;
    FSignaled = false;
    FCondition.notify_all();
}

bool TQXAutoResetEvent::GetClosed() const
{
    std::scoped_lock lock(FMutex);
    return FClosed;
}

// Called with the mutex held once the event is signalled or closed.
TWaitResult TQXAutoResetEvent::Take()
{
    if (FClosed) return wrAbandoned;
    FSignaled = false;
    return wrSignaled;
}

}  // namespace qx
