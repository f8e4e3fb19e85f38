#include "Tallyfox/Engine/System/StandardStreams.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tallyfox::StandardStreams {

namespace {

/// Blocks SIGPIPE in this thread during its lifetime, and discards one that a write has raised meanwhile. Ignoring the
/// signal instead would affect the whole program.
class WithoutPipeSignal {
public:
    WithoutPipeSignal()
    {
        sigemptyset(&m_pipe);
        sigaddset(&m_pipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &m_pipe, &m_before);
    }
    WithoutPipeSignal(const WithoutPipeSignal&) = delete;
    WithoutPipeSignal& operator=(const WithoutPipeSignal&) = delete;
    ~WithoutPipeSignal()
    {
        const timespec now{};
        while (!m_wasPending && sigtimedwait(&m_pipe, nullptr, &now) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

private:
    sigset_t m_pipe{};
    sigset_t m_before{};
    bool m_wasPending = false;
};

/// 0 when all of `text` has been written, else errno.
int writeAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd writable{.fd = descriptor, .events = POLLOUT, .revents = 0};
            poll(&writable, 1, -1);
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void reportFatalMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type == QtFatalMsg)
        writeDiagnostic(message.simplified().toStdString());
}

} // namespace

void guard()
{
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF)
            continue;
        // In the wrong direction on purpose, so that using the stream still fails. open() takes the lowest free number.
        if (open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) < 0)
            return;
    }
}

std::variant<Written, ReaderGone, std::error_code> writeOutput(std::string_view text)
{
    const WithoutPipeSignal without;
    const int error = writeAll(STDOUT_FILENO, text);
    if (error == 0)
        return Written{};
    if (error == EPIPE)
        return ReaderGone{};
    return std::error_code{error, std::system_category()};
}

void writeDiagnostic(std::string_view message)
{
    const WithoutPipeSignal without;
    writeAll(STDERR_FILENO, std::string{"tallyfox: "}.append(message).append("\n"));
}

void reportReady()
{
    bool isNumber = false;
    const int descriptor = qEnvironmentVariableIntValue("TALLYFOX_READY_FD", &isNumber);
    qunsetenv("TALLYFOX_READY_FD");
    if (!isNumber || descriptor <= STDERR_FILENO)
        return;
    const WithoutPipeSignal without;
    writeAll(descriptor, "ready\n");
    close(descriptor);
}

void silenceToolkit()
{
    qInstallMessageHandler(reportFatalMessage);
}

TextStyle outputStyle()
{
    TextStyle style;
    if (isatty(STDOUT_FILENO) == 0)
        return style;
    const QByteArray terminal = qgetenv("TERM");
    style.hasColour = qgetenv("NO_COLOR").isEmpty() && !terminal.isEmpty() && terminal != "dumb";
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        style.columns = size.ws_col;
    return style;
}

} // namespace tallyfox::StandardStreams
