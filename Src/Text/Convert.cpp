#include "VekAppCore/Text/Convert.h"
#include "Base/EnumText.h"
#include "VekAppCore/Data/VekQVariantMap.h"
#include "VekAppCore/Text/UnitConvert.h"
#include <QByteArrayList>
#include <QDebug>
#include <QKeySequence>
#include <QMetaEnum>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QUuid>
#include <QVarLengthArray>
#include <QVariant>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace vek::Convert
{
namespace
{
using App::VekQVariant;
using App::VekQVariantList;
using App::VekQVariantMap;

constexpr int mostDecimals = 100;
constexpr qsizetype usualLength = 64;

/// The characters of a number that is read, in the C locale.
using Ascii = QVarLengthArray<char, usualLength>;

// Fixed notation gets long beyond: nobody reads sixteen zeros.
constexpr double smallestFixed = 1e-5;
constexpr double firstScientific = 1e16;

/// Where an exponent is written in another way, "e" is not read.
bool HasAsciiExponent(const QLocale& locale)
{
    return locale.exponential().compare(u'e', Qt::CaseInsensitive) == 0;
}

/// In the C locale.
template <std::floating_point T>
QString Write(T value, const NumberOptions* options)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    const int decimals = options ? std::clamp(options->decimals, 0, mostDecimals) : 0;
    std::array<char, std::numeric_limits<T>::max_exponent10 + mostDecimals + 8> text;
    const auto write = [&]() -> std::to_chars_result {
        char* const begin = text.data();
        char* const end = begin + text.size();
        switch (options ? options->notation : ENotation::Shortest)
        {
        case ENotation::Fixed: return std::to_chars(begin, end, value, std::chars_format::fixed, decimals);
        case ENotation::Scientific:
            return std::to_chars(begin, end, value, std::chars_format::scientific, decimals);
        default: break;
        }
        const auto size = static_cast<double>(std::abs(value));
        const bool isFixed = size == 0 || (size >= smallestFixed && size < firstScientific) ||
                             (options && !HasAsciiExponent(options->locale));
        return std::to_chars(begin, end, value,
                             isFixed ? std::chars_format::fixed : std::chars_format::scientific);
    };
    return QString::fromLatin1(text.data(), write().ptr - text.data());
}

template <typename T>
QString WriteInteger(T value)
{
    std::array<char, std::numeric_limits<T>::digits10 + 3> text;
    char* const end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return QString::fromLatin1(text.data(), end - text.data());
}

/// Some locales have no single digit before a separator, and read none: 1234, 12 345, 1234 567.
bool GroupsFourDigits(QLocale locale)
{
    locale.setNumberOptions(QLocale::DefaultNumberOptions); // the C locale leaves them out unless told
    return locale.toString(1234).contains(locale.groupSeparator());
}

/// The number with the separators of the locale.
QString Localize(QString text, const NumberOptions& options)
{
    qsizetype integerEnd = text.startsWith(u'-') ? 1 : 0;
    const qsizetype integerBegin = integerEnd;
    while (integerEnd < text.size() && text[integerEnd].isDigit())
        ++integerEnd;
    if (integerEnd < text.size() && text[integerEnd] == u'.')
        text.replace(integerEnd, 1, options.locale.decimalPoint());
    const qsizetype digits = integerEnd - integerBegin;
    if (options.hasGroupSeparators && digits > 3)
    {
        const bool canStandAlone = digits % 3 != 1 || GroupsFourDigits(options.locale);
        for (qsizetype at = integerEnd - 3; at > integerBegin + (canStandAlone ? 0 : 1); at -= 3)
            text.insert(at, options.locale.groupSeparator());
    }
    return text;
}

/// The characters of a number without what the locale adds; empty for what cannot be a number.
Ascii Delocalize(QStringView text, const NumberOptions* options)
{
    text = text.trimmed();
    Ascii ascii;
    if (text.startsWith(u'+') && text.size() > 1 && text[1] != u'-')
        text = text.sliced(1); // std::from_chars takes none
    const QString decimal = options ? options->locale.decimalPoint() : QStringLiteral(".");
    const QString group = options ? options->locale.groupSeparator() : QString();
    const auto isDigit = [&text](qsizetype at) {
        return at >= 0 && at < text.size() && text[at] >= u'0' && text[at] <= u'9';
    };
    bool isInteger = true; // before the decimal separator and the exponent
    qsizetype groupBegin = text.startsWith(u'-') ? 1 : 0;
    for (qsizetype at = 0; at < text.size();)
    {
        const QStringView rest = text.sliced(at);
        if (isInteger && rest.startsWith(decimal))
        {
            ascii.push_back('.');
            at += decimal.size();
            isInteger = false;
        }
        else if (isInteger && !group.isEmpty() && rest.startsWith(group))
        {
            const qsizetype size = at - groupBegin;
            at += group.size();
            const bool isWhole = isDigit(at) && isDigit(at + 1) && isDigit(at + 2) && !isDigit(at + 3);
            const qsizetype most = size == 4 && !GroupsFourDigits(options->locale) ? 4 : 3;
            if (!isWhole || size < 1 || size > most)
                return {};
            groupBegin = at;
        }
        else
        {
            const char16_t unit = text[at].unicode();
            if (unit > 0x7f)
                return {};
            if (unit == u'e' || unit == u'E')
                isInteger = false;
            ascii.push_back(static_cast<char>(unit));
            ++at;
        }
    }
    return ascii;
}

/// All of @p text, or nothing.
template <typename T>
std::optional<T> Parse(QStringView text, const NumberOptions* options)
{
    T value;
    const auto parse = [&value](const char* begin, const char* end) -> std::optional<T> {
        const auto [stop, error] = std::from_chars(begin, end, value);
        if (error != std::errc() || stop != end)
            return std::nullopt;
        return value;
    };
    const Ascii ascii = Delocalize(text, options);
    return parse(ascii.data(), ascii.data() + ascii.size());
}

template <typename T>
bool Read(QStringView text, T& value, const NumberOptions* options)
{
    const std::optional<T> read = Parse<T>(text, options);
    if (read)
        value = *read;
    return read.has_value();
}

struct Separator
{
    QString text;
    QString mark; ///< What tells it from the text around: without the blanks at its ends.
};

/// A separator of blanks alone could not be told from those around the items.
Separator GetSeparator(const ListUnitNumberOptions& options)
{
    const QString mark = options.separator.trimmed();
    return mark.isEmpty() ? Separator{QStringLiteral("; "), QStringLiteral(";")}
                          : Separator{options.separator, mark};
}
} // namespace

