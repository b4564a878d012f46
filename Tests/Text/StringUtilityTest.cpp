#include "VekAppCore/Text/StringUtility.h"
#include "Text/TextRows.h"
#include <algorithm>
#include <random>

namespace vek::StringUtility
{
namespace
{
TEST(NumberAwareCompare, ComparesBothWays)
{
    const auto compareBy = [](Qt::CaseSensitivity cs) {
        return [cs](const QString& text) {
            const QString a = text.section(' ', 0, 0);
            const QString b = text.section(' ', 1, 1);
            const int result = NumberAwareCompare(a, b, cs);
            EXPECT_EQ(NumberAwareCompare(b, a, cs), -result) << text.toStdString();
            return QString::number(result);
        };
    };
    TestSupport::ExpectRows(compareBy(Qt::CaseInsensitive), {"abc ABC -> 0"});
    TestSupport::ExpectRows(compareBy(Qt::CaseSensitive),
                            {"file2 file10 -> -1", "a01 a1 -> 0", "ABC abc -> -1", "a a1 -> -1", "1 a -> -1",
                             "  -> 0",
                             "a01b a1c -> -1", // goes on behind equal numbers
                             "18446744073709551614 18446744073709551615 -> -1",
                             "18446744073709551617 0 -> 0", // from 2^64
                             "\u0662 \u0661\u0660 -> 1"});  // other digits are no numbers
}

TEST(NumberAwareCompare, IsAConsistentOrder)
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
    EXPECT_EQ((QStringList{GetQStringFromList(five.first(4), ", ", 2), GetQStringFromList(five, ", ", 2),
                           GetQStringFromList(five, ", ", 1), GetQStringFromList(five, ", ", 0),
                           GetQStringFromList({}, ", ", 0)}),
              (QStringList{"a, b, c, d", "a, b, ..., d, e", "a, ..., e", "a, ...", ""}));
}

TEST(StringUtility, WordsAreCleaned)
{
    EXPECT_EQ(CleanString("a+b-c.d e"), "aplusbminuscdotd_e");
    EXPECT_EQ(ExtractRttiClassName("class vek::App::ServiceManager"), "ServiceManager");
    EXPECT_EQ(ExtractRttiClassName("class std::map<class a::B, int>"), "map<B,int>");
    for (const char* text : {"", " ~\x7f"})
        EXPECT_TRUE(IsOnlyAsciiCharacters(text)) << text;
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
        ScopeBase english = ChangeQSystemLocale(QLocale("en_US"));
        EXPECT_EQ(GetColumnSeparator(), u',');
        english.Release();
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
