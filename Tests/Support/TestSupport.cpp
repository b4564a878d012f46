#include "Support/TestSupport.h"
#include <QCoreApplication>
#include <thread>

namespace vek::TestSupport
{
void PrintTo(const LogLine& line, std::ostream* out)
{
    *out << static_cast<int>(line.verbosity) << " \"" << line.message.toStdString() << '"';
}

LogRecorder::LogRecorder()
    : m_before(App::SetLogCallback([this](Log::Verbosity verbosity, const QString& message) {
          const std::lock_guard lock(m_mutex);
          m_lines.push_back({verbosity, message});
      }))
{}

LogRecorder::~LogRecorder() { App::SetLogCallback(std::move(m_before)); }

std::vector<LogLine> LogRecorder::GetLines() const
{
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

NotificationRecorder::NotificationRecorder()
    : m_before(App::SetNotifierCallback(
          [this](const App::NotifierMessage& message) { messages.push_back(message); }))
{}

NotificationRecorder::~NotificationRecorder() { App::SetNotifierCallback(std::move(m_before)); }

bool WaitFor(const std::function<bool()>& condition, std::chrono::milliseconds deadline)
{
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::yield();
    }
    return true;
}
} // namespace vek::TestSupport
