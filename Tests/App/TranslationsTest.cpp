#include "VekAppCore/App/Translations.h"
#include "App/Language.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/NoSettingsMode.h"
#include "VekAppCore/Settings/AppSettings.h"
#include "VekAppCore/Settings/VekQSettings.h"
#include "VekAppCore/Text/LanguageChange.h"
#include "VekBase/ScopedTempFolder.h"
#include <QCoreApplication>
#include <QFile>
#include <QWidget>
#include <stdexcept>

vek::TrString GetGreeting(); // of a static library, with a translation of its own

namespace vek::App
{
class TranslationsTest : public testing::Test
{
protected:
    TranslationsTest()
    {
        TestSupport::SetSettingsFolder(m_folder.GetPath());
        _Start();
    }

    void _Start()
    {
        m_frame.reset();
        AppConfiguration configuration;
        configuration.applicationName = "App";
        m_frame = std::make_unique<ApplicationFrame>(configuration);
        m_frame->Start();
    }

    /// What a module may declare: the library's French under other names.
    void _DeclareModule(const QStringList& files)
    {
        for (const QString& file : files)
            EXPECT_TRUE(
                QFile::copy(":/VekAppCore/Translations/VekAppCore_fr.qm", m_folder.GetPath() + '/' + file));
        DeclarationSystem::GetInstance().Append<ITranslationDeclarationCtx>(
            [folder = m_folder.GetPath()](ITranslationDeclarationCtx& context) {
                context.AddTranslation(folder, "Module");
            });
    }

    static QString _GetYes() { return ToTrString(true).ToString(); }

