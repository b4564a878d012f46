#include "VekAppCore/App/LogFile.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <thread>

namespace vek::App
{
namespace
{
using Log::Verbosity;

class LogFileTest : public testing::Test
{
protected:
    QString GetPath(int number = 0) const
    {
        return m_folder.filePath("a.log") + (number > 0 ? QStringLiteral(".%1").arg(number) : QString());
    }
    std::string Read(int number = 0) const
    {
        QFile file(GetPath(number));
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "";
    }
    /// The messages of all files, oldest first; a line in any other form shows as it is.
    std::vector<std::string> GetMessages() const
    {
        static const QRegularExpression form(
            R"(^.{10}T.{12}Z (?:Error  |Warning|Info   |Debug  |Trace  ) (.*)$)");
        std::vector<std::string> messages;
        for (int number = 100; number >= 0; --number)
        {
            QStringList lines = QString::fromStdString(Read(number)).split(u'\n');
            EXPECT_EQ(lines.takeLast(), "");
            for (const QString& line : lines)
                messages.push_back(QString(line).replace(form, "\\1").toStdString());
        }
        return messages;
    }

    const QTemporaryDir m_folder;
};

TEST_F(LogFileTest, LineHoldsTimeLevelAndText)
{
    const struct
    {
        const char* fault;
        Verbosity verbosity;
        QString message;
        std::string end;
    } rows[] = {{"split by a line feed", Verbosity::Error, "a\nb\n", "Z Error   a\\nb\\n\n"},
                {"carriage return kept", Verbosity::Info, "a\r\nb", "Z Info    a\\r\\nb\n"},
                {"not UTF-8", Verbosity::Warning, QStringLiteral("5 \u00b5m"), "Z Warning 5 \xc2\xb5m\n"},
                {"placeholder filled", Verbosity::Trace, "%1 %2", "Z Trace   %1 %2\n"}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.fault);
        QFile::remove(GetPath());
        const QDateTime before = QDateTime::currentDateTimeUtc();
        LogFile(GetPath()).Write(row.verbosity, row.message);
        const QDateTime time =
            QDateTime::fromString(QString::fromStdString(Read()).left(24), Qt::ISODateWithMs);
        EXPECT_TRUE(before <= time && time <= QDateTime::currentDateTimeUtc()) << Read();
        EXPECT_EQ(Read().substr(23), row.end);
    }
}

TEST_F(LogFileTest, OpeningRemovesACutOffLine)
{
    const struct
    {
        const char* fault;
        std::string before;
        std::string kept;
    } rows[] = {{"whole lines overwritten", "one\ntwo\n", "one\ntwo\n"},
                {"cut-off line continued", "one\ntw", "one\n"},
                {"only line taken for a whole one", "on", ""},
                {"lines before a long one lost", "one\n" + std::string(10'000, 'x'), "one\n"},
                {"line feed at the begin of a block missed", "one\n" + std::string(4095, 'x'), "one\n"},
                {"line feed at the end of a block missed", "one\n" + std::string(4096, 'x'), "one\n"}};
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.fault);
        QFile file(GetPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(row.before.c_str()) >= 0);
        file.close();
        LogFile(GetPath()).Write(Verbosity::Info, "new");
        EXPECT_THAT(Read(), testing::MatchesRegex(row.kept + ".{24} Info    new\n"));
    }
}

TEST_F(LogFileTest, FullFilesMoveUpAndTheOldestGoes)
{
    const LogFile::Options options{.mostBytes = 100, .keptFiles = 2}; // two lines of 35 bytes in each
    for (const char* message : {"1", "2", "3", "4", "5", "6", "7"})
        LogFile(GetPath(), options).Write(Verbosity::Info, message); // reopened: what is there counts
    EXPECT_THAT(GetMessages(), testing::ElementsAre("3", "4", "5", "6", "7"));

    LogFile log(GetPath(), options);
    log.Write(Verbosity::Info, QString(500, u'x')); // longer than a file may be
    log.Write(Verbosity::Info, "9");
    EXPECT_THAT(GetMessages(), testing::ElementsAre("7", std::string(500, 'x'), "9"));
}

TEST_F(LogFileTest, FileThatCannotMoveCostsTheOldestLines)
{
    for (const int number :
         {1, 2}) // the first place that is taken for the current file, then for an older one
    {
        ASSERT_TRUE(QDir().mkpath(GetPath(number) + "/in the way"));
        LogFile log(GetPath(), {.mostBytes = 50, .keptFiles = number});
        for (const char* message : {"1", "2", "3"})
            log.Write(Verbosity::Info, message);
        const std::vector<std::string> newest{"2", "3"};
        EXPECT_THAT(GetMessages(), testing::ElementsAreArray(newest.end() - number, newest.end()));
        ASSERT_TRUE(QDir(GetPath(number)).removeRecursively() && QFile::remove(GetPath()));
    }
}

TEST_F(LogFileTest, ThreadsLoseSplitAndMixNothing)
{
    std::vector<std::string> expected;
    {
        LogFile log(GetPath(), {.mostBytes = 5'000, .keptFiles = 100});
        std::vector<std::jthread> writers;
        for (const char name : {'a', 'b', 'c', 'd'})
        {
            writers.emplace_back([&log, name] {
                for (int line = 1000; line < 1500; ++line)
                    log.Write(Verbosity::Debug, QLatin1Char(name) + QString::number(line));
            });
            for (int line = 1000; line < 1500; ++line)
                expected.push_back(name + std::to_string(line));
        }
    }
    std::vector<std::string> messages = GetMessages();
    std::ranges::stable_sort(messages, {}, [](const std::string& message) { return message.substr(0, 1); });
    EXPECT_EQ(messages, expected); // those of each thread in its order
    EXPECT_TRUE(QFile::exists(GetPath(10)));
}

TEST_F(LogFileTest, FailureToOpenNamesFileAndReason)
{
    QFile file(m_folder.filePath("missing/%1.log"));
    ASSERT_FALSE(file.open(QIODevice::ReadWrite));
    EXPECT_THAT(
        [&] { LogFile log(file.fileName()); },
        testing::Throws<Exception::InternalAppException>(testing::Property(
            &std::exception::what, testing::AllOf(testing::HasSubstr("%1.log"),
                                                  testing::HasSubstr(file.errorString().toStdString())))));
}

TEST_F(LogFileTest, InstalledFilePassesLinesOn)
{
    const vek::Test::LogRecorder recorder;
    LogFile::Install(GetPath());
    App::Log(Verbosity::Info, "line");
    EXPECT_THAT(GetMessages(), testing::ElementsAre("line"));
    EXPECT_EQ(recorder.GetLines().size(), 1u);
}
} // namespace
} // namespace vek::App
