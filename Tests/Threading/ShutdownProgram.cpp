// Ends in an order in which it should not: the application object dies first, while tasks run and wait. Run
// as a program of its own; what it would leak, the address sanitizer tells.
#include "VekAppCore/App/VekQApplication.h"
#include "VekAppCore/Threading/AsyncTask.h"
#include <cstdlib>
#include <memory>
#include <optional>

int main(int argc, char** argv)
{
    using namespace vek;
    const int taskCount = argc > 1 ? std::atoi(argv[1]) : 1;
    std::optional<App::VekQApplication> application(std::in_place, argc, argv);
    std::optional<Threading::TaskExecutor> executor(std::in_place);
    std::atomic<int> workCount = 0;
    const auto held = std::make_shared<int>();
    std::vector<Threading::TaskListener> listeners;
    for (int i = 0; i < taskCount; ++i)
        listeners.push_back(Threading::LaunchTask(
            *executor, TrString(),
            [&workCount](Threading::IProgression& progression) {
                progression.SetProgression(50);
                ++workCount;
            },
            [held] {}));
    application.reset();
    executor.reset();
    for (const Threading::TaskListener& listener : listeners)
        if (!listener.IsTaskFinished())
            return 1;
    listeners.clear();
    return workCount == taskCount && held.use_count() == 1 ? 0 : 2;
}
