#include "InspectionDesk/DeskFixture.h"
#include "InspectionDesk/InspectionDocument.h"
#include "VekAppCore/App/Folders.h"
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>

namespace vek::Desk
{
/// The program itself, with settings of its own, where there is no display.
class ProgramTest : public DeskFixture
{
protected:
    ProgramTest()
    {
        qunsetenv("QT_QPA_PLATFORM");
        qputenv("XDG_CONFIG_HOME", m_folder.GetPath().toUtf8());
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"})
            qputenv(display, "");
        QDir(m_folder.GetPath()).mkpath("Ostrafel");
        Write("plate.xyz", "0 0 1\n4 0 -1\n4 2 1\n0 2 -1\n");
        m_program.setWorkingDirectory(m_folder.GetPath());
        m_program.setProgram(App::GetAppDir() + "/InspectionDesk");
    }

    /// The exit code.
    int Run(const QString& arguments)
    {
        m_program.setArguments(arguments.split(u' '));
        m_program.start();
        const bool hasEnded = m_program.waitForFinished(60'000);
        m_output = m_program.readAllStandardOutput().toStdString();
        m_errors = m_program.readAllStandardError().toStdString();
        return hasEnded && m_program.exitStatus() == QProcess::NormalExit ? m_program.exitCode() : -1;
    }

    /// Shows the plate in a window that nobody sees, until @p condition holds.
    void ShowUntil(const std::function<bool()>& condition, const QStringList& arguments = {})
    {
        m_program.setArguments(QStringList{"plate.xyz", "-platform", "minimal"} + arguments);
        m_program.start();
        EXPECT_TRUE(TestSupport::WaitFor(condition));
        m_program.kill();
        m_program.waitForFinished();
    }

    QByteArray Read(const QString& name) const
    {
        return TestSupport::ReadFile(m_folder.GetPath() + u'/' + name);
    }

    const QString m_store = "Ostrafel/InspectionDesk 2.0.conf";
    QProcess m_program;
    std::string m_output, m_errors;
};

TEST_F(ProgramTest, WritesReportAndScreenshotOfTheSample)
{
    ASSERT_TRUE(QFile::link(QStringLiteral(DESK_SAMPLE), m_folder.GetPath() + "/Plate.xyz"));
    for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"})
        qputenv(display, ":none"); // cannot be reached
    EXPECT_EQ(Run("Plate.xyz --report r.txt --screenshot=s.png"), 0) << m_errors;
    EXPECT_EQ(m_output, "File                Plate.xyz\n" // made with other means than ours
                        "Points              23,712\n"
                        "Flatness            0.2868 mm\n"
                        "Standard deviation  55.8 \xc2\xb5m\n"
                        "Highest deviation   0.1154 mm\n"
                        "Lowest deviation    -0.1714 mm\n");
    EXPECT_EQ(Read("r.txt").toStdString(), m_output);
    const QImage image(m_folder.GetPath() + "/s.png");
    ASSERT_EQ(image.size(), QSize(1280, 800));
    // Left of the step the plate lies below the plane, right of it above: bluish, then reddish.
    EXPECT_GT(image.pixelColor(595, 320).blue(), image.pixelColor(595, 320).red() + 40);
    EXPECT_GT(image.pixelColor(640, 320).red(), image.pixelColor(640, 320).blue() + 40);
}

TEST_F(ProgramTest, DocumentsAndReportsAreOpenedLikeAnyOtherFile)
{
    EXPECT_EQ(Run("plate.xyz --unit in --report r.xml"), 0) << m_errors;
    EXPECT_THAT(m_output, testing::HasSubstr("Flatness            50.8000 mm\n"));
    const std::string figures = m_output.substr(m_output.find('\n'));
    const PointCloud points{{0, 0, 25.4}, {101.6, 0, -25.4}, {101.6, 50.8, 25.4}, {0, 50.8, -25.4}};
    const auto inspection =
        std::make_shared<const Inspection>(App::Services().Require<IPlaneFitter>().Fit(points, m_progress));
    WriteDocument(m_folder.GetPath() + "/p.vekdoc", {"Plate.xyz", inspection, {}}, m_progress);
    EXPECT_EQ(Run("r.xml p.vekdoc --report r.txt"), 0) << m_errors;
    EXPECT_EQ(m_output, "File                r.xml" + figures + "File                p.vekdoc" + figures);
    EXPECT_EQ(Run("r.xml --report s.xml --screenshot s.png"), 0) << m_errors;
    EXPECT_EQ(Read("s.xml"), Read("r.xml"));
}

TEST_F(ProgramTest, SettingsOfAnEarlierVersionAreKeptUnlessTheyAreNotWanted)
{
    Write("Ostrafel/InspectionDesk 1.9.conf", "[General]\nUnit=in\n");
    const QString other = "Ostrafel/InspectionDesk 2.0 - NoSettingsMode.conf";
    ShowUntil([&] { return Read(other).contains("plate.xyz"); }, {"--NoSettings"}); // a recent file
    EXPECT_FALSE(Read(other).contains("Unit=in")) << Read(other).toStdString();
    EXPECT_FALSE(QFile::exists(m_folder.GetPath() + u'/' + m_store));
    ShowUntil([this] { return Read(m_store).contains("plate.xyz"); });
    EXPECT_TRUE(Read(m_store).contains("Unit=in")) << Read(m_store).toStdString();
}

TEST_F(ProgramTest, UsageIsReportedToTheCollectionServerOnceTheUserHasAgreed)
{
    QProcess server;
    server.start(App::GetAppDir() + "/CollectionServer", {"--port", "0"});
    ASSERT_TRUE(server.waitForReadyRead());
    const QString address = QString::fromUtf8(server.readLine()).section(' ', -1).trimmed();
    for (const bool isAgreed : {false, true})
    {
        Write(m_store,
              QByteArray("[General]\nIsSettingsInit=true\n[UsageStatistics]\nClientId=probe\nAgreed=") +
                  (isAgreed ? "true" : "false"));
        QByteArray seen;
        const auto isDone = [&] {
            seen += server.readAll();
            return isAgreed ? seen.contains("\"name\": \"timer_tracking\"")
                            : Read(m_store).contains("plate.xyz");
        };
        ShowUntil(isDone, {"--collect", address});
        for (const char* expected : {"cid = probe", "dp = /", "\"page_title\": \"MainWindow\"",
                                     "\"name\": \"file_opened\"", "\"timing_action\": \"load\""})
            EXPECT_EQ(seen.contains(expected), isAgreed) << expected << " in " << seen.toStdString();
    }
    server.kill();
    server.waitForFinished();
}

TEST_F(ProgramTest, ListsAlsoWhatThePluginDeclares)
{
    EXPECT_EQ(Run("--startup --NoSettings"), 0) << m_errors;
    EXPECT_THAT(m_output, testing::ContainsRegex(" PlyPlugin.cpp:[0-9]+ +[0-9.]+\n"));
}

TEST_F(ProgramTest, FailureIsOneLineAndTheExitCode)
{
    Write("bad.xyz", "1 2 3\n4 five 6\n");
    Write("line.xyz", "1 1 1\n2 2 2\n3 3 3\n");
    Write("bad.ply", "ply\nformat ascii 1.0\n");
    // The arguments and the beginning of the line.
    const std::pair<const char*, const char*> rows[] = {
        {"--NoSettings", "Expected a file"}, // nobody is there to open one
        {"plate.xyz bad.xyz plate.xyz", "bad.xyz: line 2: expected three numbers"},
        {"plate.xyz --unit parsec", "parsec is no unit of length"},
        {"none.xyz", "none.xyz: there is no such file"},
        {"./", "./: there is no such file"},
        {"line.xyz", "The points do not span a plane"},
        {"bad.ply", "bad.ply: the header has no end"}, // known from the plug-in only
        {"plate.xyz --report none/r.xml", "none/r.xml: "},
        {"plate.xyz plate.xyz --report r.xml", "An XML report is of one file"},
        {"plate.xyz --report none/r.txt", "none/r.txt: "}};
    for (const auto& [arguments, expected] : rows)
    {
        EXPECT_EQ(Run(arguments), 1) << arguments;
        EXPECT_THAT(m_errors, testing::MatchesRegex(expected + std::string("[^\n]*\n")));
        EXPECT_THAT(m_output, testing::Not(testing::HasSubstr("[ERROR]"))) << "told twice";
    }
}
} // namespace vek::Desk
