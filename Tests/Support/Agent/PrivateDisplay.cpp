#include "Support/Agent/PrivateDisplay.h"

#include <cstdlib>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

namespace tallyfox::test {

PrivateDisplay::PrivateDisplay(const QString& screen)
    : m_server(QStringLiteral("Xvfb"),
               {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                screen, QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-noreset")},
               {})
{
    const QString number = m_server.nextLine();
    if (!number.isEmpty())
        m_name = QLatin1Char(':') + number;
}

PrivateDisplay::~PrivateDisplay()
{
    m_server.process().terminate(); // not killed, so that it removes its socket and lock file
    m_server.process().waitForFinished(10'000);
}

bool PrivateDisplay::run(const QString& program, const QStringList& arguments)
{
    Probe probe{program, arguments, {QStringLiteral("DISPLAY=") + m_name}};
    QProcess& process = probe.process();
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void PrivateDisplay::pressCodes(const std::vector<std::uint8_t>& codes)
{
    xcb_connection_t* connection = xcb_connect(m_name.toLatin1().constData(), nullptr);
    for (const std::uint8_t code : codes)
        xcb_test_fake_input(connection, XCB_KEY_PRESS, code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    for (auto code = codes.rbegin(); code != codes.rend(); ++code)
        xcb_test_fake_input(connection, XCB_KEY_RELEASE, *code, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    // When the server has replied to a later request, it has processed them all.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

bool PrivateDisplay::press(const QString& keys)
{
    return run(QStringLiteral("xdotool"), {QStringLiteral("key"), keys});
}

} // namespace tallyfox::test
