#include "Bus/GrantLedger.h"

#include "FuzzSupport.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tallyfox {

namespace {

template <typename Set, typename Value> void takeOut(Set& set, const Value& value)
{
    const auto found = set.find(value);
    require(found != set.end(), "only what was granted is given back, and once");
    set.erase(found);
}

} // namespace

bool isPortalCall(const WireMessage& call)
{
    return call.destination == "org.freedesktop.portal.Desktop" && call.member != "Get";
}

bool isCookieCall(const WireMessage& call)
{
    return call.destination == "org.freedesktop.PowerManagement" || call.destination == "org.gnome.SessionManager";
}

bool isLoginCall(const WireMessage& call)
{
    return call.destination == "org.freedesktop.login1";
}

std::string expectedHandle(const WireMessage& call)
{
    constexpr std::string_view key = "handle_token"; // the first option, a string in a variant
    const std::size_t place = call.body.find(key);
    if (!isPortalCall(call) || place == std::string::npos)
        return {};
    return "/org/freedesktop/portal/desktop/request/1_1/" + call.textAt(place + key.size() + 1 + 3);
}

bool GrantLedger::noteAnswer(const AskedCall& asked, const WireMessage& answer, bool hasDescriptor)
{
    const WireMessage& call = asked.call;
    if (answer.kind != WireMessage::Kind::answer)
        return false;
    if (isCookieCall(call) && answer.signature.starts_with('u')) {
        m_cookies.emplace(call.destination, answer.numberAt(0));
        return true;
    }
    if (isPortalCall(call) && answer.signature.starts_with('o')) {
        m_handles.emplace(answer.sender, answer.textAt(0));
        return true;
    }
    return isLoginCall(call) && hasDescriptor && answer.signature.starts_with('h') && answer.numberAt(0) == 0;
}

void GrantLedger::noteCall(const WireMessage& call)
{
    if (call.member == "UnInhibit" || call.member == "Uninhibit") {
        require(call.signature == "u", "what is given back is a number");
        takeOut(m_cookies, std::pair{call.destination, call.numberAt(0)});
    } else if (call.interface == "org.freedesktop.portal.Request") {
        require(call.member == "Close" && call.signature.empty(), "requests can be closed only");
        takeOut(m_handles, std::pair{call.destination, call.path});
    } else if (call.interface == "org.freedesktop.portal.Session") {
        require(call.member == "Close" && call.signature.empty(), "sessions can be closed only");
        takeOut(m_sessions, call.path);
    } else if (call.member == "BindShortcuts") {
        m_sessions.insert(call.textAt(0));
    }
}

FileDescriptor GrantLedger::newDescriptor()
{
    std::array<int, 2> ends{};
    require(pipe2(ends.data(), O_CLOEXEC) == 0, "there are descriptors");
    m_descriptors.emplace_back(ends[0]);
    return FileDescriptor{ends[1]};
}

bool GrantLedger::isBalanced() const
{
    return m_cookies.empty() && m_handles.empty() && m_sessions.empty();
}

bool GrantLedger::areDescriptorsClosed() const
{
    return std::ranges::all_of(m_descriptors, [](const FileDescriptor& end) {
        pollfd state{end.get(), POLLIN, 0};
        return poll(&state, 1, 0) == 1 && (state.revents & POLLHUP) != 0;
    });
}

} // namespace tallyfox
