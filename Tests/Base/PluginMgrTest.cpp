#include "Plugins/TracedPlugin.h"
#include "VekBase/ScopedTempFolder.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gmock/gmock.h>

namespace vek::IO
{
using testing::ElementsAre;

static const QString folder = QStringLiteral(VEK_PLUGIN_FOLDER "/");
static const QString suffix = QStringLiteral(VEK_PLUGIN_SUFFIX);
static std::vector<std::string> g_trace;
static std::function<void(const std::string& name)> g_onApply;

static std::string GetName(const PluginOwner* owner)
{
    return QFileInfo(owner->GetFile()).baseName().toStdString();
}

/// Leaves its priority in the trace.
struct TracedInitExtension : IInitExtension
{
    explicit TracedInitExtension(int value) : priority(value) {}
    int GetPriority() const override { return priority; }
    int Apply(PluginOwner& owner) override
    {
        dynamic_cast<TracedPlugin&>(owner.GetPlugin()).SetTrace(&g_trace);
        g_trace.push_back(GetName(&owner) + ' ' + std::to_string(priority));
        if (priority == 20 && g_onApply)
            g_onApply(GetName(&owner));
        return priority; // "none of its kind": must not keep the others from being applied
    }
    int priority;
};

[[maybe_unused]] static const int g_extensionCount = [] {
    for (const int priority : {30, 10, 20})
        PluginMgr::GetInstance().AddInitExtension(
            [=] { return std::make_unique<TracedInitExtension>(priority); });
    return PluginMgr::GetInstance().AddInitExtension([] { return nullptr; });
}();

static PluginOwner* Load(const QString& name)
{
    return &PluginMgr::GetInstance().Load(folder + name + suffix);
}

TEST(PluginMgr, AppliesExtensionsByPriorityAndUnloadsInReverseOrder)
{
    PluginMgr& manager = PluginMgr::GetInstance();
    g_trace.clear();
    g_onApply = [](const std::string& name) {
        if (name == "Second")
            Load("First"); // comes behind its loader
        Load("Second");    // not once more
    };
    PluginOwner* const second = Load("Second");
    EXPECT_THAT(g_trace,
                ElementsAre("Second 10", "Second 20", "First 10", "First 20", "First 30", "Second 30"));
    g_trace.clear();
    const ScopedTempFolder links;
    ASSERT_TRUE(QFile::link(folder + "Second" + suffix, links.GetPath() + "/Link" + suffix));
    EXPECT_EQ(&manager.Load(links.GetPath() + "/Link" + suffix), second);
    EXPECT_EQ(&manager.Load(QDir::current().relativeFilePath(second->GetFile())), second);
    manager.UnloadAll();
    EXPECT_THAT(g_trace, ElementsAre("First deleted", "First unloaded", "Second deleted", "Second unloaded"));
    EXPECT_THAT(manager.GetPlugins(), ElementsAre());
}

TEST(PluginMgr, OneThatFailsIsNamedWithItsReasonAndTheOthersLoad)
{
    PluginMgr& manager = PluginMgr::GetInstance();
    g_onApply = [](const std::string& name) {
        if (name == "First")
            throw std::runtime_error("refused");
    };
    std::string failures;
    for (const PluginException& failure : manager.LoadFolder(folder))
        failures += failure.what() + std::string("\n");
    for (const auto& [name, reason] :
         {std::pair("Text", ""), // as the system words it
          std::pair("NoEntryPoint", "it has no entry point VekCreatePlugin\n"),
          std::pair("ThrowsUnknown", "an exception of unknown type\n"),
          std::pair("ReturnsNull", "VekCreatePlugin returned no plug-in\n"), std::pair("First", "refused\n")})
        EXPECT_THAT(failures, testing::HasSubstr("Impossible to load the plug-in \"" +
                                                 (folder + name + suffix).toStdString() + "\": " + reason));
    EXPECT_THAT([] { Load("Missing"); },
                testing::ThrowsMessage<PluginException>(testing::EndsWith("\": the file does not exist")));
    EXPECT_THAT(manager.GetPlugins(), ElementsAre(testing::ResultOf(GetName, "Second")));
    g_onApply = nullptr;
    Load("First"); // another attempt
    EXPECT_EQ(manager.GetPlugins().size(), 2U);
    manager.UnloadAll();
}
} // namespace vek::IO
