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
std::string g_trace; // what ran, in order

auto Trace(char mark)
{
    return [mark] { g_trace += mark; };
}

void Fail() { throw std::runtime_error("refused"); }

struct ScopeCase
{
    const char* fault;
    std::function<void()> use;
    const char* trace; ///< '!' stands for HandleException.
};
void PrintTo(const ScopeCase& row, std::ostream* out) { *out << row.fault; }

class ScopeBaseUse : public testing::TestWithParam<ScopeCase>
{
protected:
    ScopeBaseUse() { g_trace.clear(); }
    ~ScopeBaseUse() override { Exception::SetExceptionHandler(m_before); }

private:
    Exception::ExceptionHandler m_before =
        Exception::SetExceptionHandler([](const std::source_location&) noexcept { g_trace += '!'; });
};

TEST_P(ScopeBaseUse, RunsItsActions)
{
    GetParam().use();
    EXPECT_EQ(g_trace, GetParam().trace);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, ScopeBaseUse,
    testing::Values(ScopeCase{"first added first",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope.Add(Trace('b'));
                              },
                              "ba"},
                    ScopeCase{"empty action kept and called", [] { ScopeBase(nullptr).Add(nullptr); }, ""},
                    ScopeCase{"dropped actions run",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope.Drop();
                                  g_trace += scope ? '1' : '0';
                              },
                              "0"},
                    ScopeCase{"actions run again after Release",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope.Release();
                                  g_trace += scope ? '1' : '0';
                              },
                              "a0"},
                    ScopeCase{"actions of a moved scope run at the end of its source",
                              [] {
                                  ScopeBase target;
                                  {
                                      ScopeBase source(Trace('a'));
                                      target = ScopeBase(std::move(source));
                                  }
                                  g_trace += '|';
                              },
                              "|a"},
                    ScopeCase{"actions forgotten by assignment",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope = ScopeBase(Trace('b'));
                                  g_trace += '|';
                              },
                              "a|b"},
                    ScopeCase{"actions run by assignment to itself",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  ScopeBase& same = scope;
                                  scope = std::move(same);
                                  g_trace += '|';
                              },
                              "|a"},
                    ScopeCase{"an exception keeps the other actions from running",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope.Add(Fail);
                                  scope.Add(Trace('b'));
                              },
                              "b!a"},
                    ScopeCase{"actions added by an action lost",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope.Add([&scope] { scope.Add(Trace('b')); });
                              },
                              "ba"},
                    ScopeCase{"Drop of an action does not reach the others",
                              [] {
                                  ScopeBase scope(Trace('a'));
                                  scope.Add([&scope] { scope.Drop(); });
                              },
                              ""},
                    ScopeCase{"a scope that its action has destroyed is used",
                              [] {
                                  auto scope = std::make_unique<ScopeBase>(Trace('a'));
                                  scope->Add([&scope] {
                                      scope->Add([&scope] { scope.reset(); }), scope->Release();
                                  });
                                  scope->Release();
                                  g_trace += '|';
                              },
                              "a|"},
                    ScopeCase{"what a dropped action holds cannot use the scope",
                              [] {
                                  ScopeBase scope;
                                  scope.Add([held = ScopeBase([&scope] { scope.Add(Trace('b')); })] {});
                                  scope.Drop();
                                  g_trace += '|';
                              },
                              "|b"}));
} // namespace
} // namespace vek
