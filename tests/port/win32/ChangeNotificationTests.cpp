#include "port/win32/ChangeNotification.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Waiting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

constexpr DWORD EVERYTHING = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME |
                             FILE_NOTIFY_CHANGE_LAST_WRITE | FILE_NOTIFY_CHANGE_ATTRIBUTES;

/// A folder with "below/file" in it, watched, and gone at the end.
class Changes : public testing::Test
{
protected:
    Changes() : root(fs::temp_directory_path() / ("kavel_changes_" + std::to_string(getpid())))
    {
        fs::create_directories(root / "below");
        std::ofstream(root / "below" / "file") << "x";
        notification = FindFirstChangeNotificationA(root.c_str(), TRUE, EVERYTHING);
    }
    ~Changes() override
    {
        FindCloseChangeNotification(notification);
        fs::remove_all(root);
    }

    bool changed()
    {
        const bool is = WaitForSingleObject(notification, 0) == WAIT_OBJECT_0;
        FindNextChangeNotification(notification);
        return is;
    }

    fs::path root;
    HANDLE notification = nullptr;
};
} // namespace

TEST_F(Changes, NothingIsToldBeforeAWriterHasClosedHisFile)
{
    EXPECT_FALSE(changed());
    std::ofstream file(root / "below" / "file");
    file << "half" << std::flush;
    EXPECT_FALSE(changed());
    EXPECT_TRUE(port::isBeingWritten(notification));
    file << " and half" << std::flush;
    file.close();
    EXPECT_TRUE(changed());
    EXPECT_FALSE(port::isBeingWritten(notification));
    EXPECT_FALSE(changed()) << "each change is told once";
}

TEST_F(Changes, FilesAndFoldersThatComeGoAndMoveAreTold)
{
    fs::rename(root / "below" / "file", root / "below" / "other");
    EXPECT_TRUE(changed());
    fs::create_directories(root / "new" / "deep");
    EXPECT_TRUE(changed());
    std::ofstream(root / "new" / "deep" / "file") << "x";
    EXPECT_TRUE(changed()) << "a folder that has appeared is watched";
    fs::rename(root / "new", root / "moved");
    EXPECT_TRUE(changed());
    fs::create_directory(root / "moved" / "deep" / "deeper");
    EXPECT_TRUE(changed());
    std::ofstream(root / "moved" / "deep" / "deeper" / "file") << "x";
    EXPECT_TRUE(changed()) << "one that has moved is known by its new place";
    fs::permissions(root / "below" / "other", fs::perms::none);
    EXPECT_TRUE(changed());
    fs::remove(root / "below" / "other");
    EXPECT_TRUE(changed());
}

TEST_F(Changes, LinksAreFollowedAndNotInRings)
{
    const fs::path apart = root.string() + "_apart";
    fs::create_directory(apart);
    fs::create_directory_symlink(root, root / "ring");
    fs::create_directory_symlink(apart, root / "link");
    EXPECT_TRUE(changed());
    std::ofstream(apart / "file") << "x";
    EXPECT_TRUE(changed());
    fs::remove_all(apart);
}

TEST_F(Changes, AFolderThatHasGoneAndWhatIsNoFolderCannotBeWaitedFor)
{
    fs::rename(root, root.string() + "_gone");
    EXPECT_EQ(WaitForSingleObject(notification, 0), WAIT_FAILED);
    fs::rename(root.string() + "_gone", root);
    EXPECT_EQ(FindFirstChangeNotificationA((root / "below" / "file").c_str(), TRUE, EVERYTHING), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(FindFirstChangeNotificationA(root.c_str(), TRUE, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(WaitForSingleObject(nullptr, 0), WAIT_FAILED);
    EXPECT_FALSE(FindNextChangeNotification(&root));
    EXPECT_FALSE(FindCloseChangeNotification(INVALID_HANDLE_VALUE));
}

TEST_F(Changes, AStormOfChangesIsOneChange)
{
    for (int i = 0; i < 10000; ++i)
    {
        fs::rename(root / "below" / "file", root / "file");
        fs::rename(root / "file", root / "below" / "file");
    }
    EXPECT_TRUE(changed()) << "more than the host remembers";
    EXPECT_FALSE(changed());
}
