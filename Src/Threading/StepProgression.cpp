#include "VekAppCore/Threading/StepProgression.h"
#include "VekBase/Exception.h"
#include <algorithm>
#include <limits>

namespace vek::Threading
{
namespace
{
constexpr std::uint64_t never = std::numeric_limits<std::uint64_t>::max();
} // namespace

StepProgression::StepProgression(IProgression& progression, std::uint64_t stepCount, int first, int last)
    : m_progression(progression), m_stepCount(stepCount), m_first(first), m_last(std::max(first, last))
{
    m_nextReport = _GetFirstStepOf(1);
}

std::uint64_t StepProgression::_GetFirstStepOf(int part) const noexcept
{
    const auto parts = static_cast<std::uint64_t>(m_last - m_first);
    const auto wanted = static_cast<std::uint64_t>(part);
    if (m_stepCount == 0 || wanted > parts)
        return never;
    // The quotient, rounded up, of wanted * m_stepCount, which may not fit, and parts.
    return wanted * (m_stepCount / parts) + (wanted * (m_stepCount % parts) + parts - 1) / parts;
}

void StepProgression::_Report(std::uint64_t done)
{
    if (m_progression.IsCanceled())
        throw Exception::E_Escape();
    const std::lock_guard lock(m_mutex);
    const int before = m_part;
    while (m_part < m_last - m_first && _GetFirstStepOf(m_part + 1) <= done)
        ++m_part;
    if (m_part == before)
        return;
    m_nextReport.store(_GetFirstStepOf(m_part + 1), std::memory_order_relaxed);
    m_progression.SetProgression(m_first + m_part);
}
} // namespace vek::Threading