namespace Details
{
QString ToText(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
QString ToText(qint64 value) { return WriteInteger(value); }
QString ToText(quint64 value) { return WriteInteger(value); }
QString ToText(qint64 value, const NumberOptions& options) { return Localize(WriteInteger(value), options); }
QString ToText(quint64 value, const NumberOptions& options) { return Localize(WriteInteger(value), options); }

std::optional<qint64> ToSigned(QStringView text, const NumberOptions* options)
{
    return Parse<qint64>(text, options);
}

std::optional<quint64> ToUnsigned(QStringView text, const NumberOptions* options)
{
    return Parse<quint64>(text, options);
}

QString Join(const QStringList& items, const ListUnitNumberOptions& options)
{
    const auto [separator, mark] = GetSeparator(options);
    QStringList quoted;
    quoted.reserve(items.size());
    for (const QString& item : items)
    {
        const bool isPlain =
            !item.isEmpty() && item == item.trimmed() && !item.startsWith(u'"') && !item.contains(mark);
        quoted.push_back(isPlain ? item : u'"' + QString(item).replace(u'"', QStringLiteral("\"\"")) + u'"');
    }
    return quoted.join(separator);
}

std::optional<QStringList> Split(QStringView text, const ListUnitNumberOptions& options)
{
    QStringList items;
    text = text.trimmed();
    if (text.isEmpty())
        return items;
    const QString mark = GetSeparator(options).mark;
    for (;;)
    {
        QString item;
        if (text.startsWith(u'"'))
        {
            qsizetype at = 1;
            for (;; ++at)
            {
                const qsizetype quote = text.indexOf(u'"', at);
                if (quote < 0)
                    return std::nullopt;
                item += text.sliced(at, quote - at);
                at = quote + 1;
                if (at >= text.size() || text[at] != u'"')
                    break;
                item += u'"';
            }
            text = text.sliced(at).trimmed();
            if (!text.isEmpty() && !text.startsWith(mark))
                return std::nullopt;
        }
        else
        {
            const qsizetype end = text.indexOf(mark);
            item = text.first(end < 0 ? text.size() : end).trimmed().toString();
            text = end < 0 ? QStringView() : text.sliced(end);
        }
        items.push_back(item);
        if (text.isEmpty())
            return items;
        text = text.sliced(mark.size()).trimmed();
    }
}
} // namespace Details

bool FromString(QStringView text, bool& value)
{
    const QStringView trimmed = text.trimmed();
    const auto is = [trimmed](QStringView word) { return trimmed.compare(word, Qt::CaseInsensitive) == 0; };
    const bool isTrue = is(u"true") || is(u"1");
    if (!isTrue && !is(u"false") && !is(u"0"))
        return false;
    value = isTrue;
    return true;
}

QString ToString(double value) { return Write(value, nullptr); }
QString ToString(float value) { return Write(value, nullptr); }
QString ToString(double value, const NumberOptions& options)
{
    return Localize(Write(value, &options), options);
}
QString ToString(float value, const NumberOptions& options)
{
    return Localize(Write(value, &options), options);
}
bool FromString(QStringView text, double& value) { return Read(text, value, nullptr); }
bool FromString(QStringView text, float& value) { return Read(text, value, nullptr); }
bool FromString(QStringView text, double& value, const NumberOptions& options)
{
    return Read(text, value, &options);
}
bool FromString(QStringView text, float& value, const NumberOptions& options)
{
    return Read(text, value, &options);
}

int GetNumberOfDecimals(QStringView text, const NumberOptions& options)
{
    const QString decimal = options.locale.decimalPoint();
    const qsizetype point = text.indexOf(decimal);
    if (point < 0)
        return 0;
    const QStringView rest = text.sliced(point + decimal.size());
    const auto* const end = std::ranges::find_if_not(rest, [](QChar c) { return c >= u'0' && c <= u'9'; });
    return static_cast<int>(end - rest.begin());
}

namespace
{
/// The numbers of a point, a size or a rectangle.
template <typename T>
struct Figures;
template <>
struct Figures<QPointF>
{
    using Number = double;
    static std::vector<double> Get(const QPointF& p) { return {p.x(), p.y()}; }
    static QPointF Make(const std::vector<double>& n) { return {n[0], n[1]}; }
    static constexpr std::size_t count = 2;
};
template <>
struct Figures<QSizeF>
{
    using Number = double;
    static std::vector<double> Get(const QSizeF& s) { return {s.width(), s.height()}; }
    static QSizeF Make(const std::vector<double>& n) { return {n[0], n[1]}; }
    static constexpr std::size_t count = 2;
};
template <>
struct Figures<QRectF>
{
    using Number = double;
    static std::vector<double> Get(const QRectF& r) { return {r.x(), r.y(), r.width(), r.height()}; }
    static QRectF Make(const std::vector<double>& n) { return {n[0], n[1], n[2], n[3]}; }
    static constexpr std::size_t count = 4;
};
template <>
struct Figures<QPoint>
{
    using Number = int;
    static std::vector<int> Get(const QPoint& p) { return {p.x(), p.y()}; }
    static QPoint Make(const std::vector<int>& n) { return {n[0], n[1]}; }
    static constexpr std::size_t count = 2;
};
template <>
struct Figures<QSize>
{
    using Number = int;
    static std::vector<int> Get(const QSize& s) { return {s.width(), s.height()}; }
    static QSize Make(const std::vector<int>& n) { return {n[0], n[1]}; }
    static constexpr std::size_t count = 2;
};
template <>
struct Figures<QRect>
{
    using Number = int;
    static std::vector<int> Get(const QRect& r) { return {r.x(), r.y(), r.width(), r.height()}; }
    static QRect Make(const std::vector<int>& n) { return {n[0], n[1], n[2], n[3]}; }
    static constexpr std::size_t count = 4;
};

/// Calls @p function with a null pointer to the type that @p type is, when it has figures.
template <typename Function>
bool VisitFigures(QMetaType type, Function function)
{
    const auto visit = [&]<typename T>(const T*) {
        return type == QMetaType::fromType<T>() && (function(static_cast<const T*>(nullptr)), true);
    };
    return visit(static_cast<QPointF*>(nullptr)) || visit(static_cast<QPoint*>(nullptr)) ||
           visit(static_cast<QSizeF*>(nullptr)) || visit(static_cast<QSize*>(nullptr)) ||
           visit(static_cast<QRectF*>(nullptr)) || visit(static_cast<QRect*>(nullptr));
}

/// What is not to be read as an escape in a byte array, besides letters and digits.
constexpr const char* unescaped = " !\"#$&'()*+,/:;<=>?@[\\]^`{|}";

std::optional<QMetaEnum> GetEnum(QMetaType type)
{
    if (!type.flags().testFlag(QMetaType::IsEnumeration) || !type.metaObject())
        return std::nullopt;
    // "Space::Kind", or "QFlags<Space::Kind>"
    QByteArray name = type.name();
    name = name.sliced(name.lastIndexOf(':') + 1);
    name.replace('>', "");
    const int index = type.metaObject()->indexOfEnumerator(name.constData());
    if (index < 0)
        return std::nullopt;
    return type.metaObject()->enumerator(index);
}

QString WriteEnum(const QMetaEnum& names, const QVariant& value)
{
    const int number = value.toInt();
    const QByteArray keys = names.isFlag() ? names.valueToKeys(number) : QByteArray(names.valueToKey(number));
    return keys.isEmpty() ? ToString(number) : QString::fromUtf8(keys);
}

bool ReadEnum(const QMetaEnum& names, QStringView text, QMetaType type, QVariant& value)
{
    bool isRead = false;
    const QByteArray key = text.trimmed().toUtf8();
    int number = names.isFlag() ? names.keysToValue(key.constData(), &isRead)
                                : names.keyToValue(key.constData(), &isRead);
    if (!isRead && !FromString(text, number))
        return false;
    QVariant read = number;
    if (!read.convert(type))
        return false;
    value = std::move(read);
    return true;
}

template <typename T>
const T* Peek(const QVariant& value)
{
    return value.metaType() == QMetaType::fromType<T>() ? static_cast<const T*>(value.constData()) : nullptr;
}

/// The count of children of a container, in its brackets; empty for a value without children.
QString Summarize(const QVariant& value)
{
    const auto list = [](auto size) { return QStringLiteral("[%1]").arg(size); };
    const auto map = [](auto size) { return QStringLiteral("{%1}").arg(size); };
    if (const auto* const children = Peek<VekQVariantMap>(value))
        return map(children->Size());
    if (const auto* const elements = Peek<VekQVariantList>(value))
        return list(elements->size());
    switch (value.typeId())
    {
    case QMetaType::QVariantMap: return map(value.toMap().size());
    case QMetaType::QVariantHash: return map(value.toHash().size());
    case QMetaType::QVariantList: return list(value.toList().size());
    case QMetaType::QStringList: return list(value.toStringList().size());
    case QMetaType::QByteArrayList: return list(value.value<QByteArrayList>().size());
    default: return {};
    }
}

QString WriteItem(const QVariant& value, const ListUnitNumberOptions& options)
{
    const QString summary = Summarize(value);
    return summary.isEmpty() ? ToString(value, options) : summary;
}

template <typename Elements>
QString WriteList(const Elements& elements, const ListUnitNumberOptions& options)
{
    QStringList items;
    for (const auto& element : elements)
        if constexpr (requires { element.ToQVariant(); })
            items.push_back(WriteItem(element.ToQVariant(), options));
        else
            items.push_back(WriteItem(element, options));
    return Details::Join(items, options);
}

template <typename Map>
QString WriteMap(const Map& map, const ListUnitNumberOptions& options)
{
    QStringList items;
    for (auto entry = map.keyValueBegin(); entry != map.keyValueEnd(); ++entry)
        items.push_back((*entry).first + QStringLiteral(": ") + WriteItem((*entry).second, options));
    return Details::Join(items, options);
}

template <typename T>
bool ReadNumber(QStringView text, QVariant& value, const NumberOptions& options)
{
    T number{};
    if (!FromString(text, number, options))
        return false;
    value = QVariant::fromValue(number);
    return true;
}

/// Calls @p function with a null pointer to the type of quantity or unit that @p type is.
template <typename Function>
bool VisitQuantity(QMetaType type, Function function)
{
    const auto visit = [&]<typename... T>(const T*... none) {
        return ((type == QMetaType::fromType<T>() && (function(none), true)) || ...);
    };
    return visit(static_cast<Unit::Length*>(nullptr), static_cast<Unit::Area*>(nullptr),
                 static_cast<Unit::Volume*>(nullptr), static_cast<Unit::Angle*>(nullptr),
                 static_cast<Unit::Percent*>(nullptr), static_cast<Unit::LengthUnit*>(nullptr),
                 static_cast<Unit::AreaUnit*>(nullptr), static_cast<Unit::VolumeUnit*>(nullptr),
                 static_cast<Unit::AngleUnit*>(nullptr), static_cast<Unit::PercentUnit*>(nullptr));
}

/// Calls @p function with a null pointer to the number type that @p type is.
template <typename Function>
bool VisitNumber(QMetaType type, Function function)
{
    const auto visit = [&]<typename... T>(const T*... none) {
        return ((type == QMetaType::fromType<T>() && (function(none), true)) || ...);
    };
    return visit(static_cast<int*>(nullptr), static_cast<double*>(nullptr), static_cast<qint64*>(nullptr),
                 static_cast<quint64*>(nullptr), static_cast<unsigned*>(nullptr),
                 static_cast<float*>(nullptr), static_cast<long*>(nullptr),
                 static_cast<unsigned long*>(nullptr), static_cast<short*>(nullptr),
                 static_cast<unsigned short*>(nullptr), static_cast<signed char*>(nullptr),
                 static_cast<unsigned char*>(nullptr));
}
} // namespace

QString Details::ToText(const QVariant& value, const ListUnitNumberOptions& options)
{
    QString text;
    const auto writeNumber = [&]<typename T>(const T*) { text = ToString(*Peek<T>(value), options); };
    const auto writeFigures = [&]<typename T>(const T*) {
        text = ToString(Figures<T>::Get(*Peek<T>(value)), options);
    };
    const auto writeQuantity = [&]<typename T>(const T*) {
        if constexpr (Unit::AnyUnit<T>)
            text = ToString(*Peek<T>(value));
        else
            text = ToString(*Peek<T>(value), options);
    };
    if (VisitNumber(value.metaType(), writeNumber) || VisitFigures(value.metaType(), writeFigures) ||
        VisitQuantity(value.metaType(), writeQuantity))
        return text;
    if (const auto* const variant = Peek<VekQVariant>(value))
        return variant->ToString(options);
    if (const auto* const elements = Peek<VekQVariantList>(value))
        return WriteList(*elements, options);
    if (const auto* const children = Peek<VekQVariantMap>(value))
    {
        QStringList items;
        for (const auto& [key, child] : *children)
            items.push_back(key + QStringLiteral(": ") + WriteItem(child.ToQVariant(), options));
        return Details::Join(items, options);
    }
    switch (value.typeId())
    {
    case QMetaType::UnknownType: return {};
    case QMetaType::Bool: return ToString(value.toBool());
    case QMetaType::QString: return value.toString();
    case QMetaType::QByteArray: return QString::fromLatin1(value.toByteArray().toPercentEncoding(unescaped));
    case QMetaType::QStringList: return ToString(value.toStringList(), options);
    case QMetaType::QVariantList: return WriteList(value.toList(), options);
    case QMetaType::QVariantMap: return WriteMap(value.toMap(), options);
    case QMetaType::QVariantHash: return WriteMap(value.toHash(), options);
    default: break;
    }
    if (const auto names = GetEnum(value.metaType()))
        return WriteEnum(*names, value);
    if (value.typeId() == QMetaType::QKeySequence)
        return value.value<QKeySequence>().toString(QKeySequence::PortableText);
    if (value.canConvert<QString>())
        return value.toString();
    if (value.canConvert<QVariantList>())
        return WriteList(value.toList(), options);
    QDebug(&text).nospace() << value;
    return text;
}

bool FromString(QStringView text, QMetaType type, QVariant& value, const ListUnitNumberOptions& options)
{
    bool isRead = false;
    const auto readNumber = [&]<typename T>(const T*) { isRead = ReadNumber<T>(text, value, options); };
    const auto readFigures = [&]<typename T>(const T*) {
        std::vector<typename Figures<T>::Number> figures;
        isRead = FromString(text, figures, options) && figures.size() == Figures<T>::count;
        if (isRead)
            value = QVariant::fromValue(Figures<T>::Make(figures));
    };
    const auto readQuantity = [&]<typename T>(const T*) {
        T read{};
        if constexpr (Unit::AnyUnit<T>)
            isRead = FromString(text.trimmed(), read);
        else
            isRead = FromString(text, read, options);
        if (isRead)
            value = QVariant::fromValue(read);
    };
    if (VisitNumber(type, readNumber) || VisitFigures(type, readFigures) || VisitQuantity(type, readQuantity))
        return isRead;
    switch (type.id())
    {
    case QMetaType::Bool:
    {
        bool isTrue = false;
        isRead = FromString(text, isTrue);
        if (isRead)
            value = isTrue;
        return isRead;
    }
    case QMetaType::QString: value = text.toString(); return true;
    case QMetaType::QByteArray: value = QByteArray::fromPercentEncoding(text.toUtf8()); return true;
    case QMetaType::QStringList:
    {
        QStringList items;
        isRead = FromString(text, items, options);
        if (isRead)
            value = std::move(items);
        return isRead;
    }
    case QMetaType::QVariantList: return false; // Qt would make a list of the text as a whole
    default: break;
    }
    if (const auto names = GetEnum(type))
        return ReadEnum(*names, text, type, value);
    if (type.id() == QMetaType::QKeySequence)
    {
        const auto keys = QKeySequence::fromString(text.trimmed().toString(), QKeySequence::PortableText);
        isRead = keys.toString(QKeySequence::PortableText) == text.trimmed();
        if (isRead)
            value = QVariant::fromValue(keys);
        return isRead;
    }
    QVariant read = text.trimmed().toString();
    if (!read.canConvert(type) || !read.convert(type))
        return false;
    // Of any text, Qt makes an identifier.
    if (type.id() == QMetaType::QUuid && read.toUuid().isNull() && QUuid().toString() != text.trimmed())
        return false;
    value = std::move(read);
    return true;
}

std::string ToLogText(ENotation notation)
{
    return vek::Details::ToEnumText(notation, ENotation::Shortest, {"Shortest", "Fixed", "Scientific"});
}
} // namespace vek::Convert
