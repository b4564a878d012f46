#include "Support/TestSupport.h"
#include "VekAppCore/App/LogFile.h"
#include <QTemporaryDir>
#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vek::App
{
namespace
{
using Log::Verbosity;

/// Like a disk that gets full when a file reaches that size: the write that crosses it is a short one.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes) : m_handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handlerBefore);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*m_handlerBefore)(int);
    rlimit m_before{};
};

class LogFileUnixTest : public testing::Test
{
protected:
    /// Without the times.
    std::vector<std::string> ReadLines() const
    {
        QFile file(m_path);
        std::vector<std::string> lines;
        if (file.open(QIODevice::ReadOnly))
            for (const QByteArray& line : file.readAll().split('\n'))
                lines.push_back(line.mid(25).toStdString());
        return lines;
    }

    const QTemporaryDir m_folder;
    const QString m_path = m_folder.filePath("a.log");
};

TEST_F(LogFileUnixTest, FullDiskLeavesWholeLinesAndACount)
{
    {
        LogFile log(m_path);
        for (const char* message : {"1", "2"})
        {
            log.Write(Verbosity::Info, message);
            const FullDisk disk(150); // 35 bytes a line, 83 the count: only a part of the next line has room
            for (int line = 0; line < 5; ++line)
                log.Write(Verbosity::Info, QString(100, u'x'));
        }
    }
    EXPECT_THAT(ReadLines(),
                testing::ElementsAre("Info    1", "Warning 5 line(s) could not be written and are lost",
                                     "Info    2", "Warning 5 line(s) could not be written and are lost", ""));
}

TEST_F(LogFileUnixTest, KilledProcessLosesAndSplitsNoLine)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
    {
        LogFile log(m_path);
        for (int number = 0; number == 0 || write(ends[1], ".", 1) == 1; ++number)
            log.Write(Verbosity::Info, QString::number(number));
        _exit(1);
    }
    close(ends[1]);
    char dots[1000];
    std::size_t written = 0;
    for (ssize_t count = 0; (count = read(ends[0], dots, sizeof dots)) > 0;)
        if ((written += static_cast<std::size_t>(count)) > 5'000)
            kill(child, SIGKILL);
    close(ends[0]);
    int status = 0;
    ASSERT_TRUE(waitpid(child, &status, 0) == child && WIFSIGNALED(status));

    LogFile(m_path).Write(Verbosity::Info, "next"); // what the kill may have cut off is gone
    std::vector<std::string> lines = ReadLines();
    ASSERT_GE(lines.size(), written + 2);
    EXPECT_EQ(lines[lines.size() - 2], "Info    next");
    lines.resize(lines.size() - 2);
    for (int number = 0; const std::string& line : lines)
        ASSERT_EQ(line.substr(8), std::to_string(number++));
}
} // namespace
} // namespace vek::App
