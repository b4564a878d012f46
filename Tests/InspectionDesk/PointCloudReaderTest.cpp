#include "InspectionDesk/DeskFixture.h"

namespace vek::Desk
{
class PointCloudReaderTest : public DeskFixture
{
protected:
    /// The points as "x y z; " each, or what is said of the file.
    std::string Read(const char* name, const QByteArray& content) const
    {
        const QString path = Write(QLatin1String(name), content);
        std::ostringstream points;
        const std::string refusal = GetRefusal(path, [&] {
            for (const Eigen::Vector3d& point : m_reader.Read(path, m_progress))
                points << point.x() << ' ' << point.y() << ' ' << point.z() << "; ";
        });
        return points.str() + refusal;
    }

    std::string ReadPly(const QByteArray& elements, const QByteArray& data) const
    {
        return Read("a.ply", "ply\nformat ascii 1.0\ncomment a\n" + elements + "end_header\n" + data);
    }

    const IPointCloudReader& m_reader = App::Services().Require<IPointCloudReader>();
};

TEST_F(PointCloudReaderTest, Text)
{
    EXPECT_EQ(Read("a.txt", "\xEF\xBB\xBF+1 2 3\r\n\r\n4 5 6"), "1 2 3; 4 5 6; ") << "mark or line ends";
    EXPECT_EQ(Read("a.csv", " 1,2,3 \n4; 5 ;6;\n7\t8\t 9\n"), "1 2 3; 4 5 6; 7 8 9; ") << "separators";
    EXPECT_EQ(Read("a.xyz", "# made\n  # 9 9 9\n1 2 3 # first\n\n"), "1 2 3; ") << "comment read";
    EXPECT_EQ(Read("a.XYZ", "1e2 -2.5E-1 +.5\n"), "100 -0.25 0.5; ") << "forms of numbers";
    for (const char* line : {"4 5", "1 2 3 4", "1,5;2,5;3,5", "1,,2,3", "1,2,3,,", "1 2-3", "1 2 3mm",
                             "1 2 +-3", "1 nan 3", "inf 2 3", "1e999 2 3", "x,y,z"})
        EXPECT_EQ(Read("a.xyz", QByteArray("#\n\n1 2 3\n") + line), "line 4: expected three numbers") << line;
    EXPECT_EQ(Read("a.xyz", "# 1 2 3\n"), "there are no points in it");
    EXPECT_EQ(Read("a.stl", "1 2 3"), "files of this kind cannot be read");
}

const QByteArray g_xyz = "property float x\nproperty float y\nproperty float z\n";
const QByteArray g_two = "element vertex 2\n" + g_xyz;

TEST_F(PointCloudReaderTest, PlyAscii)
{
    EXPECT_EQ(ReadPly(g_two, "1 2 3\r\n-4 5e1 .6"), "1 2 3; -4 50 0.6; ") << "line ends";
    const QByteArray others = "element camera 1\nproperty float x\nelement vertex 1\nproperty uchar red\n"
                              "property double z\nproperty list uchar int x\nproperty double x\n"
                              "property float y\nelement face 2\nproperty list uchar int vertex_indices\n";
    EXPECT_EQ(ReadPly(others, "7\nnan 3 2 8 9 1 2\n3 0 0 0\n0\n\n"), "1 2 3; ") << "others not skipped";

    const char* const wrongRow = "vertex 2 is cut off or has wrong numbers";
    for (const char* row : {"1 nan 3", "4 5\n6 7", "4 5 6 7"}) // the second one must not take from the third
        EXPECT_EQ(ReadPly(g_two, QByteArray("1 2 3\n") + row), wrongRow) << row;
    EXPECT_EQ(ReadPly("element vertex 18446744073709551615\n" + g_xyz, "1 2 3\n"), wrongRow);
    const char* const wrongList = "list 1 is cut off or has wrong numbers";
    for (const QByteArray count : {"2000000000", "-1", "nan", "inf"})
        EXPECT_EQ(ReadPly("element list 1\nproperty list int int a\n", count + " 1 2 3\n"), wrongList);
    EXPECT_EQ(ReadPly("element list 99999999999999\n", ""), wrongList) << "endless rows of nothing";
    EXPECT_EQ(ReadPly(g_two, "1 2 3\n4 5 6\n7 8 9\n"), "there are more data than its header says");
    for (const QByteArray& properties : {QByteArray("property int x\n"), g_xyz + "property int x\n"})
        EXPECT_EQ(ReadPly("element vertex 1\n" + properties, ""), "a vertex needs x, y and z, each once");
    for (const QByteArray line : {"element vertex -1", "property float x", "format binary_big_endian 1.0",
                                  "element a 1\nproperty half x", "element a 1\nproperty list int half x"})
        EXPECT_THAT(ReadPly(line + '\n', ""), testing::HasSubstr("header line is not understood: "));
    EXPECT_EQ(Read("a.ply", "solid plate\n"), "this is not a PLY file");
    EXPECT_EQ(Read("a.ply", "ply\nformat ascii 1.0\n" + g_two), "the header has no end");
}

TEST_F(PointCloudReaderTest, PlyBinary)
{
    const QByteArray content =
        "ply\nformat binary_little_endian 1.0\nelement face 2\nproperty list uchar short a\nelement vertex 2\n"
        "property ushort id\nproperty double x\nproperty double y\nproperty float z\nend_header\n" +
        QByteArray::fromHex("03 0100 0200 0300 00 0a0a 000000000000f83f 0000000000000440 00006040"
                            "                     ffff 00000000000010c0 000000000000e03f 0000c040");
    EXPECT_EQ(Read("a.ply", content), "1.5 2.5 3.5; -4 0.5 6; ");
    EXPECT_EQ(Read("a.ply", content + '\n'), "there are more data than its header says");
    for (qsizetype size = 0; size < content.size(); ++size)
        EXPECT_THAT(Read("a.ply", content.left(size)), testing::Not(testing::EndsWith("; "))) << size;
}

TEST_F(PointCloudReaderTest, ProgressRisesAndMayEndTheWork)
{
    const QString file = Write("a.xyz", QByteArray("1 2 3\n").repeated(100'000));
    EXPECT_EQ(m_reader.Read(file, m_progress).size(), 100'000U);
    EXPECT_TRUE(std::ranges::is_sorted(m_progress.values) && m_progress.values.size() >= 10);
    EXPECT_TRUE(m_progress.values.front() > 0 && m_progress.values.back() <= percentOfReading);
    m_progress.isCanceled = true;
    EXPECT_THROW(static_cast<void>(m_reader.Read(file, m_progress)), Exception::E_Escape);
}
} // namespace vek::Desk
