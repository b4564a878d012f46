#include "VekBase/TypeName.h"
#include <gtest/gtest.h>

namespace vek
{
struct NamedStruct
{};
enum class ENamed
{
};

TEST(TypeName, IsTheOneInTheSource)
{
    EXPECT_EQ(GetTypeName(typeid(NamedStruct)), "vek::NamedStruct"); // not mangled, no keyword before it
    EXPECT_EQ(GetTypeName(typeid(ENamed)), "vek::ENamed");
    EXPECT_EQ(GetTypeName(typeid(int)), "int");
}
} // namespace vek
