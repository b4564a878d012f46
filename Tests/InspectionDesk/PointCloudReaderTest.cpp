#include "InspectionDesk/DeskFixture.h"

namespace vek::Desk
{
namespace
{
struct TextCase
{
    const char* fault;
    const char* content;
    const char* expected; ///< As DeskFixture::ReadAsText gives it.
};
void PrintTo(const TextCase& row, std::ostream* out) { *out << row.fault; }

class PointCloudReaderText : public testing::TestWithParam<TextCase>, public DeskFixture
{};

TEST_P(PointCloudReaderText, GivesPointsOrTheLineThatIsWrong)
{
    EXPECT_EQ(ReadAsText(QStringLiteral("a.xyz"), GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PointCloudReaderText,
    testing::Values(
        TextCase{"last line without line feed lost", "1 2 3\n4 5 6", "1 2 3; 4 5 6; "},
        TextCase{"carriage return taken for a fourth value", "1 2 3\r\n\r\n4 5 6\r\n", "1 2 3; 4 5 6; "},
        TextCase{"comma, semicolon or tab no separator", "1,2,3\n4; 5 ;6\n7\t8\t 9\n",
                 "1 2 3; 4 5 6; 7 8 9; "},
        TextCase{"blanks around the numbers refused", "  1 2 3  \n", "1 2 3; "},
        TextCase{"comment read as a number", "# made by hand\n  # 9 9 9\n1 2 3 # first\n\n", "1 2 3; "},
        TextCase{"exponent not understood", "1e2 -2.5E-1 .5\n", "100 -0.25 0.5; "},
        TextCase{"leading plus refused", "+1 +2e+1 -3\n", "1 20 -3; "},
        TextCase{"byte order mark taken for text",
                 "\xEF\xBB\xBF"
                 "1 2 3\n",
                 "1 2 3; "},
        TextCase{"comments and empty lines not counted", "# a\n\n1 2 3\n\n4 5\n",
                 "a.xyz, line 5: expected three numbers"},
        TextCase{"fourth number dropped in silence", "1 2 3 4\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"decimal comma read as more numbers", "1,5;2,5;3,5\n",
                 "a.xyz, line 1: expected three numbers"},
        TextCase{"empty field skipped", "1,,2,3\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"numbers that touch taken apart", "1 2-3\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"unit behind a number dropped", "1 2 3mm\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"two signs accepted", "1 2 +-3\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"nan accepted", "1 2 3\n1 nan 3\n", "a.xyz, line 2: expected three numbers"},
        TextCase{"infinity accepted", "inf 2 3\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"overflow read as infinity", "1e999 2 3\n", "a.xyz, line 1: expected three numbers"},
        TextCase{"empty file is a cloud", "", "a.xyz: there are no points in it"},
        TextCase{"file of comments is a cloud", "# 1 2 3\n", "a.xyz: there are no points in it"}));

class PointCloudReaderTest : public testing::Test, public DeskFixture
{};

TEST_F(PointCloudReaderTest, ChoosesTheFormatByTheExtensionInWhateverCase)
{
    EXPECT_EQ(ReadAsText(QStringLiteral("A.TXT"), "1 2 3"), "1 2 3; ");
    EXPECT_EQ(ReadAsText(QStringLiteral("a.b.csv"), "1,2,3"), "1 2 3; ");
    EXPECT_EQ(ReadAsText(QStringLiteral("a.stl"), "1 2 3"), "a.stl: files of this kind cannot be read");
}

TEST_F(PointCloudReaderTest, PlaceholderInTheNameOfAFileStaysAsItIs)
{
    EXPECT_EQ(ReadAsText(QStringLiteral("%2.xyz"), "1 2"), "%2.xyz, line 1: expected three numbers");
}

TEST_F(PointCloudReaderTest, ProgressRisesAndMayEndTheWork)
{
    const QString file = Write(QStringLiteral("a.xyz"), QByteArray("1 2 3\n").repeated(100'000));
    std::vector<double> parts;
    EXPECT_EQ(GetReader().Read(file, [&parts](double part) { parts.push_back(part); }).size(), 100'000U);
    ASSERT_GE(parts.size(), 10U);
    EXPECT_TRUE(std::ranges::is_sorted(parts));
    EXPECT_GT(parts.front(), 0.0);
    EXPECT_LE(parts.back(), 1.0);

    const auto cancel = [](double) { throw Exception::E_Escape(); };
    EXPECT_THROW(static_cast<void>(GetReader().Read(file, cancel)), Exception::E_Escape);
}
} // namespace
} // namespace vek::Desk
