#pragma once
#include "VekAppCore/App/ServiceManager.h"
#include "VekAppCore/Export.h"
#include "VekBase/LogText.h"
#include "VekBase/MoveOnlyFunction.h"
#include "VekBase/RawPtr.h"
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <typeindex>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vek::App
{
/// Handed to the callbacks that create services.
struct DynamicServicesCreationCtx
{
    RawPtr<IServiceManager> manager; ///< Where the services are registered.
};

/// Handed to the callbacks that make the extension point of each declared service exist.
struct DynamicServicesDeclarationCtx
{};

/// One callback of the declaration system, as DeclarationSystem::List shows it.
struct DeclarationInfo
{
    std::string context;     ///< The type of the context that the callback is run with.
    std::string declared;    ///< What it declares: a service, for instance; may be empty.
    std::source_location by; ///< Who declared it.
    std::optional<std::chrono::nanoseconds> duration; ///< Of its last run; empty before the first.
};
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const DeclarationInfo& info);
using vek::PrintTo;

/// The callbacks of one context type. Main thread only, after static initialisation.
class VEKAPPCORE_EXPORT IDeclarationSystemExtension : public IObject
{
public:
    ~IDeclarationSystemExtension() override;

    IDeclarationSystemExtension(const IDeclarationSystemExtension&) = delete;
    IDeclarationSystemExtension& operator=(const IDeclarationSystemExtension&) = delete;

protected:
    struct Record
    {
        std::string declared;
        std::source_location by;
        std::uint64_t order; ///< Of appending, over all contexts.
        std::optional<std::chrono::nanoseconds> duration;
    };

    IDeclarationSystemExtension() = default;
    void _AddRecord(std::string declared, const std::source_location& by);

    std::vector<Record> m_records; ///< One a callback, in order of appending.
    std::size_t m_firstNew = 0;    ///< Before it, all have run.

private:
    friend class DeclarationSystem;
};

/// @tparam TContext  what the callbacks are handed.
template <typename TContext>
class DeclarationSystemExtension final : public IDeclarationSystemExtension
{
public:
    /// Run on the main thread.
    using Callback = MoveOnlyFunction<void(TContext&)>;

    /// @param declared  what the callback declares, for DeclarationSystem::List.
    void Append(Callback callback, std::string declared = {},
                const std::source_location& by = std::source_location::current())
    {
        _AddRecord(std::move(declared), by);
        m_callbacks.push_back(std::move(callback));
    }

    /// Runs every callback in order of appending, also those appended meanwhile. What one throws leaves this
    /// function.
    void RunAll(TContext& context)
    {
        m_firstNew = 0;
        RunNew(context);
    }

    /// Runs the callbacks that have not run yet: those of a module that was loaded after RunAll.
    void RunNew(TContext& context)
    {
        while (m_firstNew < m_callbacks.size())
        {
            const std::size_t index = m_firstNew++;
            const auto start = std::chrono::steady_clock::now();
            m_callbacks[index](context);
            m_records[index].duration = std::chrono::steady_clock::now() - start;
        }
    }

private:
    std::deque<Callback> m_callbacks; ///< A deque keeps them in place while one of them appends.
};

/// The declarations of all modules, one list of callbacks per context type. Filled by static initialisers.
/// Main thread only, after static initialisation.
class VEKAPPCORE_EXPORT DeclarationSystem
{
public:
    /// Made by the first call.
    static DeclarationSystem& GetInstance();

    DeclarationSystem(const DeclarationSystem&) = delete;
    DeclarationSystem& operator=(const DeclarationSystem&) = delete;

    /// The callbacks of a context type or a service interface, made when there are none yet.
    template <typename TContext>
    DeclarationSystemExtension<TContext>& GetExtension()
    {
        return static_cast<DeclarationSystemExtension<TContext>&>(
            _GetOrCreate(typeid(TContext), []() -> std::unique_ptr<IDeclarationSystemExtension> {
                return std::make_unique<DeclarationSystemExtension<TContext>>();
            }));
    }

    /// The same without making any; null when there are none yet.
    template <typename TContext>
    [[nodiscard]] RawPtr<DeclarationSystemExtension<TContext>> FindExtension()
    {
        return static_cast<DeclarationSystemExtension<TContext>*>(_Find(typeid(TContext)));
    }

    /// Adds a callback to the extension of TContext, which is made when there is none yet.
    /// @param declared  what it declares, for List.
    template <typename TContext>
    void Append(typename DeclarationSystemExtension<TContext>::Callback callback, std::string declared = {},
                const std::source_location& by = std::source_location::current())
    {
        GetExtension<TContext>().Append(std::move(callback), std::move(declared), by);
    }

    /// Runs all callbacks of TContext, in order of appending.
    template <typename TContext>
    void RunAll(TContext& context)
    {
        if (const auto extension = FindExtension<TContext>())
            extension->RunAll(context);
    }

    /// Runs the callbacks of TContext that have not run yet.
    template <typename TContext>
    void RunNew(TContext& context)
    {
        if (const auto extension = FindExtension<TContext>())
            extension->RunNew(context);
    }

    /// From now on no callback has run yet: the services of the next application frame have heard of none.
    void Rewind() noexcept;

    /// Destroys all callbacks. To be called before modules that declared something are unloaded.
    void DeleteAllExtensions();

    /// What is declared, in order of declaring.
    [[nodiscard]] std::vector<DeclarationInfo> List() const;

    /// Context types that somebody has asked for by GetExtension.
    [[nodiscard]] std::size_t GetExtensionCount() const noexcept { return m_extensions.size(); }

private:
    using Maker = std::unique_ptr<IDeclarationSystemExtension> (*)();

    DeclarationSystem();
    ~DeclarationSystem();
    IDeclarationSystemExtension& _GetOrCreate(std::type_index key, Maker make);
    [[nodiscard]] IDeclarationSystemExtension* _Find(std::type_index key) const;

    std::unordered_map<std::type_index, std::unique_ptr<IDeclarationSystemExtension>> m_extensions;
};
} // namespace vek::App
