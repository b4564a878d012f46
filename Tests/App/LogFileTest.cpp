#include "VekAppCore/App/LogFile.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Exception.h"
#include <QDir>
#include <QTemporaryDir>
#include <thread>

namespace vek::App
{
using Log::Verbosity;
using TestSupport::ReadFile;

class LogFileTest : public testing::Test
{
protected:
    /// What stands behind the levels in all files, oldest first, with a comma behind each.
    std::string GetMessages() const
    {
        QString messages;
        for (int number = 100; number >= 0; --number)
            for (const auto path = number > 0 ? m_path + '.' + QString::number(number) : m_path;
                 const QString& line : QString(ReadFile(path)).split('\n', Qt::SkipEmptyParts))
                messages += line.mid(33) + ',';
        return messages.toStdString();
    }

    const QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath("a.log");
};

TEST_F(LogFileTest, LineHoldsTimeLevelAndTextAtOnce)
{
    using Row = std::tuple<const char*, Verbosity, const char*, std::string>;
    for (const auto& [fault, verbosity, message, end] :
         {Row{"split by a line feed", Verbosity::Error, "a\nb\n", "Z Error   a\\\\nb\\\\n\n"},
          Row{"carriage return kept", Verbosity::Info, "a\r\nb", "Z Info    a\\\\r\\\\nb\n"},
          Row{"not UTF-8", Verbosity::Warning, "5 \u00b5m", "Z Warning 5 \xc2\xb5m\n"},
          Row{"placeholder filled", Verbosity::Trace, "%1 %2", "Z Trace   %1 %2\n"}})
    {
        SCOPED_TRACE(fault);
        QFile::remove(m_path);
        LogFile log(m_path);
        log.Write(verbosity, message);
        // While it is open: a process that is killed now loses nothing.
        EXPECT_THAT(ReadFile(m_path).toStdString(), testing::MatchesRegex("20..-..-..T..:..:..[.]..." + end));
    }
}

TEST_F(LogFileTest, OpeningRemovesACutOffLine)
{
    using Row = std::tuple<const char*, std::string, std::string>;
    for (const auto& [fault, before, kept] :
         {Row{"whole lines overwritten", "one\ntwo\n", "one\ntwo\n"},
          Row{"cut-off line continued", "one\ntw", "one\n"}, Row{"only line taken for a whole one", "on", ""},
          Row{"lines before a long one lost", "one\n" + std::string(10'000, 'x'), "one\n"},
          Row{"line feed at the begin of a block missed", "one\n" + std::string(4095, 'x'), "one\n"},
          Row{"line feed at the end of a block missed", "one\n" + std::string(4096, 'x'), "one\n"}})
    {
        SCOPED_TRACE(fault);
        LogFile(TestSupport::WriteFile(m_path, before.c_str())).Write(Verbosity::Info, "new");
        EXPECT_THAT(ReadFile(m_path).toStdString(), testing::MatchesRegex(kept + ".{24} Info    new\n"));
    }
}

TEST_F(LogFileTest, FullFilesMoveUpAndTheOldestGoes)
{
    const LogFile::Options options{.mostBytes = 100, .keptFiles = 2}; // two lines of 35 bytes in each
    for (const char* message : {"1", "2", "3", "4", "5", "6", "7"})
        LogFile(m_path, options).Write(Verbosity::Info, message); // reopened: what is there counts
    EXPECT_EQ(GetMessages(), "3,4,5,6,7,");
    LogFile log(m_path, options);
    log.Write(Verbosity::Info, QString(500, 'x')); // longer than a file may be
    log.Write(Verbosity::Info, "9");
    EXPECT_EQ(GetMessages(), "7," + std::string(500, 'x') + ",9,");
    for (const char* number : {".1", ".2"})
        ASSERT_TRUE(QFile::remove(m_path + number) && QDir().mkpath(m_path + number + "/in the way"));
    log.Write(Verbosity::Info, QString(99, 'y'));
    log.Write(Verbosity::Info, "10");
    EXPECT_EQ(GetMessages(), "10,") << "a file that cannot move must not grow for ever";
}

TEST_F(LogFileTest, InstalledOnePassesLinesOnAndThreadsLoseSplitAndMixNothing)
{
    const TestSupport::LogRecorder recorder;
    LogFile::Install(m_path, {.mostBytes = 5'000, .keptFiles = 100});
    for (std::vector<std::jthread> threads; threads.size() < 4;)
        threads.emplace_back([] {
            for (int number = 1000; number < 1500; ++number)
                App::Log(Verbosity::Info, QString::number(number));
        });
    QStringList messages = QString::fromStdString(GetMessages()).split(',', Qt::SkipEmptyParts);
    messages.sort();
    ASSERT_EQ(messages.size(), 2000);
    for (int index = 0; index < 2000; ++index)
        EXPECT_EQ(messages[index], QString::number(1000 + index / 4));
    EXPECT_EQ(recorder.GetLines().size(), 2000U);
}

TEST_F(LogFileTest, FailureToOpenNamesFileAndReason)
{
    QFile file(m_path + "/%1");
    ASSERT_FALSE(file.open(QIODevice::ReadWrite));
    EXPECT_THAT([&file] { LogFile log(file.fileName()); },
                testing::ThrowsMessage<Exception::InternalAppException>(testing::AllOf(
                    testing::HasSubstr("%1"), testing::HasSubstr(file.errorString().toStdString()))));
}
} // namespace vek::App
