#include "VekBase/TypeName.h"
#include "Platform/Platform.h"

namespace vek
{
std::string GetTypeName(std::type_index type) { return Platform::GetReadableTypeName(type.name()); }
} // namespace vek
