#include "VekBase/ScopeBase.h"
#include "VekBase/Exception.h"
#include <gtest/gtest.h>

namespace vek
{
static std::string g_trace; // what ran, in order; '!' is HandleException, '|' the end of Release
static std::unique_ptr<ScopeBase> g_scope;

static ScopeBase::Action Mark(char sign)
{
    return [sign] { g_trace += sign; };
}

/// Releases a scope that holds 'a' and then @p actions.
static std::string Release(std::initializer_list<void (*)()> actions)
{
    g_trace.clear();
    g_scope = std::make_unique<ScopeBase>(Mark('a'));
    for (const auto action : actions)
        g_scope->Add(action);
    g_scope->Release();
    g_trace += '|';
    g_scope.reset();
    return g_trace;
}

TEST(ScopeBase, RunsItsActions)
{
    const auto before = Exception::SetExceptionHandler([](const auto&) noexcept { g_trace += '!'; });
    const auto addB = [] { g_scope->Add(Mark('b')); };
    EXPECT_EQ(Release({}), "a|") << "released actions run again";
    EXPECT_EQ(Release({[] { throw 5; }, nullptr, [] { g_trace += 'b'; }}), "b!a|")
        << "others kept, or first first";
    EXPECT_EQ(Release({[] { g_scope->Drop(); }, addB}), "b|")
        << "actions run while the list of them is walked";
    EXPECT_EQ(Release({[] { g_scope.reset(); }, [] { g_scope->Release(); }}), "a|") << "destroyed scope used";
    Exception::SetExceptionHandler(before);

    g_trace.clear();
    g_scope = std::make_unique<ScopeBase>(Mark('a'));
    ScopeBase source(Mark('c'));
    *g_scope = std::move(source); // runs the old actions
    g_scope->Add([held = ScopeBase(addB)] {});
    g_scope->Drop(); // what is held adds while the list is cleared
    EXPECT_TRUE(*g_scope && !source);
    *g_scope = std::move(static_cast<ScopeBase&>(*g_scope));
    g_trace += '|';
    g_scope.reset();
    EXPECT_EQ(g_trace, "a|b");
}
} // namespace vek
