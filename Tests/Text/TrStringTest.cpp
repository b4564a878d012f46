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
        QString text = QStringLiteral("[%1:%2").arg(QString::fromUtf8(context), QString::fromUtf8(source));
        if (comment)
            text += u'/' + QString::fromUtf8(comment);
        if (n >= 0)
            text += u'#' + QString::number(n);
        return text + u']';
    }
};

TrString Tr(std::string_view source) { return TrString::translate("C", source); }

TrString Literal(const char* text) { return TrString::NoTranslate(QString::fromUtf8(text)); }

TrString MovedFrom()
{
    TrString from = Literal("gone");
    const TrString to = std::move(from);
    return from;
}

QString operator""_q(const char* text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<qsizetype>(size));
}

TrString WithReplacement(TrString string, const QString& before, const QString& after)
{
    string.Replace(before, after);
    return string;
}

TrString AddedToItself(TrString string) { return string += string; }

TrString ArgumentOfItself(TrString string) { return string.Arg(string); }

struct RenderCase
{
    const char* fault;
    TrString string;
    const char* translated;
    const char* key = translated;
};
} // namespace

TEST(TrString, IsRenderedInBothLanguages)
{
    const BracketTranslator translator;
    for (const RenderCase& row :
         {RenderCase{"default string not empty", TrString(), ""},
          RenderCase{"moved-from string dereferenced", MovedFrom(), ""},
          RenderCase{"literal translated", Literal("a%1"), "a%1"},
          RenderCase{"comment or count lost", TrString::translate("C", "x", "why", 3), "[C:x/why#3]", "x"},
          RenderCase{"source not UTF-8", TrString("C", "é"_q, "ü"_q), "[C:é/ü]", "é"},
          RenderCase{"arguments swapped", Tr("%2 %1").Arg("a"_q).Arg("b"_q), "[C:b a]", "b a"},
          RenderCase{"TrString argument not translated", Tr("%1").Arg(Tr("y")), "[C:[C:y]]", "y"},
          RenderCase{"argument does not reach the pieces", (Literal("a%1") + Tr("b%2")).Arg(1).Arg(2),
                     "a1[C:b2]", "a1b2"},
          RenderCase{"percent sign of an argument not filled by the next",
                     Literal("%1").Arg("<%1>"_q).Arg("x"_q), "<x>"},
          RenderCase{"value that completes a placeholder not filled", Literal("%%1").Arg(5).Arg(7), "7"},
          RenderCase{"value behind a one-digit placeholder", Literal("%4%1").Arg(5).Arg(7), "7"},
          RenderCase{"value behind an L", Literal("%L%1").Arg(5).Arg(7), "7"},
          RenderCase{"two digits read as one, or three", Literal("%12-%1%1-%123").Arg(8).Arg(9), "9-88-93"},
          RenderCase{"open placeholder or lone percent sign lost", Literal("%3 %1 5% %2 %").Arg(8),
                     "%3 8 5% %2 %"},
          RenderCase{"surplus argument shown", Literal("%1").Arg(1).Arg(2), "1"},
          RenderCase{"number with the decimals of printf", Literal("%1 %2 %3").Arg(12.5).Arg(-7).Arg(1e300),
                     "12.5 -7 1e+300"},
          RenderCase{"Bool as a number, or in another context",
                     Literal("%1").Arg(Bool(true)) + ToTrString(false), "[:Yes][:No]", "YesNo"},
          RenderCase{"replaced before the arguments, or regardless of case",
                     WithReplacement(Literal("%1").Arg("aAb"_q), "A"_q, "c"_q), "acb"},
          RenderCase{"literal added to itself", AddedToItself(Literal("a")), "aa"},
          RenderCase{"translatable string added to itself", AddedToItself(Tr("a")), "[C:a][C:a]", "aa"},
          RenderCase{"container added to itself", AddedToItself(Tr("a") + Literal("b")), "[C:a]b[C:a]b",
                     "abab"},
          RenderCase{"string as its own argument", ArgumentOfItself(Tr("<%1>")), "[C:<[C:<%1>]>]", "<<%1>>"},
          RenderCase{"arguments of an added container kept",
                     Literal("x%1") + (Tr("a") + Literal("%2")).Arg(1), "x%1[C:a]%2", "x%1a%2"},
          RenderCase{"sum with a moved-from string", Literal("a") + MovedFrom(), ""},
          RenderCase{"Join with the leading separator, or without the inner one",
                     Join({TrString(), Literal("a"), TrString(), Literal("b")}, Literal(", ")), "a, , b"}})
    {
        EXPECT_EQ(row.string.ToString(), QString::fromUtf8(row.translated)) << row.fault;
        EXPECT_EQ(row.string.GetKey(), QString::fromUtf8(row.key)) << row.fault;
        EXPECT_EQ(row.string.ToString(true), row.string.GetKey()) << row.fault;
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
    replaced.Replace("x"_q, "y"_q);
    EXPECT_EQ(original.GetKey(), "%1-y"_q);
    EXPECT_EQ(filled.GetKey(), "1-x"_q);
    EXPECT_EQ(sum.GetKey(), "%1-x!"_q);
    EXPECT_EQ((original + Tr("?")).GetKey(), "%1-y?"_q);
    EXPECT_EQ(original.GetKey(), "%1-y"_q);
}

TEST(TrString, EqualityLooksAtTheRecipe)
{
    const auto tr = [](const char* context, const char* source, const char* comment, int n) {
        return TrString::translate(context, source, comment, n);
    };
    const TrString base = tr("C", "a", "d", 1);
    for (const TrString& other :
         {tr("X", "a", "d", 1), tr("C", "b", "d", 1), tr("C", "a", "x", 1), tr("C", "a", "d", 2),
          tr("C", "a", "d", 1).Arg(1), base + Literal("b"), MovedFrom()})
        EXPECT_NE(base, other) << other.GetKey().toStdString();
    EXPECT_EQ(WithReplacement(tr("C", "a", "d", 1), "a"_q, "b"_q), base);
    EXPECT_NE(Literal("%1").Arg(Tr("x")), Literal("%1").Arg("x"_q));
    EXPECT_EQ(Literal("a") + Literal("b"), Literal("ab")); // one literal, unlike
    EXPECT_NE(Tr("a") + Literal("b"), Literal("ab"));
    const TrString movedFrom = MovedFrom();
    EXPECT_FALSE(movedFrom == movedFrom);
}

TEST(TrString, EmptinessIgnoresArgumentsAndContext)
{
    TrString movedFrom = MovedFrom();
    movedFrom.Arg(1);
    movedFrom.Replace("a"_q, "b"_q);
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
