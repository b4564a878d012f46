#include "InspectionDesk/DeskFixture.h"
#include "InspectionDesk/InspectionDocument.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Folders.h"
#include <QDir>
#include <QImage>
#include <QProcess>

namespace vek::Desk
{
/// The program itself, where windows are wanted and there is no display.
class ProgramTest : public DeskFixture
{
protected:
    /// The exit code. An unreachable display may be given.
    int Run(const QString& arguments, const char* display = "")
    {
        qunsetenv("QT_QPA_PLATFORM");
        qputenv("WAYLAND_DISPLAY", display);
        qputenv("DISPLAY", display);
        QProcess program;
        program.setWorkingDirectory(m_folder.GetPath());
        program.start(App::GetAppDir() + "/InspectionDesk", arguments.split(u' '));
        const bool hasEnded = program.waitForFinished(60'000) && program.exitStatus() == QProcess::NormalExit;
        m_output = program.readAllStandardOutput().toStdString();
        m_errors = program.readAllStandardError().toStdString();
        return hasEnded ? program.exitCode() : -1;
    }

    /// With settings of its own, and a window that nobody sees.
    void StartWindow(QProcess& program, const QStringList& arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "minimal");
        environment.insert("XDG_CONFIG_HOME", m_folder.GetPath());
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(m_folder.GetPath());
        program.start(App::GetAppDir() + "/InspectionDesk", arguments);
    }

    std::string m_output, m_errors;
};

TEST_F(ProgramTest, WritesReportAndScreenshotOfTheSample)
{
    ASSERT_TRUE(QFile::link(QStringLiteral(DESK_SAMPLE), m_folder.GetPath() + "/Plate.xyz"));
    EXPECT_EQ(Run("Plate.xyz --report r.txt --screenshot=s.png", ":none"), 0) << m_errors;
    EXPECT_EQ(m_output, "File                Plate.xyz\n" // made with other means than ours
                        "Points              23,712\n"
                        "Flatness            0.2868 mm\n"
                        "Standard deviation  55.8 \xc2\xb5m\n"
                        "Highest deviation   0.1154 mm\n"
                        "Lowest deviation    -0.1714 mm\n");
    QFile report(m_folder.GetPath() + "/r.txt");
    EXPECT_TRUE(report.open(QIODevice::ReadOnly) && report.readAll().toStdString() == m_output);

    const QImage image(m_folder.GetPath() + "/s.png");
    ASSERT_EQ(image.size(), QSize(1280, 800));
    // Left of the step the plate lies below the plane, right of it above: bluish, then reddish.
    EXPECT_GT(image.pixelColor(595, 320).blue(), image.pixelColor(595, 320).red() + 40);
    EXPECT_GT(image.pixelColor(640, 320).red(), image.pixelColor(640, 320).blue() + 40);
}

TEST_F(ProgramTest, FileMayHaveAnyUnit)
{
    Write("plate.xyz", "0 0 1\n4 0 -1\n4 2 1\n0 2 -1\n");
    EXPECT_EQ(Run("plate.xyz --unit in"), 0) << m_errors;
    EXPECT_THAT(m_output, testing::HasSubstr("Flatness            50.8000 mm\n"));
}

TEST_F(ProgramTest, DocumentIsOpenedLikeAnyOtherFile)
{
    const PointCloud points =
        App::Services().Require<IPointCloudReader>().Read(QStringLiteral(DESK_SAMPLE), m_progress);
    const auto inspection =
        std::make_shared<const Inspection>(App::Services().Require<IPlaneFitter>().Fit(points, m_progress));
    WriteDocument(m_folder.GetPath() + "/p.vekdoc", {"Plate.xyz", inspection, {}}, m_progress);
    EXPECT_EQ(Run("p.vekdoc --report r.txt"), 0) << m_errors;
    EXPECT_THAT(m_output,
                testing::HasSubstr("p.vekdoc\nPoints              23,712\nFlatness            0.2868"));
}

TEST_F(ProgramTest, ReportIsOpenedLikeAnyOtherFile)
{
    Write("plate.xyz", "0 0 1\n4 0 -1\n4 2 1\n0 2 -1\n");
    EXPECT_EQ(Run("plate.xyz --report r.xml"), 0) << m_errors;
    const std::string figures = m_output;
    EXPECT_EQ(Run("r.xml --report s.xml --screenshot s.png"), 0) << m_errors;
    EXPECT_EQ("File                plate.xyz\n" + m_output.substr(m_output.find('\n') + 1), figures);
    QFile first(m_folder.GetPath() + "/r.xml");
    QFile second(m_folder.GetPath() + "/s.xml");
    EXPECT_TRUE(first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly));
    EXPECT_EQ(first.readAll(), second.readAll());
}

