#include "Support/Pair.h"

namespace vek::Benchmark
{
namespace
{
std::vector<Pair>& GetPairs()
{
    static std::vector<Pair> pairs; // filled by static initialisers of other files
    return pairs;
}
} // namespace

Pairs::Pairs(std::initializer_list<Pair> pairs) { GetPairs().insert(GetPairs().end(), pairs); }

const std::vector<Pair>& Pairs::GetAll() { return GetPairs(); }

void Check(benchmark::State& state, bool isRight, const char* fault)
{
    if (!isRight)
        state.SkipWithError(fault);
}
} // namespace vek::Benchmark
