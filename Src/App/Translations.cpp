#include "VekAppCore/App/Translations.h"
#include "App/Language.h"
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekAppCore/Settings/AppSettings.h"
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <ranges>
#include <shared_mutex>
#include <vector>

namespace vek::App
{
namespace
{
using namespace Qt::StringLiterals;

const QString& SettingsKey()
{
    static const QString key = u"Language"_s;
    return key;
}

struct Declaration
{
    QString folder;
    QString name;
    bool operator==(const Declaration&) const = default;
};

/// What all modules declare.
class Declarations final : public ITranslationDeclarationCtx
{
public:
    Declarations() { DeclarationSystem::GetInstance().RunAll<ITranslationDeclarationCtx>(*this); }
    void AddTranslation(const QString& folder, const QString& name) override
    {
        list.push_back({folder, name});
    }

    std::vector<Declaration> list;
};

QStringList FindLanguages(const std::vector<Declaration>& declarations)
{
    QStringList languages{u"en"_s};
    for (const auto& [folder, name] : declarations)
        for (const QString& file : QDir(folder).entryList({name + u"_*.qm"_s}))
        {
            const QString language = file.chopped(3).mid(name.size() + 1).replace(u'-', u'_');
            if (QLocale(language).language() != QLocale::C) // else it is part of another name
                languages += language;
        }
    languages.removeDuplicates();
    languages.sort();
    return languages;
}

/// The names under which Qt may have the language that is shown: "pt" is its "pt_BR", "zh_Hant" its "zh_TW".
QStringList FindSpellings(const QString& shown, const QStringList& wanted)
{
    const QLocale locale(shown);
    QStringList spellings;
    for (const QString& each : wanted + locale.uiLanguages())
        if (const QLocale other(each);
            other.language() == locale.language() && other.script() == locale.script())
            spellings += QString(each).replace(u'-', u'_');
    return spellings;
}

/// All texts of the language that is shown. Qt sees a single translator, so that a switch is one change of
/// language to the application, and a text is never asked for in a mixture of two.
class Translator final : public QTranslator
{
public:
    struct State
    {
        std::optional<QString> choice; ///< See GetLanguage; empty where the settings have not been asked.
        QStringList wanted;
        bool isQtIncluded = false;
        std::vector<Declaration> declarations;
        QString language; ///< What is shown.
    };

    /// @return the number of declared files loaded.
    int Load(State state)
    {
        state.declarations = Declarations().list;
        state.language = ChooseLanguage(state.wanted, FindLanguages(state.declarations));
        std::vector<std::unique_ptr<QTranslator>> translators;
        const auto load = [&translators](const QString& folder, const QString& name,
                                         const QString& language) {
            auto translator = std::make_unique<QTranslator>();
            const QString hyphened = name + u'_' + QString(language).replace(u'_', u'-');
            const bool isLoaded =
                translator->load(hyphened, folder, u"/"_s) || // the whole name, nothing shorter
                translator->load(name + u'_' + language, folder);
            if (isLoaded)
                translators.push_back(std::move(translator));
            return isLoaded;
        };
        for (const auto& [folder, name] : state.declarations)
            load(folder, name, state.language);
        const auto count = static_cast<int>(translators.size());
        std::ranges::reverse(translators); // what is declared last goes first
        if (state.isQtIncluded)
            for (const QString& spelling : FindSpellings(state.language, state.wanted))
                if (load(QLibraryInfo::path(QLibraryInfo::TranslationsPath), u"qtbase"_s, spelling))
                    break;
        m_state = std::move(state);
        const std::lock_guard lock(m_mutex);
        m_translators.swap(translators);
        return count;
    }

    [[nodiscard]] const State& GetState() const { return m_state; }

