#include "VekAppCore/Text/Convert.h"
#include "Support/Pair.h"
#include <bit>
#include <cmath>
#include <random>

namespace vek::Convert
{
namespace
{
using Benchmark::Check;

/// Lengths as they are measured: a few digits before the point, all behind it, some rounded.
const std::vector<double>& GetNumbers()
{
    static const std::vector<double> numbers = [] {
        std::mt19937 random(1);
        std::vector<double> made;
        for (int i = 0; i < 1000; ++i)
        {
            const double number = std::uniform_real_distribution(-1000.0, 1000.0)(random);
            made.push_back(i % 2 == 0 ? number : std::round(number * 1000) / 1000);
        }
        return made;
    }();
    return numbers;
}

/// A round: a thousand numbers become their shortest texts.
template <typename ToText>
void WriteAll(benchmark::State& state, ToText toText)
{
    QString last;
    for ([[maybe_unused]] auto _ : state)
        for (const double number : GetNumbers())
        {
            last = toText(number);
            benchmark::DoNotOptimize(last);
        }
    Check(state, last.toDouble() == GetNumbers().back(), "The text is wrong");
}
void DoubleToText_Vek(benchmark::State& state)
{
    WriteAll(state, [](double number) { return ToString(number); });
}
void DoubleToText_Qt(benchmark::State& state)
{
    WriteAll(state,
             [](double number) { return QString::number(number, 'g', QLocale::FloatingPointShortest); });
}

/// A round: a thousand texts become numbers.
template <typename ToNumber>
void ReadAll(benchmark::State& state, ToNumber toNumber)
{
    std::vector<QString> texts;
    double sum = 0;
    for (const double number : GetNumbers())
    {
        texts.push_back(QString::number(number, 'g', QLocale::FloatingPointShortest));
        sum += number;
    }
    double read = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        read = 0;
        for (const QString& text : texts)
            read += toNumber(text);
    }
    Check(state, read == sum, "A number is wrong");
}
void TextToDouble_Vek(benchmark::State& state)
{
    ReadAll(state, [](const QString& text) {
        double number = 0;
        return FromString(text, number) ? number : NAN;
    });
}
void TextToDouble_Qt(benchmark::State& state)
{
    ReadAll(state, [](const QString& text) { return text.toDouble(); });
}

const Benchmark::Pairs pairs{
    {"Convert/DoubleToText", "QString::number", 1.5, &DoubleToText_Vek, &DoubleToText_Qt},
    {"Convert/TextToDouble", "QString::toDouble", 4.0, &TextToDouble_Vek, &TextToDouble_Qt}};
} // namespace
} // namespace vek::Convert
