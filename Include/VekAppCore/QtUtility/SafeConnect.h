#pragma once
#include "VekAppCore/App/SafeCallable.h"
#include <QObject>
#include <concepts>
#include <utility>

namespace vek::QtUtility
{
/// Connects a signal to a callable whose exceptions are reported, with the place of this wrapper, and do not
/// leave the event loop.
/// @param context  the callable runs on its thread, and never after its death.
///
/// @code
/// QObject watched;
/// QtUtility::SafeConnect(&watched, &QObject::objectNameChanged, qApp,
///                        [](const QString& name) { throw Exception::InternalAppException(name); });
/// @endcode
template <std::derived_from<QObject> Sender, typename Signal, typename Function>
QMetaObject::Connection SafeConnect(const Sender* sender, Signal signal, const QObject* context,
                                    Function function)
{
    return QObject::connect(sender, signal, context, App::SafeCallable(std::move(function)));
}
} // namespace vek::QtUtility
