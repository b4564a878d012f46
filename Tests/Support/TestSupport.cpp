#include "Support/TestSupport.h"
#include <QCoreApplication>
#include <QFile>
#include <QSettings>
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

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size())
        << path.toStdString();
    return path;
}

void SetSettingsFolder(const QString& path)
{
    for (const QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
    {
        QSettings::setPath(format, QSettings::UserScope, path + "/user");
        QSettings::setPath(format, QSettings::SystemScope, path + "/machine");
    }
}

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
