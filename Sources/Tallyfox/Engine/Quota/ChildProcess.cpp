#include "Tallyfox/Engine/Quota/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace tallyfox {

namespace {

std::error_code systemError(int number)
{
    return {number, std::system_category()};
}

/// Duplicates a descriptor in the range of the standard ones, which those of the child would overwrite.
FileDescriptor moveAboveStandardDescriptors(FileDescriptor descriptor)
{
    if (descriptor.get() > STDERR_FILENO)
        return descriptor;
    return FileDescriptor{fcntl(descriptor.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1)};
}

class FileActions {
public:
    FileActions()
    {
        posix_spawn_file_actions_init(&m_actions);
    }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions()
    {
        posix_spawn_file_actions_destroy(&m_actions);
    }

    int redirect(int standardInput, int standardOutput)
    {
        if (const int error = posix_spawn_file_actions_adddup2(&m_actions, standardInput, STDIN_FILENO))
            return error;
        if (const int error = posix_spawn_file_actions_adddup2(&m_actions, standardOutput, STDOUT_FILENO))
            return error;
        return posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const
    {
        return &m_actions;
    }

private:
    posix_spawn_file_actions_t m_actions{};
};

class SpawnAttributes {
public:
    SpawnAttributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes()
    {
        posix_spawnattr_destroy(&m_attributes);
    }

    [[nodiscard]] const posix_spawnattr_t* get() const
    {
        return &m_attributes;
    }

private:
    posix_spawnattr_t m_attributes{};
};

} // namespace

std::variant<Pipe, std::error_code> Pipe::open()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return systemError(errno);
    Pipe made{.reader = FileDescriptor{ends[0]}, .writer = FileDescriptor{ends[1]}};
    made.reader = moveAboveStandardDescriptors(std::move(made.reader));
    made.writer = moveAboveStandardDescriptors(std::move(made.writer));
    if (!made.reader.isOpen() || !made.writer.isOpen())
        return systemError(EMFILE);
    return made;
}

std::variant<pid_t, std::error_code> spawnChild(const std::filesystem::path& executable, const std::string& argument,
                                                const FileDescriptor& standardInput,
                                                const FileDescriptor& standardOutput)
{
    FileActions actions;
    if (const int error = actions.redirect(standardInput.get(), standardOutput.get()))
        return systemError(error);
    const SpawnAttributes attributes;
    std::string name = executable.native();
    std::string onlyArgument = argument;
    const std::array<char*, 3> arguments{name.data(), onlyArgument.data(), nullptr};
    pid_t child = -1;
    if (const int error = posix_spawn(&child, name.c_str(), actions.get(), attributes.get(), arguments.data(), environ))
        return systemError(error);
    return child;
}

} // namespace tallyfox
