#include "Support/TestSupport.h"
#include "VekAppCore/App/LogFile.h"
#include <QTemporaryDir>
#include <csignal>
#include <sys/resource.h>

namespace vek::App
{
TEST(LogFileUnix, FullDiskLeavesWholeLinesAndACount)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("a.log");
    std::signal(SIGXFSZ, SIG_IGN); // a write that crosses the limit is a short one, as on a full disk
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{150, before.rlim_max}; // 35 bytes a line, 83 the count: no room for a whole next line
    {
        LogFile log(path);
        for (const char* message : {"1", "2"})
        {
            log.Write(Log::Verbosity::Info, message);
            setrlimit(RLIMIT_FSIZE, &full);
            for (int line = 0; line < 5; ++line)
                log.Write(Log::Verbosity::Info, QString(100, 'x'));
            setrlimit(RLIMIT_FSIZE, &before);
        }
    }
    const std::string lost = ".{24} Warning 5 line\\(s\\) could not be written and are lost\n";
    EXPECT_THAT(TestSupport::ReadFile(path).toStdString(),
                testing::MatchesRegex(".{24} Info    1\n" + lost + ".{24} Info    2\n" + lost));
}
} // namespace vek::App
