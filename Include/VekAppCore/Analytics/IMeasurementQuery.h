#pragma once
#include "VekAppCore/Export.h"
#include <QString>
#include <QUrlQuery>

namespace vek::Analytics
{
/// What one report sends.
class VEKAPPCORE_EXPORT IMeasurementQuery
{
public:
    virtual ~IMeasurementQuery();

    /// The body.
    [[nodiscard]] virtual QString GetPayload() const = 0;
    /// What stands in the URL.
    [[nodiscard]] virtual QUrlQuery GetUrlQuery() const = 0;
    /// False where the collection host would refuse it; then it is not sent.
    [[nodiscard]] virtual bool isValid() const = 0;

protected:
    IMeasurementQuery() = default;
    IMeasurementQuery(const IMeasurementQuery&) = default;
    IMeasurementQuery& operator=(const IMeasurementQuery&) = default;
};
} // namespace vek::Analytics
