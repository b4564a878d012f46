#include "VekAppCore/Text/TrString.h"
#include "Support/TestSupport.h"
#include <QCoreApplication>
#include <QTranslator>
#include <gmock/gmock.h>
#include <tuple>

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

struct RenderCase
{
    const char* fault;
    TrString string;
    const char* translated;
    const char* key;
};
void PrintTo(const RenderCase& row, std::ostream* out) { *out << row.fault; }
class TrStringRender : public testing::TestWithParam<RenderCase>
{};

TrString WithReplacement(TrString string, const char* before, const char* after)
{
    string.Replace(QString::fromUtf8(before), QString::fromUtf8(after));
    return string;
}

TrString AddedToItself(TrString string)
{
    string += string;
    return string;
}

TrString ArgumentOfItself(TrString string)
{
    string.Arg(string);
    return string;
}
} // namespace

TEST_P(TrStringRender, GivesTheTextInBothLanguages)
{
    const BracketTranslator translator;
    EXPECT_EQ(GetParam().string.ToString(), QString::fromUtf8(GetParam().translated));
    EXPECT_EQ(GetParam().string.GetKey(), QString::fromUtf8(GetParam().key));
    EXPECT_EQ(GetParam().string.ToString(true), QString::fromUtf8(GetParam().key));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TrStringRender,
    testing::Values(
        RenderCase{"default string not empty", TrString(), "", ""},
        RenderCase{"moved-from string dereferenced", MovedFrom(), "", ""},
        RenderCase{"literal translated", Literal("a%1"), "a%1", "a%1"},
        RenderCase{"comment or count lost", TrString::translate("C", "x", "why", 3), "[C:x/why#3]", "x"},
        RenderCase{"source not UTF-8", TrString("C", QStringLiteral("é"), QStringLiteral("ü")), "[C:é/ü]",
                   "é"},
        RenderCase{"arguments swapped", Tr("%2 %1").Arg(QStringLiteral("a")).Arg(QStringLiteral("b")),
                   "[C:b a]", "b a"},
        RenderCase{"TrString argument not translated", Tr("%1").Arg(Tr("y")), "[C:[C:y]]", "y"},
        RenderCase{"argument does not reach the pieces", (Literal("a%1") + Tr("b%2")).Arg(1).Arg(2),
                   "a1[C:b2]", "a1b2"},
        RenderCase{"percent sign of an argument not filled by the next",
                   Literal("%1").Arg(QStringLiteral("<%1>")).Arg(QStringLiteral("x")), "<x>", "<x>"},
        RenderCase{"value that completes a placeholder not filled by the next", Literal("%%1").Arg(5).Arg(7),
                   "7", "7"},
        RenderCase{"value behind a one-digit placeholder", Literal("%4%1").Arg(5).Arg(7), "7", "7"},
        RenderCase{"value behind an L", Literal("%L%1").Arg(5).Arg(7), "7", "7"},
        RenderCase{"two digits read as one", Literal("%12-%1%1").Arg(8).Arg(9), "9-88", "9-88"},
        RenderCase{"third digit read", Literal("%123").Arg(8), "83", "83"},
        RenderCase{"open placeholder lost", Literal("%3 %1 %2").Arg(8), "%3 8 %2", "%3 8 %2"},
        RenderCase{"lone percent signs lost", Literal("5% of %1 %").Arg(8), "5% of 8 %", "5% of 8 %"},
        RenderCase{"surplus argument shown", Literal("%1").Arg(1).Arg(2), "1", "1"},
        RenderCase{"number with the decimals of printf", Literal("%1 %2 %3").Arg(12.5).Arg(-7).Arg(1e300),
                   "12.5 -7 1e+300", "12.5 -7 1e+300"},
        RenderCase{"Bool as a number", Literal("%1").Arg(Bool(true)), "[:Yes]", "Yes"},
        RenderCase{"Bool translated in another context", ToTrString(false), "[:No]", "No"},
        RenderCase{"replaced before the arguments",
                   WithReplacement(Literal("%1").Arg(QStringLiteral("ab")), "b", "c"), "ac", "ac"},
        RenderCase{"replaced regardless of case", WithReplacement(Literal("aA"), "A", "x"), "ax", "ax"},
        RenderCase{"literal added to itself", AddedToItself(Literal("a")), "aa", "aa"},
        RenderCase{"translatable string added to itself", AddedToItself(Tr("a")), "[C:a][C:a]", "aa"},
        RenderCase{"container added to itself", AddedToItself(Tr("a") + Literal("b")), "[C:a]b[C:a]b",
                   "abab"},
        RenderCase{"string as its own argument", ArgumentOfItself(Tr("<%1>")), "[C:<[C:<%1>]>]", "<<%1>>"},
        RenderCase{"arguments of an added container kept", Literal("x%1") + (Tr("a") + Literal("%2")).Arg(1),
                   "x%1[C:a]%2", "x%1a%2"},
        RenderCase{"sum with a moved-from string", Literal("a") + MovedFrom(), "", ""},
        RenderCase{"Join with the leading separator",
                   Join({TrString(), Literal("a"), TrString(), Literal("b")}, Literal(", ")), "a, , b",
                   "a, , b"},
        RenderCase{"Join of nothing", Join({}, Literal(", ")), "", ""}));

