#include "VekAppCore/App/Exception.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include "VekBase/Multithread.h"
#include <algorithm>
#include <array>
#include <deque>
#include <gtest/gtest.h>
#include <random>

namespace vek::Threading
{
/// What is known of one task.
struct Account
{
    std::array<Connection, 4> connections;
    std::string ends;                                    ///< 'o' an outcome, 'f' finished.
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
                isOnMainThread &= Multithread::IsInMainThread();
                if (kind == 3)
                    throw Exception::E_Escape();
            };
            AsyncTask& owner = owners[random() % owners.size()];
            const bool isOwned = random() % 2 == 0;
            const TaskListener task = isOwned ? owner.Launch(executor, TrString(), work, then)
                                              : LaunchTask(executor, TrString(), work, then);
            const auto end = [&account, &isOnMainThread](auto&&...) {
                isOnMainThread &= Multithread::IsInMainThread();
                account.ends += 'o';
            };
            account.connections = {task.OnTaskSucceeded(end), task.OnTaskCanceled(end),
                                   task.OnTaskException(end),
                                   task.OnTaskFinished([&account] { account.ends += 'f'; })};
            TaskListener& listener = listeners[random() % listeners.size()];
            listener = task;
            if (i % 60 == 0)
                owner.Wait(); // takes a millisecond
            switch (random() % 6)
            {
            case 0: task.Cancel(); break;
            case 1: owner.Cancel(); break;
            case 2: owner.Terminate(); break;
            case 3: listener = TaskListener(); break;
            default: break;
            }
        }
        const auto hasFinished = [](const Account& account) { return account.ends.ends_with('f'); };
        executor.WaitUntil([&] { return std::ranges::all_of(accounts, hasFinished); },
                           EEventToTreat::AllEvents);
    }
    EXPECT_TRUE(isOnMainThread);
    for (const Account& account : accounts)
    {
        ASSERT_EQ(account.ends, "of");
        ASSERT_EQ(account.held.use_count(), 1);
    }
}
} // namespace vek::Threading
