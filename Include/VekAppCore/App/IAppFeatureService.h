#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekBase/Signal.h"
#include <QVariant>
#include <functional>
#include <optional>

namespace vek::App
{
/// The features of the application: a table of named, typed values, such as "AnalyticsService/UsedService". A
/// module declares those of its own by appending a callback to this interface's extension point:
/// App::DeclarationSystem::GetInstance().Append<IAppFeatureService>([](IAppFeatureService& features) {...});
/// The settings of the machine override a feature by the same name in their group "AppFeatures". Reading is
/// thread-safe; the rest is for the main thread only.
class VEKAPPCORE_EXPORT IAppFeatureService : public IService<IAppFeatureService>
{
public:
    ~IAppFeatureService() override;

    /// Adds a feature; one that is there keeps its value. Its type is that of @p value from now on. Where the
    /// settings of the machine have something that is no such value, it is false, 0 or empty, and a warning
    /// is logged.
    virtual void Declare(const QString& name, const QVariant& value) = 0;

    /// Gives it another value, for this run; while the machine overrides it, that is not seen.
    /// @throws Exception::KeyNotFoundException  it is not declared.
    /// @throws Exception::WrongTypeException  it has another type.
    virtual void SetValue(const QString& name, const QVariant& value) = 0;

    /// Invalid where it is not declared.
    [[nodiscard]] virtual QVariant GetVariant(const QString& name) const = 0;

    /// Whether the settings of the machine decide.
    [[nodiscard]] virtual bool IsOverridden(const QString& name) const = 0;

    /// Calls @p callback with the name of each feature that is added or gets another value, while the
    /// connection is kept.
    [[nodiscard]] virtual Connection OnChanged(std::function<void(const QString&)> callback) = 0;

    /// Empty where it is not declared, or has another type.
    template <typename T>
    [[nodiscard]] std::optional<T> GetValue(const QString& name) const
    {
        const QVariant value = GetVariant(name);
        if (value.metaType() != QMetaType::fromType<T>())
            return std::nullopt;
        return value.value<T>();
    }
};
} // namespace vek::App
