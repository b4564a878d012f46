#pragma once
#include "VekBase/Verbosity.h"
#include <QColor>
#include <QIcon>
#include <QPalette>
#include <QStyle>

/// How the weight of a line or a message is shown. Main thread only.
namespace vek::App::VerbosityLook
{
/// @param share  of @p other, 0 to 1.
inline QColor Mix(const QColor& color, const QColor& other, double share)
{
    const auto mix = [share](int a, int b) { return static_cast<int>(a + share * (b - a)); };
    return {mix(color.red(), other.red()), mix(color.green(), other.green()),
            mix(color.blue(), other.blue())};
}

/// Stands out from the background of @p palette, be it light or dark.
inline QColor GetColor(Log::Verbosity verbosity, const QPalette& palette)
{
    const bool isDark = palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
    switch (verbosity)
    {
    case Log::Verbosity::Error: return isDark ? QColor(255, 138, 128) : QColor(183, 28, 28);
    case Log::Verbosity::Warning: return isDark ? QColor(255, 183, 77) : QColor(150, 80, 0);
    case Log::Verbosity::Info: return isDark ? QColor(144, 202, 249) : QColor(26, 95, 180);
    default: return Mix(palette.color(QPalette::Text), palette.color(QPalette::Base), 0.4);
    }
}

inline QIcon GetIcon(Log::Verbosity verbosity, const QStyle& style)
{
    switch (verbosity)
    {
    case Log::Verbosity::Error: return style.standardIcon(QStyle::SP_MessageBoxCritical);
    case Log::Verbosity::Warning: return style.standardIcon(QStyle::SP_MessageBoxWarning);
    default: return style.standardIcon(QStyle::SP_MessageBoxInformation);
    }
}
} // namespace vek::App::VerbosityLook
