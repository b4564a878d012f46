#include "VekAppCore/Text/StringUtility.h"
#include "Platform/Platform.h"
#include <QCoreApplication>
#include <QRegularExpression>
#include <algorithm>
#include <utility>

namespace vek::StringUtility
{
namespace
{
std::optional<QLocale> g_locale; // set on the main thread

bool IsDigit(QChar c) { return c >= u'0' && c <= u'9'; }

/// Takes the next run of digits, or of other characters, off @p text.
QStringView TakeChunk(QStringView& text)
{
    const bool isNumber = IsDigit(text[0]);
    const auto* const end =
        std::find_if(text.begin(), text.end(), [=](QChar c) { return IsDigit(c) != isNumber; });
    const QStringView chunk = text.first(end - text.begin());
    text = text.sliced(chunk.size());
    return chunk;
}

/// 0 for what is beyond 64 bits.
quint64 GetNumber(QStringView digits)
{
    constexpr quint64 most = ~quint64(0);
    quint64 number = 0;
    for (const QChar digit : digits)
    {
        const auto next = static_cast<quint64>(digit.unicode() - u'0');
        if (number > (most - next) / 10)
            return 0;
        number = number * 10 + next;
    }
    return number;
}

int GetSign(auto difference) { return (difference > 0) - (difference < 0); }

int CompareChunks(QStringView a, QStringView b, Qt::CaseSensitivity cs)
{
    if (!IsDigit(a[0]) || !IsDigit(b[0]))
        return GetSign(a.compare(b, cs));
    const quint64 aNumber = GetNumber(a);
    const quint64 bNumber = GetNumber(b);
    return (aNumber > bNumber) - (aNumber < bNumber);
}

QChar GetSeparatorFor(const QLocale& locale)
{
    return locale.toString(0.1, 'g', 15).at(1) == u'.' ? u',' : u';';
}
} // namespace

int NumberAwareCompare(const QString& a, const QString& b, Qt::CaseSensitivity cs)
{
    QStringView aRest = a;
    QStringView bRest = b;
    while (!aRest.isEmpty())
    {
        if (bRest.isEmpty())
            return 1;
        const QStringView aChunk = TakeChunk(aRest);
        const QStringView bChunk = TakeChunk(bRest);
        if (const int result = CompareChunks(aChunk, bChunk, cs))
            return result;
    }
    return bRest.isEmpty() ? 0 : -1;
}

QString GetQStringFromList(const QList<QString>& list, const QString& separator, int n)
{
    if (list.size() <= 2 * qsizetype{n})
        return list.join(separator);
    if (list.isEmpty())
        return {};
    QStringList shown = list.first(std::max(n, 1));
    shown += QStringLiteral("...");
    shown += list.last(std::max(n, 0));
    return shown.join(separator);
}

QString CleanString(const QString& s)
{
    QString clean = s;
    clean.replace(u' ', QStringLiteral("_"));
    clean.replace(u'+', QStringLiteral("plus"));
    clean.replace(u'-', QStringLiteral("minus"));
    clean.replace(u'.', QStringLiteral("dot"));
    return clean;
}

QString ExtractRttiClassName(const QString& s)
{
    static const QRegularExpression others(QStringLiteral("(class |(\\w+::)+| )"));
    return QString(s).remove(others);
}

bool IsOnlyAsciiCharacters(const QString& s)
{
    return std::ranges::all_of(s, [](QChar c) { return c >= u' ' && c <= u'\x7f'; });
}

QString Colon()
{
    return QCoreApplication::translate(
        "StringUtility", ": ",
        "Must be translated with the correct spacing according to the language (ex: \" : \" in French");
}

QString SemiColon()
{
    return QCoreApplication::translate(
        "StringUtility", "; ",
        "Must be translated with the correct spacing according to the language (ex: \" ; \" in French");
}

QString GetDecimalSeparator(bool useSystemLocale)
{
    return (useSystemLocale ? GetQSystemLocale() : QLocale::c()).decimalPoint();
}

QString GetThousandSeparator(bool useSystemLocale)
{
    return useSystemLocale ? GetQSystemLocale().groupSeparator() : QLocale::c().decimalPoint();
}

QChar GetColumnSeparator(const std::optional<QLocale>& locale)
{
    if (locale)
        return GetSeparatorFor(*locale);
    if (!g_locale)
        if (const QString ofSystem = Platform::GetListSeparator(); !ofSystem.isEmpty())
            return ofSystem[0];
    return GetSeparatorFor(GetQSystemLocale());
}

QLocale GetQSystemLocale() { return g_locale ? *g_locale : QLocale::system(); }

ScopeBase ChangeQSystemLocale(const std::optional<QLocale>& locale)
{
    return ScopeBase([before = std::exchange(g_locale, locale)] { g_locale = before; });
}
} // namespace vek::StringUtility
