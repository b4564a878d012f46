#include "VekAppCore/Text/StringUtility.h"
#include "Support/TestSupport.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace vek::StringUtility
{
namespace
{
struct CompareCase
{
    const char* fault;
    QString a;
    QString b;
    int result;
    Qt::CaseSensitivity cs = Qt::CaseSensitive;
};
void PrintTo(const CompareCase& row, std::ostream* out) { *out << row.fault; }
class NumberAware : public testing::TestWithParam<CompareCase>
{};

TEST_P(NumberAware, ComparesBothWays)
{
    EXPECT_EQ(NumberAwareCompare(GetParam().a, GetParam().b, GetParam().cs), GetParam().result);
    EXPECT_EQ(NumberAwareCompare(GetParam().b, GetParam().a, GetParam().cs), -GetParam().result);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, NumberAware,
    testing::Values(CompareCase{"numbers compared as text", "file2", "file10", -1},
                    CompareCase{"leading zero counts", "a01", "a1", 0},
                    CompareCase{"case counts", "abc", "ABC", 0, Qt::CaseInsensitive},
                    CompareCase{"case does not count", "ABC", "abc", -1},
                    CompareCase{"shorter one is not less", "a", "a1", -1},
                    CompareCase{"walk ends at equal numbers", "a01b", "a1c", -1},
                    CompareCase{"number against text as number", "1", "a", -1},
                    CompareCase{"2^64 - 1 overflows", "18446744073709551614", "18446744073709551615", -1},
                    CompareCase{"2^64 wraps or saturates", "18446744073709551617", "0", 0},
                    CompareCase{"other digits are numbers", QStringLiteral(u"\u0662"),
                                QStringLiteral(u"\u0661\u0660"), 1},
                    CompareCase{"empty text unequal to itself", "", "", 0}));

TEST(NumberAwareOrder, IsConsistent)
{
    std::mt19937 random(7); // NOLINT: the same names each time
    std::vector<QString> names(10'000);
    for (QString& name : names)
        for (auto size = random() % 8; size > 0; --size)
            name += QStringLiteral(u"001289abB._ \u00e4")[random() % 13];
    const auto isLess = [](const QString& a, const QString& b) {
        return NumberAwareCompare(a, b, Qt::CaseSensitive) < 0;
    };
    std::ranges::sort(names, isLess);
    for (int round = 0; round < 100'000; ++round)
    {
        const auto i = random() % names.size();
        const auto j = random() % names.size();
        const int result = NumberAwareCompare(names[i], names[j], Qt::CaseSensitive);
        ASSERT_EQ(result, -NumberAwareCompare(names[j], names[i], Qt::CaseSensitive));
        ASSERT_TRUE(result == 0 || (result < 0) == (i < j))
            << names[i].toStdString() << '|' << names[j].toStdString();
    }
}

TEST(StringUtility, LongListsAreShortened)
{
    const QStringList five{"a", "b", "c", "d", "e"};
    EXPECT_EQ(GetQStringFromList(five.first(4), ", ", 2), "a, b, c, d");
    EXPECT_EQ(GetQStringFromList(five, ", ", 2), "a, b, ..., d, e");
    EXPECT_EQ(GetQStringFromList(five, ", ", 1), "a, ..., e");
    EXPECT_EQ(GetQStringFromList(five, ", ", 0), "a, ...");
    EXPECT_EQ(GetQStringFromList({}, ", ", 0), "");
}

TEST(StringUtility, WordsAreCleaned)
{
    EXPECT_EQ(CleanString("a+b-c.d e"), "aplusbminuscdotd_e");
    EXPECT_EQ(ExtractRttiClassName("class vek::App::ServiceManager"), "ServiceManager");
    EXPECT_EQ(ExtractRttiClassName("class std::map<class a::B, int>"), "map<B,int>");
    EXPECT_TRUE(IsOnlyAsciiCharacters(""));
    EXPECT_TRUE(IsOnlyAsciiCharacters(" ~\x7f"));
    for (const char* text : {"\t", "a\n", "\xc3\xa9"})
        EXPECT_FALSE(IsOnlyAsciiCharacters(text)) << text;
}

TEST(StringUtility, SeparatorsFollowTheLocaleInForce)
{
    {
        const ScopeBase french = ChangeQSystemLocale(QLocale("fr_FR"));
        EXPECT_EQ(GetDecimalSeparator(true), ",");
        EXPECT_EQ(GetThousandSeparator(true), QStringLiteral(u"\u202f"));
        EXPECT_EQ(GetColumnSeparator(), u';');
        EXPECT_EQ(GetColumnSeparator(QLocale("en_US")), u',');
        {
            const ScopeBase english = ChangeQSystemLocale(QLocale("en_US"));
            EXPECT_EQ(GetColumnSeparator(), u',');
        }
        EXPECT_EQ(GetQSystemLocale(), QLocale("fr_FR"));
    }
    EXPECT_EQ(GetQSystemLocale(), QLocale::system());
    EXPECT_EQ(GetColumnSeparator(QLocale("fr_FR")), u';');
    EXPECT_EQ(GetDecimalSeparator(false), ".");
    EXPECT_EQ(GetThousandSeparator(false), "."); // and not a comma
    EXPECT_EQ(Colon(), ": ");
    EXPECT_EQ(SemiColon(), "; ");
}
} // namespace
} // namespace vek::StringUtility
