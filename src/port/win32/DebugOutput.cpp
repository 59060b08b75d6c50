// DebugOutput: the debug string operation on the error stream and in the file that keeps it.
#include "port/win32/Diagnostics.h"

#include "port/process/HostStream.h"
#include "port/win32/Exceptions.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constinit port::HostStream errorStream;
constinit port::HostStream keptFile;
bool prepared = false;

void flushAtExit()
{
    port::flushDebugOutput();
    errorStream.setImmediate(true);
    keptFile.setImmediate(true);
}

void prepare()
{
    prepared = true;
    errorStream.attach(STDERR_FILENO);
    // A terminal reads along.
    errorStream.setImmediate(::isatty(STDERR_FILENO) != 0);
    std::atexit(flushAtExit);
    // A crash must not swallow the lines that led to it.
    port::watchFatalSignals();
}

/// Tells once, on the error stream alone, that the file takes no more.
void tellOfFullFile()
{
    const int failure = keptFile.getFailure();
    if (failure == 0)
        return;
    ::close(keptFile.getDescriptor());
    keptFile.attach(0);
    errorStream.write("Warning: The log file takes no more: ");
    errorStream.write(strerrordesc_np(failure));
    errorStream.write(". The run goes on without it.\n");
}

} // namespace

void OutputDebugStringA(LPCSTR text)
{
    if (!text)
        return;
    if (!prepared)
        prepare();
    errorStream.write(text);
    port::keepDebugText(text);
}

namespace port
{

std::string keepDebugOutput(const char *path)
{
    const int file = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0)
        return strerrordesc_np(errno);
    keptFile.flush();
    if (keptFile.isAttached())
        ::close(keptFile.getDescriptor());
    keptFile.attach(file);
    return std::string();
}

void keepDebugText(LPCSTR text)
{
    keptFile.write(text);
    tellOfFullFile();
}

void flushDebugOutput()
{
    keptFile.flush();
    tellOfFullFile();
    errorStream.flush();
}

void forEachDebugDescriptor(void (*use)(int descriptor))
{
    flushDebugOutput();
    for (const HostStream *stream : {&errorStream, &keptFile})
        if (stream->isAttached())
            use(stream->getDescriptor());
}

} // namespace port
