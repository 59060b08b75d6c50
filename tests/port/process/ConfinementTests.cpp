#include "port/process/Confinement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <sched.h>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace
{
constexpr long PIDFD_GETFD = 438, IO_URING_SETUP = 425, CLONE3 = 435, OPENAT2 = 437;
constexpr int NOTHING_HELD = 99;

/// A confined process, as a child of the test's, which may write into one folder. What fails in it is its exit code.
class ConfinementTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string name = std::filesystem::temp_directory_path() / "confinedXXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        std::filesystem::create_directory(folder / "own");
        close(open((folder / "precious").c_str(), O_CREAT | O_WRONLY, 0666));
        std::filesystem::resize_file(folder / "precious", 4);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    /// Runs something in a confined process; the number that it gives, NOTHING_HELD where this kernel cannot.
    template <class Act>
    int inConfined(Act &&act) const
    {
        const pid_t child = fork();
        if (child == 0)
            _exit(port::confineProcess({{(folder / "own").string()}, {}}).empty() ? act() : NOTHING_HELD);
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
    }

    std::filesystem::path folder;
};

/// Whether a call is refused as one that no game makes, rather than for its arguments.
bool isRefused(long result)
{
    return result < 0 && (errno == EPERM || errno == EACCES || errno == ENOSYS || errno == EXDEV);
}
} // namespace

TEST_F(ConfinementTest, CallsThatReachOutsideAreRefusedWhateverTheirArguments)
{
    const std::string precious = (folder / "precious").string();
    const int memory = memfd_create("program", 0);
    const pid_t parent = getpid();
    rlimit none{0, 0};
    const auto calls = [&]
    {
        const bool refused[] = {
            isRefused(syscall(SYS_execve, "/bin/true", nullptr, nullptr)),
            isRefused(syscall(SYS_execveat, memory, "", nullptr, nullptr, AT_EMPTY_PATH)),
            isRefused(syscall(SYS_clone, 17, 0, 0, 0, 0)),
            isRefused(syscall(CLONE3, nullptr, 0)),
            isRefused(syscall(SYS_kill, parent, 0)),
            isRefused(syscall(SYS_kill, 0, 0)),
            isRefused(syscall(SYS_kill, -1, 0)),
            isRefused(syscall(SYS_tkill, parent, 0)),
            isRefused(syscall(SYS_tgkill, parent, parent, 0)),
            isRefused(syscall(SYS_prlimit64, parent, RLIMIT_CPU, &none, nullptr)),
            isRefused(syscall(SYS_process_vm_writev, parent, nullptr, 0, nullptr, 0, 0)),
            isRefused(syscall(SYS_ptrace, 16, parent, 0, 0)),
            isRefused(syscall(PIDFD_GETFD, -1, 0, 0)),
            isRefused(syscall(IO_URING_SETUP, 1, nullptr)),
            isRefused(syscall(OPENAT2, AT_FDCWD, precious.c_str(), nullptr, 0)),
            isRefused(syscall(SYS_fcntl, 0, F_SETOWN, parent)),
            isRefused(syscall(SYS_socket, AF_INET, SOCK_STREAM, 0)),
            isRefused(syscall(SYS_socket, AF_INET6, SOCK_DGRAM, 0)),
            isRefused(syscall(SYS_socket, AF_PACKET, SOCK_RAW, 0)),
            isRefused(syscall(SYS_truncate, precious.c_str(), 0)),
            isRefused(syscall(SYS_openat, AT_FDCWD, precious.c_str(), O_RDONLY | O_TRUNC, 0)),
            isRefused(syscall(SYS_openat, AT_FDCWD, precious.c_str(), O_ACCMODE | O_TRUNC, 0)),
            isRefused(syscall(SYS_openat, AT_FDCWD, "/proc/self/mem", O_RDWR, 0)),
            isRefused(syscall(SYS_renameat, AT_FDCWD, precious.c_str(), AT_FDCWD, (folder / "own/precious").c_str())),
            isRefused(syscall(SYS_linkat, AT_FDCWD, precious.c_str(), AT_FDCWD, (folder / "own/link").c_str(), 0)),
            isRefused(syscall(SYS_symlinkat, precious.c_str(), AT_FDCWD, (folder / "own/link").c_str())),
        };
        const auto made = std::find(std::begin(refused), std::end(refused), false);
        return made == std::end(refused) ? 0 : static_cast<int>(made - std::begin(refused)) + 1;
    };
    const int made = inConfined(calls);
    if (made == NOTHING_HELD)
        GTEST_SKIP() << "this kernel confines no process";
    EXPECT_EQ(made, 0) << "number of the first call that was made";
    EXPECT_EQ(std::filesystem::file_size(folder / "precious"), 4u);
    close(memory);
}

TEST_F(ConfinementTest, WhatAGameNeedsIsLeftAndSocketsUntilTheyAreGivenUp)
{
    const int inherited = open((folder / "precious").c_str(), O_WRONLY);
    const auto needs = [&]
    {
        const bool closed = fcntl(inherited, F_GETFD) < 0;
        bool ran = false;
        std::thread([&] { ran = true; }).join();
        const bool writes = close(open((folder / "own/save").c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0666)) == 0;
        const bool signals = kill(getpid(), 0) == 0;
        const bool reached = socket(AF_UNIX, SOCK_STREAM, 0) >= 0;
        const bool givenUp =
            port::confineSockets() && isRefused(socket(AF_UNIX, SOCK_STREAM, 0)) && isRefused(connect(0, nullptr, 0));
        const char *const bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
        const bool alone = bus && !std::filesystem::exists(std::string(bus).substr(std::strlen("unix:path=")));
        const bool needed[] = {ran, writes, signals, reached, closed, alone, givenUp};
        const auto missing = std::find(std::begin(needed), std::end(needed), false);
        return missing == std::end(needed) ? 0 : static_cast<int>(missing - std::begin(needed)) + 1;
    };
    const int failed = inConfined(needs);
    close(inherited);
    if (failed == NOTHING_HELD)
        GTEST_SKIP() << "this kernel confines no process";
    EXPECT_EQ(failed, 0);
}
