#include "assets/files/FileSystem.h"

#include "assets/files/FileSystemProvider.h"
#include "assets/files/ProviderFile.h"

Handle<File> FileSystem::getFile(String name)
{
    const auto found = files.find(name);
    return found == files.end() ? Handle<File>() : found->second;
}

ErrorCode FileSystem::startGetFileData(String name, ReflectorPtr callback, RequestHandle h)
{
    const auto file = getFile(name).lookup();
    return file ? file->startGetFileData(callback, h) : ErrorCode(ErrorCode::UNKNOWN_KEY);
}

void FileSystem::addFileCopy(const String &fileName, Handle<FileSystemProvider> fsp, Handle<ProviderFile> copy)
{
    Handle<File> &hFile = files[fileName];
    if (!hFile.isValid())
    {
        hFile = construct<File>(defaultAllocationCategory);
        hFile.lookup()->setName(fileName);
        hFile.lookup()->setParent(getHandle());
    }
    hFile.lookup()->addCopy(fsp, copy);
}
