#pragma once
#include "VekAppCore/App/DeclarationSystem.h"
#include "VekBase/TypeName.h"
#include <concepts>
#include <memory>
#include <source_location>
#include <typeindex>

namespace vek::App
{
/// How a service is declared; nothing can be chosen yet.
struct DeclarationServiceOptions
{};
} // namespace vek::App

namespace vek::Declaration
{
namespace Details
{
/// Writes the error line that names the service whose creation throws; to be called inside the catch block.
VEKAPPCORE_EXPORT void LogCreationFailure(const std::string& service,
                                          const std::source_location& by) noexcept;
} // namespace Details

/// Declares a service: the start of the application creates an Implementation and registers it under
/// Interface, then calls its PostRegistration(), if it has one. Called by a static initialiser of the module
/// that implements the service; VEK_DECLARE_SERVICE is the short form.
/// From a static library the linker leaves out a source file that nothing refers to, and its declarations
/// with it: make that an object library.
/// @param options  may be null.
/// @return 1.
template <std::derived_from<App::IServiceBase> Interface, std::derived_from<Interface> Implementation>
int RegisterService([[maybe_unused]] const App::DeclarationServiceOptions* options,
                    const std::source_location& where = std::source_location::current())
{
    App::DeclarationSystem& declarations = App::DeclarationSystem::GetInstance();
    const std::string name = GetTypeName(typeid(Implementation));
    declarations.Append<App::DynamicServicesCreationCtx>(
        [name, where](App::DynamicServicesCreationCtx& context) {
            App::IServiceManager& manager = *context.manager;
            try
            {
                auto service = std::make_unique<Implementation>();
                [[maybe_unused]] Implementation& added = *service;
                [[maybe_unused]] const bool isAdded =
                    manager.AddService(typeid(Interface), std::move(service));
                if constexpr (requires { added.PostRegistration(); })
                    if (isAdded)
                        added.PostRegistration();
            }
            catch (...)
            {
                Details::LogCreationFailure(name, where);
                throw;
            }
        },
        name, where);
    declarations.Append<App::DynamicServicesDeclarationCtx>(
        [](App::DynamicServicesDeclarationCtx&) {
            App::DeclarationSystem::GetInstance().GetExtension<Interface>();
        },
        GetTypeName(typeid(Interface)), where);
    return 1;
}
} // namespace vek::Declaration

#define VEK_DETAILS_JOIN_2(a, b) a##b
#define VEK_DETAILS_JOIN(a, b) VEK_DETAILS_JOIN_2(a, b)

/// Declares a service in one line at namespace scope of a source file.
///
/// @code
/// class IClock : public App::IService<IClock>
/// {
/// public:
///     virtual QTime GetTime() const = 0;
/// };
///
/// class Clock final : public IClock
/// {
/// public:
///     QTime GetTime() const override { return QTime::currentTime(); }
/// };
/// VEK_DECLARE_SERVICE(IClock, Clock);
///
/// QTime Ask()
/// {
///     return App::Services().Require<IClock>().GetTime();
/// }
/// @endcode
#define VEK_DECLARE_SERVICE(Interface, Implementation)                                                       \
    [[maybe_unused]] static const int VEK_DETAILS_JOIN(vekDeclaredService, __COUNTER__) =                    \
        ::vek::Declaration::RegisterService<Interface, Implementation>(nullptr)
