#pragma once
#include <benchmark/benchmark.h>
#include <initializer_list>
#include <optional>
#include <vector>

namespace vek::Benchmark
{
enum class ETiming
{
    Wall,
    Own,     ///< A round tells its own time, which is only a part of it.
    OwnOnce, ///< The same for a round that takes so long that one is enough.
    Memory,  ///< A round tells how much memory, a second for a megabyte.
};

/// One case: ours beside a peer that does the same work.
struct Pair
{
    const char* subject;          ///< Area and work, as "Queue/1Producer"; a case may have several peers.
    const char* peer;             ///< What a user would take instead of ours.
    std::optional<double> wanted; ///< The least ratio of peer's time to ours; empty where it is only shown.
    void (*measureOurs)(benchmark::State&);
    void (*measurePeer)(benchmark::State&);
    ETiming timing = ETiming::Wall;
};

/// Adds pairs to those that the program measures. One object at namespace scope of each benchmark file.
class Pairs
{
public:
    Pairs(std::initializer_list<Pair> pairs);

    [[nodiscard]] static const std::vector<Pair>& GetAll();
};

/// To be called after the loop: a wrong result makes the measurement, and the program, fail.
/// @param fault  what is wrong otherwise.
void Check(benchmark::State& state, bool isRight, const char* fault);
} // namespace vek::Benchmark
