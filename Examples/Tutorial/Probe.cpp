// Linked with a step, it tells on standard error what the windows of the step have shown.
#include <QCoreApplication>
#include <QEvent>
#include <VekAppCore/Widgets.h>
#include <cstdio>

namespace
{
using namespace vek;

void Tell(const QString& text) { std::fprintf(stderr, "%s\n", qUtf8Printable(text)); }

class Probe final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // A task may be done before its widget could show it: what is sure is that the window has a place for
        // it.
        if (event->type() == QEvent::ParentChange && dynamic_cast<Threading::TaskStatusBar*>(watched))
            Tell("Task bar");
        if (event->type() != QEvent::Hide)
            return false;
        QCoreApplication::processEvents(); // the log is shown now and then only
        if (auto* const panel = dynamic_cast<App::LogPanel*>(watched))
            Tell("Log: " + panel->GetShownLines().join('\n'));
        if (auto* const bar = dynamic_cast<App::NotificationBar*>(watched))
            Tell("Notification: " + bar->GetShownText());
        return false;
    }
};
} // namespace

static void InstallProbe() { qApp->installEventFilter(new Probe(qApp)); }
Q_COREAPP_STARTUP_FUNCTION(InstallProbe)
