#include "VekBase/ScopedTempFolder.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace vek
{
TEST(ScopedTempFolder, YoungestLivingOneIsActive)
{
    auto first = std::make_unique<ScopedTempFolder>();
    auto second = std::make_unique<ScopedTempFolder>();
    std::make_unique<ScopedTempFolder>().reset();
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), second->GetPath());
    first.reset(); // not the youngest: must change nothing
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), second->GetPath());
    second.reset();
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), QString());
}

TEST(ScopedTempFolder, IsRemovedWithItsContentsButNotWhatTheyPointTo)
{
    const ScopedTempFolder outside;
    ASSERT_TRUE(QFile(outside.GetPath() + "/kept").open(QIODevice::WriteOnly));
    auto folder = std::make_unique<ScopedTempFolder>();
    const QString path = folder->GetPath();
    ASSERT_TRUE(QDir(path).mkpath("sub/.hidden"));
    ASSERT_TRUE(QFile(path + "/sub/.hidden/file").open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::setPermissions(path + "/sub/.hidden/file", QFile::ReadOwner));
    ASSERT_TRUE(QFile::link(outside.GetPath(), path + "/link"));
    folder.reset();
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(QFile::exists(outside.GetPath() + "/kept"));
}
} // namespace vek
