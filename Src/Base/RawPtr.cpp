#include "VekBase/RawPtr.h"
#include "VekBase/TypeName.h"
#include <QString>

namespace vek::Details
{
void ThrowNullptrException() { throw Exception::NullptrException(); }

std::string ToPointerText(const std::type_info& pointerType, const void* address)
{
    const QString text = address ? QStringLiteral("0x%1").arg(reinterpret_cast<quintptr>(address), 0, 16)
                                 : QStringLiteral("null");
    return '(' + GetTypeName(pointerType) + ") " + text.toStdString();
}
} // namespace vek::Details
