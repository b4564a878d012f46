#include "VekBase/ScopedTempFolder.h"
#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <thread>
#include <vector>

namespace vek
{
namespace
{
bool MakeFile(const QString& path) { return QFile(path).open(QIODevice::WriteOnly); }

TEST(ScopedTempFolder, YoungestLivingOneIsActive)
{
    std::optional<ScopedTempFolder> first(std::in_place);
    std::optional<ScopedTempFolder> second(std::in_place);
    const ScopedTempFolder third;
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), third.GetPath());
    second.reset(); // not the youngest: must change nothing
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), third.GetPath());
    {
        const ScopedTempFolder fourth;
        EXPECT_EQ(ScopedTempFolder::GetActivePath(), fourth.GetPath());
    }
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), third.GetPath());
    first.reset();
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), third.GetPath());
}

TEST(ScopedTempFolder, IsRemovedWithItsContentsButNotWhatTheyPointTo)
{
    const ScopedTempFolder outside;
    ASSERT_TRUE(MakeFile(outside.GetPath() + "/kept"));
    QString path;
    {
        const ScopedTempFolder folder;
        path = folder.GetPath();
        EXPECT_TRUE(QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        ASSERT_TRUE(QDir(path).mkpath("sub/.hidden"));
        ASSERT_TRUE(MakeFile(path + "/sub/.hidden/file"));
        ASSERT_TRUE(QFile::setPermissions(path + "/sub/.hidden/file", QFile::ReadOwner));
        ASSERT_TRUE(QFile::link(outside.GetPath(), path + "/link"));
    }
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(QFile::exists(outside.GetPath() + "/kept"));
}

TEST(ScopedTempFolder, IsMadeByManyThreadsAtOnce)
{
    std::vector<QString> paths(8);
    {
        std::vector<std::jthread> threads;
        for (QString& path : paths)
            threads.emplace_back([&path] {
                const ScopedTempFolder folder;
                path = folder.GetPath();
                EXPECT_FALSE(ScopedTempFolder::GetActivePath().isEmpty());
            });
    }
    EXPECT_EQ(ScopedTempFolder::GetActivePath(), QString());
    EXPECT_EQ(std::set(paths.begin(), paths.end()).size(), paths.size());
}
} // namespace
} // namespace vek
