#include "InspectionDesk/DeskWindow.h"
#include "InspectionDesk/SettingsDialog.h"
#include "InspectionDesk/UsageReport.h"
#include "Network/Servers.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/Folders.h"
#include "VekAppCore/App/NotificationBar.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/App/Translations.h"
#include "VekBase/ScopedTempFolder.h"
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QStatusBar>
#include <cerrno>
#include <future>
#include <set>

namespace vek::Desk
{
namespace
{
using Texts = std::map<QString, QString>;

/// The texts of an object and of what it consists of, by the way to them.
void Collect(const QObject& object, const QString& way, Texts& texts)
{
    const auto add = [&](const QString& name, const QString& text) {
        if (!text.isEmpty())
            texts[way + '.' + name] = text;
    };
    // Qt gives what it says of its own parts to readers of the screen once, when it makes them.
    static const QByteArrayList hidden{"objectName", "styleSheet", "accessibleName", "accessibleDescription",
                                       "html",       "markdown"};
    const QMetaObject& type = *object.metaObject();
    for (int index = 0; index < type.propertyCount(); ++index)
        if (const QMetaProperty property = type.property(index);
            property.typeId() == QMetaType::QString && !hidden.contains(property.name()))
            add(property.name(), property.read(&object).toString());
    if (const auto* const bar = dynamic_cast<const QStatusBar*>(&object))
        add("message", bar->currentMessage());
    if (const auto* const bar = dynamic_cast<const QTabBar*>(&object))
        for (int tab = 0; tab < bar->count(); ++tab)
            add("tab" + QString::number(tab), bar->tabText(tab) + '\n' + bar->tabToolTip(tab));
    if (const auto* const model = dynamic_cast<const QAbstractItemModel*>(&object);
        model && !dynamic_cast<const App::LogPanel*>(model->parent())) // its lines stay as they were written
        for (int row = 0; row < model->rowCount(); ++row)
            add("row" + QString::number(row), model->index(row, 0).data().toString());
    std::map<QString, int> counts; // not the place among all children, which changes when one is raised
    for (const QObject* const child : object.children())
    {
        const QString name = child->metaObject()->className();
        Collect(*child, QString("%1/%2%3").arg(way, name).arg(++counts[name]), texts);
    }
}

std::set<QString> GetWords(const QString& text)
{
    static const QRegularExpression word("\\p{L}{3,}");
    std::set<QString> words;
    for (const auto& match : word.globalMatch(text))
        words.insert(match.captured());
    return words;
}
} // namespace

class LanguageTest : public testing::Test
{
protected:
    // One frame for all, since the plug-in cannot be loaded again.
    static void SetUpTestSuite()
    {
        s_server.emplace();
        s_folder.emplace();
        TestSupport::SetSettingsFolder(s_folder->GetPath());
        App::AppConfiguration configuration;
        configuration.applicationName = configuration.applicationTitle = "Desk";
        ConfigureUsageReport(configuration, s_server->GetUrl("").toString());
        s_frame.emplace(configuration);
        s_frame->Start(App::GetAddonsDir());
    }

    static void TearDownTestSuite()
    {
        s_frame.reset();
        s_folder.reset();
        s_server.reset();
    }

    LanguageTest()
    {
        App::SetLanguage("en");
        m_window.emplace(s_frame->GetTaskExecutor());
        s_frame->SetMainWidget(&*m_window);
        m_window->show();
    }

    static QString _Write(const QString& name, const QByteArray& content)
    {
        return TestSupport::WriteFile(s_folder->GetPath() + '/' + name, content);
    }

    Texts _GetTexts() const
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        static const QRegularExpression tag("<[^>]*>");
        Texts texts;
        Collect(*m_window, "Window", texts);
        for (auto& [way, text] : texts)
            text.remove(s_folder->GetPath()).remove(tag);
        return texts;
    }

    QImage _GetPicture() const
    {
        return dynamic_cast<QTabWidget&>(*m_window->centralWidget()).currentWidget()->grab().toImage();
    }

