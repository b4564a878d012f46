#include "VekAppCore/Analytics/Analytics4Query.h"
#include "Analytics/EncodeForQuery.h"
#include <QJsonDocument>
#include <algorithm>
#include <cmath>

namespace vek::Analytics
{
namespace
{
using namespace Qt::StringLiterals;

QString Join(QString words) { return words.replace(u' ', u'_'); }

} // namespace

IMeasurementQuery::~IMeasurementQuery() = default;

void Analytics4Query::Event::SetEngagement(double milliseconds)
{
    parameters.emplace_back(u"engagement_time_msec"_s, milliseconds);
}

Analytics4Query::Event::operator QJsonValue() const
{
    QJsonObject object;
    for (const auto& [key, value] : parameters)
        object.insert(Join(key), value);
    if (isDebug)
        object.insert(u"debug_mode"_s, true);
    return QJsonObject{{u"name"_s, name}, {u"params"_s, object}};
}

Analytics4Query::Analytics4Query(const Event& event) { AddEvent(event); }

Analytics4Query::Analytics4Query(std::initializer_list<Event> events)
{
    std::ranges::for_each(events, [this](const Event& event) { AddEvent(event); });
}

void Analytics4Query::AddEvent(const Event& event) { m_events.append(event); }

void Analytics4Query::SetUserProperties(const std::map<QString, QString>& properties)
{
    for (const auto& [name, value] : properties)
        m_userProperties.insert(name, QJsonObject{{u"value"_s, value}});
}

QString Analytics4Query::GetPayload() const
{
    const QJsonObject body{{u"client_id"_s, m_clientId},
                           {u"user_properties"_s, m_userProperties},
                           {u"events"_s, m_events},
                           {u"timestamp_micros"_s, static_cast<qint64>(m_timestamp)}};
    return QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact));
}

QUrlQuery Analytics4Query::GetUrlQuery() const
{
    return {{u"measurement_id"_s, EncodeForQuery(m_measurementId)},
            {u"api_secret"_s, EncodeForQuery(m_apiSecret)}};
}

qint64 TimingEvent::Truncate(double milliseconds)
{
    constexpr double limit = 9223372036854774784.0; // the largest below 2^63
    return std::isnan(milliseconds) ? 0 : static_cast<qint64>(std::clamp(milliseconds, -limit, limit));
}

OldEvent::OldEvent(const QString& category, const QString& action, const QString& label, int value)
{
    name = Join(action.toLower());
    parameters.emplace_back(u"event_category"_s, category);
    if (!label.isEmpty())
        parameters.emplace_back(u"event_label"_s, label);
    if (value >= 0)
        parameters.emplace_back(u"event_value"_s, value);
}

PageViewEvent::PageViewEvent(const QString& page)
{
    name = u"page_view"_s;
    parameters = {{u"page_title"_s, page}, {u"page_location"_s, page}};
}

TimingEvent::TimingEvent(const QString& category, const QString& action, double milliseconds,
                         const QString& label)
{
    name = u"timer_tracking"_s;
    parameters = {
        {u"timing_action"_s, action}, {u"timing_category"_s, category}, {u"value"_s, Truncate(milliseconds)}};
    if (!label.isEmpty())
        parameters.emplace_back(u"timing_label"_s, label);
}

std::string ToLogText(const Analytics4Query::Event& event)
{
    return QJsonDocument(QJsonValue(event).toObject()).toJson(QJsonDocument::Compact).toStdString();
}
} // namespace vek::Analytics
