#pragma once
#include "VekAppCore/Analytics/IMeasurementQuery.h"
#include "VekBase/LogText.h"
#include <QList>
#include <utility>

namespace vek::Analytics
{
/// Which one of the custom dimensions or metrics that the property has, from 1.
using CustomDefinitionNumber = int;

/// A text that the property has a place for.
struct CustomDimension
{
    CustomDefinitionNumber number; ///< From 1.
    QString value;                 ///< As it is shown in the reports.
};

/// A number that the property has a place for.
struct CustomMetric
{
    CustomDefinitionNumber number; ///< From 1.
    QString value;                 ///< A number as text.
};

/// Number and value: "2: CAD".
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const CustomDimension& dimension);
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const CustomMetric& metric);
using vek::PrintTo;

/// Items for the Universal Analytics protocol. Reentrant.
class VEKAPPCORE_EXPORT UniversalAnalyticsQuery : public IMeasurementQuery
{
public:
    /// Keys and values, in order.
    using Items = QList<std::pair<QString, QString>>;

    /// @{
    /// Added behind those that are there, also where a key is there already.
    void AddQueryItem(const QString& key, const QString& value);
    void AddQueryItems(const Items& items);
    void AddCustomDimension(const CustomDimension& dimension);
    void AddCustomMetric(const CustomMetric& metric);
    /// @}

    UniversalAnalyticsQuery& operator+=(const UniversalAnalyticsQuery& other);

    /// The items, percent-encoded, in the order of adding.
    [[nodiscard]] QString GetPayload() const override;
    [[nodiscard]] QUrlQuery GetUrlQuery() const override;
    /// It has the items "v", "tid", "cid" and "t".
    [[nodiscard]] bool isValid() const override;

    /// In the order of adding.
    [[nodiscard]] const Items& GetItems() const { return m_items; }

protected:
    /// In the place of the one with this key, if there is one.
    void _SetQueryItem(const QString& key, const QString& value);

private:
    Items m_items;
};

/// What the user did.
class VEKAPPCORE_EXPORT UAEventQuery : public UniversalAnalyticsQuery
{
public:
    /// @{
    /// The fields of the event; each replaces what was set before.
    UAEventQuery(const QString& category, const QString& action);
    void SetEventCategory(const QString& category);
    void SetEventAction(const QString& action);
    void SetEventLabel(const QString& label);
    void SetEventValue(qint64 value);
    void SetPage(const QString& page);
    /// @}
};

/// Where the user is.
class VEKAPPCORE_EXPORT UAPageviewQuery : public UniversalAnalyticsQuery
{
public:
    /// @param page  is left out when it is empty.
    explicit UAPageviewQuery(const QString& page = {});
};

/// How long something took.
class VEKAPPCORE_EXPORT UATimingQuery : public UniversalAnalyticsQuery
{
public:
    /// @{
    /// The fields of the timing; each replaces what was set before.
    UATimingQuery(const QString& category, const QString& name, qint64 milliseconds);
    void SetTimingCategory(const QString& category);
    void SetTimingName(const QString& name);
    void SetTimingLabel(const QString& label);
    void SetTimingTime(qint64 milliseconds);
    /// @}
};
} // namespace vek::Analytics
