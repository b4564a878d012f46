#include "VekBase/TypeName.h"
#include <gtest/gtest.h>
#include <vector>

namespace vek
{
struct NamedStruct
{};
enum class ENamed
{
};

namespace
{
struct TypeNameCase
{
    const char* fault;
    std::type_index type;
    std::string name;
};
void PrintTo(const TypeNameCase& row, std::ostream* out) { *out << row.fault; }
class TypeName : public testing::TestWithParam<TypeNameCase>
{};

TEST_P(TypeName, IsTheOneInTheSource) { EXPECT_EQ(GetTypeName(GetParam().type), GetParam().name); }
INSTANTIATE_TEST_SUITE_P(
    Rows, TypeName,
    testing::Values(TypeNameCase{"mangled, or a keyword before it", typeid(NamedStruct), "vek::NamedStruct"},
                    TypeNameCase{"keyword before an enumeration", typeid(ENamed), "vek::ENamed"},
                    TypeNameCase{"letter of a built-in type", typeid(int), "int"}));
} // namespace
} // namespace vek
