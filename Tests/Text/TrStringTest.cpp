#include "VekAppCore/Text/TrString.h"
#include "Support/TestSupport.h"
#include <QCoreApplication>
#include <QTranslator>
#include <gtest/gtest.h>

namespace vek
{
namespace
{
/// A language in which every text stands in brackets behind its context; plural counts and comments show.
class BracketTranslator final : public QTranslator
{
public:
    BracketTranslator() { QCoreApplication::installTranslator(this); }
    ~BracketTranslator() override { QCoreApplication::removeTranslator(this); }
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char* source, const char* comment,
                                    int n) const override
    {
        if (*source == '\0')
            return {};
        const QString shownComment = comment ? QString("/") + comment : QString();
        const QString count = n >= 0 ? '#' + QString::number(n) : QString();
        return QString("[") + context + ':' + source + shownComment + count + ']';
    }
};

TrString Tr(std::string_view source) { return TrString::translate("C", source); }

TrString Literal(const QString& text) { return TrString::NoTranslate(text); }

TrString MovedFrom()
{
    TrString from = Literal("gone");
    const TrString to = std::move(from);
    return from;
}

TrString WithReplacement(TrString string, const QString& before, const QString& after)
{
    string.Replace(before, after);
    return string;
}

TrString AddedToItself(TrString string) { return string += string; }

TrString ArgumentOfItself(TrString string) { return string.Arg(string); }
} // namespace

TEST(TrString, IsRenderedInBothLanguages)
{
    const BracketTranslator translator;
    const struct
    {
        const char* fault;
        TrString string;
        QString translated;
        QString key = translated;
    } rows[] = {
        {"default string not empty", TrString(), ""},
        {"moved-from string dereferenced", MovedFrom(), ""},
        {"literal translated", Literal("a%1"), "a%1"},
        {"comment or count lost", TrString::translate("C", "x", "why", 3), "[C:x/why#3]", "x"},
        {"source not UTF-8", TrString("C", "é", "ü"), "[C:é/ü]", "é"},
        {"arguments swapped", Tr("%2 %1").Arg("a").Arg("b"), "[C:b a]", "b a"},
        {"TrString argument not translated", Tr("%1").Arg(Tr("y")), "[C:[C:y]]", "y"},
        {"argument does not reach the pieces", (Literal("a%1") + Tr("b%2")).Arg(1).Arg(2), "a1[C:b2]",
         "a1b2"},
        {"percent sign of an argument not filled by the next", Literal("%1").Arg("<%1>").Arg("x"), "<x>"},
        {"value that completes a placeholder not filled", Literal("%%1").Arg(5).Arg(7), "7"},
        {"value behind a one-digit placeholder", Literal("%4%1").Arg(5).Arg(7), "7"},
        {"value behind an L", Literal("%L%1").Arg(5).Arg(7), "7"},
        {"two digits read as one, or three", Literal("%12-%1%1-%123").Arg(8).Arg(9), "9-88-93"},
        {"open placeholder or lone percent sign lost", Literal("%3 %1 5% %2 %").Arg(8), "%3 8 5% %2 %"},
        {"surplus argument shown", Literal("%1").Arg(1).Arg(2), "1"},
        {"number with the decimals of printf", Literal("%1 %2 %3").Arg(12.5).Arg(-7).Arg(1e300),
         "12.5 -7 1e+300"},
        {"Bool as a number, or in another context", Literal("%1").Arg(Bool(true)) + ToTrString(false),
         "[:Yes][:No]", "YesNo"},
        {"replaced before the arguments, or regardless of case",
         WithReplacement(Literal("%1").Arg("aAb"), "A", "c"), "acb"},
        {"literal added to itself", AddedToItself(Literal("a")), "aa"},
        {"translatable string added to itself", AddedToItself(Tr("a")), "[C:a][C:a]", "aa"},
        {"container added to itself", AddedToItself(Tr("a") + Literal("b")), "[C:a]b[C:a]b", "abab"},
        {"string as its own argument", ArgumentOfItself(Tr("<%1>")), "[C:<[C:<%1>]>]", "<<%1>>"},
        {"arguments of an added container kept", Literal("x%1") + (Tr("a") + Literal("%2")).Arg(1),
         "x%1[C:a]%2", "x%1a%2"},
        {"sum with a moved-from string", Literal("a") + MovedFrom(), ""},
        {"Join with the leading separator, or without the inner one",
         Join({TrString(), Literal("a"), TrString(), Literal("b")}, Literal(", ")), "a, , b"}};
    for (const auto& [fault, string, translated, key] : rows)
    {
        EXPECT_EQ(string.ToString(), translated) << fault;
        EXPECT_EQ(string.GetKey(), key) << fault;
        EXPECT_EQ(string.ToString(true), key) << fault;
    }
}

TEST(TrString, ACopySharesReplacementsButNotArgumentsAndPieces)
{
    const TrString original = Literal("%1-x");
    TrString replaced = original;
    TrString filled = original;
    TrString sum = original;
    filled.Arg(1);
    sum += Literal("!");
    replaced.Replace("x", "y");
    EXPECT_EQ(original.GetKey(), "%1-y");
    EXPECT_EQ(filled.GetKey(), "1-x");
    EXPECT_EQ(sum.GetKey(), "%1-x!");
    EXPECT_EQ((original + Tr("?")).GetKey(), "%1-y?");
    EXPECT_EQ(original.GetKey(), "%1-y");
}

TEST(TrString, EqualityLooksAtTheRecipe)
{
    const TrString base = TrString::translate("C", "a", "d", 1);
    TrString argued = base;
    argued.Arg(1);
    for (const TrString& other :
         {TrString::translate("X", "a", "d", 1), TrString::translate("C", "b", "d", 1),
          TrString::translate("C", "a", "x", 1), TrString::translate("C", "a", "d", 2), argued,
          base + Literal("b"), MovedFrom()})
        EXPECT_NE(base, other) << other.GetKey().toStdString();
    EXPECT_EQ(WithReplacement(TrString::translate("C", "a", "d", 1), "a", "b"), base);
    EXPECT_NE(Literal("%1").Arg(Tr("x")), Literal("%1").Arg("x"));
    EXPECT_EQ(Literal("a") + Literal("b"), Literal("ab")); // one literal, unlike
    EXPECT_NE(Tr("a") + Literal("b"), Literal("ab"));
    const TrString movedFrom = MovedFrom();
    EXPECT_FALSE(movedFrom == movedFrom);
}

TEST(TrString, EmptinessIgnoresArgumentsAndContext)
{
    TrString movedFrom = MovedFrom();
    movedFrom.Arg(1);
    movedFrom.Replace("a", "b");
    movedFrom += Literal("a");
    for (const TrString& empty : {TrString(), TrString().Arg(1), TrString::translate("C", ""), movedFrom})
        EXPECT_TRUE(empty.IsEmpty());
    EXPECT_FALSE((Tr("a") + TrString()).IsEmpty());
}

TEST(TrString, AVeryLongChainStaysLinear)
{
    constexpr int pieces = 100'000; // copying the pieces on each step would take minutes
    TrString chain = Tr("a");
    for (int i = 0; i < pieces; ++i)
        chain += Tr("b");
    EXPECT_EQ(chain.GetKey(), QLatin1Char('a') + QString(pieces, u'b'));
}
} // namespace vek
