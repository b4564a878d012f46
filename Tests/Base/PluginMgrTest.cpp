#include "Plugins/TracedPlugin.h"
#include "VekBase/ScopedTempFolder.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gmock/gmock.h>
#include <mutex>
#include <optional>

namespace vek::IO
{
namespace
{
using testing::ElementsAre;

const QString folder = QStringLiteral(VEK_PLUGIN_FOLDER "/");
const QString suffix = QStringLiteral(VEK_PLUGIN_SUFFIX);

std::vector<std::string> g_trace;
std::function<void(PluginOwner&)> g_onApply;

std::string GetName(const PluginOwner& owner) { return QFileInfo(owner.GetFile()).baseName().toStdString(); }

/// Leaves its priority in the trace; the first one to be applied connects the plug-in to the trace.
class TracedInitExtension : public IInitExtension
{
public:
    explicit TracedInitExtension(int priority) : m_priority(priority) {}
    int GetPriority() const override { return m_priority; }
    int Apply(PluginOwner& owner) override
    {
        dynamic_cast<TestSupport::TracedPlugin&>(owner.GetPlugin()).SetTrace(&g_trace);
        g_trace.push_back(GetName(owner) + ' ' + std::to_string(m_priority));
        if (m_priority == 20 && g_onApply)
            g_onApply(owner);
        return m_priority; // "none of its kind": must not keep the others from being applied
    }

private:
    int m_priority;
};

class PluginMgrUse : public testing::Test
{
protected:
    static void AddExtensions()
    {
        for (const int priority : {30, 10, 20})
            PluginMgr::GetInstance().AddInitExtension(
                [priority] { return std::make_unique<TracedInitExtension>(priority); });
        PluginMgr::GetInstance().AddInitExtension([] { return nullptr; });
    }
    PluginMgrUse()
    {
        static std::once_flag added; // nothing takes them out again
        std::call_once(added, AddExtensions);
        g_trace.clear();
        g_onApply = nullptr;
    }
    ~PluginMgrUse() override { manager.UnloadAll(); }

    static PluginOwner& Load(const char* name)
    {
        return PluginMgr::GetInstance().Load(folder + name + suffix);
    }
    std::vector<std::string> GetLoaded() const
    {
        std::vector<std::string> names;
        for (const PluginOwner* owner : manager.GetPlugins())
            names.push_back(GetName(*owner));
        return names;
    }

    PluginMgr& manager = PluginMgr::GetInstance();
};

TEST_F(PluginMgrUse, AppliesExtensionsByPriorityAndUnloadsInReverseOrder)
{
    Load("Second");
    Load("First");
    EXPECT_THAT(g_trace,
                ElementsAre("Second 10", "Second 20", "Second 30", "First 10", "First 20", "First 30"));
    g_trace.clear();
    manager.UnloadAll();
    EXPECT_THAT(g_trace, ElementsAre("First deleted", "First unloaded", "Second deleted", "Second unloaded"));
    EXPECT_THAT(GetLoaded(), ElementsAre());
}

TEST_F(PluginMgrUse, LoadsAModuleOnceWhateverItIsCalled)
{
    PluginOwner& owner = Load("First");
    const ScopedTempFolder links;
    const QString link = links.GetPath() + "/Link" + suffix;
    ASSERT_TRUE(QFile::link(folder + "First" + suffix, link));
    for (const QString& file : {folder + "../" + QDir(folder).dirName() + "/First" + suffix, link,
                                QDir::current().relativeFilePath(folder + "First" + suffix)})
        EXPECT_EQ(&manager.Load(file), &owner) << file.toStdString();
    EXPECT_THAT(GetLoaded(), ElementsAre("First"));
}

TEST_F(PluginMgrUse, ModuleLoadedByAnExtensionIsUnloadedBeforeItsLoader)
{
    g_onApply = [](PluginOwner& owner) {
        if (GetName(owner) == "First")
            Load("Second");
        EXPECT_EQ(&Load("First"), PluginMgr::GetInstance().GetPlugins().front()); // not once more
    };
    Load("First");
    EXPECT_THAT(GetLoaded(), ElementsAre("First", "Second"));
    g_trace.clear();
    manager.UnloadAll();
    EXPECT_THAT(g_trace, ElementsAre("Second deleted", "Second unloaded", "First deleted", "First unloaded"));
}

TEST_F(PluginMgrUse, ExtensionThatThrowsRejectsOnlyItsPlugin)
{
    g_onApply = [](PluginOwner& owner) {
        if (GetName(owner) == "First")
            throw std::runtime_error("no licence");
    };
    const std::vector<PluginException> failures = manager.LoadFolder(folder);
    EXPECT_TRUE(std::ranges::any_of(failures, [](const PluginException& failure) {
        return std::string(failure.what()).ends_with("First" + suffix.toStdString() + "\": no licence");
    }));
    EXPECT_THAT(GetLoaded(), ElementsAre("Second"));
    g_onApply = nullptr;
    Load("First"); // another attempt
    EXPECT_THAT(GetLoaded(), ElementsAre("First", "Second"));
}

struct FailureCase
{
    const char* fault;
    const char* name;
    const char* reason; ///< Empty where the system words it.
};
void PrintTo(const FailureCase& row, std::ostream* out) { *out << row.fault; }
class PluginMgrFailure : public PluginMgrUse, public testing::WithParamInterface<FailureCase>
{};

TEST_P(PluginMgrFailure, NamesTheFileAndTheReason)
{
    const ScopedTempFolder texts;
    const QString text = texts.GetPath() + "/Text" + suffix;
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("This is no module.") > 0);
    file.close();

    const QString path = GetParam().name == std::string("Text") ? text : folder + GetParam().name + suffix;
    try
    {
        manager.Load(path);
        FAIL();
    }
    catch (const PluginException& failure)
    {
        EXPECT_EQ(failure.GetFile(), path);
        EXPECT_THAT(failure.what(),
                    testing::StartsWith("Impossible to load the plug-in \"" + path.toStdString() + "\": "));
        EXPECT_THAT(failure.what(), testing::EndsWith(GetParam().reason));
    }
    EXPECT_THAT(GetLoaded(), ElementsAre());
    EXPECT_NO_THROW(Load("First"));
}
INSTANTIATE_TEST_SUITE_P(
    Rows, PluginMgrFailure,
    testing::Values(
        FailureCase{"system asked for a file that is missing", "Missing", "the file does not exist"},
        FailureCase{"file that is no module", "Text", ""},
        FailureCase{"program ended by the first call of a missing function", "LacksSymbol", ""},
        FailureCase{"null called", "NoEntryPoint", "it has no entry point VekCreatePlugin"},
        FailureCase{"exception of another type", "Throws", "no licence"},
        FailureCase{"exception that is no std::exception", "ThrowsUnknown", "an exception of unknown type"},
        FailureCase{"null kept", "ReturnsNull", "VekCreatePlugin returned no plug-in"}));
} // namespace
} // namespace vek::IO
