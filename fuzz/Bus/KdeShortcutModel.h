#pragma once

#include "Bus/GrantLedger.h"

#include <string>

namespace tallyfox {

/// What a KDE shortcut has received from its service, and what it has to report then.
class KdeShortcutModel {
public:
    /// Which of the registrations a call of the program is.
    unsigned numberOf(const WireMessage& call);
    /// The first answer to a registration.
    void noteAnswer(const AskedCall& asked, const WireMessage& answer);
    /// A change of the service's owner.
    void noteOwner(const std::string& before, const std::string& after);
    /// A signal that the keys are pressed or released; returns whether it activates the shortcut.
    bool noteKeys(const std::string& sender, bool isPress);

    [[nodiscard]] bool isServed() const
    {
        return m_isServed;
    }
    [[nodiscard]] bool hasService() const
    {
        return !m_service.empty();
    }

private:
    unsigned m_heard = 0; ///< registrations that the program has made
    unsigned m_registration = 1; ///< the newest that it should make
    bool m_isPending = true;
    bool m_isServed = true;
    bool m_isHeld = false;
    std::string m_service; ///< the sender of the answer
};

} // namespace tallyfox
