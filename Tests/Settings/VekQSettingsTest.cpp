#include "VekAppCore/Settings/VekQSettings.h"
#include "Support/TestSupport.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include <QColor>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

namespace vek::App
{
/// Stores in a folder of the test's own.
struct SettingsTest : testing::Test
{
    SettingsTest() { QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path()); }

    static std::unique_ptr<VekQSettings> Open(const QString& application = "Written")
    {
        return std::make_unique<VekQSettings>(QSettings::IniFormat, QSettings::UserScope, "Test",
                                              application);
    }

    static QString GetFileText()
    {
        QFile file(Open()->GetFileName());
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    template <typename T>
    static void CheckInFile(const T& value, const QString& text)
    {
        {
            const auto store = Open();
            store->ClearValues();
            store->SetValue("k", value);
        }
        EXPECT_EQ(GetFileText(), "[General]\nk=" + text + '\n');
        // What another process finds: a store that has read the file.
        const QTemporaryDir other;
        ASSERT_TRUE(QFile::copy(Open()->GetFileName(), other.filePath("copy.ini")));
        const QSettings copy(other.filePath("copy.ini"), QSettings::IniFormat);
        EXPECT_EQ(VariantConverter<T>::FromVariant(copy.value("k")), std::optional<T>(std::in_place, value))
            << text.toStdString();
    }

    const QTemporaryDir folder;
};

TEST_F(SettingsTest, SlotsWorkRelativeToTheGroup)
{
    const auto store = Open();
    {
        const ScopeBase group = store->ScopeGroup("g");
        for (const char* const key : {"abc", "ab/x", "b"})
            store->SetValue(key, 1);
        EXPECT_EQ(store->AllKeys("ab"), QStringList({"ab/x", "abc"}));
        EXPECT_EQ(store->AllKeys(""), QStringList({"ab/x", "abc", "b"}));
        EXPECT_EQ(store->AllKeys("a."), QStringList());
        EXPECT_TRUE(store->RemoveValue("b"));
        EXPECT_FALSE(store->RemoveValue("b"));
        EXPECT_FALSE(store->RemoveValue("ab")); // a group is no value
        EXPECT_FALSE(store->GetValueAsVariant("b").HasValue());
        EXPECT_EQ(store->ChildGroups(), QStringList("ab"));
        EXPECT_EQ(store->ChildKeys(), QStringList("abc"));
    }
    EXPECT_TRUE(store->Contains("g", "abc"));
    {
        const ScopeBase array = store->ScopeWriteArray("array", 2);
        store->SetArrayIndex(1);
        store->SetValue("k", 5);
    }
    {
        const auto [size, array] = store->ScopeReadArray("array");
        EXPECT_EQ(size, 2);
        store->SetArrayIndex(1);
        EXPECT_EQ(store->GetValue<int>("k"), 5);
    }
    EXPECT_TRUE(store->Contains("g/abc")); // the array has been left
    VekQVariantMap copy;
    copy.Append(*store);
    EXPECT_EQ(copy.AllKeys("g"), QStringList({"g/ab/x", "g/abc"}));
    store->ClearValues();
    EXPECT_TRUE(store->AllKeys("").isEmpty());
}

TEST_F(SettingsTest, KeysOfTheOrganisationAreNotSeen)
{
    QSettings(QSettings::IniFormat, QSettings::UserScope, "Test").setValue("k", 1);
    EXPECT_FALSE(Open()->Contains("k"));
    EXPECT_FALSE(Open()->GetValueAsVariant("k").HasValue());
}

TEST_F(SettingsTest, ScratchStoreErasesItself)
{
    {
        VekQSettingsScopped scratch(QSettings::IniFormat, QSettings::UserScope, "Test", "Written");
        scratch.SetValue("k", 1);
        scratch.Sync();
        EXPECT_TRUE(GetFileText().contains("k=1"));
    }
    EXPECT_FALSE(GetFileText().contains("k=1"));
}

TEST_F(SettingsTest, TypedValuesAreReadableInTheFileAndComeBack)
{
    CheckInFile(0.1, "0.1");
    CheckInFile(0.1F, "0.1");
    CheckInFile(-1e300, "-1e+300");
    CheckInFile(std::numeric_limits<quint64>::max(), "18446744073709551615");
    CheckInFile(true, "true");
    CheckInFile(Qt::Vertical, "Vertical");
    CheckInFile(QDate(2026, 11, 21), "2026-11-21");
    CheckInFile(QColor(1, 2, 3), "#010203");
    CheckInFile(std::vector{0.5, 2.0}, "0.5, 2");
    CheckInFile(std::vector{0.5}, "0.5");
    CheckInFile(std::vector<double>(), "@Invalid()");
    CheckInFile(QVariantList{"5"}, "5");
    CheckInFile(QVariantList(), "@Invalid()");
    CheckInFile(QStringList{"a; b"}, "\"a; b\"");
    CheckInFile(QStringList{""}, "");
    using Lists = std::vector<std::vector<int>>;
    CheckInFile(Lists{{1, 2}, {3}, {}}, "\"1; 2\", 3, ");
    CheckInFile(Lists{{1, 2}}, "\"1; 2\"");
    CheckInFile(Lists{{1}}, "1");
    CheckInFile(Lists{{}}, "");
    CheckInFile(Lists{}, "@Invalid()");
    CheckInFile(std::vector<Lists>{{{1, 2}, {3}}}, R"("\"1; 2\"; 3")");
    CheckInFile(std::vector<QStringList>{{"a; b", "\""}}, R"("\"a; b\"; \"\"\"\"")");
    CheckInFile(std::vector<std::map<std::string, int>>{{{"x", 1}}}, "\"x; 1\"");
    CheckInFile(std::map<QString, std::vector<int>>{{"x", {1, 2}}, {"y", {}}}, "x, \"1; 2\", y, ");
    CheckInFile(QStringList{"a, b", "c"}, "\"a, b\", c");
    CheckInFile(std::map<QString, int>{{"x", 1}, {"y", 2}}, "x, 1, y, 2");
    CheckInFile(std::optional<int>(), "@Invalid()");
    CheckInFile(QString(" \"quoted\", blanks "), R"(" \"quoted\", blanks ")");
    CheckInFile(QByteArray("\0\x80", 2), R"(@ByteArray(\0\x80))");
}

TEST_F(SettingsTest, StoreIsWholeWheneverItsWriterIsKilled)
{
    const QString lock = Open()->GetFileName() + ".lock";
    int last = 0;
    constexpr int kills = 25;
    for (int kill = 0; kill < kills; ++kill)
    {
        QProcess writer;
        writer.start(SETTINGS_WRITER, {folder.path(), "p", QString::number(last + 1)});
        ASSERT_TRUE(writer.waitForReadyRead()) << writer.errorString().toStdString();
        QElapsedTimer round;
        round.start();
        ASSERT_TRUE(writer.waitForReadyRead());
        const auto delay = round.nsecsElapsed() / 1000 * kill / kills; // anywhere in it
        QThread::usleep(static_cast<unsigned long>(delay));
        writer.kill();
        writer.waitForFinished();
        if (QFileInfo(lock).size() == 0)
            QFile::remove(lock); // it was not signed yet: Qt waits 30 s until it takes it for an old one
        const QList<QByteArray> told = writer.readAllStandardOutput().trimmed().split('\n');
        const auto store = Open();
        const int generation = store->GetValue("p/key0", -1);
        ASSERT_GE(generation, told.last().toInt());
        ASSERT_LE(generation, told.last().toInt() + 1);
        for (int key = 0; key < 200; ++key)
            ASSERT_EQ(store->GetValue("p/key" + QString::number(key), -1), generation);
        ASSERT_EQ(store->GetValue<QString>("p/much"), QString(300'000, QChar(u'a' + generation % 26)));
        last = generation;
    }
}

TEST_F(SettingsTest, TwoWritersLoseNothing)
{
    std::array<QProcess, 2> writers;
    constexpr int count = 20;
    for (std::size_t i = 0; i < writers.size(); ++i)
        writers[i].start(SETTINGS_WRITER, {folder.path(), QString::number(i), "0", QString::number(count)});
    for (QProcess& writer : writers)
        ASSERT_TRUE(writer.waitForFinished() && writer.exitCode() == 0);
    const auto store = Open();
    for (const char* const prefix : {"0", "1"})
        for (int key = 0; key < 200; ++key)
            ASSERT_EQ(store->GetValue(QString("%1/key%2").arg(prefix).arg(key), -1), count - 1);
}

TEST_F(SettingsTest, TroubleIsToldAndStopsNothing)
{
    ASSERT_TRUE(QDir(folder.path()).mkpath("Test/Folder.ini"));
    const auto blocked = Open("Folder"); // a folder stands where the file should
    blocked->SetValue("k", 1);
    blocked->Sync();
    EXPECT_EQ(blocked->Status(), QSettings::AccessError);
    EXPECT_EQ(blocked->GetValue<int>("k"), 1);

    QFile garbage(folder.filePath("Test/Garbage.ini"));
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write(QByteArray("\x01\xff[[[=\n=\n@Variant(\\x7f\\xff\nk=@Variant(\\0\\0\n\n[a\nx=1"));
    garbage.close();
    const auto odd = Open("Garbage");
    EXPECT_FALSE(odd->GetValue<int>("k"));
    odd->SetValue("new", 2);
    odd->Sync();
    EXPECT_EQ(odd->GetValue<int>("new"), 2);
    EXPECT_EQ(odd->Status(), QSettings::FormatError);
}
} // namespace vek::App
