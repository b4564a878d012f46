#include "VekAppCore/App/Exception.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekBase/Multithread.h"
#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <random>

namespace vek::Threading
{
namespace
{
/// What is known of one task.
struct Account
{
    std::vector<Connection> connections;
    int outcomeCount = 0;
    int finishedCount = 0;
    std::shared_ptr<int> held = std::make_shared<int>(); ///< By its work and its continuation.
};

TEST(TaskStress, EveryTaskEndsOnceWhateverIsDoneToIt)
{
    constexpr int taskCount = 100'000;
    std::mt19937 random(20'261'121);
    std::deque<Account> accounts;
    bool isOnMainThread = true;
    {
        TaskExecutor executor;
        std::vector<AsyncTask> owners(16);
        std::vector<TaskListener> listeners(64);
        for (int i = 0; i < taskCount; ++i)
        {
            Account& account = accounts.emplace_back();
            const auto work = [kind = random() % 5, held = account.held](IProgression& progression) {
                progression.SetProgression(10);
                if (kind == 0)
                    throw Exception::AppException(TrString::NoTranslate("x"));
                if (kind == 1)
                    throw 1;
                if (kind == 2)
                    progression.SetProgression(20);
                return static_cast<int>(kind);
            };
            const auto then = [&isOnMainThread, held = account.held](int kind) {
                isOnMainThread = isOnMainThread && Multithread::IsInMainThread();
                if (kind == 3)
                    throw Exception::E_Escape();
            };
            AsyncTask& owner = owners[random() % owners.size()];
            const bool isOwned = random() % 2 == 0;
            const TaskListener task = isOwned ? owner.Launch(executor, TrString(), work, then)
                                              : LaunchTask(executor, TrString(), work, then);
            const auto end = [&account, &isOnMainThread] {
                isOnMainThread = isOnMainThread && Multithread::IsInMainThread();
                ++account.outcomeCount;
            };
            account.connections.push_back(task.OnTaskSucceeded(end));
            account.connections.push_back(task.OnTaskCanceled(end));
            account.connections.push_back(task.OnTaskException([end](const auto&) { end(); }));
            account.connections.push_back(task.OnTaskFinished([&account] {
                EXPECT_EQ(account.outcomeCount, 1);
                ++account.finishedCount;
            }));
            TaskListener& listener = listeners[random() % listeners.size()];
            listener = task;
            switch (random() % 6)
            {
            case 0: task.Cancel(); break;
            case 1: owner.Cancel(); break;
            case 2: owner.Terminate(); break;
            case 3:
                if (i % 10 == 0) // a wait takes a millisecond
                    owner.Wait();
                break;
            case 4: listener = TaskListener(); break;
            default: break;
            }
        }
        executor.WaitUntil(
            [&] {
                return std::ranges::all_of(accounts,
                                           [](const Account& account) { return account.finishedCount > 0; });
            },
            EEventToTreat::AllEvents);
    }
    EXPECT_TRUE(isOnMainThread);
    for (const Account& account : accounts)
    {
        ASSERT_EQ(account.outcomeCount, 1);
        ASSERT_EQ(account.finishedCount, 1);
        ASSERT_EQ(account.held.use_count(), 1);
    }
}
} // namespace
} // namespace vek::Threading
