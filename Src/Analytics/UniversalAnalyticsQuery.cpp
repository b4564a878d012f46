#include "VekAppCore/Analytics/UniversalAnalyticsQuery.h"
#include "Analytics/EncodeForQuery.h"
#include <algorithm>
#include <array>

namespace vek::Analytics
{
using namespace Qt::StringLiterals;

void UniversalAnalyticsQuery::AddQueryItem(const QString& key, const QString& value)
{
    m_items.emplace_back(key, value);
}

void UniversalAnalyticsQuery::AddQueryItems(const Items& items) { m_items += items; }

void UniversalAnalyticsQuery::AddCustomDimension(const CustomDimension& dimension)
{
    AddQueryItem(u"cd%1"_s.arg(dimension.number), dimension.value);
}

void UniversalAnalyticsQuery::AddCustomMetric(const CustomMetric& metric)
{
    AddQueryItem(u"cm%1"_s.arg(metric.number), metric.value);
}

UniversalAnalyticsQuery& UniversalAnalyticsQuery::operator+=(const UniversalAnalyticsQuery& other)
{
    m_items += Items(other.m_items);
    return *this;
}

QString UniversalAnalyticsQuery::GetPayload() const { return GetUrlQuery().toString(QUrl::FullyEncoded); }

QUrlQuery UniversalAnalyticsQuery::GetUrlQuery() const
{
    QUrlQuery query;
    for (const auto& [key, value] : m_items)
        query.addQueryItem(EncodeForQuery(key), EncodeForQuery(value));
    return query;
}

bool UniversalAnalyticsQuery::isValid() const
{
    constexpr std::array required{"v"_L1, "tid"_L1, "cid"_L1, "t"_L1};
    return std::ranges::all_of(required, [this](QLatin1String key) {
        return std::ranges::any_of(
            m_items, [key](const auto& item) { return item.first == key && !item.second.isEmpty(); });
    });
}

void UniversalAnalyticsQuery::_SetQueryItem(const QString& key, const QString& value)
{
    const auto found = std::ranges::find(m_items, key, &Items::value_type::first);
    if (found == m_items.end())
        AddQueryItem(key, value);
    else
        found->second = value;
}

UAEventQuery::UAEventQuery(const QString& category, const QString& action)
{
    AddQueryItem(u"t"_s, u"event"_s);
    SetEventCategory(category);
    SetEventAction(action);
}

void UAEventQuery::SetEventCategory(const QString& category) { _SetQueryItem(u"ec"_s, category); }
void UAEventQuery::SetEventAction(const QString& action) { _SetQueryItem(u"ea"_s, action); }
void UAEventQuery::SetEventLabel(const QString& label) { _SetQueryItem(u"el"_s, label); }
void UAEventQuery::SetEventValue(qint64 value) { _SetQueryItem(u"ev"_s, QString::number(value)); }
void UAEventQuery::SetPage(const QString& page) { _SetQueryItem(u"dp"_s, page); }

UAPageviewQuery::UAPageviewQuery(const QString& page)
{
    AddQueryItem(u"t"_s, u"pageview"_s);
    if (!page.isEmpty())
        AddQueryItem(u"dp"_s, page);
}

UATimingQuery::UATimingQuery(const QString& category, const QString& name, qint64 milliseconds)
{
    AddQueryItem(u"t"_s, u"timing"_s);
    SetTimingCategory(category);
    SetTimingName(name);
    SetTimingTime(milliseconds);
}

void UATimingQuery::SetTimingCategory(const QString& category) { _SetQueryItem(u"utc"_s, category); }
void UATimingQuery::SetTimingName(const QString& name) { _SetQueryItem(u"utv"_s, name); }
void UATimingQuery::SetTimingLabel(const QString& label) { _SetQueryItem(u"utl"_s, label); }
void UATimingQuery::SetTimingTime(qint64 milliseconds)
{
    _SetQueryItem(u"utt"_s, QString::number(milliseconds));
}

std::string ToLogText(const CustomDimension& dimension)
{
    return std::to_string(dimension.number) + ": " + dimension.value.toStdString();
}

std::string ToLogText(const CustomMetric& metric)
{
    return std::to_string(metric.number) + ": " + metric.value.toStdString();
}
} // namespace vek::Analytics
