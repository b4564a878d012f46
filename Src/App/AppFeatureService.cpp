#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/IAppFeatureService.h"
#include "VekAppCore/App/Log.h"
#include "VekAppCore/App/RegisterService.h"
#include "VekAppCore/Settings/AppSettings.h"
#include "VekAppCore/Settings/VekQSettings.h"
#include "VekAppCore/Text/Convert.h"
#include <map>
#include <mutex>
#include <shared_mutex>

namespace vek::App
{
namespace
{
using namespace Qt::StringLiterals;

class AppFeatureService final : public IAppFeatureService
{
public:
    void PostRegistration() { OnNotify(); }

    void OnNotify() override { DeclarationSystem::GetInstance().RunNew<IAppFeatureService>(*this); }

    void Declare(const QString& name, const QVariant& value) override
    {
        QVariant machine = GetAllUsersSettings()->GetValueAsVariant(u"AppFeatures/"_s + name).ToQVariant();
        // Settings keep most values as text. To Qt, "no" would be true.
        if (machine.isValid() && machine.metaType() != value.metaType() &&
            !Convert::FromString(machine.toString(), value.metaType(), machine))
        {
            machine = QVariant(value.metaType()); // nothing is allowed by mistake
            Log(Log::Verbosity::Warning,
                u"The settings of the machine have no valid feature \"%1\""_s.arg(name));
        }
        std::unique_lock lock(m_mutex);
        const bool isNew = m_features.try_emplace(name, Feature{value, machine}).second;
        lock.unlock();
        if (isNew)
            m_changed.Emit(name);
    }

    void SetValue(const QString& name, const QVariant& value) override
    {
        std::unique_lock lock(m_mutex);
        const auto found = m_features.find(name);
        if (found == m_features.end())
            throw Exception::KeyNotFoundException(u"Key not found: %1"_s.arg(name));
        Feature& feature = found->second;
        if (feature.value.metaType() != value.metaType())
            throw Exception::WrongTypeException(u"Wrong type"_s);
        const bool isSeen = !feature.machine.isValid() && feature.value != value;
        feature.value = value;
        lock.unlock();
        if (isSeen)
            m_changed.Emit(name);
    }

    QVariant GetVariant(const QString& name) const override
    {
        const std::shared_lock lock(m_mutex);
        const auto found = m_features.find(name);
        if (found == m_features.end())
            return {};
        return found->second.machine.isValid() ? found->second.machine : found->second.value;
    }

    bool IsOverridden(const QString& name) const override
    {
        const std::shared_lock lock(m_mutex);
        const auto found = m_features.find(name);
        return found != m_features.end() && found->second.machine.isValid();
    }

    Connection OnChanged(std::function<void(const QString&)> callback) override
    {
        return m_changed.Connect(std::move(callback));
    }

private:
    struct Feature
    {
        QVariant value;
        QVariant machine; ///< Valid where the settings of the machine decide.
    };

    mutable std::shared_mutex m_mutex;
    std::map<QString, Feature> m_features;
    Signal<void(const QString&)> m_changed;
};

VEK_DECLARE_SERVICE(IAppFeatureService, AppFeatureService);
} // namespace

IAppFeatureService::~IAppFeatureService() = default;
} // namespace vek::App
