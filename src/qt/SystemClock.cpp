#include "qt/SystemClock.h"

namespace nimbarrow {

Clock::Instant SystemClock::now() const
{
    return std::chrono::steady_clock::now();
}

QDateTime SystemClock::wallTime() const
{
    return QDateTime::currentDateTimeUtc();
}

} // namespace nimbarrow
