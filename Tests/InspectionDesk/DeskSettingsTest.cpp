#include "InspectionDesk/DeskSettings.h"
#include "InspectionDesk/DeskFixture.h"
#include "InspectionDesk/DeskWindow.h"
#include "InspectionDesk/SettingsDialog.h"
#include <QCoreApplication>
#include <QDir>

namespace vek::Desk
{
class DeskSettingsTest : public DeskFixture
{
protected:
    DeskSettingsTest()
    {
        QCoreApplication::setApplicationName("Desk");
        QCoreApplication::setApplicationVersion("2.0");
        TestSupport::SetSettingsFolder(m_folder.GetPath());
        QDir(m_folder.GetPath()).mkpath("user/Ostrafel");
        QDir(m_folder.GetPath()).mkpath("machine/Ostrafel/Desk");
    }

    static constexpr const char* userFile = "user/Ostrafel/Desk 2.0.conf";
    static constexpr const char* machineFile = "machine/Ostrafel/Desk/Settings.ini";
};

TEST_F(DeskSettingsTest, UsersValueGoesBeforeTheMachinesAndThatBeforeOurs)
{
    // The user's store, the machine's, and the unit, tolerance, colour above and number of files taken.
    const std::tuple<const char*, QByteArray, QByteArray, const char*> rows[] = {
        {"no value of our own", "", "", "- 0 mm #b2182b 0"},
        {"machine not asked", "", "Unit=in\n[Deviation]\nTolerance=0.5 cm\n", "in 0.5 cm #b2182b 0"},
        {"machine before user", "Unit=mm\n", "Unit=in\n", "mm 0 mm #b2182b 0"},
        {"unit that suits not the user's", "Unit=@Invalid()\n", "Unit=in\n", "- 0 mm #b2182b 0"},
        {"unknown unit taken", "Unit=yard\n", "Unit=in\n", "in 0 mm #b2182b 0"},
        {"unit that is none taken", "Unit=END\n", "Unit=in\n", "in 0 mm #b2182b 0"},
        {"scale turned around", "[Deviation]\nTolerance=-1 mm\n", "", "- 0 mm #b2182b 0"},
        {"scale without end", "[Deviation]\nTolerance=inf mm\n", "", "- 0 mm #b2182b 0"},
        {"colour that is none", "[Deviation]\nColourAbove=\n", "", "- 0 mm #b2182b 0"},
        {"colour not as text", "[Deviation]\nColourAbove=#102030\n", "", "- 0 mm #102030 0"},
        {"one file is no list", "RecentFiles=/a b.xyz\n", "", "- 0 mm #b2182b 1"}};
    for (const auto& [fault, user, machine, expected] : rows)
    {
        Write(userFile, user);
        Write(machineFile, machine);
        const DeskSettings settings = DeskSettingsStore().Get();
        EXPECT_EQ(QStringLiteral("%1 %2 %3 %4")
                      .arg(settings.unit ? Convert::ToString(*settings.unit) : "-")
                      .arg(Convert::ToString(settings.tolerance))
                      .arg(settings.above.name())
                      .arg(settings.recentFiles.size()),
                  expected)
            << fault;
    }
}

TEST_F(DeskSettingsTest, OnlyWhatTheUserChangesIsKept)
{
    Write(machineFile, "Unit=in\n");
    DeskSettingsStore store;
    DeskSettings settings = store.Get();
    settings.tolerance = Unit::Length(0.1, Unit::LengthUnit::Inch);
    settings.above = Qt::green;
    settings.below = Qt::yellow;
    settings.restoresWindow = false;
    settings.geometry = QByteArray::fromHex("00ff2c22");
    for (const char* name : {"9", "0", "1", "2", "3", "4", "5", "6", "7", "9", "6"})
        settings.AddRecentFile(m_folder.GetPath() + '/' + name);
    EXPECT_EQ(settings.recentFiles.replaceInStrings(m_folder.GetPath(), QString()).join(QString()),
              "/6/9/7/5/4/3/2/1");
    store.Write(settings);
    EXPECT_EQ(DeskSettingsStore().Get(), settings);

    Write(machineFile, "Unit=mm\n");
    settings.unit = Unit::LengthUnit::Millimeter;
    EXPECT_EQ(DeskSettingsStore().Get(), settings) << "the machine's unit has become the user's";
}

TEST_F(DeskSettingsTest, UserIsToldOnceOfAStoreThatDoesNotWork)
{
    const QDir folder(m_folder.GetPath());
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"The settings are damaged: ", [&] { Write(userFile, "garbage\n"); }},
        {"The settings are damaged: ", [&] { Write(machineFile, "garbage\n"); }},
        {"The settings cannot be read or written: ", [&] { folder.mkpath(userFile); }},
        {"The settings cannot be read or written: ", [&] { folder.mkpath(machineFile); }},
        {"Changes of the settings cannot be kept: ", [&] { Write("user/Ostrafel", ""); }}};
    for (const auto& [text, spoil] : rows)
    {
        for (const char* name : {"user", "machine"})
            QDir(folder.filePath(name)).removeRecursively();
        folder.mkpath("machine/Ostrafel/Desk");
        folder.mkpath(text[0] == 'C' ? "user" : "user/Ostrafel");
        spoil();
        TestSupport::NotificationRecorder recorder;
        DeskSettingsStore store;
        DeskSettings settings = store.Get();
        settings.tolerance *= 2;
        settings.restoresWindow = false;
        store.Write(settings);
        ASSERT_EQ(recorder.messages.size(), 1U) << text;
        EXPECT_THAT(recorder.messages[0].text.ToString().toStdString(), testing::StartsWith(text));
    }
}

