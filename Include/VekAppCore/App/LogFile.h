#pragma once
#include "VekAppCore/Export.h"
#include "VekBase/Verbosity.h"
#include <QFile>
#include <QString>
#include <cstdint>
#include <mutex>

namespace vek::App
{
/// A log file of bounded size: when it is full it is renamed to "name.1", the one before to "name.2" and so
/// on, and a new one is begun. It holds whole lines only, also after a full disk or a killed process.
/// Thread-safe.
class VEKAPPCORE_EXPORT LogFile
{
public:
    /// Bounds of the space that the files take.
    struct Options
    {
        qint64 mostBytes = 10'485'760; ///< Of one file.
        int keptFiles = 5;             ///< Besides the current one; the oldest is deleted.
    };

    /// Continues an existing file; a line that was cut off at its end is removed.
    /// @throws Exception::InternalAppException  the file cannot be opened; the message names it and the
    /// reason.
    explicit LogFile(const QString& file);
    /// The same with other bounds.
    LogFile(const QString& file, const Options& options);
    ~LogFile();
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

    /// Appends one line: time (UTC, ISO 8601, milliseconds), verbosity, text. Line feeds in @p message stay
    /// one line, written as "\n". A line that cannot be written whole is taken back and counted; the count is
    /// written as a line of its own as soon as there is room again. Never throws for want of room.
    void Write(Log::Verbosity verbosity, const QString& message);

    /// Installs a log file in front of the present log callback; it lives until the callback is replaced.
    /// @throws as the constructor.
    static void Install(const QString& file);
    /// The same with other bounds.
    static void Install(const QString& file, const Options& options);

private:
    bool _Append(const QByteArray& line);
    void _Rotate();
    void _RemoveCutOffLine();

    const Options m_options;
    std::mutex m_mutex; ///< Guards the members below.
    QFile m_file;       ///< Unbuffered, so that a killed process loses nothing.
    qint64 m_size = 0;
    std::uint64_t m_lostLines = 0;
};
} // namespace vek::App
