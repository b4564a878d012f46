#include "VekBase/ScopeBase.h"
#include "VekBase/Exception.h"
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace vek
{
namespace
{
std::string g_trace; // what ran, in order; '!' stands for HandleException

ScopeBase::Action Trace(char mark)
{
    return [mark] { g_trace += mark; };
}

struct ScopeCase
{
    const char* fault;
    std::function<void()> use;
    const char* trace;
};
void PrintTo(const ScopeCase& row, std::ostream* out) { *out << row.fault; }
class ScopeBaseUse : public testing::TestWithParam<ScopeCase>
{};

TEST_P(ScopeBaseUse, RunsItsActions)
{
    const auto before =
        Exception::SetExceptionHandler([](const std::source_location&) noexcept { g_trace += '!'; });
    g_trace.clear();
    GetParam().use();
    EXPECT_EQ(g_trace, GetParam().trace);
    Exception::SetExceptionHandler(before);
}

void Throw()
{
    ScopeBase scope(Trace('a'));
    scope.Add([] { throw std::runtime_error("refused"); });
    scope.Add(nullptr);
    scope.Add(Trace('b'));
}

void Drop()
{
    ScopeBase scope(Trace('a'));
    scope.Drop();
    g_trace += scope ? '1' : '0';
}

void Release()
{
    ScopeBase scope(Trace('a'));
    scope.Release();
    g_trace += scope ? '1' : '0';
}

void Move()
{
    ScopeBase target(Trace('a'));
    {
        ScopeBase source(Trace('b'));
        target = ScopeBase(std::move(source));
    }
    ScopeBase& same = target;
    target = std::move(same);
    g_trace += '|';
}

void UseInAction()
{
    ScopeBase scope(Trace('a'));
    scope.Add([&scope] { scope.Drop(); });
    scope.Add([&scope] { scope.Add(Trace('b')); });
}

void DestroyInAction()
{
    auto scope = std::make_unique<ScopeBase>(Trace('a'));
    scope->Add([&scope] {
        scope->Add([&scope] { scope.reset(); });
        scope->Release();
    });
    scope->Release();
    g_trace += '|';
}

void UseWhileDropped()
{
    ScopeBase scope;
    scope.Add([held = ScopeBase([&scope] { scope.Add(Trace('a')); })] {});
    scope.Drop();
    g_trace += '|';
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScopeBaseUse,
    testing::Values(ScopeCase{"first added first; or kept from running by an exception", Throw, "b!a"},
                    ScopeCase{"dropped actions run", Drop, "0"},
                    ScopeCase{"released actions run again", Release, "a0"},
                    ScopeCase{"old actions forgotten by assignment, or its source still runs", Move, "a|b"},
                    ScopeCase{"actions run while the list of them is walked", UseInAction, "b"},
                    ScopeCase{"scope used after its action destroyed it", DestroyInAction, "a|"},
                    ScopeCase{"list changed while it is cleared", UseWhileDropped, "|a"}));
} // namespace
} // namespace vek
