#pragma once
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/Notifier.h"
#include <QString>
#include <chrono>
#include <functional>
#include <gmock/gmock.h>
#include <mutex>
#include <vector>

QT_BEGIN_NAMESPACE
/// GoogleTest shows texts, not bytes.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
QT_END_NAMESPACE

namespace vek::TestSupport
{
struct LogLine
{
    Log::Verbosity verbosity;
    QString message;
    bool operator==(const LogLine&) const = default;
};
void PrintTo(const LogLine& line, std::ostream* out);

/// Keeps the log lines of its lifetime; the callback of before is restored.
class LogRecorder
{
public:
    LogRecorder();
    ~LogRecorder();
    [[nodiscard]] std::vector<LogLine> GetLines() const;

private:
    mutable std::mutex m_mutex;
    std::vector<LogLine> m_lines;
    App::LogCallback m_before;
};

/// Keeps the notifications of its lifetime, without showing them.
class NotificationRecorder
{
public:
    NotificationRecorder();
    ~NotificationRecorder();
    std::vector<App::NotifierMessage> messages;

private:
    App::NotifierCallback m_before;
};

/// All of a file; empty where there is none.
[[nodiscard]] QByteArray ReadFile(const QString& path);

/// @return @p path.
QString WriteFile(const QString& path, const QByteArray& content);

/// From now on, settings of the user and of the machine are in "user" and "machine" there.
void SetSettingsFolder(const QString& path);

/// Lets Qt process events until @p condition holds; false when it does not within the deadline.
[[nodiscard]] bool WaitFor(const std::function<bool()>& condition,
                           std::chrono::milliseconds deadline = std::chrono::seconds(20));
} // namespace vek::TestSupport
