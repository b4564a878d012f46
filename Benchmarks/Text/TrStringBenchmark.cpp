#include "VekAppCore/Text/TrString.h"
#include "Support/Pair.h"
#include <QCoreApplication>
#include <QTranslator>
#include <cstring>

namespace vek
{
namespace
{
using Benchmark::Check;

/// Knows one text, which it finds at once: what is left is the work around the look-up.
class OneTextTranslator final : public QTranslator
{
public:
    OneTextTranslator() { QCoreApplication::installTranslator(this); }
    ~OneTextTranslator() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* source, const char*, int) const override
    {
        return std::strcmp(context, "Report") == 0 && std::strcmp(source, "%1 of %2 points") == 0 ? m_text
                                                                                                  : QString();
    }

private:
    const QString m_text = QStringLiteral("%1 points sur %2");
};

/// A round: a text with two arguments is shown.
template <typename Render>
void MeasureRender(benchmark::State& state, Render render)
{
    const OneTextTranslator translator;
    QString shown;
    for ([[maybe_unused]] auto _ : state)
    {
        shown = render();
        benchmark::DoNotOptimize(shown);
    }
    Check(state, shown == QStringLiteral("12 points sur 345"), "The text is wrong");
}

const QString found = QStringLiteral("12");
const QString total = QStringLiteral("345");

void Render2Args_Vek(benchmark::State& state)
{
    const TrString text = TrString::translate("Report", "%1 of %2 points").Arg(found).Arg(total);
    MeasureRender(state, [&text] { return text.ToString(); });
}

void Render2Args_Qt(benchmark::State& state)
{
    MeasureRender(
        state, [] { return QCoreApplication::translate("Report", "%1 of %2 points").arg(found).arg(total); });
}

TrString MakeText(const TrString*) { return TrString::translate("Report", "points"); }

QString MakeText(const QString*)
{
    return QString::fromLatin1("points"); // not a literal: those are never counted
}

/// A round: a handle is copied and dropped.
template <typename Text>
void Copy(benchmark::State& state)
{
    const Text text = MakeText(static_cast<const Text*>(nullptr));
    for ([[maybe_unused]] auto _ : state)
    {
        Text copy(text);
        benchmark::DoNotOptimize(copy);
    }
    Check(state, Text(text) == MakeText(static_cast<const Text*>(nullptr)), "The text has changed");
}

template <typename Text>
[[gnu::noinline]] void Take(Text text)
{
    benchmark::DoNotOptimize(text);
}

/// A round: a handle is passed by value and dropped.
template <typename Text>
void PassAndDrop(benchmark::State& state)
{
    const Text text = MakeText(static_cast<const Text*>(nullptr));
    for ([[maybe_unused]] auto _ : state)
        Take<Text>(text);
    Check(state, Text(text) == MakeText(static_cast<const Text*>(nullptr)), "The text has changed");
}

const Benchmark::Pairs pairs{
    {"TrString/Render2Args", "translate and arg", 0.9, Render2Args_Vek, Render2Args_Qt},
    {"TrString/Copy", "QString", 0.8, Copy<TrString>, Copy<QString>},
    {"TrString/PassAndDrop", "QString", 0.8, PassAndDrop<TrString>, PassAndDrop<QString>}};
} // namespace
} // namespace vek
