#include "VekAppCore/Threading/SeededExecutor.h"
#include "VekAppCore/App/Exception.h"
#include <utility>

namespace vek::Threading
{
SeededExecutor::SeededExecutor(std::uint32_t seed)
    : m_random(seed), m_checker(std::make_shared<RunningTaskChecker>())
{}

SeededExecutor::~SeededExecutor() = default;

void SeededExecutor::PostEvent(std::function<void()> function, const std::source_location&)
{
    m_posted.push_back(std::move(function));
}

void SeededExecutor::WaitUntil(const std::function<bool()>& predicate, EEventToTreat)
{
    if (predicate()) // an empty one throws
        return;
    while (!predicate())
        if (!RunOne())
            throw Exception::InternalAppException(QStringLiteral("Nothing is left that could end the wait"));
    while (!m_posted.empty())
        _RunPosted();
}

void SeededExecutor::Clear()
{
    while (!m_posted.empty())
    {
        const std::function<void()> dropped = std::move(m_posted.front());
        m_posted.pop_front(); // first, since what dies with it may post
    }
}

void SeededExecutor::ExecuteAsync(std::function<void()> function) { m_async.push_back(std::move(function)); }

std::shared_ptr<RunningTaskChecker> SeededExecutor::GetRunningTaskChecker() { return m_checker; }

void SeededExecutor::WaitForAll()
{
    while (!m_async.empty())
        _RunAsync(m_random() % m_async.size());
    if (const std::exception_ptr exception = std::exchange(m_exception, nullptr))
        std::rethrow_exception(exception);
}

bool SeededExecutor::RunOne()
{
    const std::size_t choices = m_async.size() + (m_posted.empty() ? 0 : 1);
    if (choices == 0)
        return false;
    // Not a distribution of the standard library's: they differ between its makers.
    const std::size_t choice = m_random() % choices;
    if (choice < m_async.size())
        _RunAsync(choice);
    else
        _RunPosted();
    return true;
}

void SeededExecutor::RunAll()
{
    while (RunOne())
    {}
}

void SeededExecutor::_RunAsync(std::size_t index)
{
    std::swap(m_async[index], m_async.back());
    const std::function<void()> function = std::move(m_async.back());
    m_async.pop_back();
    try
    {
        function();
    }
    catch (...)
    {
        if (!m_exception)
            m_exception = std::current_exception();
        const auto dropped = std::exchange(m_async, {});
    }
}

void SeededExecutor::_RunPosted()
{
    const std::function<void()> function = std::move(m_posted.front());
    m_posted.pop_front();
    function();
}
} // namespace vek::Threading
