#include "Support/Pair.h"
#include <QByteArray>
#include <QTemporaryDir>
#include <chrono>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vek::Desk
{
namespace
{
/// Program, arguments.
using Command = std::vector<QByteArray>;

struct Run
{
    bool isRight;
    double seconds;   ///< From its start until it has drawn its first frame and ended.
    double megabytes; ///< The most that was resident.
};

Run RunProgram(Command command)
{
    std::vector<char*> arguments;
    for (QByteArray& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const auto begin = std::chrono::steady_clock::now();
    pid_t process = 0;
    if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0)
        return {};
    int status = -1;
    rusage usage{};
    const bool hasEnded = wait4(process, &status, 0, &usage) == process && status == 0;
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    return {hasEnded, time.count(), static_cast<double>(usage.ru_maxrss) / 1024.0};
}

/// A home of their own keeps both from the settings of the user.
class Home
{
public:
    Home()
    {
        for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"})
            qputenv(variable, m_folder.path().toUtf8());
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

private:
    const QTemporaryDir m_folder;
};

/// A round is a start, warm.
/// @param read  what of it is told.
template <typename Read>
void Start(benchmark::State& state, const Command& command, Read read)
{
    const Home home;
    bool isRight = RunProgram(command).isRight;
    for ([[maybe_unused]] auto _ : state)
    {
        const Run run = RunProgram(command);
        isRight = isRight && run.isRight;
        state.SetIterationTime(read(run));
    }
    Benchmark::Check(state, isRight, "It has not shown a frame");
}

const Command& GetDesk()
{
    static const Command command{VEK_DESK, "--first-frame"};
    return command;
}

void Time_Vek(benchmark::State& state)
{
    Start(state, GetDesk(), [](const Run& run) { return run.seconds; });
}
void Time_Bound(benchmark::State& state)
{
    Start(state, {VEK_EMPTY_WINDOW}, [](const Run& run) { return run.seconds + 0.060; });
}
void Memory_Vek(benchmark::State& state)
{
    Start(state, GetDesk(), [](const Run& run) { return run.megabytes; });
}
void Memory_Bound(benchmark::State& state)
{
    Start(state, {VEK_EMPTY_WINDOW}, [](const Run& run) { return run.megabytes + 25; });
}

const Benchmark::Pairs pairs{
    {"Desk/Start", "empty window + 60 ms", 1.0, Time_Vek, Time_Bound, Benchmark::ETiming::Own},
    {"Desk/Memory", "empty window + 25 MB", 1.0, Memory_Vek, Memory_Bound, Benchmark::ETiming::Memory},
};
} // namespace
} // namespace vek::Desk
