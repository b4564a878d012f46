#include "VekBase/ScopeBase.h"
#include "VekBase/Exception.h"
#include <utility>

namespace vek
{
ScopeBase::ScopeBase(Action action) { Add(std::move(action)); }

ScopeBase::ScopeBase(ScopeBase&& other) noexcept : m_actions(std::exchange(other.m_actions, {})) {}

ScopeBase& ScopeBase::operator=(ScopeBase&& other) noexcept
{
    if (this != &other)
    {
        Release();
        m_actions = std::exchange(other.m_actions, {});
    }
    return *this;
}

ScopeBase::~ScopeBase()
{
    Release();
    if (m_isGone)
        *m_isGone = true;
}

void ScopeBase::Add(Action action)
{
    if (action)
        m_actions.push_back(std::move(action));
}

void ScopeBase::Release() noexcept
{
    bool isGone = false;
    bool* const outer = std::exchange(m_isGone, &isGone);
    while (!isGone && !m_actions.empty())
    {
        // Out first: an action may use or release this very scope.
        Action action = std::move(m_actions.back());
        m_actions.pop_back();
        try
        {
            action();
        }
        catch (...)
        {
            Exception::HandleException();
        }
    }
    if (!isGone)
        m_isGone = outer;
    else if (outer)
        *outer = true;
}

void ScopeBase::Drop() noexcept
{
    // Out first: what they hold may use this scope when it dies.
    const std::vector<Action> dropped = std::exchange(m_actions, {});
}
} // namespace vek