TEST(TrString, ASumOfLiteralsIsOneLiteral)
{
    EXPECT_EQ(Literal("a") + Literal("b"), Literal("ab"));
    EXPECT_NE(Tr("a") + Literal("b"), Literal("ab"));
}

TEST(TrString, ACopySharesReplacementsButNotArguments)
{
    TrString original = Literal("%1-x");
    TrString copy = original;
    copy.Arg(1);
    EXPECT_EQ(original.ToString(), QStringLiteral("%1-x"));

    TrString second = original;
    second.Replace(QStringLiteral("x"), QStringLiteral("y"));
    EXPECT_EQ(original.ToString(), QStringLiteral("%1-y"));
    EXPECT_EQ(copy.ToString(), QStringLiteral("1-x"));
}

TEST(TrString, AddingLeavesTheLeftOperandAndCopiesAlone)
{
    const TrString left = Tr("a");
    TrString sum = left;
    sum += Literal("b");
    EXPECT_EQ(left, Tr("a"));
    EXPECT_EQ((left + Literal("c")).GetKey(), QStringLiteral("ac"));
    EXPECT_EQ(sum.GetKey(), QStringLiteral("ab"));
}

TEST(TrString, EqualityLooksAtTheRecipe)
{
    const auto tr = [](const char* context, const char* source, const char* comment, int n) {
        return TrString::translate(context, source, comment, n);
    };
    const TrString base = tr("C", "a", "d", 1);
    EXPECT_EQ(base, tr("C", "a", "d", 1));
    for (const TrString& other :
         {tr("X", "a", "d", 1), tr("C", "b", "d", 1), tr("C", "a", "x", 1), tr("C", "a", "d", 2),
          tr("C", "a", "d", 1).Arg(1), base + Literal("b"), MovedFrom()})
        EXPECT_NE(base, other) << other.GetKey().toStdString();
    EXPECT_NE(Literal("%1").Arg(Tr("x")), Literal("%1").Arg(QStringLiteral("x")));
    EXPECT_EQ(WithReplacement(tr("C", "a", "d", 1), "a", "b"), base);
    EXPECT_FALSE(MovedFrom() == MovedFrom());
}

TEST(TrString, EmptinessIgnoresArgumentsAndContext)
{
    EXPECT_TRUE(TrString().IsEmpty());
    EXPECT_TRUE(TrString().Arg(1).IsEmpty());
    EXPECT_TRUE(TrString::translate("C", "").IsEmpty());
    EXPECT_TRUE(MovedFrom().IsEmpty());
    EXPECT_FALSE((Tr("a") + Literal("")).IsEmpty());
}

TEST(TrString, AMovedFromStringStaysEmptyWhateverIsDoneToIt)
{
    TrString string = MovedFrom();
    string.Arg(1);
    string.Replace(QStringLiteral("a"), QStringLiteral("b"));
    string += Literal("a");
    EXPECT_TRUE(string.IsEmpty());
    EXPECT_EQ(string.ToString(), QString());
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
