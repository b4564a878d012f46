#include "VekAppCore/App/Translations.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>
#include <memory>
#include <vector>

namespace vek::App
{
namespace
{
[[maybe_unused]] const int g_ownTranslations = [] {
    DeclarationSystem::GetInstance().Append<ITranslationDeclarationCtx>(
        [](ITranslationDeclarationCtx& context) {
            context.AddTranslation(QStringLiteral(":/VekAppCore/Translations"), QStringLiteral("VekAppCore"));
        },
        "VekAppCore");
    return 1;
}();

constexpr const char* ownerName = "vekTranslations";

/// Loads what is declared; the translators belong to @p owner.
class TranslationLoader final : public ITranslationDeclarationCtx
{
public:
    TranslationLoader(const QLocale& locale, QObject* owner) : m_locale(locale), m_owner(owner) {}

    void AddTranslation(const QString& folder, const QString& name) override
    {
        auto translator = std::make_unique<QTranslator>();
        if (!translator->load(m_locale, name, QStringLiteral("_"), folder))
            return;
        translator->setParent(m_owner);
        QCoreApplication::installTranslator(translator.release());
        ++m_count;
    }

    [[nodiscard]] int GetCount() const { return m_count; }

private:
    const QLocale m_locale;
    QObject* const m_owner;
    int m_count = 0;
};
} // namespace

ITranslationDeclarationCtx::~ITranslationDeclarationCtx() = default;

int InstallTranslations(const QLocale& locale)
{
    RemoveTranslations();
    auto* const owner = new QObject(QCoreApplication::instance());
    owner->setObjectName(QLatin1String(ownerName));

    TranslationLoader loader(locale, owner);
    DeclarationSystem::GetInstance().RunAll<ITranslationDeclarationCtx>(loader);
    return loader.GetCount();
}

void RemoveTranslations()
{
    if (QCoreApplication* const application = QCoreApplication::instance())
        delete application->findChild<QObject*>(QLatin1String(ownerName), Qt::FindDirectChildrenOnly);
}
} // namespace vek::App
