#pragma once

#include "TallyfoxCore/Files/FileDescriptor.h"

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <system_error>
#include <variant>

namespace tallyfox {

/// Bounds an exchange with a child process: waits for output, for the time limit and for a stop request at once, in
/// one system call, so that no reader is ever left blocked. The limit runs from the construction on and counts the
/// time the machine sleeps.
class ExchangeClock {
public:
    struct Wake {
        bool isStopped = false; ///< a stop was requested
        bool isExpired = false; ///< the limit has passed
        bool hasOutput = false; ///< reading will not block: there are bytes, or the end
    };

    ExchangeClock(std::chrono::milliseconds limit, const std::stop_token& stop);

    /// Blocks until something is to be told; the system's error when it cannot wait.
    std::variant<Wake, std::error_code> wait(const FileDescriptor& output) const;

private:
    std::error_code m_error; ///< of the construction
    FileDescriptor m_timer;
    FileDescriptor m_stopped;
    std::optional<std::stop_callback<std::function<void()>>> m_onStop; ///< last: it writes to `m_stopped`
};

} // namespace tallyfox
