#include "picture/sandbox.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace quill::picture {
namespace {

struct Limit {
    __rlimit_resource resource;
    rlim_t value;
};
constexpr rlim_t gibibyte = rlim_t{1} << 30U;
constexpr std::array<Limit, 5> limits = {{{RLIMIT_AS, 2 * gibibyte},
                                          {RLIMIT_FSIZE, gibibyte},  // of shared memory for pixels
                                          {RLIMIT_CPU, 3600},  // seconds; the program ends each picture much earlier
                                          {RLIMIT_NOFILE, 16},
                                          {RLIMIT_CORE, 0}}};

/// The system calls that decoding needs, with any arguments: memory, threads, time, and open files.
constexpr int allowed_calls[] = {SCMP_SYS(brk),
                                 SCMP_SYS(munmap),
                                 SCMP_SYS(mremap),
                                 SCMP_SYS(madvise),
                                 SCMP_SYS(futex),
                                 SCMP_SYS(set_robust_list),
                                 SCMP_SYS(rseq),
                                 SCMP_SYS(rt_sigprocmask),
                                 SCMP_SYS(rt_sigreturn),
                                 SCMP_SYS(sigaltstack),
                                 SCMP_SYS(sched_getaffinity),
                                 SCMP_SYS(sched_yield),
                                 SCMP_SYS(clock_gettime),
                                 SCMP_SYS(clock_nanosleep),
                                 SCMP_SYS(nanosleep),
                                 SCMP_SYS(gettimeofday),
                                 SCMP_SYS(getrandom),
                                 SCMP_SYS(getpid),
                                 SCMP_SYS(gettid),
                                 SCMP_SYS(read),
                                 SCMP_SYS(pread64),
                                 SCMP_SYS(lseek),
                                 SCMP_SYS(close),
                                 SCMP_SYS(memfd_create),
                                 SCMP_SYS(ftruncate),
                                 SCMP_SYS(restart_syscall),
                                 SCMP_SYS(exit),
                                 SCMP_SYS(exit_group)};

bool allow(scmp_filter_ctx filter, int call) {
    return seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0) == 0;
}

bool allow(scmp_filter_ctx filter, int call, scmp_arg_cmp condition) {
    return seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 1, condition) == 0;
}

/// Allows calls only with harmless arguments: threads of this process but no processes, memory that is not executable,
/// messages only over the line.
bool allow_by_argument(scmp_filter_ctx filter, int line) {
    const auto descriptor = static_cast<scmp_datum_t>(line);
    return allow(filter, SCMP_SYS(mmap), SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0)) &&
           allow(filter, SCMP_SYS(mprotect), SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0)) &&
           allow(filter, SCMP_SYS(sendmsg), SCMP_A0(SCMP_CMP_EQ, descriptor)) &&
           allow(filter, SCMP_SYS(recvmsg), SCMP_A0(SCMP_CMP_EQ, descriptor)) &&
           allow(filter, SCMP_SYS(fcntl), SCMP_A1(SCMP_CMP_EQ, F_ADD_SEALS)) &&
           allow(filter, SCMP_SYS(prctl), SCMP_A0(SCMP_CMP_EQ, PR_SET_NAME)) &&
           allow(filter, SCMP_SYS(clone),
                 SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD | CLONE_VM, CLONE_THREAD | CLONE_VM)) &&
           // Its arguments are in memory that a filter can't read; the C library falls back to clone.
           seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0;
}

bool close_system_calls(int line) {
    scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
    if (filter == nullptr) return false;
    bool good = allow_by_argument(filter, line);
    for (const int call : allowed_calls) good = good && allow(filter, call);
    for (const int call : {SCMP_SYS(execve), SCMP_SYS(execveat), SCMP_SYS(ptrace), SCMP_SYS(socket)}) {
        good = good && seccomp_rule_add(filter, SCMP_ACT_KILL_PROCESS, call, 0) == 0;
    }
    seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1);
    good = good && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return good;
}

/// Removes the right to open, make, change or list any file by name.
bool close_file_system() {
    landlock_ruleset_attr rules = {};
    // The rights of the first version of Landlock: opening, making and removing.
    rules.handled_access_fs = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1;
    const auto rule_set = static_cast<int>(syscall(SYS_landlock_create_ruleset, &rules, sizeof rules, 0));
    if (rule_set < 0) return false;
    const bool good = syscall(SYS_landlock_restrict_self, rule_set, 0) == 0;
    close(rule_set);
    return good;
}

}  // namespace

Sandbox close_sandbox(int line) {
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    for (const auto& [resource, value] : limits) {
        const rlimit limit{value, value};
        setrlimit(resource, &limit);
    }
    Sandbox sandbox;
    sandbox.landlock = close_file_system();
    sandbox.seccomp = close_system_calls(line);
    return sandbox;
}

}  // namespace quill::picture
