#include "VekBase/PluginMgr.h"
#include "Base/CurrentException.h"
#include <QDir>
#include <QFileInfo>
#include <QLibrary>
#include <algorithm>
#include <utility>

namespace vek::IO
{
namespace
{
constexpr const char* entryPoint = "VekCreatePlugin";
constexpr const char* unknownException = "an exception of unknown type";
using EntryPoint = IPlugin* (*)();
} // namespace

IPlugin::~IPlugin() = default;
IInitExtension::~IInitExtension() = default;
PluginException::~PluginException() = default;

PluginException::PluginException(const QString& file, const QString& reason,
                                 const std::source_location& where)
    : CriticalException(
          QStringLiteral("Impossible to load the plug-in \"%1\": %2").arg(file, reason).toStdString(), where),
      m_file(file)
{}

PluginOwner::PluginOwner(const QString& file)
    : m_file(file), m_library(std::make_unique<QLibrary>(QFileInfo(file).absoluteFilePath()))
{
    if (!QFileInfo::exists(file)) // or the loader would try similar names
        throw PluginException(file, QStringLiteral("the file does not exist"));
    // All symbols now: one that is missing must be an error here, not the end of the program later.
    m_library->setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!m_library->load())
        throw PluginException(file, m_library->errorString());
    const auto create = reinterpret_cast<EntryPoint>(m_library->resolve(entryPoint));
    if (!create)
        throw PluginException(file,
                              QStringLiteral("it has no entry point %1").arg(QLatin1String(entryPoint)));
    try
    {
        m_plugin.reset(create());
    }
    catch (...)
    {
        throw PluginException(file, vek::Details::DescribeCurrentException(unknownException));
    }
    if (!m_plugin)
        throw PluginException(file, QStringLiteral("%1 returned no plug-in").arg(QLatin1String(entryPoint)));
}

PluginOwner::~PluginOwner()
{
    m_plugin.reset();
    m_library->unload();
}

struct PluginMgr::Impl
{
    struct Module
    {
        std::unique_ptr<PluginOwner> owner;
        std::size_t factoriesBefore; ///< What its own initialisers have added comes behind them.
        bool isRejected = false;     ///< Kept in memory, see Load.
    };

    std::vector<InitExtensionFactory> factories;
    std::vector<Module> modules; ///< In order of loading.
};

PluginMgr::PluginMgr() : m_impl(std::make_unique<Impl>()) {}
PluginMgr::~PluginMgr() = default;

PluginMgr& PluginMgr::GetInstance()
{
    // Never destroyed: at the end of the program, static objects that are still alive may point into the
    // modules.
    static PluginMgr* const manager = new PluginMgr();
    return *manager;
}

int PluginMgr::AddInitExtension(InitExtensionFactory factory)
{
    m_impl->factories.push_back(std::move(factory));
    return static_cast<int>(m_impl->factories.size());
}

PluginOwner& PluginMgr::Load(const QString& file)
{
    const QFileInfo info(file);
    // One name for a module and the links to it, or its plug-in would be made once for each of them.
    const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    const auto find = [this, &path] {
        return std::ranges::find(m_impl->modules, path,
                                 [](const auto& module) { return module.owner->GetFile(); });
    };
    auto module = find();
    if (module == m_impl->modules.end())
    {
        const std::size_t factoriesBefore = m_impl->factories.size();
        auto made = std::make_unique<PluginOwner>(path);
        // At once: an extension may load more modules, which come behind.
        module = m_impl->modules.insert(m_impl->modules.end(), {std::move(made), factoriesBefore});
    }
    else if (!module->isRejected)
        return *module->owner;
    module->isRejected = false;
    PluginOwner& owner = *module->owner;
    try
    {
        std::vector<std::unique_ptr<IInitExtension>> extensions;
        for (const InitExtensionFactory& factory : m_impl->factories)
            if (auto extension = factory())
                extensions.push_back(std::move(extension));
        std::ranges::stable_sort(extensions, {},
                                 [](const auto& extension) { return extension->GetPriority(); });
        for (const auto& extension : extensions)
            extension->Apply(owner);
    }
    catch (...)
    {
        find()->isRejected = true;
        throw PluginException(path, vek::Details::DescribeCurrentException(unknownException));
    }
    return owner;
}

std::vector<PluginException> PluginMgr::LoadFolder(const QString& folder)
{
    std::vector<PluginException> failures;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files, QDir::Name))
    {
        if (!QLibrary::isLibrary(file.fileName()))
            continue;
        try
        {
            Load(file.absoluteFilePath());
        }
        catch (const PluginException& failure)
        {
            failures.push_back(failure);
        }
    }
    return failures;
}

std::vector<PluginOwner*> PluginMgr::GetPlugins() const
{
    std::vector<PluginOwner*> plugins;
    for (const Impl::Module& module : m_impl->modules)
        if (!module.isRejected)
            plugins.push_back(module.owner.get());
    return plugins;
}

void PluginMgr::UnloadAll()
{
    while (!m_impl->modules.empty())
    {
        const Impl::Module last =
            std::move(m_impl->modules.back()); // a plug-in that dies may ask for the others
        m_impl->modules.pop_back();
        m_impl->factories.resize(std::min(m_impl->factories.size(), last.factoriesBefore));
    }
}
} // namespace vek::IO
