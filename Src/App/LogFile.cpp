#include "VekAppCore/App/LogFile.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/Log.h"
#include <QDateTime>
#include <QDir>
#include <algorithm>
#include <filesystem>
#include <fmt/format.h>
#include <memory>

namespace vek::App
{
namespace
{
bool Open(QFile& file, QIODevice::OpenMode more = {})
{
    return file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered | more);
}

QByteArray ToWord(Log::Verbosity verbosity)
{
    switch (verbosity)
    {
    case Log::Verbosity::Error: return "Error";
    case Log::Verbosity::Warning: return "Warning";
    case Log::Verbosity::Info: return "Info";
    case Log::Verbosity::Debug: return "Debug";
    case Log::Verbosity::Trace: return "Trace";
    }
    return QByteArray::number(static_cast<int>(verbosity));
}

QByteArray ToLine(Log::Verbosity verbosity, const QByteArray& text)
{
    constexpr qsizetype widestWord = 7;
    return QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1() + ' ' +
           ToWord(verbosity).leftJustified(widestWord) + ' ' + text + '\n';
}

QByteArray ToLostLine(std::uint64_t count)
{
    return ToLine(Log::Verbosity::Warning,
                  QByteArray::number(count) + " line(s) could not be written and are lost");
}
} // namespace

LogFile::LogFile(const QString& file) : LogFile(file, Options()) {}

LogFile::LogFile(const QString& file, const Options& options) : m_options(options), m_file(file)
{
    if (Open(m_file))
        _RemoveCutOffLine();
    if (!m_file.isOpen())
        throw Exception::InternalAppException(QStringLiteral("The log file %1 cannot be opened: %2")
                                                  .arg(QDir::toNativeSeparators(file), m_file.errorString()));
}

LogFile::~LogFile()
{
    if (m_lostLines > 0)
        _Append(ToLostLine(m_lostLines));
}

void LogFile::Write(Log::Verbosity verbosity, const QString& message)
{
    QByteArray text = message.toUtf8();
    text.replace('\r', "\\r").replace('\n', "\\n");

    const std::lock_guard lock(m_mutex);
    QByteArray line = ToLine(verbosity, text); // under the lock, so that times never step back in the file
    // Both or none: the count alone would use up the little room there is without ever letting a line
    // through.
    if (m_lostLines > 0)
        line.prepend(ToLostLine(m_lostLines));
    if (_Append(line))
        m_lostLines = 0;
    else
        ++m_lostLines;
}

void LogFile::Install(const QString& file) { Install(file, Options()); }

void LogFile::Install(const QString& file, const Options& options)
{
    ChainLogCallback(
        [log = std::make_unique<LogFile>(file, options)](Log::Verbosity verbosity, const QString& message) {
            log->Write(verbosity, message);
        });
}

bool LogFile::_Append(const QByteArray& line)
{
    if (m_size > 0 && m_size + line.size() > m_options.mostBytes)
        _Rotate();
    if (!m_file.isOpen() && Open(m_file))
        _RemoveCutOffLine();
    if (!m_file.isOpen())
        return false;

    const qint64 written = m_file.write(line);
    if (written == line.size())
    {
        m_size += written;
        return true;
    }
    // Not to m_size: another instance of the program may have written into the same file. When even that
    // fails, the next line opens the file again, which removes what is cut off.
    if (written > 0 && !m_file.resize(m_file.size() - written))
        m_file.close();
    return false;
}

void LogFile::_Rotate()
{
    m_file.close();
    const auto numbered = [name = m_file.filesystemFileName()](int number) {
        std::filesystem::path path = name;
        if (number > 0)
            path += fmt::format(".{}", number);
        return path;
    };
    std::error_code ignored;
    for (int number = m_options.keptFiles - 1; number >= 0; --number)
        std::filesystem::rename(numbered(number), numbered(number + 1), ignored);
    // An older file that could not be moved has been replaced by the next; the current one, when it could not
    // be moved either, is emptied rather than let grow for ever.
    Open(m_file, QIODevice::Truncate);
    m_size = 0;
}

void LogFile::_RemoveCutOffLine()
{
    constexpr qint64 blockSize = 4096;
    const qint64 size = m_file.size();
    qint64 end = size; // of what may hold the last line feed
    while (end > 0)
    {
        const qint64 begin = std::max<qint64>(0, end - blockSize);
        const QByteArray block = m_file.seek(begin) ? m_file.read(end - begin) : QByteArray();
        if (block.size() != end - begin)
            return m_file.close(); // what cannot be read is not cut
        const qsizetype lineFeed = block.lastIndexOf('\n');
        end = begin + lineFeed + 1;
        if (lineFeed >= 0)
            break;
    }
    m_size = end;
    if ((end < size && !m_file.resize(end)) || !m_file.seek(end))
        m_file.close();
}
} // namespace vek::App
