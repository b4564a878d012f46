#pragma once
#include "VekBase/Export.h"
#include <atomic>
#include <string>
#include <string_view>
#include <vector>

namespace vek::Debug
{
/// A switch that developers turn at run time, found by its name. Made at namespace scope. Thread-safe.
class VEKBASE_EXPORT FeatureToggle
{
public:
    /// @param isOnAtStart  overruled by the arguments "--FeatureOn=<name>" and "--FeatureOff=<name>".
    explicit FeatureToggle(std::string name, bool isOnAtStart = false);
    FeatureToggle(const FeatureToggle&) = delete;
    FeatureToggle& operator=(const FeatureToggle&) = delete;
    ~FeatureToggle();

    /// As given when it was made.
    [[nodiscard]] const std::string& GetName() const noexcept { return m_name; }
    /// @{
    /// The present state, and its change. Other threads see it without being synchronised.
    [[nodiscard]] bool IsOn() const noexcept { return m_isOn.load(std::memory_order_relaxed); }
    void Set(bool isOn) noexcept { m_isOn.store(isOn, std::memory_order_relaxed); }
    /// @}

    /// The living toggle of that name, the first made of several; null when there is none.
    [[nodiscard]] static FeatureToggle* Find(std::string_view name);
    /// All living toggles, in order of making.
    [[nodiscard]] static std::vector<FeatureToggle*> GetAll();

private:
    const std::string m_name;
    std::atomic<bool> m_isOn;
};
} // namespace vek::Debug
