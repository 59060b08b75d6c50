#include "assets/files/FileSystem.h"
#include "assets/TestProvider.h"
#include "object/reflection/SavedArguments.h"
#include "object/reflection/Variant.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

ErrorCode TestProviderFile::startGetFileData(ReflectorPtr callback, RequestHandle h)
{
    const Handle<TestFileData> data = construct<TestFileData>(defaultAllocationCategory);
    data.lookup()->text = text;
    return callback->call(h, Handle<FileData>(data)).code;
}

void TestProvider::loadFileInfo()
{
    const Handle<TestProviderFile> file = construct<TestProviderFile>(defaultAllocationCategory);
    file.lookup()->setName(SCS("notes.txt"));
    file.lookup()->setParent(getHandle());
    file.lookup()->text = text;
    file.lookup()->time = time;
    getSystemDeref<FileSystem>().addFileCopy(SCS("notes.txt"), ::getHandle(this), file);
}

void TestReader::onData(RequestHandle h, Handle<FileData> data)
{
    request = h;
    heard.assign(reinterpret_cast<const char *>(data.lookup()->getData()),
                 static_cast<std::size_t>(data.lookup()->getSize()));
    data.lookup()->murder();
}

namespace
{

Handle<TestProvider> provide(const char *text, FileTime time)
{
    const Handle<TestProvider> provider = construct<TestProvider>(defaultAllocationCategory);
    provider.lookup()->text = text;
    provider.lookup()->time = time;
    provider.lookup()->loadFileInfo();
    return provider;
}

} // namespace

TEST(FileSystem, NewestCopyAnswersUntilItsProviderIsGone)
{
    const TestLevel level;
    FileSystem &files = getSystemDeref<FileSystem>();
    const Handle<TestReader> hReader = construct<TestReader>(defaultAllocationCategory);
    const auto reader = hReader.lookup();
    const ReflectorPtr callback = reader->bind(SCS("onData"));
    EXPECT_EQ(files.startGetFileData(SCS("notes.txt"), callback, 1).getCode(), ErrorCode::UNKNOWN_KEY);

    const Handle<TestProvider> older = provide("first", 100), newer = provide("second", 200);
    const Handle<TestProvider> oldest = provide("zeroth", 50);
    const auto file = files.getFile(SCS("notes.txt")).lookup();
    ASSERT_TRUE(file);
    EXPECT_EQ(file->getModificationTime(), 200);
    EXPECT_EQ(file->getFileType(), File::FILE);
    EXPECT_EQ(file->getNewestCopy(), file->getCopy(newer));
    EXPECT_TRUE(files.startGetFileData(SCS("notes.txt"), callback, 7).succeeded());
    EXPECT_EQ(reader->heard, "second");
    EXPECT_EQ(reader->request, 7u);

    file->removeCopy(newer);
    EXPECT_TRUE(files.startGetFileData(SCS("notes.txt"), callback, 8).succeeded());
    EXPECT_EQ(reader->heard, "first");

    for (const Handle<TestProvider> &provider : {older, newer, oldest})
        provider.lookup()->murder();
    cremateDeadObjects();
    EXPECT_EQ(file->getFileType(), File::INVALID);
    EXPECT_EQ(file->getFileName(), SCS("ZOMG!"));
    EXPECT_EQ(file->getModificationTime(), 0);
    EXPECT_EQ(files.startGetFileData(SCS("notes.txt"), callback, 9).getCode(), ErrorCode::LOST_ASSET);
    EXPECT_EQ(reader->request, 8u) << "a file without copies has no data to fetch";
    reader->murder();
    cremateDeadObjects();
}
