#include "VekAppCore/App/InitExtension.h"
#include <utility>

namespace vek::App
{
namespace
{
constexpr int appInitPriority = 900;

[[maybe_unused]] const int g_isAppInitExtensionAdded = AddAppInitExtension();
} // namespace

IAppPlugin::~IAppPlugin() = default;

void IAppPlugin::Initialize() {}

GenericInitExtension::GenericInitExtension(Callback callback, int priority)
    : m_callback(std::move(callback)), m_priority(priority)
{}

GenericInitExtension::~GenericInitExtension() = default;

int GenericInitExtension::GetPriority() const { return m_priority; }

int GenericInitExtension::Apply(IO::PluginOwner& owner)
{
    auto* const plugin = dynamic_cast<IAppPlugin*>(&owner.GetPlugin());
    if (!plugin)
        return 1;
    if (m_callback)
        m_callback(owner, *plugin);
    return 0;
}

int AddAppInitExtension()
{
    static const int added =
        IO::PluginMgr::GetInstance().AddInitExtension([]() -> std::unique_ptr<IO::IInitExtension> {
            return std::make_unique<GenericInitExtension>(
                [](IO::PluginOwner&, IAppPlugin& plugin) { plugin.Initialize(); }, appInitPriority);
        });
    return added;
}
} // namespace vek::App
