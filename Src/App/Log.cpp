#include "VekAppCore/App/Log.h"
#include <cstdio>
#include <fmt/format.h>
#include <iterator>
#include <string_view>
#include <utility>

namespace vek::App
{
namespace
{
LogCallback g_callback;

// Info is not, although both its neighbours are.
bool IsEchoed(Log::Verbosity verbosity)
{
    switch (verbosity)
    {
    case Log::Verbosity::Error:
    case Log::Verbosity::Warning:
    case Log::Verbosity::Debug:
    case Log::Verbosity::Trace: return true;
    case Log::Verbosity::Info: break;
    }
    return false;
}

constexpr fmt::format_string<std::string_view> GetFormat(Log::Verbosity verbosity)
{
    switch (verbosity)
    {
    case Log::Verbosity::Error: return "[ERROR]: {}\n";
    case Log::Verbosity::Warning: return "[WARN ]: {}\n";
    default: return "{}\n";
    }
}
} // namespace

void Log(Log::Verbosity verbosity, const QString& message)
{
    if (g_callback)
        g_callback(verbosity, message);
    if (IsEchoed(verbosity))
        LogConsole(verbosity, message);
}

void LogConsole(Log::Verbosity verbosity, const QString& message)
{
    const QByteArray text = message.toLocal8Bit();
    fmt::memory_buffer line;
    fmt::format_to(std::back_inserter(line), GetFormat(verbosity),
                   std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
    // Not fmt::print: it throws when standard output is closed, and a line that nobody can read is no
    // failure. In one piece, so that lines of several threads do not mix.
    std::fwrite(line.data(), 1, line.size(), stdout);
}

LogCallback SetLogCallback(LogCallback callback) { return std::exchange(g_callback, std::move(callback)); }

void ChainLogCallback(LogCallback callback)
{
    g_callback = [callback = std::move(callback),
                  next = std::move(g_callback)](Log::Verbosity verbosity, const QString& message) mutable {
        callback(verbosity, message);
        if (next)
            next(verbosity, message);
    };
}
} // namespace vek::App