    [[nodiscard]] bool isEmpty() const override { return false; } // Qt may not forget it
    [[nodiscard]] QString translate(const char* context, const char* source, const char* comment,
                                    int n) const override
    {
        const std::shared_lock lock(m_mutex);
        for (const auto& translator : m_translators)
            if (QString text = translator->translate(context, source, comment, n); !text.isNull())
                return text;
        return {};
    }

private:
    State m_state;                     ///< Main thread only.
    mutable std::shared_mutex m_mutex; ///< Guards m_translators: texts are rendered on any thread.
    std::vector<std::unique_ptr<QTranslator>> m_translators;
};

Translator* g_translator = nullptr; // main thread only; the application owns it

int Show(Translator::State state)
{
    if (g_translator)
    {
        const int count = g_translator->Load(std::move(state));
        QEvent change(QEvent::LanguageChange);
        QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
        return count;
    }
    auto translator = std::make_unique<Translator>();
    const int count = translator->Load(std::move(state)); // may throw what declares throws
    g_translator = translator.release();
    g_translator->setParent(QCoreApplication::instance());
    QObject::connect(g_translator, &QObject::destroyed, [] { g_translator = nullptr; });
    QCoreApplication::installTranslator(g_translator);
    return count;
}

void ShowChoice(const QString& choice)
{
    QStringList wanted = (choice.isEmpty() ? QLocale::system() : QLocale(choice)).uiLanguages();
    if (!choice.isEmpty())
        wanted.prepend(choice); // QLocale turns "zh_Hant" into "zh-Hant-TW"
    Show({choice, wanted, true, {}, {}});
}
} // namespace

ITranslationDeclarationCtx::~ITranslationDeclarationCtx() = default;

void SetLanguage(const QString& language)
{
    if (g_translator && g_translator->GetState().choice == language)
        return;
    // What nobody has changed goes on following the settings of the machine.
    if (language != GetLanguage())
        GetAppSettings()->SetValue(SettingsKey(), language);
    ShowChoice(language);
}

QString GetLanguage()
{
    if (g_translator && g_translator->GetState().choice)
        return *g_translator->GetState().choice;
    return GetAppSettings()->GetValue(SettingsKey(),
                                      GetAllUsersSettings()->GetValue(SettingsKey(), QString()));
}

QString GetShownLanguage() { return g_translator ? g_translator->GetState().language : u"en"_s; }

QStringList GetLanguages() { return FindLanguages(Declarations().list); }

QString GetLanguageName(const QString& language)
{
    const QLocale locale(language);
    if (language == u"en") // not "American English"
        return QLocale::languageToString(QLocale::English);
    QString name = locale.nativeLanguageName();
    if (!name.isEmpty())
        name.replace(0, 1, locale.toUpper(name.left(1)));
    return name.isEmpty() ? language : name;
}

int InstallTranslations(const QLocale& locale) { return Show({{}, locale.uiLanguages(), false, {}, {}}); }

void RemoveTranslations()
{
    if (!g_translator)
        return;
    QCoreApplication::removeTranslator(g_translator); // while other threads may still ask it
    delete g_translator;
}

void InstallLanguage() { ShowChoice(GetLanguage()); }

void AddNewTranslations()
{
    if (g_translator && g_translator->GetState().declarations != Declarations().list)
        Show(g_translator->GetState());
}

QString ChooseLanguage(const QStringList& wanted, const QStringList& available)
{
    const QStringList codes = QStringList(wanted).replaceInStrings(u"-"_s, u"_"_s);
    const auto getPlain = [](const QString& code) { return code.section(u'_', 0, 0); };
    for (auto begin = codes.cbegin(); begin != codes.cend();)
    {
        // "zh_Hant_TW", "zh_TW": what says less, "zh_Hant" and then "zh", only behind the last of them.
        const QString plain = getPlain(*begin);
        const auto end =
            std::find_if(begin, codes.cend(), [&](const QString& code) { return getPlain(code) != plain; });
        QStringList choices(begin, end);
        for (; begin != end; ++begin)
            choices += plain + u'_' + QLocale::scriptToCode(QLocale(*begin).script());
        choices += plain;
        for (const QString& choice : choices)
            if (available.contains(choice))
                return choice;
    }
    return u"en"_s;
}
} // namespace vek::App
