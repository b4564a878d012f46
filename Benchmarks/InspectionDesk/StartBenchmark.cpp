#include "Support/Pair.h"
#include <QByteArray>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <fmt/format.h>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace vek::Desk
{
namespace
{
/// Program, arguments.
using Command = std::vector<QByteArray>;

/// Offscreen, in English, and with a home of its own: the settings of the user are others' affair.
class Environment
{
public:
    Environment()
    {
        const QByteArray home = m_home.path().toUtf8();
        for (const char* folder : {"HOME=", "XDG_CONFIG_HOME=", "XDG_DATA_HOME=", "XDG_RUNTIME_DIR="})
            m_variables.push_back(folder + home);
        for (QByteArray& variable : m_variables)
            m_pointers.push_back(variable.data());
        m_pointers.push_back(nullptr);
    }

    [[nodiscard]] char** Get() { return m_pointers.data(); }

private:
    const QTemporaryDir m_home;
    std::vector<QByteArray> m_variables{"QT_QPA_PLATFORM=offscreen", "LC_ALL=C.UTF-8"};
    std::vector<char*> m_pointers;
};

/// Starts a program, which ends once it has drawn its first frame.
/// @param watch  called with the process, and again for as long as it runs.
/// @return whether it has ended well.
template <typename Watch>
bool RunProgram(Command command, Watch watch)
{
    std::vector<char*> arguments;
    for (QByteArray& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    int status = -1;
    Environment environment;
    if (posix_spawn(&process, arguments[0], nullptr, nullptr, arguments.data(), environment.Get()) != 0)
        return false;
    while (waitpid(process, &status, watch(process) ? WNOHANG : 0) == 0)
    {}
    return status == 0;
}

/// Seconds; negative when it has failed.
double MeasureTime(const Command& command)
{
    const auto begin = std::chrono::steady_clock::now();
    const bool isRight = RunProgram(command, [](pid_t) { return false; });
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    return isRight ? time.count() : -1;
}

/// The most megabytes that were resident; negative when it has failed.
double MeasureMemory(const Command& command)
{
    // What the system tells afterwards counts this process as well, from before the program was loaded.
    double most = -1;
    const bool isRight = RunProgram(command, [&most](pid_t process) {
        std::ifstream file(fmt::format("/proc/{}/statm", process));
        double pages = 0;
        if (file >> pages >> pages)
            most = std::max(most, pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6);
        return true;
    });
    return isRight ? most : -1;
}

/// A round is a start, warm.
/// @param allowance  added to what is measured.
void Start(benchmark::State& state, const Command& command, double (*measure)(const Command&),
           double allowance)
{
    bool isRight = measure(command) >= 0;
    for ([[maybe_unused]] auto _ : state)
    {
        const double value = measure(command);
        isRight = isRight && value >= 0;
        state.SetIterationTime(value + allowance);
    }
    Benchmark::Check(state, isRight, "It has not shown a frame");
}

const Command desk{VEK_DESK, "--first-frame"};
const Command emptyWindow{VEK_EMPTY_WINDOW};

void Time_Vek(benchmark::State& state) { Start(state, desk, MeasureTime, 0); }
void Time_Bound(benchmark::State& state) { Start(state, emptyWindow, MeasureTime, 0.060); }
void Memory_Vek(benchmark::State& state) { Start(state, desk, MeasureMemory, 0); }
void Memory_Bound(benchmark::State& state) { Start(state, emptyWindow, MeasureMemory, 25); }

const Benchmark::Pairs pairs{
    {"Desk/Start", "empty window + 60 ms", 1.0, Time_Vek, Time_Bound, Benchmark::ETiming::Own},
    {"Desk/Memory", "empty window + 25 MB", 1.0, Memory_Vek, Memory_Bound, Benchmark::ETiming::Memory},
};
} // namespace
} // namespace vek::Desk
