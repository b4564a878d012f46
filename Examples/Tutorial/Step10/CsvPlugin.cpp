#include "ILengthReader.h"
#include <VekAppCore/App.h>
#include <VekAppCore/Text.h>

namespace
{
using namespace vek;

/// The second column of "part;length".
Lengths ReadCsv(const QByteArray& content, Threading::IProgression&)
{
    Lengths lengths;
    for (const QByteArray& row : content.trimmed().split('\n'))
    {
        Unit::Length length;
        if (!Convert::FromString(QString::fromUtf8(row).section(';', 1, 1), length))
            throw Exception::AppException(
                TrString::translate("GaugeCsv", "No length: %1").Arg(QString::fromUtf8(row)));
        lengths.push_back(length);
    }
    return lengths;
}

[[maybe_unused]] const bool g_isDeclared = [] {
    App::DeclarationSystem::GetInstance().Append<ILengthReader>(
        [](ILengthReader& reader) { reader.AddFormat("csv", ReadCsv); }, "CSV files");
    return true;
}();
} // namespace

VEK_PLUGIN(vek::App::IAppPlugin)
