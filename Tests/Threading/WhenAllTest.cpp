#include "VekAppCore/Threading/WhenAll.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekAppCore/Threading/SeededExecutor.h"
#include <QStringList>
#include <gtest/gtest.h>

namespace vek::Threading
{
TEST(WhenAll, EndsOnceAndWhenTheLastHas)
{
    // A letter a task: s succeeds, c is cancelled, x throws; then whether they have ended before.
    using Row = std::tuple<const char*, std::string, bool, QString>;
    for (const auto& [fault, kinds, areEarly, expected] :
         {Row{"never ends without tasks", "", false, "succeeded, finished"},
          Row{"ends with the first", "ss", false, "25, 50, 75, 100, succeeded, finished"},
          Row{"waits for one that has ended", "ss", true, "50, 100, succeeded, finished"},
          Row{"cancellation lost", "scs", false, "16, 33, 50, 66, 83, 100, canceled, finished"},
          Row{"cancellation put before a failure", "csxc", false,
              "12, 25, 37, 50, 62, 75, 87, 100, x, finished"},
          Row{"later failure told", "xsx", false, "16, 33, 50, 66, 83, 100, x, finished"},
          Row{"failure that came earlier lost", "sx", true, "50, 100, x, finished"}})
        for (std::uint32_t seed = 0; seed < 50; ++seed) // the order in which the tasks end
        {
            const auto seeded = std::make_shared<SeededExecutor>(seed);
            TaskExecutor executor(seeded);
            std::size_t endedCount = 0;
            std::vector<TaskListener> tasks;
            std::vector<Connection> connections;
            QString firstFailure;
            for (const char kind : kinds)
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
            if (areEarly)
                seeded->RunAll();
            QStringList heard;
            const TaskListener all = WhenAll(executor, TrString::NoTranslate("All"), tasks);
            connections.push_back(all.OnTaskSucceeded([&] { heard += "succeeded"; }));
            connections.push_back(all.OnTaskCanceled([&] { heard += "canceled"; }));
            connections.push_back(all.OnTaskException([&](const Exception::AppException& exception) {
                heard += exception.GetMessage().ToString() == firstFailure ? "x" : "another";
            }));
            connections.push_back(all.OnTaskFinished(
                [&] { heard += endedCount == tasks.size() ? "finished" : "finished early"; }));
            connections.push_back(
                all.OnProgressionChanged([&](int percent) { heard += QString::number(percent); }));
            seeded->RunAll();
            ASSERT_EQ(heard.join(", "), expected) << fault << ", seed " << seed;
        }
}

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
        connections.push_back(task.OnTaskCanceled([&, task] {
            if (++canceledCount > 1)
                return;
            late = WhenAll(executor, TrString(), {task});
            connections.push_back(late.OnTaskCanceled([&] { ++canceledCount; }));
        }));
    all.Cancel();
    seeded->RunAll();
    EXPECT_EQ(canceledCount, 4);
}
} // namespace vek::Threading
