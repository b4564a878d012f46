#pragma once
#include "VekAppCore/Export.h"
#include <QString>

class QLocale;

namespace vek::App
{
/// Handed to the callbacks by which modules declare their translations.
class VEKAPPCORE_EXPORT ITranslationDeclarationCtx
{
public:
    virtual ~ITranslationDeclarationCtx();

    /// Declares translation files <folder>/<name>_<language>.qm; the folder may be in the resources.
    virtual void AddTranslation(const QString& folder, const QString& name) = 0;
};

/// Shows texts in the language of @p locale from now on: loads what modules declared, in place of what an
/// earlier call loaded. English needs no files. Main thread only, with a QCoreApplication.
/// @return the number of files loaded.
VEKAPPCORE_EXPORT int InstallTranslations(const QLocale& locale);

/// Takes back what InstallTranslations loaded. Main thread only.
VEKAPPCORE_EXPORT void RemoveTranslations();
} // namespace vek::App
