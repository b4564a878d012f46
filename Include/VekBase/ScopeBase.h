#pragma once
#include "VekBase/Export.h"
#include "VekBase/MoveOnlyFunction.h"
#include <source_location>
#include <vector>

namespace vek
{
/// Runs the actions it holds when it is destroyed, the last one added first. An action may use its scope:
/// what it adds runs next, and Release goes on when an action has destroyed the scope. Move-only, reentrant.
///
/// @code
/// ScopeBase scope([] { qDebug("second"); });
/// scope.Add([] { qDebug("first"); });
/// @endcode
class VEKBASE_EXPORT ScopeBase
{
public:
    /// May own what cannot be copied.
    using Action = MoveOnlyFunction<void()>;

    /// Holds nothing.
    ScopeBase() noexcept = default;
    /// @param action  an empty one is not kept.
    explicit ScopeBase(Action action);
    ScopeBase(ScopeBase&& other) noexcept;
    /// Runs the actions held until now, like the destructor.
    ScopeBase& operator=(ScopeBase&& other) noexcept;
    /// An action that throws is reported with HandleException; the others still run.
    ~ScopeBase();

    /// Holds @p action as well; an empty one is not kept.
    void Add(Action action);

    /// Runs the actions now. An action that throws is reported like in the destructor.
    void Release() noexcept;

    /// Forgets the actions without running them.
    void Drop() noexcept;

    /// Also what converting to bool answers.
    [[nodiscard]] bool HasActions() const noexcept { return !m_actions.empty(); }
    explicit operator bool() const noexcept { return HasActions(); }

private:
    std::vector<Action> m_actions; ///< In order of adding; run from the back.
    bool* m_isGone = nullptr;      ///< Told by the destructor, while Release runs.
};
} // namespace vek
