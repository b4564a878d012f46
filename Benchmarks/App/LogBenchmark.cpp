#include "VekAppCore/App/Log.h"
#include "Support/Pair.h"
#include <cstdint>
#include <utility>

namespace vek::App
{
namespace
{
LogCallback MakeCounter(std::int64_t& characters)
{
    return [&characters](Log::Verbosity, const QString& message) { characters += message.size(); };
}

void CheckAllSeen(benchmark::State& state, std::int64_t characters)
{
    Benchmark::Check(state, characters == state.iterations() * 15, "The callback did not see every line");
}

const QString message = QStringLiteral("12 points found");

/// A round: one line, with a verbosity that is not echoed to standard output.
void Callback_Vek(benchmark::State& state)
{
    std::int64_t characters = 0;
    LogCallback before = SetLogCallback(MakeCounter(characters));
    for ([[maybe_unused]] auto _ : state)
        App::Log(Log::Verbosity::Info, message);
    SetLogCallback(std::move(before));
    CheckAllSeen(state, characters);
}

void Callback_Direct(benchmark::State& state)
{
    std::int64_t characters = 0;
    LogCallback callback = MakeCounter(characters);
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(callback);
        callback(Log::Verbosity::Info, message);
    }
    CheckAllSeen(state, characters);
}

const Benchmark::Pairs pairs{{"Log/Callback", "the callback itself", {}, Callback_Vek, Callback_Direct}};
} // namespace
} // namespace vek::App
