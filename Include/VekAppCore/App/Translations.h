#pragma once
#include "VekAppCore/Export.h"
#include <QString>
#include <QStringList>

class QLocale;

/// The language of the program: texts are those that modules declare, in one language for all of them. Where
/// there are none in a language, it is English, in which the sources are written. Numbers keep the locale of
/// the system. Main thread only, with a QCoreApplication.
namespace vek::App
{
/// Handed to the callbacks by which modules declare their translations.
class VEKAPPCORE_EXPORT ITranslationDeclarationCtx
{
public:
    virtual ~ITranslationDeclarationCtx();

    /// Declares translation files "folder/name_language.qm", with a language such as "fr", "pt_BR" (or
    /// "pt-BR") or "zh_Hant"; the folder may be in the resources.
    virtual void AddTranslation(const QString& folder, const QString& name) = 0;
};

/// Switches the program to a language, Qt's own texts included, and keeps that in the user's settings (see
/// GetAppSettings), where ApplicationFrame::Start finds it the next time.
/// @param language  as "fr", "pt_BR" or "zh_Hant"; one without texts shows English. Empty for the system's.
VEKAPPCORE_EXPORT void SetLanguage(const QString& language);

/// What SetLanguage was given or the settings hold, those of the machine below the user's; empty for the
/// system's.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetLanguage();

/// The language that is shown, one of GetLanguages.
[[nodiscard]] VEKAPPCORE_EXPORT QString GetShownLanguage();

/// English, and the languages in which a module has declared files, in alphabetical order.
[[nodiscard]] VEKAPPCORE_EXPORT QStringList GetLanguages();

/// In its own words, as a list to choose from shows it: "Français".
[[nodiscard]] VEKAPPCORE_EXPORT QString GetLanguageName(const QString& language);

/// For a program without ApplicationFrame: shows what modules declared in the language of @p locale from now
/// on, in place of what was shown. Neither Qt's own texts nor the settings are touched.
/// @return the number of files loaded.
VEKAPPCORE_EXPORT int InstallTranslations(const QLocale& locale);

/// Shows English, without any file, until a language is set again. The settings stay.
VEKAPPCORE_EXPORT void RemoveTranslations();
} // namespace vek::App
