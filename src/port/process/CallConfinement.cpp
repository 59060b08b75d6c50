#include "port/process/CallConfinement.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace port
{

namespace
{

#if defined(__x86_64__)
constexpr unsigned MACHINE = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned MACHINE = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned MACHINE = 0; ///< none whose calls are known here
#endif

constexpr unsigned OTHER_TABLE = 0x40000000; ///< calls of the same machine by another table begin here

/// What starts programs and processes, what changes rights and times of files, which the rules for files say nothing of,
/// what reaches into other processes, and what only administrators' programs do.
constexpr unsigned REFUSED[] = {
    // Programs and processes
    SYS_execve, SYS_execveat, SYS_unshare, SYS_setns,
    // Files
    SYS_truncate, SYS_fchmod, SYS_fchmodat, SYS_fchown, SYS_fchownat, SYS_utimensat, SYS_setxattr, SYS_lsetxattr,
    SYS_fsetxattr, SYS_removexattr, SYS_lremovexattr, SYS_fremovexattr, SYS_open_by_handle_at,
    // Other processes
    SYS_ptrace, SYS_process_vm_writev, SYS_tkill, SYS_rt_sigqueueinfo, SYS_mq_open, SYS_mq_unlink, SYS_msgget,
    424, // pidfd_send_signal, and further down pidfd_getfd and process_madvise
    438, 440,
    // The system
    SYS_bpf, SYS_userfaultfd, SYS_perf_event_open, SYS_keyctl, SYS_add_key, SYS_request_key, SYS_mount, SYS_umount2,
    SYS_pivot_root, SYS_chroot, SYS_swapon, SYS_swapoff, SYS_reboot, SYS_init_module, SYS_finit_module,
    SYS_delete_module, SYS_kexec_load, SYS_settimeofday, SYS_clock_settime, SYS_sethostname, SYS_setdomainname,
#if defined(__x86_64__)
    SYS_fork, SYS_vfork, SYS_chmod, SYS_chown, SYS_lchown, SYS_utime, SYS_utimes, SYS_futimesat, SYS_iopl, SYS_ioperm,
#endif
    452, // fchmodat2, younger than the headers of some systems
    463,
    466, // setxattrat, removexattrat
};
/// What lets a process have calls made that no filter sees, and what says in memory, which no filter reads, what others
/// say by their arguments; libraries do without where it is missing.
constexpr unsigned MISSING[] = {SYS_io_uring_setup, SYS_clone3, SYS_openat2};
/// Sockets within this machine: displays and sound servers, and the kernel's own news of devices.
constexpr unsigned SOCKETS[] = {AF_UNIX, AF_NETLINK};
/// Types into the terminal that the game was started from, or has signals sent to others when something can be read.
constexpr unsigned REFUSED_CONTROLS[] = {TIOCSTI, 0x541C, FIOSETOWN, SIOCSPGRP};
constexpr unsigned REFUSED_OF_DESCRIPTORS[] = {F_SETOWN, F_SETSIG, F_SETOWN_EX};
/// What makes and reaches sockets of other programs.
constexpr unsigned SOCKET_CALLS[] = {SYS_socket, SYS_socketpair, SYS_connect, SYS_bind};

constexpr unsigned refusal(int error)
{
    return SECCOMP_RET_ERRNO | (static_cast<unsigned>(error) & SECCOMP_RET_DATA);
}

/// A filter that is being put together, one question after the other.
class Filter
{
public:
    void load(std::size_t offset) { add(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offset)); }
    void answer(unsigned verdict) { add(BPF_RET | BPF_K, verdict); }
    /// The verdict where the value that is loaded is this one; otherwise the questions go on.
    void answerIf(unsigned value, unsigned verdict, unsigned short comparison = BPF_JEQ)
    {
        lines.push_back({static_cast<unsigned short>(BPF_JMP | comparison | BPF_K), 0, 1, value});
        answer(verdict);
    }
    void answerUnless(unsigned value, unsigned verdict)
    {
        lines.push_back({BPF_JMP | BPF_JEQ | BPF_K, 1, 0, value});
        answer(verdict);
    }
    /// The verdict where any of these bits is in the value that is loaded.
    void answerIfAny(unsigned bits, unsigned verdict) { answerIf(bits, verdict, BPF_JSET); }
    /// Leaves only these bits of the value that is loaded.
    void keepBits(unsigned bits) { add(BPF_ALU | BPF_AND | BPF_K, bits); }
    /// Passes over as many of the lines that come next, where the value is another one.
    void skipUnless(unsigned value, std::size_t count)
    {
        lines.push_back({BPF_JMP | BPF_JEQ | BPF_K, 0, static_cast<unsigned char>(count), value});
    }
    bool install()
    {
        const sock_fprog program{static_cast<unsigned short>(lines.size()), lines.data()};
        return syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_TSYNC, &program) == 0;
    }

private:
    void add(unsigned short code, unsigned value) { lines.push_back({code, 0, 0, value}); }

    std::vector<sock_filter> lines;
};

