#include "InspectionDesk/DeskFixture.h"

namespace vek::Desk
{
namespace
{
struct FileCase
{
    const char* fault;
    const char* extension;
    QByteArray content;
    const char* expected; ///< All the points as DeskFixture::ReadAsText gives them, or a part of the message.
};
void PrintTo(const FileCase& row, std::ostream* out) { *out << row.fault; }

class PointCloudReaderFile : public testing::TestWithParam<FileCase>, public DeskFixture
{};

TEST_P(PointCloudReaderFile, GivesPointsOrAClearError)
{
    const auto& [fault, extension, content, expected] = GetParam();
    const auto isMessage = testing::AllOf(testing::StartsWith("a."), testing::HasSubstr(expected));
    EXPECT_THAT(ReadAsText(QStringLiteral("a.") + QLatin1String(extension), content),
                testing::AnyOf(expected, isMessage));
}

INSTANTIATE_TEST_SUITE_P(
    Text, PointCloudReaderFile,
    testing::Values(FileCase{"last line without line feed lost", "xyz", "1 2 3\n4 5 6", "1 2 3; 4 5 6; "},
                    FileCase{"carriage return a value", "txt", "1 2 3\r\n\r\n4 5 6\r\n", "1 2 3; 4 5 6; "},
                    FileCase{"no separator", "csv", " 1,2,3 \n4; 5 ;6\n7\t8\t 9\n", "1 2 3; 4 5 6; 7 8 9; "},
                    FileCase{"comment read", "xyz", "# made\n  # 9 9 9\n1 2 3 # first\n\n", "1 2 3; "},
                    FileCase{"exponent or plus refused", "XYZ", "1e2 -2.5E-1 +.5\n", "100 -0.25 0.5; "},
                    FileCase{"byte order mark taken for text", "xyz", "\xEF\xBB\xBF+1 2 3\n", "1 2 3; "},
                    FileCase{"empty lines not counted", "xyz", "# a\n\n1 2 3\n\n4 5\n", ": line 5: expected"},
                    FileCase{"fourth number dropped", "xyz", "1 2 3 4\n", "line 1: "},
                    FileCase{"decimal comma read as more numbers", "xyz", "1,5;2,5;3,5\n", "line 1: "},
                    FileCase{"empty field skipped", "xyz", "1,,2,3\n", "line 1: "},
                    FileCase{"numbers that touch taken apart", "xyz", "1 2-3\n", "line 1: "},
                    FileCase{"unit behind a number dropped", "xyz", "1 2 3mm\n", "line 1: "},
                    FileCase{"two signs accepted", "xyz", "1 2 +-3\n", "line 1: "},
                    FileCase{"nan accepted", "xyz", "1 2 3\n1 nan 3\n", "line 2: "},
                    FileCase{"overflow read as infinity", "xyz", "1e999 2 3\n", "line 1: "},
                    FileCase{"file of comments is a cloud", "xyz", "# 1 2 3\n", "no points"},
                    FileCase{"unknown kind read as text", "stl", "1 2 3", "cannot be read"}));

/// A PLY file of these elements.
QByteArray Ply(const QByteArray& elements, const QByteArray& data, const QByteArray& format = "ascii")
{
    return "ply\nformat " + format + " 1.0\ncomment made by hand\n" + elements + "end_header\n" + data;
}

const QByteArray g_xyz = "property float x\nproperty float y\nproperty float z\n";
const QByteArray g_one = "element vertex 1\n" + g_xyz;
const QByteArray g_two = "element vertex 2\n" + g_xyz;
const QByteArray g_listFirst = "element vertex 1\nproperty list int int a\n" + g_xyz;
const QByteArray g_anyOrder = "element vertex 1\nproperty uchar red\nproperty double z\n"
                              "property list uchar int x\nproperty double x\nproperty double y\n";
const QByteArray g_others = "element camera 1\nproperty float x\n" + g_one +
                            "element face 2\nproperty list uchar int vertex_indices\n";

INSTANTIATE_TEST_SUITE_P(
    PlyAscii, PointCloudReaderFile,
    testing::Values(
        FileCase{"plain file", "ply", Ply(g_two, "1 2 3\n-4 5e1 .6"), "1 2 3; -4 50 0.6; "},
        FileCase{"line ends", "ply", Ply(g_one, "1 2 3\n").replace("\n", "\r\n"), "1 2 3; "},
        FileCase{"first three properties taken", "ply", Ply(g_anyOrder, "255 3 2 8 9 1 2\n"), "1 2 3; "},
        FileCase{"others not skipped", "ply", Ply(g_others, "7\n1 2 3\n3 0 0 0\n0\n\n"), "1 2 3; "},
        FileCase{"unused nan refused", "ply", Ply(g_one + "property float q\n", "1 2 3 nan\n"), "1 2 3; "},
        FileCase{"nan is a coordinate", "ply", Ply(g_one, "1 nan 3\n"), "vertex 1 is cut off or has wrong"},
        FileCase{"filled up from the next line", "ply", Ply(g_two, "1 2\n3 4 5 6\n"), "vertex 1 is cut off"},
        FileCase{"row too many dropped", "ply", Ply(g_one, "1 2 3\n4 5 6\n"), "more data"},
        FileCase{"memory or time for a count that is a lie", "ply",
                 Ply("element vertex 18446744073709551615\n" + g_xyz, "1 2 3\n"), "vertex 2 is cut off"},
        FileCase{"negative count wraps", "ply", Ply("element vertex -1\n" + g_xyz, ""), "element vertex -1"},
        FileCase{"endless rows of nothing", "ply", Ply("element a 99999999999999\n", "1\n"),
                 "a 1 is cut off"},
        FileCase{"list longer than the file", "ply", Ply(g_listFirst, "2000000000 1 2 3\n"), "vertex 1 is"},
        FileCase{"negative list", "ply", Ply(g_listFirst, "-1 1 2 3\n"), "vertex 1 is cut off"},
        FileCase{"list count is nan", "ply", Ply(g_listFirst, "nan 1 2 3\n"), "vertex 1 is cut off"},
        FileCase{"coordinate missing", "ply", Ply("element vertex 1\nproperty int x\n", "1\n"), "needs x, y"},
        FileCase{"coordinate twice", "ply", Ply(g_one + "property int x\n", "1 2 3 4\n"), "needs x, y and z"},
        FileCase{"unknown type", "ply", Ply(g_one + "property half a\n", "1 2 3 4\n"), "property half a"},
        FileCase{"property of nothing", "ply", Ply("property float x\n", ""), "not understood"},
        FileCase{"big-endian taken for little", "ply", Ply("", "", "binary_big_endian"), "not understood"},
        FileCase{"other file", "ply", "solid plate\n", "not a PLY file"},
        FileCase{"header cut off", "ply", "ply\nformat ascii 1.0\n" + g_one, "the header has no end"}));

template <typename T>
QByteArray ToBytes(std::initializer_list<T> values)
{
    QByteArray bytes;
    for (const T value : values)
        bytes.append(reinterpret_cast<const char*>(&value), sizeof(T));
    return bytes;
}

const QByteArray g_binary =
    Ply("element face 2\nproperty list uchar short vertex_indices\nelement vertex 2\nproperty ushort id\n"
        "property double x\nproperty double y\nproperty float z\n",
        "\x03" + ToBytes<qint16>({1, 2, 3}) + QByteArray("\0", 1) + ToBytes<quint16>({2570}) +
            ToBytes({1.5, 2.5}) + ToBytes({3.5F}) + ToBytes<quint16>({65535}) + ToBytes({-4.0, 0.1}) +
            ToBytes({6.0F}),
        "binary_little_endian");

INSTANTIATE_TEST_SUITE_P(
    PlyBinary, PointCloudReaderFile,
    testing::Values(FileCase{"other data not skipped", "ply", g_binary, "1.5 2.5 3.5; -4 0.1 6; "},
                    FileCase{"byte too many dropped", "ply", g_binary + '\n', "more data"},
                    FileCase{"list longer than the file", "ply",
                             Ply("element vertex 1\nproperty list uint double a\n" + g_xyz,
                                 ToBytes({0xFFFFFFFFU}) + ToBytes({1.0F, 2.0F, 3.0F}),
                                 "binary_little_endian"),
                             "vertex 1 is cut off"},
                    FileCase{"infinite coordinate", "ply",
                             Ply(g_one, ToBytes({1.0F, std::numeric_limits<float>::infinity(), 3.0F}),
                                 "binary_little_endian"),
                             "wrong numbers"}));

class PointCloudReaderTest : public testing::Test, public DeskFixture
{};

TEST_F(PointCloudReaderTest, RefusesBinaryDataCutOffAnywhere)
{
    for (qsizetype size = 0; size < g_binary.size(); ++size)
        EXPECT_THAT(ReadAsText(QStringLiteral("a.ply"), g_binary.left(size)), testing::StartsWith("a.ply: "))
            << size;
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
