#include "InspectionDesk/DeskFixture.h"
#include <cstring>

namespace vek::Desk
{
namespace
{
const QByteArray g_xyz = "property float x\nproperty float y\nproperty float z\n";

QByteArray MakeHeader(const QByteArray& elements, const QByteArray& format = "ascii")
{
    return "ply\nformat " + format + " 1.0\ncomment made by hand\n" + elements + "end_header\n";
}

struct PlyCase
{
    const char* fault;
    QByteArray content;
    const char* expected; ///< The points as DeskFixture::ReadAsText gives them, or a part of the message.
};
void PrintTo(const PlyCase& row, std::ostream* out) { *out << row.fault; }

class PlyPluginAscii : public testing::TestWithParam<PlyCase>, public DeskFixture
{};

TEST_P(PlyPluginAscii, GivesPointsOrAClearError)
{
    EXPECT_THAT(ReadAsText(QStringLiteral("a.ply"), GetParam().content),
                testing::HasSubstr(GetParam().expected));
}

const QByteArray g_oneVertex = MakeHeader("element vertex 1\n" + g_xyz);

INSTANTIATE_TEST_SUITE_P(
    Rows, PlyPluginAscii,
    testing::Values(
        PlyCase{"plain file", MakeHeader("element vertex 2\n" + g_xyz) + "1 2 3\n-4 5e1 .6",
                "1 2 3; -4 50 0.6; "},
        PlyCase{"line ends of another system", QByteArray(g_oneVertex + "1 2 3\n").replace("\n", "\r\n"),
                "1 2 3; "},
        PlyCase{
            "first three properties taken",
            MakeHeader("element vertex 1\nproperty uchar red\nproperty double z\nproperty list uchar int x\n"
                       "property double x\nproperty double y\n") +
                "255 3 2 8 9 1 2\n",
            "1 2 3; "},
        PlyCase{"other elements not skipped",
                MakeHeader("element camera 1\nproperty float x\nelement vertex 1\n" + g_xyz +
                           "element face 2\nproperty list uchar int vertex_indices\n") +
                    "7\n1 2 3\n3 0 0 0\n0\n\n",
                "1 2 3; "},
        PlyCase{"nan refused where nobody needs it",
                MakeHeader("element vertex 1\n" + g_xyz + "property float quality\n") + "1 2 3 nan\n",
                "1 2 3; "},
        PlyCase{"nan taken for a coordinate", g_oneVertex + "1 nan 3\n",
                "vertex 1 is cut off or has wrong numbers"},
        PlyCase{"short line filled up from the next",
                MakeHeader("element vertex 2\n" + g_xyz) + "1 2\n3 4 5 6\n", "vertex 1 is cut off"},
        PlyCase{"row too many dropped", g_oneVertex + "1 2 3\n4 5 6\n", "more data"},
        PlyCase{"row too few not seen",
                MakeHeader("element vertex 3\n" + g_xyz) + "1000000 2000000 3000000\n",
                "vertex 2 is cut off"},
        PlyCase{"memory for a count that is a lie",
                MakeHeader("element vertex 18446744073709551615\n" + g_xyz) + "1 2 3\n",
                "the file is too short"},
        PlyCase{"count that overflows when multiplied",
                MakeHeader("element vertex 1\n" + g_xyz + "element a 9223372036854775808\nproperty int b\n") +
                    "1 2 3\n",
                "the file is too short"},
        PlyCase{"negative count wraps around", MakeHeader("element vertex -1\n" + g_xyz),
                "element vertex -1"},
        PlyCase{"endless rows of nothing",
                MakeHeader("element a 99999999999999\nelement vertex 1\n" + g_xyz) + "1 2 3\n",
                "the file is too short"},
        PlyCase{"list longer than the file",
                MakeHeader("element vertex 1\nproperty list int int a\n" + g_xyz) + "2000000000 1 2 3\n",
                "vertex 1 is cut off"},
        PlyCase{"negative list",
                MakeHeader("element vertex 1\nproperty list int int a\n" + g_xyz) + "-1 1 2 3\n",
                "vertex 1 is cut off"},
        PlyCase{"list count that is no number",
                MakeHeader("element vertex 1\nproperty list float int a\n" + g_xyz) + "nan 1 2 3\n",
                "vertex 1 is cut off"},
        PlyCase{"coordinate missing",
                MakeHeader("element vertex 1\nproperty float x\nproperty float y\n") + "1 2\n",
                "needs x, y and z"},
        PlyCase{"coordinate twice", MakeHeader("element vertex 1\nproperty float x\n" + g_xyz) + "1 1 2 3\n",
                "needs x, y and z"},
        PlyCase{"unknown type", MakeHeader("element vertex 1\nproperty half x\n"), "property half x"},
        PlyCase{"property of nothing", MakeHeader("property float x\n"), "not understood"},
        PlyCase{"big-endian numbers taken for little-endian", MakeHeader("", "binary_big_endian"),
                "not understood"},
        PlyCase{"no vertices", MakeHeader("element face 0\n"), "no points"},
        PlyCase{"empty file", "", "not a PLY file"}, PlyCase{"other file", "solid plate\n", "not a PLY file"},
        PlyCase{"header cut off", "ply\nformat ascii 1.0\nelement vertex 1\n", "the header has no end"},
        PlyCase{"header without end read to the end", "ply\n" + QByteArray("comment a\n").repeated(100'000),
                "the header has no end"}));

template <typename T>
QByteArray ToBytes(std::initializer_list<T> values)
{
    QByteArray bytes;
    for (const T value : values)
        bytes.append(reinterpret_cast<const char*>(&value), sizeof(T));
    return bytes;
}

class PlyPluginTest : public testing::Test, public DeskFixture
{
protected:
    const QByteArray m_header = MakeHeader(
        "element face 2\nproperty list uchar short vertex_indices\nelement vertex 2\nproperty ushort id\n"
        "property double x\nproperty double y\nproperty float z\n",
        "binary_little_endian");
    const QByteArray m_content = m_header + "\x03" + ToBytes<qint16>({1, 2, 3}) + QByteArray("\0", 1) +
                                 ToBytes<quint16>({2570}) + ToBytes({1.5, 2.5}) + ToBytes({3.5F}) +
                                 ToBytes<quint16>({65535}) + ToBytes({-4.0, 0.1}) + ToBytes({6.0F});
};

TEST_F(PlyPluginTest, ReadsBinaryVerticesAmongOtherData)
{
    EXPECT_EQ(ReadAsText(QStringLiteral("a.ply"), m_content), "1.5 2.5 3.5; -4 0.1 6; ");
}

TEST_F(PlyPluginTest, RefusesBinaryDataCutOffAnywhere)
{
    for (qsizetype size = 0; size < m_content.size(); ++size)
        EXPECT_THAT(ReadAsText(QStringLiteral("a.ply"), m_content.left(size)), testing::StartsWith("a.ply: "))
            << size;
}

TEST_F(PlyPluginTest, RefusesABinaryByteTooMany)
{
    EXPECT_EQ(ReadAsText(QStringLiteral("a.ply"), m_content + '\n'),
              "a.ply: there are more data than its header says");
}

TEST_F(PlyPluginTest, RefusesABinaryListThatIsLongerThanTheFile)
{
    const QByteArray header =
        MakeHeader("element vertex 1\nproperty list uint double a\n" + g_xyz, "binary_little_endian");
    const QByteArray vertex = ToBytes({1.0F, 2.0F, 3.0F});
    EXPECT_THAT(ReadAsText(QStringLiteral("a.ply"), header + ToBytes<quint32>({0xFFFFFFFF}) + vertex),
                testing::HasSubstr("vertex 1 is cut off"));
    EXPECT_EQ(ReadAsText(QStringLiteral("a.ply"), header + ToBytes<quint32>({0}) + vertex), "1 2 3; ");
}

TEST_F(PlyPluginTest, RefusesABinaryCoordinateThatIsNotFinite)
{
    EXPECT_THAT(ReadAsText(QStringLiteral("a.ply"),
                           MakeHeader("element vertex 1\n" + g_xyz, "binary_little_endian") +
                               ToBytes({1.0F, std::numeric_limits<float>::infinity(), 3.0F})),
                testing::HasSubstr("wrong numbers"));
}
} // namespace
} // namespace vek::Desk
