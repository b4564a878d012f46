#include "VekAppCore/Threading/WhenAll.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include <QStringList>
#include <gtest/gtest.h>

namespace vek::Threading
{
namespace
{
struct WhenAllCase
{
    const char* fault;
    std::string tasks; ///< A letter a task: s succeeds, c is cancelled, x throws.
    bool areEarly;     ///< They have ended before.
    QStringList ends;
};
void PrintTo(const WhenAllCase& row, std::ostream* out) { *out << row.fault; }
class WhenAllTest : public testing::TestWithParam<WhenAllCase>
{};

TEST_P(WhenAllTest, EndsOnceAndWhenTheLastHas)
{
    for (std::uint32_t seed = 0; seed < 50; ++seed) // the order in which the tasks end
    {
        const auto seeded = std::make_shared<SeededExecutor>(seed);
        TaskExecutor executor(seeded);
        std::size_t endedCount = 0;
        std::vector<TaskListener> tasks;
        std::vector<Connection> connections;
        for (const char kind : GetParam().tasks)
        {
            tasks.push_back(LaunchTask(executor, TrString(), [kind](IProgression& progression) {
                progression.SetProgression(50);
                if (kind == 'c')
                    throw Exception::E_Escape();
                if (kind == 'x')
                    throw Exception::AppException(TrString::NoTranslate("x"));
            }));
            connections.push_back(tasks.back().OnTaskFinished([&endedCount] { ++endedCount; }));
        }
        if (GetParam().areEarly)
            seeded->RunAll();
        QStringList ends;
        int percent = 0;
        const TaskListener all = WhenAll(executor, TrString::NoTranslate("All"), tasks);
        connections.push_back(all.OnTaskSucceeded([&] { ends += "succeeded"; }));
        connections.push_back(all.OnTaskCanceled([&] { ends += "canceled"; }));
        connections.push_back(all.OnTaskException(
            [&](const Exception::AppException& exception) { ends += exception.GetMessage().ToString(); }));
        connections.push_back(all.OnTaskFinished([&] {
            ends += "finished";
            EXPECT_EQ(endedCount, tasks.size());
        }));
        connections.push_back(all.OnProgressionChanged([&](int value) {
            EXPECT_GT(value, percent);
            percent = value;
        }));
        seeded->RunAll();
        ASSERT_EQ(ends, GetParam().ends) << seed;
        if (!GetParam().areEarly && !tasks.empty())
        {
            ASSERT_EQ(percent, 100);
        }
    }
}
INSTANTIATE_TEST_SUITE_P(
    Rows, WhenAllTest,
    testing::Values(WhenAllCase{"never ends without tasks", "", false, {"succeeded", "finished"}},
                    WhenAllCase{"ends with the first", "ss", false, {"succeeded", "finished"}},
                    WhenAllCase{"waits for one that has ended", "ss", true, {"succeeded", "finished"}},
                    WhenAllCase{"cancellation lost", "scs", false, {"canceled", "finished"}},
                    WhenAllCase{"cancellation put before a failure", "csxc", false, {"x", "finished"}},
                    WhenAllCase{"failure that came earlier lost", "sx", true, {"x", "finished"}}));

TEST(WhenAll, CancelsAllAndCountsADroppedTaskAsCanceled)
{
    const auto seeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor executor(seeded);
    const auto report = [](IProgression& progression) { progression.SetProgression(1); };
    AsyncTask owner;
    std::vector tasks{LaunchTask(executor, TrString(), report), LaunchTask(executor, TrString(), report)};
    bool isCanceled = false;
    {
        const TaskListener all = WhenAll(executor, TrString(), tasks);
        const Connection canceled = all.OnTaskCanceled([&] { isCanceled = true; });
        all.Cancel();
        all.Wait();
        EXPECT_TRUE(isCanceled);
        EXPECT_TRUE(tasks[0].IsTaskFinished() && tasks[1].IsTaskFinished());
    }
    isCanceled = false;
    const TaskListener all =
        WhenAll(executor, TrString(), {owner.Launch(executor, TrString(), report), TaskListener()});
    const Connection canceled = all.OnTaskCanceled([&] { isCanceled = true; });
    owner.Terminate();
    all.Wait();
    EXPECT_TRUE(isCanceled);
}
} // namespace
} // namespace vek::Threading
