#include "port/process/CallConfinement.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
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

/// What starts programs, and what changes rights and times of files, which the rules for files say nothing of.
constexpr unsigned REFUSED[] = {
    SYS_execve,
    SYS_execveat,
    SYS_fchmod,
    SYS_fchmodat,
    SYS_fchown,
    SYS_fchownat,
    SYS_utimensat,
    SYS_setxattr,
    SYS_lsetxattr,
    SYS_fsetxattr,
    SYS_removexattr,
    SYS_lremovexattr,
    SYS_fremovexattr,
    SYS_ptrace,
    SYS_process_vm_writev,
    SYS_bpf,
    SYS_userfaultfd,
    SYS_keyctl,
    SYS_add_key,
#if defined(__x86_64__)
    SYS_chmod,
    SYS_chown,
    SYS_lchown,
    SYS_utime,
    SYS_utimes,
    SYS_futimesat,
#endif
    452, // fchmodat2, younger than the headers of some systems
    463,
    466, // setxattrat, removexattrat
};
/// What lets a process have calls made that no filter sees; libraries do without where it is missing.
constexpr unsigned MISSING[] = {SYS_io_uring_setup};
/// Sockets within this machine: displays and sound servers, and the kernel's own news of devices.
constexpr unsigned SOCKETS[] = {AF_UNIX, AF_NETLINK};
/// Types into the terminal that the game was started from.
constexpr unsigned TERMINAL_CALLS[] = {TIOCSTI, 0x541C};

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
template <std::size_t Count>
void addArgument(Filter &filter, unsigned call, std::size_t number, const unsigned (&values)[Count], unsigned verdict,
                 unsigned otherwise)
{
    filter.skipUnless(call, 1 + 2 * Count + 1);
    filter.load(argument(number));
    for (const unsigned value : values)
        filter.answerIf(value, verdict);
    filter.answer(otherwise);
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
    addArgument(filter, SYS_ioctl, 1, TERMINAL_CALLS, refusal(EPERM), SECCOMP_RET_ALLOW);
    filter.answer(SECCOMP_RET_ALLOW);
    if (filter.install())
        return {};
    return "programs and the network are not held back: this system's kernel does not filter calls (" +
           std::string(std::strerror(errno)) + ").";
}

} // namespace port
