#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "qxbase/framework/export.h"

namespace qx {

// Outcome of waiting on an event.
enum TWaitResult : std::int32_t {
    wrSignaled = 0,
    wrTimeout = 1,
    wrAbandoned = 2,  // the event was closed before or during the wait
};

// An event that releases exactly one wait per SetEvent and resets itself on the way: signals
// that arrive while nobody waits collapse into one. Closing wakes every waiter with
// wrAbandoned; a closed event stays closed and ignores SetEvent. All operations are
// thread-safe; the event must outlive every thread that waits on it.
class QXBASE_EXPORT TQXAutoResetEvent {
public:
    TQXAutoResetEvent() = default;
    TQXAutoResetEvent(const TQXAutoResetEvent&) = delete;
    TQXAutoResetEvent& operator=(const TQXAutoResetEvent&) = delete;

    void SetEvent();
    void ResetEvent();
    // Waits without limit: wrSignaled, or wrAbandoned once the event is closed.
    TWaitResult WaitFor();
    // As above, or wrTimeout when Timeout passes first. A negative time-out polls; one of a
    // hundred years or more waits without limit.
    TWaitResult WaitFor(std::chrono::milliseconds Timeout);
    void Close();
    bool GetClosed() const;

private:
    TWaitResult Take();

    mutable std::mutex FMutex;
    std::condition_variable FCondition;
    bool FSignaled = false;
    bool FClosed = false;
};

}  // namespace qx
