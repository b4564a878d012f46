#include "VekAppCore/Text/LanguageChange.h"
#include "VekAppCore/QtUtility/EventFilter.h"
#include <QEvent>
#include <QPointer>

namespace vek::StringUtility
{
QtUtility::EventFilter* OnLanguageChanged(QObject* object, std::function<void()> callback, bool callNow)
{
    if (callNow)
        callback();
    return new QtUtility::EventFilter(object, [callback = std::move(callback)](QEvent* event) {
        if (event->type() == QEvent::LanguageChange)
            callback();
    });
}

QtUtility::EventFilter* OnLanguageChanged(QObject* object, TrString text,
                                          std::function<void(const QString&)> callback)
{
    return OnLanguageChanged(
        object, [text = std::move(text), callback = std::move(callback)] { callback(text.ToString()); },
        true);
}

ScopeBase OnLanguageChangedScope(QObject* object, std::function<void()> callback)
{
    const QPointer<QtUtility::EventFilter> filter = OnLanguageChanged(object, std::move(callback), true);
    return ScopeBase([filter] {
        if (filter)
            filter->Stop();
    });
}
} // namespace vek::StringUtility
