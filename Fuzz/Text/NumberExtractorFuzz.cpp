// Reads and judges any text as numbers and quantities, in several locales. What is whole and written again is
// read again; what is fixed up is a number.
#include "VekAppCore/Text/NumberExtractor.h"
#include <cstdint>
#include <cstdlib>

using namespace vek;

namespace
{
void Require(bool isTrue)
{
    if (!isTrue)
        std::abort();
}

template <typename Extractor>
void Check(const Extractor& extractor, QString text)
{
    int pos = 0;
    const auto value = extractor.FromString(text);
    const auto info = extractor.ExtractNumber(text, false);
    Require(!info || (info->length > 0 && info->length <= text.size() && info->decimals >= 0));
    const QValidator::State state = extractor.Validate(text, pos);
    Require(state != QValidator::Acceptable || (value && info->whole));
    static_cast<void>(extractor.ValidateList(text, pos));
    static_cast<void>(extractor.ListFromString(text));
    QString list = text;
    extractor.FixupList(list);
    extractor.Fixup(text);
    const auto fixed = extractor.ExtractNumber(text, true);
    // An integer beyond an int is fixed up too, but not accepted.
    constexpr bool isInteger = std::is_same_v<Extractor, Convert::IntExtractor>;
    Require(fixed && fixed->whole && (isInteger || extractor.Validate(text, pos) == QValidator::Acceptable));
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QLocale locales[] = {QLocale("en_US"), QLocale("de_DE"), QLocale("fr_FR"), QLocale("es_ES"),
                                      QLocale("sv_SE"), QLocale("ar_EG"), QLocale("hi_IN"), QLocale::c()};
    if (size == 0)
        return 0;
    const ScopeBase locale = StringUtility::ChangeQSystemLocale(locales[data[0] % 8]);
    // As UTF-16 where a bit says so: lone surrogates come from nowhere else.
    const QString text = data[0] & 8U
                             ? QString::fromUtf8(reinterpret_cast<const char*>(data) + 1, qsizetype(size) - 1)
                             : QString(reinterpret_cast<const QChar*>(data + (size > 1 ? 2 : 1)),
                                       size > 2 ? qsizetype(size - 2) / 2 : 0);
    Convert::DoubleExtractor numbers;
    numbers.SetUseThousands((data[0] & 16U) == 0);
    Check(numbers, text);
    Check(Convert::LengthExtractor(), text);
    Check(Convert::VolumeExtractor(), text);
    Check(Convert::AngleExtractor(), text);
    Check(Convert::IntExtractor(), text);
    static_cast<void>(Convert::ExtractDoubleWithPrefixList(text));
    QString single = text;
    Convert::SanitizeSingleValue(single);
    QString list = text;
    Convert::SanitizeListOfValues(list);
    static_cast<void>(StringUtility::NumberAwareCompare(text, list, Qt::CaseInsensitive));
    return 0;
}
