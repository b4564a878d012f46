#pragma once
#include "VekBase/Export.h"
#include <string>
#include <typeindex>

namespace vek
{
/// The name of a type as a programmer writes it, with its namespaces: for messages, never as a key.
[[nodiscard]] VEKBASE_EXPORT std::string GetTypeName(std::type_index type);
} // namespace vek
