#include "VekBase/Process.h"
#include <QCoreApplication>
#include <gtest/gtest.h>

namespace vek
{
namespace
{
TEST(Process, ExecutablePathIsTheProgramsFolder)
{
    EXPECT_EQ(QString::fromStdU16String(GetExecutablePath().u16string()).replace('\\', '/'),
              QCoreApplication::applicationDirPath());
}
} // namespace
} // namespace vek
