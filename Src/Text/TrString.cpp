#include "VekAppCore/Text/TrString.h"
#include <QCoreApplication>
#include <QVarLengthArray>
#include <algorithm>
#include <optional>
#include <variant>

namespace vek
{
struct TrString::Impl
{
    QByteArray context; ///< UTF-8, like the next two.
    QByteArray source;
    QByteArray disambiguation;
    int n = -1;
    QString text; ///< Never translated.
    std::vector<std::variant<QString, TrString>> args;
    std::vector<std::pair<QString, QString>> replacements;
    std::vector<TrString> parts;

    [[nodiscard]] bool IsContainer() const { return source.isEmpty() && text.isEmpty(); }
    [[nodiscard]] bool IsPlain() const
    {
        return source.isEmpty() && args.empty() && replacements.empty() && parts.empty();
    }
};

namespace
{
QByteArray ToByteArray(std::string_view text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

int ToDigit(QChar character)
{
    return character >= u'0' && character <= u'9' ? character.unicode() - u'0' : -1;
}

using Values = QVarLengthArray<QStringView, 8>;

/// A place that QString::arg fills: %0 to %99, or the same with an L behind the percent sign.
struct Placeholder
{
    qsizetype begin;
    qsizetype end;
    int number;
};
using Placeholders = QVarLengthArray<Placeholder, 16>;

/// The placeholders of @p text; nothing when one of them stands right behind what a digit could complete to
/// another.
std::optional<Placeholders> FindPlaceholders(QStringView text)
{
    Placeholders places;
    qsizetype openEnd = -1; // behind a percent sign that one more digit would make, or keep, a placeholder
    for (qsizetype i = text.indexOf(u'%'); i >= 0; i = text.indexOf(u'%', i))
    {
        const qsizetype begin = i++;
        if (begin == openEnd)
            return std::nullopt;
        if (i < text.size() && text[i] == u'L')
            ++i;
        openEnd = i;
        const int first = i < text.size() ? ToDigit(text[i]) : -1;
        if (first < 0)
            continue;
        openEnd = ++i;
        const int second = i < text.size() ? ToDigit(text[i]) : -1;
        if (second >= 0)
        {
            openEnd = -1;
            ++i;
        }
        places.push_back({begin, i, second < 0 ? first : 10 * first + second});
    }
    return places;
}

/// Fills the placeholders with @p values like QString::arg called for one value after the other, in one pass.
/// @return nothing where that could differ: a value could become part of a placeholder.
std::optional<QString> FillInOnePass(QStringView text, const Values& values)
{
    if (std::ranges::any_of(values, [](QStringView value) { return value.contains(u'%'); }))
        return std::nullopt;
    const std::optional<Placeholders> places = FindPlaceholders(text);
    if (!places)
        return std::nullopt;

    QVarLengthArray<int, 16> numbers;
    for (const Placeholder& place : *places)
        if (const auto found = std::ranges::lower_bound(numbers, place.number);
            found == numbers.end() || *found != place.number)
            numbers.insert(found, place.number);

    QString filled;
    qsizetype size = text.size();
    for (const QStringView value : values)
        size += value.size();
    filled.reserve(size);
    qsizetype copied = 0;
    for (const Placeholder& place : *places)
    {
        const qsizetype index = std::ranges::lower_bound(numbers, place.number) - numbers.begin();
        if (index >= values.size())
            continue; // left open
        filled += text.sliced(copied, place.begin - copied);
        filled += values[index];
        copied = place.end;
    }
    filled += text.sliced(copied);
    return filled;
}

QString Fill(QString text, const Values& values)
{
    if (std::optional<QString> filled = FillInOnePass(text, values))
        return *std::move(filled);
    for (const QStringView value : values)
        text = text.arg(value);
    return text;
}
} // namespace

TrString::TrString() : m_body(std::make_shared<Impl>()) {}

TrString::TrString(std::string_view context, const QString& source, const QString& disambiguation)
    : TrString()
{
    m_body->context = ToByteArray(context);
    m_body->source = source.toUtf8();
    m_body->disambiguation = disambiguation.toUtf8();
}

TrString::TrString(const QString& text) : TrString() { m_body->text = text; }

TrString::TrString(std::string_view context, std::string_view source, const char* disambiguation, int n)
    : TrString()
{
    m_body->context = ToByteArray(context);
    m_body->source = ToByteArray(source);
    if (disambiguation)
        m_body->disambiguation = disambiguation;
    m_body->n = n;
}

TrString::TrString(const TrString& other, CreateClone) : m_body(std::make_shared<Impl>(*other.m_body)) {}

TrString TrString::NoTranslate(const QString& text) { return TrString(text); }

TrString TrString::translate(std::string_view context, std::string_view source, const char* disambiguation,
                             int n)
{
    return TrString(context, source, disambiguation, n);
}

void TrString::_Arg(const QString& value)
{
    if (!m_body)
        return;
    _CloneIfShared();
    m_body->args.emplace_back(value);
}

void TrString::_Arg(const TrString& value)
{
    if (!m_body)
        return;
    TrString kept = value; // also makes a string that is its own argument clone its body, not hold itself
    _CloneIfShared();
    m_body->args.emplace_back(std::move(kept));
}

// Not cloned first: a replacement is meant for all that share the body.
void TrString::Replace(const QString& before, const QString& after)
{
    if (m_body)
        m_body->replacements.emplace_back(before, after);
}

TrString& TrString::operator+=(const TrString& right)
{
    if (!m_body || !right.m_body)
        return *this;
    const TrString other = right; // the value from before when a string is added to itself
    if (m_body->IsPlain() && other.m_body->IsPlain())
    {
        _CloneIfShared();
        m_body->text += other.m_body->text;
        return *this;
    }
    if (m_body->IsContainer())
        _CloneIfShared();
    else
    {
        TrString container;
        container.m_body->parts.push_back(std::move(*this));
        *this = std::move(container);
    }
    std::vector<TrString>& parts = m_body->parts;
    if (other.m_body->IsContainer())
        parts.insert(parts.end(), other.m_body->parts.begin(), other.m_body->parts.end());
    else
        parts.push_back(other);
    return *this;
}

TrString TrString::operator+(const TrString& other) const
{
    if (!m_body || !other.m_body)
        return {};
    TrString sum = *this;
    sum += other;
    return sum;
}

QString TrString::ToString(bool key) const { return _Render(key); }

QString TrString::GetKey() const { return _Render(true); }

bool TrString::IsEmpty() const { return !m_body || (m_body->parts.empty() && m_body->IsContainer()); }

bool TrString::operator==(const TrString& other) const
{
    if (!m_body || !other.m_body)
        return false;
    const Impl& left = *m_body;
    const Impl& right = *other.m_body;
    if (left.text != right.text)
        return false;
    if (left.text.isEmpty() && (left.source != right.source || left.context != right.context ||
                                left.n != right.n || left.disambiguation != right.disambiguation))
        return false;
    return left.args == right.args && left.parts == right.parts;
}

void TrString::_CloneIfShared()
{
    if (m_body.use_count() != 1)
        *this = TrString(*this, CreateClone());
}

QString TrString::_Render(bool key) const
{
    if (!m_body)
        return {};
    const Impl& body = *m_body;

    QString text = body.text;
    if (text.isEmpty())
    {
        const char* const disambiguation =
            body.disambiguation.isEmpty() ? nullptr : body.disambiguation.constData();
        text = key ? QString::fromUtf8(body.source)
                   : QCoreApplication::translate(body.context.constData(), body.source.constData(),
                                                 disambiguation, body.n);
    }
    for (const TrString& part : body.parts)
        text += part._Render(key);

    if (!body.args.empty())
    {
        QVarLengthArray<QString, 8> rendered; // keeps what the views below look at
        Values values;
        for (const auto& argument : body.args)
        {
            if (const auto* const string = std::get_if<TrString>(&argument))
                values.push_back(rendered.emplace_back(string->_Render(key)));
            else
                values.push_back(std::get<QString>(argument));
        }
        text = Fill(std::move(text), values);
    }
    for (const auto& [before, after] : body.replacements)
        text.replace(before, after);
    return text;
}

std::string ToLogText(const TrString& text) { return text.GetKey().toStdString(); }

TrString TrStringHelper::translate(const char* context, const char* source, const char* disambiguation, int n)
{
    return TrString::translate(context, source, disambiguation, n);
}

TrString ToTrString(Bool value)
{
    return value ? TrString::translate("", "Yes") : TrString::translate("", "No");
}

TrString Join(const std::vector<TrString>& list, const TrString& separator)
{
    TrString joined;
    for (const TrString& element : list)
    {
        if (joined.IsEmpty())
        {
            joined = element;
            continue;
        }
        joined += separator;
        joined += element;
    }
    return joined;
}
} // namespace vek