    /// Switches to French and back.
    /// @return the words that are the same in both languages.
    std::set<QString> _Switch() const
    {
        const Texts english = _GetTexts();
        const QImage englishPicture = _GetPicture();
        App::SetLanguage("fr");
        Texts french = _GetTexts();
        EXPECT_NE(_GetPicture(), englishPicture);
        App::SetLanguage("en");
        EXPECT_EQ(_GetTexts(), english);
        EXPECT_EQ(_GetPicture(), englishPicture);

        EXPECT_EQ(french.size(), english.size());
        std::set<QString> same;
        for (const auto& [way, text] : english)
            std::ranges::set_intersection(GetWords(text), GetWords(french[way]),
                                          std::inserter(same, same.end()));
        return same;
    }

    /// Opens a dialog by its entry in the menu; throws where there is none.
    template <typename Dialog = QDialog>
    RawPtr<Dialog> _Open(const QString& text) const
    {
        const auto actions = m_window->findChildren<QAction*>();
        const auto action = std::ranges::find(actions, text, &QAction::text);
        RawPtr<QAction>(action == actions.end() ? nullptr : *action)->trigger();
        return m_window->findChild<Dialog*>();
    }

    /// Chooses an item of the settings dialog.
    void _Choose(const QString& menuText, const QString& item) const
    {
        const auto dialog = _Open(menuText);
        for (QComboBox* const box : dialog->findChildren<QComboBox*>())
            if (box->findText(item) >= 0)
                box->setCurrentText(item);
        dialog->accept();
        QCoreApplication::sendPostedEvents(dialog.Get(), QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    static inline std::optional<TestSupport::ScriptedServer> s_server;
    static inline std::optional<ScopedTempFolder> s_folder;
    static inline std::optional<App::ApplicationFrame> s_frame;
    std::optional<DeskWindow> m_window;
};

TEST_F(LanguageTest, EmptyWindowFollows)
{
    for (QMenu* const menu : m_window->findChildren<QMenu*>())
        Q_EMIT menu->aboutToShow(); // fills that of recent files
    EXPECT_THAT(_Switch(), testing::ElementsAre("Desk", "Trace"));
}

TEST_F(LanguageTest, AllThatCanBeOnDisplayFollows)
{
    std::promise<void> gate;
    const auto wait = [opened = gate.get_future().share()](std::string_view, Threading::IProgression&) {
        opened.wait();
        return PointCloud();
    };
    App::Services().Require<IPointCloudReader>().AddFormat("slow", wait);
    m_window->Inspect(_Write("a.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n"));
    ASSERT_TRUE(TestSupport::WaitFor([this] { return !m_window->IsBusy(); }));
    // Reading the start of a process fails for whoever may open it.
    ASSERT_TRUE(QFile::link("/proc/self/mem", s_folder->GetPath() + "/g.xyz"));
    for (const QString& file :
         {_Write("b.xyz", "1\n"), _Write("c.ply", "ply\n"), _Write("d.vekdoc", ""), _Write("e.xml", "<a>"),
          s_folder->GetPath() + "/g.xyz", _Write("h.xml", "<InspectionReport/>"), _Write("i.xml", "<a/>")})
        m_window->Inspect(file);
    m_window->Save(s_folder->GetPath() + "/none/k.vekdoc",
                   *m_window->FindResult(s_folder->GetPath() + "/a.xyz"));
    ASSERT_TRUE(TestSupport::WaitFor([this] { return m_window->findChildren<QMessageBox*>().size() == 8; }));
    m_window->Inspect(_Write("f.slow", "1"));
    const ScopeBase open([&gate] { gate.set_value(); });
    App::NotificationBar::Install();
    const auto message = TrString::translate("QObject", "Not enough memory.");
    App::Notifier({message, Log::Verbosity::Error, TrString::translate("InspectionDesk", "Settings"), "!"});
    App::Notifier({message, Log::Verbosity::Error, {}, {}});
    _Open("Se&ttings...");
    _Open("&Usage statistics...");
    for (QLineEdit* const field : m_window->findChildren<QLineEdit*>())
        if (dynamic_cast<LengthLineEdit*>(field)) // Qt itself does not tell it from other fields
            field->setText("!");
    std::set<QString> same{"Desk", "English", "Français", "XML", "mil", "usft", "µin"};
    same.merge(std::set<QString>{"none", "ply", "slow", "vekdoc", "xml", "xyz"}); // of the files
    same.merge(std::set<QString>{"Points", "Trace", "document", "installation", "message", "pages", "points",
                                 "version"}); // are French
    // What is technical stands in brackets behind a sentence of the desk; tags are left out of both.
    same.merge(GetWords("Line does not contain the attribute Xml document root element"));
    same.merge(GetWords(qt_error_string(EIO) + ' ' + qt_error_string(ENOENT)));
    EXPECT_EQ(_Switch(), same);
    EXPECT_TRUE(m_window->IsBusy());
}

TEST_F(LanguageTest, FileDialogsFollow)
{
    m_window->Inspect(_Write("a.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n"));
    ASSERT_TRUE(TestSupport::WaitFor([this] { return !m_window->IsBusy(); }));
    const std::tuple<const char*, QStringList, QStringList> rows[] = {
        {"&Open...",
         {"Open point clouds, documents and reports", "Files to open"},
         {"Ouvrir des nuages de points, des documents et des rapports", "Fichiers à ouvrir"}},
        {"Save &as...",
         {"Save the result", "Documents", "Reports"},
         {"Enregistrer le résultat", "Documents", "Rapports"}}};
    for (const auto& [action, english, french] : rows)
    {
        const auto dialog = _Open<QFileDialog>(action);
        const auto getTexts = [&dialog] {
            QCoreApplication::processEvents();
            QStringList texts{dialog->windowTitle()};
            for (const QString& filter : dialog->nameFilters())
                texts += filter.section(" (", 0, 0);
            return texts;
        };
        EXPECT_EQ(getTexts(), english);
        dialog->selectNameFilter(dialog->nameFilters().back());
        App::SetLanguage("fr");
        EXPECT_EQ(getTexts(), french);
        EXPECT_EQ(dialog->selectedNameFilter(), dialog->nameFilters().back());
        App::SetLanguage("en");
        EXPECT_EQ(getTexts(), english);
        dialog->reject();
        QCoreApplication::sendPostedEvents(dialog.Get(), QEvent::DeferredDelete);
        EXPECT_EQ(dialog, nullptr);
    }
}

TEST_F(LanguageTest, FileDialogsWork)
{
    const QString points = _Write("a.xyz", "0 0 0\n4 0 1\n4 2 0\n0 2 1\n");
    const auto choose = [this](const char* action, const QString& file) {
        const auto dialog = _Open<QFileDialog>(action);
        dialog->setDirectory(s_folder->GetPath());
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
        static_cast<QDialog&>(*dialog).accept();
        QCoreApplication::sendPostedEvents(dialog.Get(), QEvent::DeferredDelete);
        ASSERT_TRUE(TestSupport::WaitFor([this] { return !m_window->IsBusy(); }));
    };
    choose("&Open...", points);
    ASSERT_NE(m_window->FindResult(points), nullptr);
    choose("Save &as...", s_folder->GetPath() + "/saved");
    EXPECT_TRUE(QFile::exists(s_folder->GetPath() + "/saved.vekdoc"));
}

TEST_F(LanguageTest, SettingsDialogKeepsALanguageThatItDoesNotList)
{
    for (const auto& [choice, shown] : {std::pair("fr_CA", "Français"), std::pair("tlh", "English")})
    {
        App::SetLanguage(choice);
        SettingsDialog dialog(DeskSettings(), &*m_window);
        EXPECT_EQ(dialog.findChild<QComboBox*>()->currentText(), shown);
        EXPECT_EQ(dialog.GetChosenLanguage(), std::nullopt) << choice;
    }
}

TEST_F(LanguageTest, SettingsDialogSwitches)
{
    _Choose("Se&ttings...", "Français");
    EXPECT_EQ(App::GetLanguage(), "fr");
    _Choose("Ré&glages…", "Celle du système");
    EXPECT_EQ(App::GetLanguage(), "");
    _Open("Se&ttings...");
}

TEST_F(LanguageTest, UsageIsReportedWithTheLanguageThatIsShown)
{
    DeskSettings settings;
    settings.sendsUsage = true;
    settings.clientId = "probe";
    DeskSettingsStore().Write(settings);
    m_window->UseSettings();
    _Choose("Se&ttings...", "Français");
    _Open("Ré&glages…"); // a page
    EXPECT_TRUE(TestSupport::WaitFor([] {
        return std::ranges::any_of(s_server->GetRequests(), [](const QByteArray& requests) {
            return QString::fromUtf8(requests).contains(
                QRegularExpression("\"application_language\":\\s*\\{\\s*\"value\":\\s*\"fr\""));
        });
    }));
}
} // namespace vek::Desk
