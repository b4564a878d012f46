#pragma once
#include "VekAppCore/Threading/IProgression.h"
#include <atomic>
#include <cstdint>
#include <mutex>

namespace vek::Threading
{
/// Reports work of many equal steps: only whole percents that have changed, so that any number of steps may
/// be told. Thread-safe, for parallel loops inside the work.
class VEKAPPCORE_EXPORT StepProgression
{
public:
    /// @param progression  outlives this.
    /// @param first, last  the percents from which and to which the steps go; first itself is not reported.
    StepProgression(IProgression& progression, std::uint64_t stepCount, int first = 0, int last = 100);
    StepProgression(const StepProgression&) = delete;
    StepProgression& operator=(const StepProgression&) = delete;

    /// Tells that steps are done, 2^64 - 1 in all at most; ones beyond the step count change nothing.
    /// @throws Exception::E_Escape  the task is cancelled; let it out of the work.
    void Advance(std::uint64_t steps = 1)
    {
        const std::uint64_t done = m_done.fetch_add(steps, std::memory_order_relaxed) + steps;
        if (done >= m_nextReport.load(std::memory_order_relaxed) || m_progression.IsCanceled()) [[unlikely]]
            _Report(done);
    }

private:
    void _Report(std::uint64_t done);
    [[nodiscard]] std::uint64_t _GetFirstStepOf(int part) const noexcept;

    static constexpr std::size_t cacheLine = 64;

    alignas(cacheLine) std::atomic<std::uint64_t> m_done{0};
    alignas(cacheLine) std::atomic<std::uint64_t> m_nextReport; ///< Apart from what every step writes.
    IProgression& m_progression;
    const std::uint64_t m_stepCount;
    const int m_first;
    const int m_last;
    std::mutex m_mutex; ///< Guards m_part: reports are made in order.
    int m_part = 0;     ///< The last one reported, from 0 to the difference of m_last and m_first.
};
} // namespace vek::Threading