TEST_F(ProgramTest, SettingsOfAnEarlierVersionAreKeptUnlessTheyAreNotWanted)
{
    const QString place = m_folder.GetPath() + "/Ostrafel/InspectionDesk ";
    Write("plate.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n");
    QDir(m_folder.GetPath()).mkpath("Ostrafel");
    Write("Ostrafel/InspectionDesk 1.9.conf", "[General]\nUnit=in\n");
    const std::pair<const char*, bool> rows[] = {{"2.0 - NoSettingsMode.conf", false}, {"2.0.conf", true}};
    for (const auto& [name, isCarriedOver] : rows)
    {
        QStringList arguments{"plate.xyz"};
        if (!isCarriedOver)
            arguments << "--NoSettings";
        QProcess program;
        StartWindow(program, arguments);
        QByteArray kept;
        EXPECT_TRUE(TestSupport::WaitFor([&, file = place + name] {
            QFile store(file);
            kept = store.open(QIODevice::ReadOnly) ? store.readAll() : QByteArray();
            return kept.contains("plate.xyz"); // a recent file
        })) << name;
        EXPECT_EQ(kept.contains("Unit=in"), isCarriedOver) << kept.toStdString();
        EXPECT_EQ(QFile::exists(place + "2.0.conf"), isCarriedOver);
        program.kill();
        program.waitForFinished();
    }
}

TEST_F(ProgramTest, UsageIsReportedToTheCollectionServerOnceTheUserHasAgreed)
{
    QProcess server;
    server.start(App::GetAppDir() + "/CollectionServer", {"--port", "0"});
    ASSERT_TRUE(server.waitForReadyRead());
    const QString address = QString::fromUtf8(server.readLine()).section(' ', -1).trimmed();
    Write("plate.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n");
    QDir(m_folder.GetPath()).mkpath("Ostrafel");
    for (const bool isAgreed : {false, true})
    {
        Write("Ostrafel/InspectionDesk 2.0.conf",
              QByteArray("[General]\nIsSettingsInit=true\n[UsageStatistics]\nClientId=probe\nAgreed=") +
                  (isAgreed ? "true" : "false"));
        QProcess program;
        StartWindow(program, {"plate.xyz", "--collect", address});
        QByteArray seen;
        EXPECT_TRUE(TestSupport::WaitFor([&] {
            seen += server.readAll();
            QFile store(m_folder.GetPath() + "/Ostrafel/InspectionDesk 2.0.conf");
            const bool isOpened = store.open(QIODevice::ReadOnly) && store.readAll().contains("plate.xyz");
            return isAgreed ? seen.contains("\"name\": \"timer_tracking\"") : isOpened;
        })) << seen.toStdString();
        program.kill();
        program.waitForFinished();
        for (const char* expected : {"cid = probe", "dp = /", "\"page_title\": \"MainWindow\"",
                                     "\"name\": \"file_opened\"", "\"timing_action\": \"load\""})
            EXPECT_EQ(seen.contains(expected), isAgreed) << expected;
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
    Write("good.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n");
    Write("bad.xyz", "1 2 3\n4 five 6\n");
    Write("line.xyz", "1 1 1\n2 2 2\n3 3 3\n");
    Write("bad.ply", "ply\nformat ascii 1.0\n");
    // The arguments and the beginning of the line.
    const std::pair<const char*, const char*> rows[] = {
        {"--NoSettings", "Expected a file"}, // nobody is there to open one
        {"good.xyz bad.xyz good.xyz", "bad.xyz: line 2: expected three numbers"},
        {"good.xyz --unit parsec", "parsec is no unit of length"},
        {"none.xyz", "none.xyz: there is no such file"},
        {"./", "./: there is no such file"},
        {"bad.xyz --report r.txt", "bad.xyz: line 2: expected three numbers"},
        {"line.xyz", "The points do not span a plane"},
        {"bad.ply", "bad.ply: the header has no end"}, // known from the plug-in only
        {"good.xyz --report none/r.xml", "none/r.xml: "},
        {"good.xyz good.xyz --report r.xml", "An XML report is of one file"},
        {"good.xyz --report none/r.txt", "none/r.txt: "}};
    for (const auto& [arguments, expected] : rows)
    {
        EXPECT_EQ(Run(arguments), 1) << arguments;
        EXPECT_THAT(m_errors, testing::MatchesRegex(expected + std::string("[^\n]*\n")));
        EXPECT_THAT(m_output, testing::Not(testing::HasSubstr("[ERROR]"))) << "told twice";
    }
}
} // namespace vek::Desk
