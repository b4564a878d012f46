#pragma once
#include <QString>
#include <QUrl>

namespace vek::Analytics
{
/// For QUrlQuery, which takes its texts for encoded: left to it, a "+" would be read as a blank, and "%41" as
/// "A". Never null: that would be a key without "=".
[[nodiscard]] inline QString EncodeForQuery(const QString& text)
{
    return QStringLiteral("") + QString::fromLatin1(QUrl::toPercentEncoding(text));
}
} // namespace vek::Analytics
