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
        QString firstFailure;
        for (const char kind : GetParam().tasks)
        {
            const QString name = QString::number(tasks.size());
            tasks.push_back(LaunchTask(executor, TrString(), [kind, name](IProgression& progression) {
                progression.SetProgression(50);
                if (kind == 'c')
                    throw Exception::E_Escape();
                if (kind == 'x')
                    throw Exception::AppException(TrString::NoTranslate(name));
            }));
            connections.push_back(tasks.back().OnTaskFinished([&endedCount] { ++endedCount; }));
            connections.push_back(tasks.back().OnTaskException([&firstFailure, name](const auto&) {
                if (firstFailure.isEmpty())
                    firstFailure = name;
            }));
        }
        if (GetParam().areEarly)
            seeded->RunAll();
        QStringList ends;
        int percent = 0; // of all tasks together
        const TaskListener all = WhenAll(executor, TrString::NoTranslate("All"), tasks);
        connections.push_back(all.OnTaskSucceeded([&] { ends += "succeeded"; }));
        connections.push_back(all.OnTaskCanceled([&] { ends += "canceled"; }));
        connections.push_back(all.OnTaskException([&](const Exception::AppException& exception) {
            ends += exception.GetMessage().ToString() == firstFailure ? "x" : "another";
        }));
        connections.push_back(all.OnTaskFinished([&] {
            ends += "finished";
            EXPECT_EQ(endedCount, tasks.size());
        }));
        connections.push_back(all.OnProgressionChanged([&](int value) {
            percent += GetParam().areEarly ? 100 : 50;
            EXPECT_EQ(value, percent / static_cast<int>(tasks.size()));
        }));
        seeded->RunAll();
        ASSERT_EQ(ends, GetParam().ends) << seed;
        ASSERT_EQ(percent, 100 * std::ssize(tasks));
    }
}
INSTANTIATE_TEST_SUITE_P(
    Rows, WhenAllTest,
    testing::Values(WhenAllCase{"never ends without tasks", "", false, {"succeeded", "finished"}},
                    WhenAllCase{"ends with the first", "ss", false, {"succeeded", "finished"}},
                    WhenAllCase{"waits for one that has ended", "ss", true, {"succeeded", "finished"}},
                    WhenAllCase{"cancellation lost", "scs", false, {"canceled", "finished"}},
                    WhenAllCase{"cancellation put before a failure", "csxc", false, {"x", "finished"}},
                    WhenAllCase{"later failure told", "xsx", false, {"x", "finished"}},
                    WhenAllCase{"failure that came earlier lost", "sx", true, {"x", "finished"}}));

TEST(WhenAll, CancelsAllAndKnowsAnEndThatIsBeingTold)
{
    const auto seeded = std::make_shared<SeededExecutor>(1);
    TaskExecutor executor(seeded);
    const auto report = [](IProgression& progression) { progression.SetProgression(1); };
    const std::vector tasks{LaunchTask(executor, TrString(), report),
                            LaunchTask(executor, TrString(), report), TaskListener()};
    int canceledCount = 0;
    std::vector<Connection> connections;
    TaskListener late;
    const TaskListener all = WhenAll(executor, TrString(), tasks);
    for (const TaskListener& task : {tasks[0], tasks[1], all})
        connections.push_back(task.OnTaskCanceled([&] {
            if (++canceledCount > 1)
                return;
            late = WhenAll(executor, TrString(), {task});
            connections.push_back(late.OnTaskCanceled([&] { ++canceledCount; }));
        }));
    all.Cancel();
    seeded->RunAll();
    EXPECT_EQ(canceledCount, 4);
}
} // namespace
} // namespace vek::Threading
