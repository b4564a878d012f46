#pragma once
#include "VekBase/Exception.h"
#include "VekBase/Export.h"
#include "VekBase/Memory.h"
#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QLibrary;

/// Modules that are loaded while the program runs. All of it: main thread only.
namespace vek::IO
{
/// What a module's entry point makes; polymorphic, so that its users can ask for more by dynamic_cast.
class VEKBASE_EXPORT IPlugin : public AllocatedObject
{
public:
    virtual ~IPlugin();
};

/// A module could not be loaded; the message names its file.
class VEKBASE_EXPORT PluginException : public Exception::CriticalException
{
public:
    /// @param file    in the message and in GetFile.
    /// @param reason  why it could not be loaded; not translated.
    PluginException(const QString& file, const QString& reason,
                    const std::source_location& where = std::source_location::current());
    ~PluginException() override;

    /// As it was given to the one who loads.
    [[nodiscard]] const QString& GetFile() const noexcept { return m_file; }

private:
    QString m_file;
};

/// A loaded module and its plug-in object, the only owner of that module. Destroying it deletes the object,
/// then unloads the module.
class VEKBASE_EXPORT PluginOwner
{
public:
    /// Loads @p file and calls its entry point, VekCreatePlugin.
    /// @throws PluginException  the file is missing or no module, lacks the entry point, or it threw or gave
    /// null.
    explicit PluginOwner(const QString& file);
    PluginOwner(const PluginOwner&) = delete;
    PluginOwner& operator=(const PluginOwner&) = delete;
    ~PluginOwner();

    /// As it was given to the constructor.
    [[nodiscard]] const QString& GetFile() const noexcept { return m_file; }
    /// What the entry point made; lives as long as this owner.
    [[nodiscard]] IPlugin& GetPlugin() const noexcept { return *m_plugin; }

private:
    QString m_file;
    std::unique_ptr<QLibrary> m_library;
    std::unique_ptr<IPlugin> m_plugin;
};

/// What is done with every plug-in right after its module was loaded.
class VEKBASE_EXPORT IInitExtension : public AllocatedObject
{
public:
    virtual ~IInitExtension();
    /// Lower ones are applied first.
    [[nodiscard]] virtual int GetPriority() const = 0;
    /// @return 0 when it took the plug-in or had nothing to do, anything else when the plug-in is none of its
    /// kind.
    virtual int Apply(PluginOwner& owner) = 0;
};

/// The loaded modules of the process.
class VEKBASE_EXPORT PluginMgr
{
public:
    /// Called once for every plug-in that is loaded.
    using InitExtensionFactory = std::function<std::unique_ptr<IInitExtension>()>;

    /// Made by the first call.
    static PluginMgr& GetInstance();

    /// Keeps a factory whose extension is applied to every plug-in loaded from now on. Called at static
    /// initialisation.
    /// @return the number of factories.
    int AddInitExtension(InitExtensionFactory factory);

    /// Loads one module and applies the init extensions to its plug-in, lowest priority first.
    /// @return the plug-in's owner, which belongs to this manager; the one of before when the file is loaded
    /// already.
    /// @throws PluginException  it cannot be loaded, or an init extension threw. Its code stays in memory all
    /// the same,
    ///         because what it registered while it was being loaded may still be called. Loading it again
    ///         applies the init extensions anew.
    PluginOwner& Load(const QString& file);

    /// Loads every shared module in @p folder in alphabetical order; one that fails does not keep the others
    /// out.
    /// @return what failed; a folder that does not exist holds no modules.
    std::vector<PluginException> LoadFolder(const QString& folder);

    /// In order of loading.
    [[nodiscard]] std::vector<PluginOwner*> GetPlugins() const;

    /// Destroys the plug-ins and unloads their modules, the last one loaded first. Whatever points into them
    /// must be gone before (App::DeclarationSystem::DeleteAllExtensions).
    void UnloadAll();

    PluginMgr(const PluginMgr&) = delete;
    PluginMgr& operator=(const PluginMgr&) = delete;

private:
    PluginMgr();
    ~PluginMgr();

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
} // namespace vek::IO

/// Defines the entry point of a module: VEK_PLUGIN(MyPlugin) once in a source file, MyPlugin deriving from
/// IPlugin.
#define VEK_PLUGIN(Plugin)                                                                                   \
    extern "C" Q_DECL_EXPORT vek::IO::IPlugin* VekCreatePlugin() { return new Plugin(); }