    const ScopedTempFolder m_folder;
    std::unique_ptr<ApplicationFrame> m_frame;
};

TEST(ChooseLanguage, IsTheFirstWantedOneThatIsThere)
{
    const QStringList available{"de", "en", "fr", "pt_BR", "sr_Cyrl", "zh", "zh_Hant", "zh_TW"};
    const std::tuple<const char*, QStringList, const char*> rows[] = {
        {"country not dropped", {"fr-Latn-CA", "fr-CA"}, "fr"},
        {"second language before English", {"en-GB", "en", "en-Latn-US", "fr"}, "en"},
        {"English without country overlooked", {"en-GB", "fr"}, "en"},
        {"country dropped too early", {"zh-Hant-TW", "zh-TW"}, "zh_TW"},
        {"script dropped", {"zh-Hant-HK", "zh-HK"}, "zh_Hant"},
        {"script of the country not known", {"zh-HK"}, "zh_Hant"},
        {"one script for another", {"zh-CN", "zh-Hans-CN"}, "zh"},
        {"one script for another", {"sr-Latn-RS", "de-AT"}, "de"},
        {"choice not taken as it is", {"zh_Hant", "zh-TW", "zh-Hant-TW"}, "zh_Hant"},
        {"language of one country for another", {"pt-Latn-PT", "pt-PT", "pt", "de-AT"}, "de"},
        {"beginning of a code taken", {"frp", "de"}, "de"},
        {"nothing instead of English", {"C"}, "en"},
        {"nothing instead of English", {}, "en"}};
    for (const auto& [fault, wanted, chosen] : rows)
        EXPECT_EQ(ChooseLanguage(wanted, available), chosen) << fault;
}

TEST_F(TranslationsTest, ChoiceIsKeptForTheNextStart)
{
    EXPECT_EQ(GetLanguage(), "");
    EXPECT_EQ(_GetYes(), "Yes");
    SetLanguage("fr");
    EXPECT_EQ(_GetYes(), "Oui");
    m_frame.reset();
    EXPECT_EQ(_GetYes(), "Yes") << "outlives the frame";
    _Start();
    EXPECT_EQ(GetLanguage(), "fr");
    EXPECT_EQ(_GetYes(), "Oui");

    SetNoSettingsMode(true);
    _Start();
    EXPECT_EQ(_GetYes(), "Yes") << "settings that are not wanted";
    SetNoSettingsMode(false);

    SetLanguage("tlh"); // of which there is nothing
    EXPECT_EQ(_GetYes(), "Yes");
    EXPECT_EQ(GetShownLanguage(), "en");
    _Start();
    EXPECT_EQ(GetLanguage(), "tlh");
}

TEST_F(TranslationsTest, MachinesLanguageIsThatOfUsersWhoHaveChosenNone)
{
    GetAllUsersSettings()->SetValue("Language", QString("fr"));
    _Start();
    EXPECT_EQ(_GetYes(), "Oui");
    SetLanguage("");
    EXPECT_EQ(_GetYes(), "Yes");
    _Start();
    EXPECT_EQ(_GetYes(), "Yes");
}

TEST_F(TranslationsTest, SwitchIsOneChangeWithQtsOwnTexts)
{
    const auto getCancel = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
    QWidget window;
    QCoreApplication::processEvents();
    int changes = 0;
    int windowChanges = 0;
    const ScopeBase count =
        StringUtility::OnLanguageChangedScope(QCoreApplication::instance(), [&] { ++changes; });
    StringUtility::OnLanguageChanged(
        &window, [&] { ++windowChanges; }, false);
    changes = 0;
    SetLanguage("fr");
    EXPECT_EQ(getCancel(), "Annuler");
    SetLanguage("fr"); // nothing new
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(windowChanges, 1);
    SetLanguage("en");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(getCancel(), "Cancel");
}

TEST_F(TranslationsTest, QtsOwnTextsAreInTheLanguageThatIsShown)
{
    const std::array<const char*, 3> rows[] = {{"only the same name taken", "pt", "Aplicar"},
                                               {"only the same name taken", "zh_Hant", "套用"},
                                               {"another script taken", "zh_Hans", "应用"},
                                               {"another language taken", "eo", "Apply"}};
    _DeclareModule({"Module_pt.qm", "Module_zh_Hant.qm", "Module_zh-Hans.qm", "Module_eo.qm"});
    for (const auto& [fault, language, apply] : rows)
    {
        SetLanguage(language);
        EXPECT_EQ(GetShownLanguage(), language) << fault;
        EXPECT_EQ(_GetYes(), "Oui") << fault;
        EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Apply"), apply) << fault;
    }
}

TEST_F(TranslationsTest, FailureToDeclareLeavesNothingHalfShown)
{
    RemoveTranslations();
    DeclarationSystem::GetInstance().Append<ITranslationDeclarationCtx>(
        [isFaulty = true](ITranslationDeclarationCtx&) mutable {
            if (std::exchange(isFaulty, false))
                throw std::runtime_error("no such folder");
        });
    EXPECT_THROW(InstallTranslations(QLocale("fr")), std::runtime_error);
    InstallTranslations(QLocale("fr"));
    EXPECT_EQ(_GetYes(), "Oui");
}

TEST_F(TranslationsTest, EndOfTheFrameIsAChangeThatStillFindsServices)
{
    SetLanguage("fr");
    bool isThere = false;
    const ScopeBase look = StringUtility::OnLanguageChangedScope(QCoreApplication::instance(), [&isThere] {
        isThere = _GetYes() == "Yes" && Services().Get<IAppFeatureService>() != nullptr;
    });
    m_frame.reset();
    EXPECT_TRUE(isThere);
}

TEST_F(TranslationsTest, LanguagesAreThoseOfTheDeclaredFiles)
{
    _DeclareModule({"Module_de.qm", "Module_pt-BR.qm", "Module_Extra_it.qm", "Other_es.qm", "Module_pl.txt"});
    EXPECT_EQ(GetLanguages(), QStringList({"de", "en", "fr", "pt_BR"}));
    const std::pair<const char*, const char*> names[] = {
        {"en", "English"}, {"fr", "Français"}, {"pt_BR", "Português"}, {"tlh", "tlh"}};
    for (const auto& [language, name] : names)
        EXPECT_EQ(GetLanguageName(language), name);
}

TEST_F(TranslationsTest, LaterPluginsBringTheirs)
{
    SetLanguage("de");
    EXPECT_EQ(_GetYes(), "Yes");
    _DeclareModule({"Module_de.qm"});
    m_frame->LoadPlugin(VEK_FOREIGN_PLUGIN);
    EXPECT_EQ(_GetYes(), "Oui");
}

TEST_F(TranslationsTest, StaticLibrarysArrive)
{
    SetLanguage("fr");
    EXPECT_EQ(GetGreeting().ToString(), "Bonjour");
}
} // namespace vek::App
