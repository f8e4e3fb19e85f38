#include "Support/Unprivileged.h"

#include <cerrno>
#include <grp.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tallyfox::test {

namespace {

constexpr int cannotDrop = 200;
constexpr int hasThrown = 201;

bool dropPrivileges()
{
    constexpr uid_t nobody = 65534;
    if (::geteuid() != 0)
        return true;
    return ::setgroups(0, nullptr) == 0 && ::setresgid(nobody, nobody, nobody) == 0
        && ::setresuid(nobody, nobody, nobody) == 0;
}

int runInChild(const std::filesystem::path& folder, const std::function<int()>& action)
{
    try {
        if (::chdir(folder.c_str()) != 0)
            return hasThrown;
        return dropPrivileges() ? action() : cannotDrop;
    } catch (...) {
        return hasThrown;
    }
}

} // namespace

std::optional<int> statusWithoutPrivileges(const std::filesystem::path& folder, const std::function<int()>& action)
{
    const pid_t child = ::fork();
    if (child < 0)
        throw std::system_error{errno, std::system_category(), "fork"};
    if (child == 0)
        ::_exit(runInChild(folder, action));
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            throw std::system_error{errno, std::system_category(), "waitpid"};
    }
    if (!WIFEXITED(status))
        return hasThrown;
    return WEXITSTATUS(status) == cannotDrop ? std::nullopt : std::optional(WEXITSTATUS(status));
}

} // namespace tallyfox::test
