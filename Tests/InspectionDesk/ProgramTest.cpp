#include "InspectionDesk/DeskFixture.h"
#include "VekAppCore/App/Folders.h"
#include <QImage>
#include <QProcess>

namespace vek::Desk
{
namespace
{
struct Outcome
{
    int exitCode;
    QString output;
    QString errors;
};

/// The program itself, in an environment without a display.
class ProgramTest : public testing::Test
{
protected:
    Outcome Run(const QStringList& arguments) const
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* variable : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            environment.remove(QLatin1String(variable));
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(m_folder.GetPath());
        program.start(App::GetAppDir() + QStringLiteral("/InspectionDesk"), arguments);
        if (!program.waitForFinished(60'000) || program.exitStatus() != QProcess::NormalExit)
            return {-1, {}, program.errorString()};
        return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
                QString::fromUtf8(program.readAllStandardError())};
    }

    void Write(const QString& name, const QByteArray& content) const
    {
        QFile file(m_folder.GetPath() + u'/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    const ScopedTempFolder m_folder;
};

TEST_F(ProgramTest, WritesReportAndScreenshotOfTheSample)
{
    const Outcome outcome = Run({QStringLiteral(DESK_SAMPLE), QStringLiteral("--report"),
                                 QStringLiteral("r.txt"), QStringLiteral("--screenshot=s.png")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, QString());
    EXPECT_TRUE(outcome.output.contains(QStringLiteral("Points              23,712\n")))
        << outcome.output.toStdString();
    QFile report(m_folder.GetPath() + QStringLiteral("/r.txt"));
    ASSERT_TRUE(report.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(report.readAll()), outcome.output);

    const QImage image(m_folder.GetPath() + QStringLiteral("/s.png"));
    ASSERT_EQ(image.size(), QSize(1280, 800));
    // The middle of the plate lies below the plane, right of the step above it: bluish, then reddish.
    const QColor left = image.pixelColor(560, 150);
    const QColor right = image.pixelColor(660, 300);
    EXPECT_GT(left.blue(), left.red() + 40);
    EXPECT_GT(right.red(), right.blue() + 40);
}

TEST_F(ProgramTest, ListsWhatIsDeclaredAlsoByThePlugin)
{
    const Outcome outcome = Run({QStringLiteral("--startup"), QStringLiteral("--NoSettings")});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.errors, QString());
    const QStringList lines = outcome.output.split(u'\n');
    const QStringList plugins = lines.filter(QStringLiteral("PlyPlugin.cpp:"));
    ASSERT_EQ(plugins.size(), 1);
    EXPECT_FALSE(plugins.first().endsWith(u'-')) << "declared, but not run";
    EXPECT_EQ(lines.filter(QStringLiteral("PlaneFitter.cpp:")).size(), 2);
}

struct FailureCase
{
    const char* fault;
    const char* arguments;
    const char* errors; ///< The one line, or its beginning.
};
void PrintTo(const FailureCase& row, std::ostream* out) { *out << row.fault; }

class ProgramFailure : public ProgramTest, public testing::WithParamInterface<FailureCase>
{};

TEST_P(ProgramFailure, IsOneLineAndTheExitCode)
{
    Write(QStringLiteral("good.xyz"), "0 0 0\n4 0 1\n4 2 0\n0 2 1\n");
    Write(QStringLiteral("bad.xyz"), "1 2 3\n4 five 6\n");
    Write(QStringLiteral("line.xyz"), "1 1 1\n2 2 2\n3 3 3\n");
    Write(QStringLiteral("bad.ply"), "ply\nformat ascii 1.0\n");
    const Outcome outcome = Run(QString::fromLatin1(GetParam().arguments).split(u' ', Qt::SkipEmptyParts));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.errors.count(u'\n'), 1);
    EXPECT_THAT(outcome.errors.toStdString(), testing::StartsWith(GetParam().errors));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ProgramFailure,
    testing::Values(
        FailureCase{"waits for a user", "", "Expected one file"},
        FailureCase{"first of two files taken", "good.xyz bad.xyz", "Expected one file"},
        FailureCase{"missing file", "none.xyz", "none.xyz: there is no such file\n"},
        FailureCase{"folder", ".", ".: there is no such file\n"},
        FailureCase{"line not named", "bad.xyz --report r.txt", "bad.xyz: line 2: expected three numbers\n"},
        FailureCase{"no plane", "line.xyz", "The points do not span a plane"},
        FailureCase{"plug-in not loaded", "bad.ply", "bad.ply: the header has no end\n"},
        FailureCase{"report not written", "good.xyz --report none/r.txt", "none/r.txt: "},
        FailureCase{"screenshot not written", "good.xyz --screenshot none/s.png", "none/s.png: "},
        FailureCase{"option without value", "good.xyz --report", "InspectionDesk: Missing value"},
        FailureCase{"unknown option ignored", "good.xyz --raport r.txt", "InspectionDesk: Unknown option"}));
} // namespace
} // namespace vek::Desk
