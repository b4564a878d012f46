#include "VekAppCore/Text/StringUtility.h"
#include "Platform/Platform.h"
#include <QCoreApplication>
#include <QRegularExpression>
#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

namespace vek::StringUtility
{
namespace
{
std::optional<QLocale> g_locale; // set on the main thread

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

/// Takes the next run of digits, or of other characters, off @p text.
std::u16string_view TakeChunk(std::u16string_view& text)
{
    const bool isNumber = IsDigit(text[0]);
    std::size_t size = 1;
    while (size < text.size() && IsDigit(text[size]) == isNumber)
        ++size;
    const std::u16string_view chunk = text.substr(0, size);
    text.remove_prefix(size);
    return chunk;
}

/// Takes the next run of digits off @p text; 0 for what is beyond 64 bits.
quint64 TakeNumber(std::u16string_view& text)
{
    constexpr quint64 most = ~quint64(0);
    constexpr std::size_t fitting = std::numeric_limits<quint64>::digits10;
    quint64 number = 0;
    bool isTooLong = false;
    std::size_t size = 0;
    for (; size < text.size() && IsDigit(text[size]); ++size)
    {
        const auto digit = static_cast<quint64>(text[size] - u'0');
        isTooLong = isTooLong || (size >= fitting && number > (most - digit) / 10);
        number = number * 10 + digit;
    }
    text.remove_prefix(size);
    return isTooLong ? 0 : number;
}

/// Names begin alike: four units at a time, as long as they are there.
std::size_t GetCommonSize(std::u16string_view a, std::u16string_view b)
{
    const std::size_t size = std::min(a.size(), b.size());
    std::size_t common = 0;
    for (; common + 4 <= size; common += 4)
    {
        std::uint64_t aFour;
        std::uint64_t bFour;
        std::memcpy(&aFour, &a[common], sizeof aFour);
        std::memcpy(&bFour, &b[common], sizeof bFour);
        if (const std::uint64_t difference = aFour ^ bFour)
        {
            const int bit = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                       : std::countl_zero(difference);
            return common + static_cast<std::size_t>(bit / 16);
        }
    }
    while (common < size && a[common] == b[common])
        ++common;
    return common;
}

/// Where comparing can begin, since nothing before it differs: at a run of digits, or within other text
/// behind its first character.
std::size_t GetChunkBegin(std::u16string_view a, std::u16string_view b)
{
    std::size_t begin = GetCommonSize(a, b);
    const bool isNumber = begin < std::min(a.size(), b.size()) && IsDigit(a[begin]) && IsDigit(b[begin]);
    while (begin > 0 && IsDigit(a[begin - 1]))
        --begin;
    return begin > 0 && !isNumber ? begin - 1 : begin;
}

int GetOrder(auto a, auto b) { return (a > b) - (a < b); }

/// Takes the next chunk off both.
int CompareChunks(std::u16string_view& a, std::u16string_view& b, Qt::CaseSensitivity cs)
{
    if (IsDigit(a[0]) && IsDigit(b[0]))
    {
        const quint64 aNumber = TakeNumber(a);
        return GetOrder(aNumber, TakeNumber(b));
    }
    const std::u16string_view aText = TakeChunk(a);
    return GetOrder(QStringView(aText).compare(QStringView(TakeChunk(b)), cs), 0);
}

std::u16string_view GetView(const QString& text)
{
    return {reinterpret_cast<const char16_t*>(text.constData()), static_cast<std::size_t>(text.size())};
}

QChar GetSeparatorFor(const QLocale& locale)
{
    return locale.toString(0.1, 'g', 15).at(1) == u'.' ? u',' : u';';
}
} // namespace

int NumberAwareCompare(const QString& a, const QString& b, Qt::CaseSensitivity cs)
{
    std::u16string_view aRest = GetView(a);
    std::u16string_view bRest = GetView(b);
    const std::size_t begin = GetChunkBegin(aRest, bRest);
    aRest.remove_prefix(begin);
    bRest.remove_prefix(begin);
    while (!aRest.empty())
    {
        if (bRest.empty())
            return 1;
        if (const int result = CompareChunks(aRest, bRest, cs))
            return result;
    }
    return bRest.empty() ? 0 : -1;
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
    QString clean;
    clean.reserve(s.size());
    for (const QChar c : s)
        switch (c.unicode())
        {
        case u' ': clean += u'_'; break;
        case u'+': clean += u"plus"; break;
        case u'-': clean += u"minus"; break;
        case u'.': clean += u"dot"; break;
        default: clean += c;
        }
    return clean;
}

QString ExtractRttiClassName(const QString& s)
{
    // From the begin of a word only: what fails there fails within it, over and over.
    static const QRegularExpression others(QStringLiteral("(class |\\b(\\w+::)+| )"));
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
