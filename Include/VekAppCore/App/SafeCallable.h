#pragma once
#include "VekAppCore/App/ErrorReporting.h"
#include <functional>
#include <source_location>
#include <type_traits>
#include <utility>

namespace vek::App
{
/// Wraps a callable that runs from a Qt signal or a posted event: what it throws is reported with
/// HandleAppException and the place where the wrapper was made, and does not reach the event loop. Its result
/// is dropped.
template <typename Function>
class SafeCallable
{
public:
    /// @param where  stands in the report.
    explicit SafeCallable(Function function,
                          const std::source_location& where = std::source_location::current())
        : m_function(std::move(function)), m_where(where)
    {}

    template <typename... Args>
        requires std::is_invocable_v<Function&, Args...>
    void operator()(Args&&... args) noexcept
    {
        try
        {
            static_cast<void>(std::invoke(m_function, std::forward<Args>(args)...));
        }
        catch (...)
        {
            HandleAppException(TrString(), m_where);
        }
    }

private:
    Function m_function;
    std::source_location m_where;
};
} // namespace vek::App
