#include "VekBase/FeatureToggle.h"
#include "VekBase/CommandLine.h"
#include <algorithm>
#include <mutex>

namespace vek::Debug
{
namespace
{
struct Registry
{
    std::mutex mutex; ///< Guards toggles.
    std::vector<FeatureToggle*> toggles;
};

// Toggles are made by static initialisers of any module, so the registry must exist before the first of them.
Registry& GetRegistry()
{
    static Registry registry;
    return registry;
}

bool IsOn(const std::string& name, bool isOnAtStart)
{
    if (IsCmdLineArgPresent("--FeatureOn=" + name))
        return true;
    return isOnAtStart && !IsCmdLineArgPresent("--FeatureOff=" + name);
}
} // namespace

FeatureToggle::FeatureToggle(std::string name, bool isOnAtStart)
    : m_name(std::move(name)), m_isOn(Debug::IsOn(m_name, isOnAtStart))
{
    const std::lock_guard lock(GetRegistry().mutex);
    GetRegistry().toggles.push_back(this);
}

FeatureToggle::~FeatureToggle()
{
    const std::lock_guard lock(GetRegistry().mutex);
    std::erase(GetRegistry().toggles, this);
}

FeatureToggle* FeatureToggle::Find(std::string_view name)
{
    const std::lock_guard lock(GetRegistry().mutex);
    const auto& toggles = GetRegistry().toggles;
    const auto found = std::ranges::find(toggles, name, &FeatureToggle::GetName);
    return found == toggles.end() ? nullptr : *found;
}

std::vector<FeatureToggle*> FeatureToggle::GetAll()
{
    const std::lock_guard lock(GetRegistry().mutex);
    return GetRegistry().toggles;
}
} // namespace vek::Debug
