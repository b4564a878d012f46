#include "Support/Pair.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <QHash>
#include <cmath>

namespace vek::Unit
{
namespace
{
using Benchmark::Check;

/// A round: a million lengths become millimetres.
template <typename ToMillimetres>
void ConvertAll(benchmark::State& state, ToMillimetres toMillimetres)
{
    std::vector<Length> lengths;
    lengths.reserve(1'000'000);
    for (int i = 0; i < 1'000'000; ++i)
        lengths.emplace_back(i, LengthUnit::Inch);
    std::vector<double> values;
    for ([[maybe_unused]] auto _ : state)
    {
        values = toMillimetres(lengths);
        benchmark::DoNotOptimize(values.data());
    }
    Check(state, values[10] == 10 * 0.0254 / 0.001, "A length is wrong");
}
void Convert_Vek(benchmark::State& state)
{
    ConvertAll(state, [](const std::vector<Length>& lengths) {
        return GetValuesIn(lengths, LengthUnit::Millimeter);
    });
}
void Convert_Loop(benchmark::State& state)
{
    ConvertAll(state, [](const std::vector<Length>& lengths) {
        std::vector<double> values;
        values.reserve(lengths.size());
        for (const Length& length : lengths)
            values.push_back(length.GetValue() * 0.0254 / 0.001);
        return values;
    });
}

/// A round: all symbols of lengths, a hundred times.
template <typename ToUnit>
void ParseAll(benchmark::State& state, ToUnit toUnit)
{
    std::vector<QString> symbols;
    for (int unit = 2; unit < 14; ++unit)
        symbols.push_back(Convert::ToString(LengthUnit(unit)));
    int sum = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        sum = 0;
        for (int i = 0; i < 1200; ++i)
            sum += static_cast<int>(toUnit(symbols[static_cast<std::size_t>(i % 12)]));
    }
    Check(state, sum == 100 * 90, "A unit is wrong");
}
void Parse_Vek(benchmark::State& state)
{
    ParseAll(state, [](const QString& text) {
        LengthUnit unit{};
        static_cast<void>(Convert::FromString(text, unit));
        return unit;
    });
}
void Parse_QHash(benchmark::State& state)
{
    QHash<QString, LengthUnit> units;
    for (int unit = 2; unit < 14; ++unit)
        units[Convert::ToString(LengthUnit(unit))] = LengthUnit(unit);
    ParseAll(state, [&units](const QString& text) { return units.value(text); });
}

const Benchmark::Pairs pairs{{"Unit/Convert", "multiplying and dividing", 0.9, &Convert_Vek, &Convert_Loop},
                             {"Unit/Parse", "QHash", 1.0, &Parse_Vek, &Parse_QHash}};
} // namespace
} // namespace vek::Unit
