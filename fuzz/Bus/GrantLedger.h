#pragma once

#include "Bus/WireMessage.h"
#include "TallyfoxCore/Files/FileDescriptor.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tallyfox {

/// A call of the program, to be answered by a peer.
struct AskedCall {
    WireMessage call;
    bool isAnswered = false; ///< further replies are ignored
    std::string portal{}; ///< the sender of a reply with a handle
    std::string handle{}; ///< the handle; before the reply the expected one
    std::optional<std::pair<std::string, bool>>
        early{}; ///< the last response before the reply: its sender, and whether it grants
    bool isDecided = false; ///< by a response of that portal
    unsigned appointment = 0; ///< which of the watchers it is for
};

inline bool isOpen(const AskedCall& asked)
{
    return !asked.isAnswered;
}

/// Whether a portal replies with a handle.
bool isPortalCall(const WireMessage& call);
bool isCookieCall(const WireMessage& call);
bool isLoginCall(const WireMessage& call);

/// The handle of the request of `call` in a portal that follows its protocol; empty for other calls.
std::string expectedHandle(const WireMessage& call);

/// What the services have granted: the program must give all of it back.
class GrantLedger {
public:
    /// Records the first reply to a call; returns whether it is a grant.
    bool noteAnswer(const AskedCall& asked, const WireMessage& answer, bool hasDescriptor);
    /// Records a call. One that gives something back must give back what was granted.
    void noteCall(const WireMessage& call);
    /// A descriptor for the program; the ledger keeps the other end to see whether it is open.
    FileDescriptor newDescriptor();
    /// Sessions of the portal that the program has not closed.
    [[nodiscard]] std::size_t openSessions() const
    {
        return m_sessions.size();
    }
    /// Whether all but descriptors has been given back.
    [[nodiscard]] bool isBalanced() const;
    [[nodiscard]] bool areDescriptorsClosed() const;

private:
    std::multiset<std::pair<std::string, std::uint32_t>> m_cookies; ///< by service
    std::multiset<std::pair<std::string, std::string>> m_handles; ///< by portal
    std::multiset<std::string> m_sessions;
    std::vector<FileDescriptor> m_descriptors; ///< the other ends
};

} // namespace tallyfox
