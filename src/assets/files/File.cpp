#include "assets/files/File.h"

#include "assets/files/FileSystemProvider.h"
#include "assets/files/ProviderFile.h"

void File::addCopy(Handle<FileSystemProvider> fsp, Handle<ProviderFile> copy)
{
    fileCopies[fsp] = copy;
}

void File::removeCopy(Handle<FileSystemProvider> fsp)
{
    fileCopies.erase(fsp);
}

ErrorCode File::startGetFileData(ReflectorPtr callback, RequestHandle h)
{
    const auto newest = getNewestCopy().lookup();
    return newest ? newest->startGetFileData(callback, h) : ErrorCode(ErrorCode::LOST_ASSET);
}

Handle<ProviderFile> File::getCopy(Handle<FileSystemProvider> fsp)
{
    const auto found = fileCopies.find(fsp);
    return found == fileCopies.end() ? Handle<ProviderFile>() : found->second;
}

Handle<ProviderFile> File::getNewestCopy()
{
    Handle<ProviderFile> newest;
    FileTime newestTime = 0;
    for (const auto &[fsp, hCopy] : fileCopies)
    {
        const auto copy = hCopy.lookup();
        if (!copy)
            continue;
        const FileTime time = copy->getModificationTime();
        if (newest.isValid() && time <= newestTime)
            continue;
        newest = hCopy;
        newestTime = time;
    }
    return newest;
}

File::Type File::getFileType()
{
    const auto newest = getNewestCopy().lookup();
    return newest ? newest->getFileType() : INVALID;
}

String File::getFileName()
{
    const auto newest = getNewestCopy().lookup();
    return newest ? newest->getFileName() : SCS("ZOMG!");
}

FileTime File::getModificationTime()
{
    const auto newest = getNewestCopy().lookup();
    return newest ? newest->getModificationTime() : FileTime(0);
}
