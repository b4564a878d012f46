#include "Support/Pair.h"
#include "VekAppCore/App/VekQApplication.h"
#include "VekBase/Multithread.h"
#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fmt/core.h>
#include <future>
#include <map>
#include <regex>
#include <span>
#include <string>
#include <thread>

namespace vek::Benchmark
{
namespace
{
constexpr std::size_t usualRepetitions = 15;
constexpr double secondsPerRepetition = 0.1;
constexpr int roundsThatSetTime = 20;

struct Result
{
    Pair pair;
    std::vector<double> ours{}; ///< Nanoseconds for one round, one value a repetition.
    std::vector<double> peer{};
    std::string fault{};
};

std::size_t GetRepetitions(const Pair& pair)
{
    return pair.timing == ETiming::OwnOnce ? 1 : usualRepetitions;
}

double GetMedian(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double GetRatio(const Result& result) { return GetMedian(result.peer) / GetMedian(result.ours); }

std::string Format(double nanoseconds, ETiming timing)
{
    if (timing == ETiming::Memory)
        return fmt::format("{:.2f} MB", nanoseconds / 1e9);
    if (nanoseconds < 1e3)
        return fmt::format("{:.2f} ns", nanoseconds);
    return nanoseconds < 1e6 ? fmt::format("{:.2f} us", nanoseconds / 1e3)
                             : fmt::format("{:.2f} ms", nanoseconds / 1e6);
}

void PrintRow(const std::string& subject, const std::string& peer, const std::string& oursTime,
              const std::string& peerTime, const std::string& ratio, const std::string& wanted)
{
    fmt::print("{:<22} {:<26} {:>10} {:>10} {:>7}  {}\n", subject, peer, oursTime, peerTime, ratio, wanted);
    std::fflush(stdout);
}

void PrintRow(const Result& result)
{
    const std::optional<double> wanted = result.pair.wanted;
    const double ratio = GetRatio(result);
    const ETiming timing = result.pair.timing;
    PrintRow(result.pair.subject, result.pair.peer, Format(GetMedian(result.ours), timing),
             Format(GetMedian(result.peer), timing), fmt::format("{:.2f}", ratio),
             wanted ? fmt::format("{:.2f} {}", *wanted, ratio >= *wanted ? "met" : "missed") : "-");
}

/// Registers the measurements of every chosen pair, ours and the peer's in turn, and prints each pair once it
/// is done.
class PairReporter : public benchmark::BenchmarkReporter
{
public:
    explicit PairReporter(const std::regex& filter)
    {
        for (const Pair& pair : Pairs::GetAll())
            if (std::regex_search(fmt::format("{} {}", pair.subject, pair.peer), filter))
                _Register(m_results.emplace_back(Result{pair}));
    }

    [[nodiscard]] const std::deque<Result>& GetResults() const { return m_results; }

    bool ReportContext(const Context&) override
    {
        PrintRow("case", "peer", "ours", "peer's", "ratio", "wanted");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
        {
            const auto [result, times] = m_targets.at(run.run_name.function_name);
            times->push_back(run.GetAdjustedRealTime());
            if (run.error_occurred)
                result->fault = run.error_message;
            const std::size_t repetitions = GetRepetitions(result->pair);
            if (result->ours.size() < repetitions || result->peer.size() < repetitions)
                continue;
            if (result->fault.empty())
                PrintRow(*result);
            else
                fmt::print(stderr, "{}: {}\n", run.run_name.function_name, result->fault);
        }
    }

private:
    struct Target
    {
        Result* result;
        std::vector<double>* times;
    };

    // Google Benchmark repeats one side at a time: a registration for each repetition interleaves them.
    void _Register(Result& result)
    {
        const Pair& pair = result.pair;
        for (std::size_t repetition = 0; repetition < GetRepetitions(pair); ++repetition)
        {
            _Register(fmt::format("{} against {}", pair.subject, pair.peer), pair.measureOurs,
                      {&result, &result.ours});
            _Register(fmt::format("{} of {}", pair.subject, pair.peer), pair.measurePeer,
                      {&result, &result.peer});
        }
    }
    void _Register(const std::string& name, void (*measure)(benchmark::State&), const Target& target)
    {
        m_targets.emplace(name, target);
        auto* const registered =
            benchmark::RegisterBenchmark(name.c_str(), measure)->Unit(benchmark::kNanosecond);
        const ETiming timing = target.result->pair.timing;
        if (timing != ETiming::Wall)
            registered->UseManualTime()->Iterations(timing == ETiming::Own ? roundsThatSetTime : 1);
        else
            registered->UseRealTime()->MinTime(secondsPerRepetition);
    }

    std::deque<Result> m_results; ///< A deque: the targets point into it.
    std::map<std::string, Target> m_targets;
};

bool WriteJson(const std::deque<Result>& results, const QString& fileName)
{
    QJsonArray array;
    for (const Result& result : results)
        if (result.fault.empty())
            array.append(QJsonObject{{"case", result.pair.subject},
                                     {"peer", result.pair.peer},
                                     {"ours_ns", GetMedian(result.ours)},
                                     {"peer_ns", GetMedian(result.peer)},
                                     {"ratio", GetRatio(result)},
                                     {"wanted", result.pair.wanted ? QJsonValue(*result.pair.wanted)
                                                                   : QJsonValue(QJsonValue::Null)}});
    QSaveFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(array).toJson()) >= 0 && file.commit();
}

/// @return the exit code.
int Run(const QCoreApplication& application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures the library beside the obvious alternatives."));
    parser.addHelpOption();
    const QCommandLineOption filter(QStringLiteral("filter"),
                                    QStringLiteral("Only cases and peers that match."),
                                    QStringLiteral("regular expression"));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Write the results there as well."),
                                  QStringLiteral("file"));
    parser.addOptions({filter, json});
    parser.process(application);

    PairReporter reporter(std::regex(parser.value(filter).toStdString()));
    if (reporter.GetResults().empty())
    {
        fmt::print(stderr, "No case matches.\n");
        return EXIT_FAILURE;
    }
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (parser.isSet(json) && !WriteJson(reporter.GetResults(), parser.value(json)))
    {
        fmt::print(stderr, "Cannot write {}\n", parser.value(json).toStdString());
        return EXIT_FAILURE;
    }
    const bool isAllRight = std::ranges::all_of(reporter.GetResults(), &std::string::empty, &Result::fault);
    return isAllRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
} // namespace
} // namespace vek::Benchmark

int main(int argc, char** argv)
{
    // A home of its own, so that the user's settings play no part.
    const QTemporaryDir home;
    for (const char* variable :
         {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, home.path().toUtf8());
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    // Shared pointers count without atomics until the process has a second thread, as every application has.
    // This one waits for the end of the promise, which is destroyed before it.
    std::jthread secondThread;
    std::promise<void> end;
    secondThread = std::jthread([future = end.get_future()] { future.wait(); });

    vek::Multithread::SetMainThread();
    vek::App::VekQApplication application(argc, argv);
    try
    {
        return vek::Benchmark::Run(application);
    }
    catch (const std::regex_error& error)
    {
        fmt::print(stderr, "--filter: {}\n", error.what());
        return EXIT_FAILURE;
    }
}