TEST_F(DeskSettingsTest, WindowKeepsThemOnlyWhereItIsToldTo)
{
    const QString plate = Write("plate.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n");
    for (const bool isKeeping : {false, true})
    {
        DeskWindow window(m_frame.GetTaskExecutor());
        if (isKeeping)
            window.UseSettings();
        window.Inspect(plate);
        ASSERT_TRUE(TestSupport::WaitFor([&window] { return !window.IsBusy(); }));
        const QString document = m_folder.GetPath() + (isKeeping ? "/kept.vekdoc" : "/other.vekdoc");
        window.Save(document, *window.FindResult(plate));
        EXPECT_FALSE(window.close()) << "it must not be lost";
        ASSERT_TRUE(TestSupport::WaitFor([&window] { return !window.IsBusy(); }));
        EXPECT_TRUE(window.close());
        const DeskSettings kept = DeskSettingsStore().Get();
        EXPECT_EQ(kept.recentFiles, isKeeping ? QStringList({document, plate}) : QStringList());
        EXPECT_EQ(kept.geometry.isEmpty(), !isKeeping);
    }
}

TEST_F(DeskSettingsTest, DialogLeavesAloneWhatItDoesNotShow)
{
    const DeskSettings before{Unit::LengthUnit::Inch,
                              Qt::green,
                              Qt::yellow,
                              Unit::Length(0.125, Unit::LengthUnit::Mil),
                              {"/a"},
                              false,
                              "x"};
    DeskSettings now = before;
    now.recentFiles = QStringList{"/b", "/a"}; // opened while the dialog was shown
    DeskSettings applied = now;
    SettingsDialog(before, nullptr).ApplyTo(applied);
    EXPECT_EQ(applied, now);
}

TEST_F(DeskSettingsTest, ToleranceEndsTheScaleOfColours)
{
    const auto inspection = std::make_shared<const Inspection>(App::Services().Require<IPlaneFitter>().Fit(
        {{0, 0, 0.1}, {4, 0, -0.1}, {4, 2, 0.1}, {0, 2, -0.1}}, m_progress));
    const std::pair<double, bool> rows[] = {{0.0, true}, {0.05, true}, {0.15, false}};
    for (const auto& [tolerance, isAtTheEnd] : rows)
    {
        const Unit::Length end(tolerance, Unit::LengthUnit::Millimeter);
        DeviationView view({{}, Qt::green, Qt::yellow, end, {}, false, {}});
        view.resize(600, 400);
        view.Show(MakeDocument({}, *inspection));
        const QImage image = view.grab().toImage();
        EXPECT_EQ(image.pixelColor(34, 314).red() < 6, isAtTheEnd) << tolerance;   // the first corner
        EXPECT_EQ(image.pixelColor(459, 314).blue() < 6, isAtTheEnd) << tolerance; // the second
    }
}
} // namespace vek::Desk
