#include "Tallyfox/Engine/Quota/CodexQuotaFetcher.h"

#include "Tallyfox/Engine/Quota/ChildProcess.h"
#include "Tallyfox/Engine/Quota/ChildReaper.h"
#include "Tallyfox/Engine/Quota/LineAssembler.h"
#include "TallyfoxCore/Json/Utf8.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <functional>
#include <optional>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace tallyfox::CodexQuotaFetcher {

namespace {

using Outcome = std::variant<QuotaSnapshot, QuotaError>;

constexpr std::int64_t rateLimitRequest = 2; ///< id of the request for the rate limits
constexpr std::string_view requests =
    R"({"method":"initialize","id":0,"params":{"clientInfo":{"name":"tallyfox","title":"Tallyfox","version":"0.1.0"}}})"
    "\n"
    R"({"method":"initialized"})"
    "\n"
    R"({"method":"account/rateLimits/read","id":2})"
    "\n";
constexpr std::size_t maximumLineLength = std::size_t{1024} * 1024; ///< bytes; far above any reply
constexpr std::size_t pieceSize = std::size_t{64} * 1024; ///< bytes read at a time

std::error_code lastError()
{
    return {errno, std::system_category()};
}

bool arm(const FileDescriptor& timer, std::chrono::milliseconds limit)
{
    timespec now{};
    if (clock_gettime(CLOCK_BOOTTIME, &now) != 0)
        return false;
    const auto deadline = std::chrono::seconds{now.tv_sec} + std::chrono::nanoseconds{now.tv_nsec} + limit;
    const auto seconds = std::chrono::floor<std::chrono::seconds>(deadline);
    itimerspec setting{};
    setting.it_value.tv_sec = seconds.count();
    setting.it_value.tv_nsec = (deadline - seconds).count();
    return timerfd_settime(timer.get(), TFD_TIMER_ABSTIME, &setting, nullptr) == 0;
}

/// Waits for output of a child process, the time limit and a stop request in one system call, so that a reader never
/// blocks for longer. The limit starts at construction and includes system sleep.
class ExchangeClock {
public:
    struct Wake {
        bool isStopped = false; ///< a stop was requested
        bool isExpired = false; ///< the limit has passed
        bool hasOutput = false; ///< reading will not block: there is data, or the end
    };

    ExchangeClock(std::chrono::milliseconds limit, const std::stop_token& stop)
        : m_timer(timerfd_create(CLOCK_BOOTTIME, TFD_CLOEXEC))
        , m_stopped(eventfd(0, EFD_CLOEXEC))
    {
        if (!m_timer.isOpen() || !m_stopped.isOpen() || !arm(m_timer, limit))
            m_error = lastError();
        else
            m_onStop.emplace(stop, [descriptor = m_stopped.get()] { eventfd_write(descriptor, 1); });
    }

    /// Blocks until one of the three happens; returns the system's error if it cannot wait.
    [[nodiscard]] std::variant<Wake, std::error_code> wait(const FileDescriptor& output) const
    {
        if (m_error)
            return m_error;
        std::array<pollfd, 3> watched{pollfd{.fd = m_stopped.get(), .events = POLLIN, .revents = 0},
                                      pollfd{.fd = m_timer.get(), .events = POLLIN, .revents = 0},
                                      pollfd{.fd = output.get(), .events = POLLIN, .revents = 0}};
        while (poll(watched.data(), watched.size(), -1) < 0) {
            if (errno != EINTR)
                return lastError();
        }
        return Wake{.isStopped = watched[0].revents != 0,
                    .isExpired = watched[1].revents != 0,
                    .hasOutput = watched[2].revents != 0};
    }

private:
    std::error_code m_error; ///< of the construction
    FileDescriptor m_timer;
    FileDescriptor m_stopped;
    std::optional<std::stop_callback<std::function<void()>>> m_onStop; ///< last: it writes to `m_stopped`
};

bool isExecutableFile(const std::filesystem::path& path)
{
    struct stat status { };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)
        && faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

/// The outcome if `line` is the wanted reply. Invalid UTF-8 is repaired, so that it affects no other line.
std::optional<Outcome> readReply(std::string_view line)
{
    std::string repaired;
    if (!isValidUtf8(line)) {
        repaired = repairedUtf8(line);
        line = repaired;
    }
    if (!CodexRateLimitParser::isReply(line, rateLimitRequest))
        return std::nullopt;
    const auto decoded = CodexRateLimitParser::decode(line);
    if (const auto* error = std::get_if<DecodingError>(&decoded))
        return QuotaError{*error};
    return std::get<QuotaSnapshot>(decoded);
}

/// Reads a child's output in pieces until it finds the reply.
class ReplyReader {
public:
    explicit ReplyReader(const FileDescriptor& output)
        : m_output(output)
    { }

