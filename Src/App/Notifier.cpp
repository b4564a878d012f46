#include "VekAppCore/App/Notifier.h"
#include "VekAppCore/App/Application.h"
#include "VekAppCore/App/Log.h"
#include "VekBase/Multithread.h"
#include <memory>
#include <utility>

namespace vek::App
{
namespace
{
NotifierCallback g_callback;

void LogMessage(const NotifierMessage& message)
{
    // One call for all three, so that a "%2" in the text stays what it is.
    Log(message.verbosity, QStringLiteral("Notifier: %1 (from: %2) %3")
                               .arg(message.text.ToString(), message.source.ToString(), message.details));
}
} // namespace

void Notifier(const NotifierMessage& message)
{
    if (!Multithread::IsInMainThread())
    {
        PostEvent([copy = std::make_shared<const NotifierMessage>(message)] {
            if (Multithread::IsInMainThread())
                Notifier(*copy);
            else // could not be posted: the callback may touch the user interface, the log may be written
                 // anywhere
                LogMessage(*copy);
        });
        return;
    }
    if (g_callback)
        g_callback(message);
    LogMessage(message);
}

NotifierCallback SetNotifierCallback(NotifierCallback callback)
{
    return std::exchange(g_callback, std::move(callback));
}

std::string ToLogText(const NotifierMessage& message)
{
    const std::string text = ToLogText(message.verbosity) + ": " + ToLogText(message.text) + " (" +
                             ToLogText(message.source) + ')';
    return message.details.isEmpty() ? text : text + ' ' + message.details.toStdString();
}
} // namespace vek::App
