// TestProvider: a place of files in memory.
#pragma once

#include "assets/files/FileData.h"
#include "assets/files/FileSystemProvider.h"
#include "assets/files/ProviderFile.h"

#include <string>

/// Contents that a test wrote.
class TestFileData : public FileData
{
    KV_REFLECTED(TestFileData)
public:
    const std::uint8_t *getData() override { return reinterpret_cast<const std::uint8_t *>(text.data()); }
    std::int64_t getSize() override { return static_cast<std::int64_t>(text.size()); }

    std::string text;
};

/// A file whose data are its text.
class TestProviderFile : public ProviderFile
{
    KV_REFLECTED(TestProviderFile)
public:
    File::Type getFileType() override { return File::FILE; }
    String getFileName() override { return getName(); }
    FileTime getModificationTime() override { return time; }
    ErrorCode startGetFileData(ReflectorPtr callback, RequestHandle h) override;

    std::string text;
    FileTime time = 0;
};

/// A provider that has one file, "notes.txt".
class TestProvider : public FileSystemProvider
{
    KV_REFLECTED(TestProvider)
public:
    void loadFileInfo() override;

    std::string text;
    FileTime time = 0;
};

/// Hears when data are there and keeps what they said.
class TestReader : public Object
{
    KV_REFLECTED(TestReader)
public:
    void onData(RequestHandle h, Handle<FileData> data);

    std::string heard;
    RequestHandle request = 0;
};