    /// Reads one piece; returns the outcome if that piece determines it.
    std::optional<Outcome> readPiece()
    {
        const ssize_t count = read(m_output.get(), m_piece.data(), m_piece.size());
        if (count < 0)
            return errno == EAGAIN || errno == EINTR ? std::nullopt : std::optional<Outcome>{lastError()};
        if (count == 0)
            return readEnd();
        std::string_view input{m_piece.data(), static_cast<std::size_t>(count)};
        while (const auto line = m_lines.next(input)) {
            if (auto outcome = readReply(*line))
                return outcome;
        }
        return std::nullopt;
    }

private:
    Outcome readEnd()
    {
        const auto line = m_lines.last();
        return (line ? readReply(*line) : std::nullopt).value_or(SourceError::unavailable);
    }

    const FileDescriptor& m_output;
    LineAssembler m_lines{maximumLineLength};
    std::vector<char> m_piece = std::vector<char>(pieceSize);
};

/// A reply that is already there when the limit expires still counts; only one piece is read for it, so that a child
/// that floods its output cannot extend the limit.
Outcome awaitReply(const FileDescriptor& output, const ExchangeClock& clock)
{
    ReplyReader reader{output};
    for (;;) {
        const auto woken = clock.wait(output);
        if (const auto* error = std::get_if<std::error_code>(&woken))
            return *error;
        const auto& wake = std::get<ExchangeClock::Wake>(woken);
        if (wake.isStopped)
            return SourceError::cancelled;
        if (wake.hasOutput) {
            if (auto outcome = reader.readPiece())
                return *outcome;
        }
        if (wake.isExpired)
            return SourceError::timeout;
    }
}

/// Fills the pipe before the child exists: it is empty and its reading end is still open here, so that the single write
/// can neither block, nor be partial, nor fail because the child has exited.
std::error_code writeRequests(const Pipe& input)
{
    return write(input.writer.get(), requests.data(), requests.size()) < 0 ? lastError() : std::error_code{};
}

Outcome exchange(const std::filesystem::path& executable, Pipe input, Pipe output, ChildReaper& reaper,
                 const ExchangeClock& clock)
{
    if (const std::error_code error = writeRequests(input))
        return error;
    if (fcntl(output.reader.get(), F_SETFL, O_NONBLOCK) != 0)
        return lastError();
    const auto started =
        reaper.start([&] { return spawnChild(executable, "app-server", input.reader, output.writer); });
    if (const auto* error = std::get_if<std::error_code>(&started))
        return *error;
    if (std::holds_alternative<ChildReaper::Ended>(started))
        return SourceError::cancelled;
    input.reader = FileDescriptor{};
    output.writer = FileDescriptor{};
    const Outcome outcome = awaitReply(output.reader, clock);
    input.writer = FileDescriptor{}; // before SIGTERM, which the destructor of `started` sends
    return outcome;
}

} // namespace

std::vector<std::filesystem::path> candidates(const std::filesystem::path& accountHome)
{
    return {accountHome / ".local/bin/codex", "/opt/homebrew/bin/codex", "/usr/local/bin/codex"};
}

std::variant<std::filesystem::path, SourceError> executableURL(const std::vector<std::filesystem::path>& candidates)
{
    for (const std::filesystem::path& candidate : candidates) {
        if (isExecutableFile(candidate))
            return candidate;
    }
    return SourceError::missingCLI;
}

std::variant<QuotaSnapshot, QuotaError> fetch(const std::vector<std::filesystem::path>& candidates, ChildReaper& reaper,
                                              const std::stop_token& stop, std::chrono::milliseconds limit)
{
    const ExchangeClock clock{limit, stop};
    if (stop.stop_requested())
        return SourceError::cancelled;
    const auto executable = executableURL(candidates);
    if (const auto* error = std::get_if<SourceError>(&executable))
        return *error;
    auto input = Pipe::open();
    if (const auto* error = std::get_if<std::error_code>(&input))
        return *error;
    auto output = Pipe::open();
    if (const auto* error = std::get_if<std::error_code>(&output))
        return *error;
    return exchange(std::get<std::filesystem::path>(executable), std::move(std::get<Pipe>(input)),
                    std::move(std::get<Pipe>(output)), reaper, clock);
}

} // namespace tallyfox::CodexQuotaFetcher
