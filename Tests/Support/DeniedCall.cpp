#include "Support/DeniedCall.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tallyfox::test {

namespace {

constexpr int hasThrown = 201;

bool deny(int number, int error)
{
    const auto wanted = static_cast<unsigned>(number);
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, wanted, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

int runInChild(int number, int error, const std::function<int()>& action)
{
    try {
        return deny(number, error) ? action() : denialIsImpossible;
    } catch (...) {
        return hasThrown;
    }
}

} // namespace

int statusWithDeniedCall(int number, int error, const std::function<int()>& action)
{
    const pid_t child = ::fork();
    if (child < 0)
        throw std::system_error{errno, std::system_category(), "fork"};
    if (child == 0)
        ::_exit(runInChild(number, error, action));
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            throw std::system_error{errno, std::system_category(), "waitpid"};
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : hasThrown;
}

} // namespace tallyfox::test
