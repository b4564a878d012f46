#include "Support/Pair.h"
#include "VekAppCore/Text/StringUtility.h"
#include <QCollator>
#include <algorithm>
#include <random>
#include <vector>

namespace vek::StringUtility
{
namespace
{
using Benchmark::Check;

/// "Plate 7, point 5" and the like, in no order.
std::vector<QString> MakeNames()
{
    std::vector<QString> names;
    for (int i = 0; i < 10'000; ++i)
        names.push_back(QStringLiteral("Plate %1, point %2").arg(i / 100).arg(i % 100));
    std::ranges::shuffle(names, std::mt19937(1)); // NOLINT: the same order each time
    return names;
}

QCollator MakeCollator()
{
    QCollator collator(QLocale("en_US")); // the C locale ignores numeric mode
    collator.setNumericMode(true);
    return collator;
}

/// A round: 10,000 names are sorted.
template <typename Compare>
void Sort(benchmark::State& state, Compare compare)
{
    const std::vector<QString> names = MakeNames();
    std::vector<QString> sorted;
    for ([[maybe_unused]] auto _ : state)
    {
        sorted = names;
        std::ranges::sort(sorted, [&](const QString& a, const QString& b) { return compare(a, b) < 0; });
    }
    Check(state, sorted[1234] == "Plate 12, point 34", "The order is wrong");
}
void Sort_Vek(benchmark::State& state)
{
    Sort(state,
         [](const QString& a, const QString& b) { return NumberAwareCompare(a, b, Qt::CaseSensitive); });
}
void Sort_QCollator(benchmark::State& state)
{
    const QCollator collator = MakeCollator();
    Sort(state, [&](const QString& a, const QString& b) { return collator.compare(a, b); });
}

/// A round: each of 10,000 names is compared with the next.
template <typename Compare>
void CompareAll(benchmark::State& state, Compare compare)
{
    const std::vector<QString> names = MakeNames();
    int smaller = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        smaller = 0;
        for (std::size_t i = 1; i < names.size(); ++i)
            smaller += compare(names[i - 1], names[i]) < 0 ? 1 : 0;
    }
    Check(state, smaller > 4000 && smaller < 6000, "The order is wrong");
}
void Compare_Vek(benchmark::State& state)
{
    CompareAll(state, [](const QString& a, const QString& b) {
        return NumberAwareCompare(a, b, Qt::CaseSensitive);
    });
}
void Compare_QCollator(benchmark::State& state)
{
    const QCollator collator = MakeCollator();
    CompareAll(state, [&](const QString& a, const QString& b) { return collator.compare(a, b); });
}

const Benchmark::Pairs pairs{{"Text/NaturalSort", "QCollator", 6.0, &Sort_Vek, &Sort_QCollator},
                             {"Text/NaturalCompare", "QCollator", 8.0, &Compare_Vek, &Compare_QCollator}};
} // namespace
} // namespace vek::StringUtility