constexpr std::size_t argument(std::size_t number)
{
    return offsetof(seccomp_data, args) + 8 * number; // the lower half, on machines that begin with it
}

/// Questions about the argument of one call: a verdict for each of some values, and one for all others.
template <class Values>
void addArgument(Filter &filter, unsigned call, std::size_t number, const Values &values, unsigned verdict,
                 unsigned otherwise)
{
    filter.skipUnless(call, 1 + 2 * std::size(values) + 1);
    filter.load(argument(number));
    for (const unsigned value : values)
        filter.answerIf(value, verdict);
    filter.answer(otherwise);
}

/// Threads, and no processes: a copy of this one would go on when the game is closed.
void addThreads(Filter &filter)
{
    filter.skipUnless(SYS_clone, 4);
    filter.load(argument(0));
    filter.answerIfAny(CLONE_THREAD, SECCOMP_RET_ALLOW);
    filter.answer(refusal(EPERM));
}

/// Opening for reading that cuts a file to nothing all the same, which not every kernel's rules for files see.
void addOpening(Filter &filter, unsigned call, std::size_t flags)
{
    filter.skipUnless(call, 7);
    filter.load(argument(flags));
    filter.keepBits(O_ACCMODE | O_TRUNC);
    filter.answerIf(O_TRUNC | O_RDONLY, refusal(EACCES));
    filter.answerIf(O_TRUNC | O_ACCMODE, refusal(EACCES));
    filter.answer(SECCOMP_RET_ALLOW);
}

/// Signals and limits of this process alone.
void addOwnProcess(Filter &filter)
{
    const unsigned own[] = {static_cast<unsigned>(getpid())};
    const unsigned ownOrSelf[] = {own[0], 0}; // to the last of them, 0 is who asks
    addArgument(filter, SYS_kill, 0, own, SECCOMP_RET_ALLOW, refusal(EPERM));
    addArgument(filter, SYS_tgkill, 0, own, SECCOMP_RET_ALLOW, refusal(EPERM));
    addArgument(filter, SYS_rt_tgsigqueueinfo, 0, own, SECCOMP_RET_ALLOW, refusal(EPERM));
    addArgument(filter, SYS_prlimit64, 0, ownOrSelf, SECCOMP_RET_ALLOW, refusal(EPERM));
}

} // namespace

std::string confineCalls()
{
    if (MACHINE == 0)
        return "programs and the network are not held back: the calls of this machine are not known.";
    Filter filter;
    filter.load(offsetof(seccomp_data, arch));
    filter.answerUnless(MACHINE, refusal(EPERM)); // another machine's calls have other numbers
    filter.load(offsetof(seccomp_data, nr));
    filter.answerIf(OTHER_TABLE, refusal(EPERM), BPF_JGE);
    for (const unsigned call : REFUSED)
        filter.answerIf(call, refusal(EPERM));
    for (const unsigned call : MISSING)
        filter.answerIf(call, refusal(ENOSYS));
    addArgument(filter, SYS_socket, 0, SOCKETS, SECCOMP_RET_ALLOW, refusal(EACCES));
    addArgument(filter, SYS_ioctl, 1, REFUSED_CONTROLS, refusal(EPERM), SECCOMP_RET_ALLOW);
    addArgument(filter, SYS_fcntl, 1, REFUSED_OF_DESCRIPTORS, refusal(EPERM), SECCOMP_RET_ALLOW);
    addThreads(filter);
    addOpening(filter, SYS_openat, 2);
#if defined(__x86_64__)
    addOpening(filter, SYS_open, 1);
#endif
    addOwnProcess(filter);
    filter.answer(SECCOMP_RET_ALLOW);
    if (filter.install())
        return {};
    return "programs, processes and the network are not held back: this system's kernel does not filter calls (" +
           std::string(std::strerror(errno)) + ").";
}

bool refuseSockets()
{
    Filter filter;
    filter.load(offsetof(seccomp_data, nr));
    for (const unsigned call : SOCKET_CALLS)
        filter.answerIf(call, refusal(EACCES));
    filter.answer(SECCOMP_RET_ALLOW);
    return MACHINE != 0 && filter.install();
}

} // namespace port
