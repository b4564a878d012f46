#pragma once
#include "VekAppCore/Export.h"
#include <QStringList>

/// What the application frame does about the language.
namespace vek::App
{
/// Shows the language that GetLanguage tells.
void InstallLanguage();

/// Takes in what modules have declared since the language was installed.
void AddNewTranslations();

/// The first of @p wanted that is available, with its country, with its script or plain; "en" where none is.
/// @param wanted  as QLocale::uiLanguages gives them, or with underscores, as all of @p available.
[[nodiscard]] VEKAPPCORE_EXPORT QString ChooseLanguage(const QStringList& wanted,
                                                       const QStringList& available);
} // namespace vek::App
