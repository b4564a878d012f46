#pragma once
#include "VekAppCore/Export.h"
#include "VekAppCore/Text/TrString.h"
#include "VekBase/ScopeBase.h"
#include <functional>

class QObject;

namespace vek::QtUtility
{
class EventFilter;
} // namespace vek::QtUtility

/// @file
/// Callbacks for every QEvent::LanguageChange that reaches an object. Main thread only; the filter belongs to
/// the object.
namespace vek::StringUtility
{
/// @param callNow  also calls @p callback once at once.
VEKAPPCORE_EXPORT QtUtility::EventFilter* OnLanguageChanged(QObject* object, std::function<void()> callback,
                                                            bool callNow);

/// Calls @p callback with the rendered @p text, at once and on every change.
VEKAPPCORE_EXPORT QtUtility::EventFilter* OnLanguageChanged(QObject* object, TrString text,
                                                            std::function<void(const QString&)> callback);

/// Gives an object a text that follows the language:
/// ShowTranslated(button, &QPushButton::setText, TrString::translate("Panel", "Clear")). Once for each object
/// and setter: of two texts, the first would come back.
/// @return @p object.
template <typename T, typename Base>
T* ShowTranslated(T* object, void (Base::*setter)(const QString&), const TrString& text)
{
    OnLanguageChanged(object, text, [object, setter](const QString& now) { (object->*setter)(now); });
    return object;
}

/// Calls @p callback at once and on every change until the scope is released or the object dies.
[[nodiscard]] VEKAPPCORE_EXPORT ScopeBase OnLanguageChangedScope(QObject* object,
                                                                 std::function<void()> callback);
} // namespace vek::StringUtility
