#include "Support/TestSupport.h"
#include "VariantDump/SavedStream.h"
#include <QDataStream>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>

namespace vek::VariantDump
{
namespace
{
QString Golden(const QString& name) { return QStringLiteral(VEK_GOLDEN_FOLDER "/") + name; }

QByteArray ReadGolden(const QString& name)
{
    QFile file(Golden(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    return file.readAll();
}

struct Output
{
    int exitCode;
    QString out;
    QString errors;
};

Output Start(const QStringList& arguments, const QByteArray& input = {})
{
    QProcess program;
    program.start(VARIANT_DUMP, arguments);
    program.write(input);
    program.closeWriteChannel();
    EXPECT_TRUE(program.waitForFinished() && program.exitStatus() == QProcess::NormalExit);
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

TEST(SavedStream, FindsKindAndStreamVersion)
{
    for (const auto& [name, kind] : {std::pair(QString("values"), EKind::Map),
                                     {"nested", EKind::Variant},
                                     {"groups", EKind::Map},
                                     {"maps", EKind::Variant},
                                     {"variants", EKind::List}})
        for (const auto& [suffix, version] :
             {std::pair(".qt5.bin", int(QDataStream::Qt_5_15)), {".qt6.bin", QDataStream::Qt_6_0}})
        {
            SCOPED_TRACE((name + suffix).toStdString());
            const SavedStream saved = Read(ReadGolden(name + suffix), {});
            EXPECT_EQ(saved.problem, "");
            EXPECT_EQ(saved.kind, kind);
            EXPECT_EQ(saved.streamVersion,
                      name == "groups" ? int(QDataStream::Qt_6_0) : version); // the same in both
        }
}

TEST(VariantDump, ShowsTreesWithTypesSharingAndGroups)
{
    EXPECT_EQ(Start({Golden("nested.qt6.bin")}).out, "/ (vek::App::VekQVariantMap)\n"
                                                     "  a (vek::App::VekQVariantMap)\n"
                                                     "    x (int): 7\n"
                                                     "    {type} (QString): Inner\n"
                                                     "  b (vek::App::VekQVariantList)\n"
                                                     "    0 (int): 7\n"
                                                     "    1 (invalid)\n"
                                                     "    2 (vek::App::VekQVariantMap)\n"
                                                     "      x (int): 7\n"
                                                     "      {type} (QString): Inner\n"
                                                     "  b/c (int): 7\n");
    EXPECT_EQ(Start({Golden("shared.qt6.bin")}).out,
              "/ (vek::App::VekQVariantMap) shared\n  s (double) shared: -0\n");
    EXPECT_EQ(Start({Golden("groups.qt6.bin")}).out,
              "/ (vek::App::VekQVariantMap) in g/h\n  g/h/g/h/k (int): 1\n");
    const Output json = Start({"--json", Golden("shared.qt5.bin")});
    EXPECT_EQ(json.out, "{\"s\":\"-0\"}\n");
    EXPECT_EQ(json.errors, ": sharing is left out\ns: sharing is left out\ns: double is kept as text\n");
}

TEST(VariantDump, SaysWhereAndWhyAFileIsBroken)
{
    const QByteArray whole = ReadGolden("nested.qt6.bin");
    const auto fail = [](const QByteArray& bytes, const QStringList& more = {}) {
        const Output output = Start(QStringList("-") + more, bytes);
        EXPECT_EQ(output.exitCode, 2);
        return output.errors;
    };
    EXPECT_EQ(fail(whole.chopped(2)), "-: byte 376 of 376, behind or in /b/c: cut off\n");
    EXPECT_EQ(fail(whole + "xy"), "-: byte 378 of 380, behind or in /b/c: bytes are left over\n");
    QByteArray changed = whole;
    changed.replace("VekQVariantList", "VekQVariantLost");
    EXPECT_TRUE(fail(changed).endsWith("an unknown type, broken data or more than 512 levels\n"));
    EXPECT_EQ(fail(QByteArray("\0\0\0\2", 4), {"--kind", "variant"}),
              "-: byte 4 of 4, behind or in /: a variant of a version that is not 1, or none\n");
    EXPECT_TRUE(fail({}, {"--kind", "odd"}).contains("The kind is"));
    EXPECT_EQ(Start({"no such file"}).exitCode, 2);
    EXPECT_TRUE(Start({"-"}, whole.chopped(2)).out.contains("x (int): 7")); // what is there is shown
}

TEST(VariantDump, ComparesTwoFiles)
{
    const Output same = Start({Golden("nested.qt6.bin"), "--compare", Golden("nested.qt5.bin")});
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_EQ(same.out, "");
    const Output other = Start({Golden("shared.qt6.bin"), "--compare", Golden("maps.qt6.bin")});
    EXPECT_EQ(other.exitCode, 1);
    EXPECT_TRUE(other.out.startsWith("/ differs: (vek::App::VekQVariantMap) shared | (eastl::vector<"));
    EXPECT_TRUE(other.out.endsWith("/s only in the first: (double) shared: -0\n"));
}
} // namespace
} // namespace vek::VariantDump
