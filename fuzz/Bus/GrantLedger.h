#pragma once

#include "Bus/WireMessage.h"
#include "TallyfoxCore/Files/FileDescriptor.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tallyfox {

/// A call of the program that a peer may answer.
struct AskedCall {
    WireMessage call;
    bool isAnswered = false; ///< further answers mean nothing
    std::string portal{}; ///< who has answered, where a portal has given a handle
    std::string handle{}; ///< which; before the answer the one that is expected
    std::optional<std::pair<std::string, bool>>
        early{}; ///< the last response before the handle: whose, and whether it grants
    bool isDecided = false; ///< by a response of that portal
    unsigned appointment = 0; ///< which of the owners of a watcher's name is meant
};

inline bool isOpen(const AskedCall& asked)
{
    return !asked.isAnswered;
}

bool isPortalCall(const WireMessage& call);
bool isCookieCall(const WireMessage& call);
bool isLoginCall(const WireMessage& call);

/// Where a portal that keeps to its protocol has the request of `call`; empty for other calls.
std::string expectedHandle(const WireMessage& call);

/// What the services have given to the program: all of it is to be given back.
class GrantLedger {
public:
    /// Takes the first answer to a call; whether it grants what was asked for.
    bool noteAnswer(const AskedCall& asked, const WireMessage& answer, bool hasDescriptor);
    /// Takes a call; one that gives something back has to give back what is there.
    void noteCall(const WireMessage& call);
    /// A descriptor to be given to the program, with which nobody but the ledger knows whether it is open.
    FileDescriptor newDescriptor();
    /// Sessions of the portal that the program has and has not closed.
    [[nodiscard]] std::size_t openSessions() const
    {
        return m_sessions.size();
    }
    /// Whether nothing is left with the program; descriptors apart.
    [[nodiscard]] bool isBalanced() const;
    [[nodiscard]] bool areDescriptorsClosed() const;

private:
    std::multiset<std::pair<std::string, std::uint32_t>> m_cookies; ///< by service
    std::multiset<std::pair<std::string, std::string>> m_handles; ///< by portal
    std::multiset<std::string> m_sessions;
    std::vector<FileDescriptor> m_descriptors; ///< the other ends
};

} // namespace tallyfox
