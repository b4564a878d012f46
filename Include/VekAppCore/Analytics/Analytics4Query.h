#pragma once
#include "VekAppCore/Analytics/IMeasurementQuery.h"
#include "VekBase/LogText.h"
#include <QJsonArray>
#include <QJsonObject>
#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

namespace vek::Analytics
{
/// Events for the Google Analytics 4 Measurement Protocol: a JSON body. Reentrant.
class VEKAPPCORE_EXPORT Analytics4Query : public IMeasurementQuery
{
public:
    /// What happened, with parameters of any names.
    struct VEKAPPCORE_EXPORT Event
    {
        QString name; ///< Letters, digits and "_".
        std::vector<std::pair<QString, QJsonValue>>
            parameters;       ///< In order; of equal keys the last one counts.
        bool isDebug = false; ///< Shown in the debug view of the property.

        /// @param milliseconds  that the user was engaged.
        void SetEngagement(double milliseconds);

        /// {"name": ..., "params": {...}}; blanks in keys become "_".
        operator QJsonValue() const;
    };

    Analytics4Query() = default;
    /// @{
    /// A query of one or several events; more may be added.
    explicit Analytics4Query(const Event& event);
    Analytics4Query(std::initializer_list<Event> events);
    /// @}

    /// @{
    /// What the query says, who sends it and to which stream.
    void AddEvent(const Event& event);
    void SetClientID(const QString& id) { m_clientId = id; }
    void SetMeasurementID(const QString& id) { m_measurementId = id; }
    void SetApiSecretID(const QString& secret) { m_apiSecret = secret; }
    /// @}

    /// @param microseconds  since 1970, UTC.
    void SetTimestamp(quint64 microseconds) { m_timestamp = microseconds; }
    /// Names and values.
    void SetUserProperties(const std::map<QString, QString>& properties);

    /// Compact JSON.
    [[nodiscard]] QString GetPayload() const override;
    [[nodiscard]] QUrlQuery GetUrlQuery() const override;
    [[nodiscard]] bool isValid() const override { return true; }

private:
    QString m_measurementId;
    QString m_apiSecret;
    quint64 m_timestamp = 0;
    QString m_clientId;
    QJsonObject m_userProperties;
    QJsonArray m_events;
};

/// An event with a category, and an action for its name, in lower case with "_" for blanks.
struct VEKAPPCORE_EXPORT OldEvent : Analytics4Query::Event
{
    /// @param label  is left out when it is empty.
    /// @param value  is left out when it is negative.
    OldEvent(const QString& category, const QString& action, const QString& label, int value);
};

/// The user is on a page.
struct VEKAPPCORE_EXPORT PageViewEvent : Analytics4Query::Event
{
    /// @param page  begins with "/".
    explicit PageViewEvent(const QString& page);
};

/// How long something took.
struct VEKAPPCORE_EXPORT TimingEvent : Analytics4Query::Event
{
    /// @param milliseconds  are sent whole, without what is behind the point.
    /// @param label  is left out when it is empty.
    TimingEvent(const QString& category, const QString& action, double milliseconds, const QString& label);

    /// Without what is behind the point, as near as there is a number; 0 for none.
    [[nodiscard]] static qint64 Truncate(double milliseconds);
};

/// What is sent.
[[nodiscard]] VEKAPPCORE_EXPORT std::string ToLogText(const Analytics4Query::Event& event);
using vek::PrintTo;
} // namespace vek::Analytics
