#pragma once

#include "Bus/BusClient.h"
#include "Bus/GrantLedger.h"
#include "Bus/KdeShortcutModel.h"

#include <string>
#include <vector>

namespace tallyfox {

/// What a client has received that matters by its documentation, and what it has to report then.
class ClientModel {
public:
    /// The first answer to one of the calls; `isGrant` as the ledger sees it.
    void noteAnswer(const BusClient& client, const std::vector<AskedCall>& all, AskedCall& asked,
                    const WireMessage& answer, bool isGrant);
    /// A response of the portal that has replied. Only the first counts.
    void noteResponse(AskedCall& asked, bool isGrant);
    /// A change of the owner of a name.
    void noteOwner(const BusClient& client, const std::string& name, const std::string& before,
                   const std::string& after);
    /// Which of the watchers a new call of the program is for, or which of the registrations of a shortcut it is.
    unsigned appointmentOf(const WireMessage& call);
    /// A signal of a peer about the keys of a KDE shortcut; returns whether it activates the shortcut.
    bool noteKeys(const std::string& sender, bool isPress);

    /// Checks the client against the model.
    void judge(const BusClient& client, const std::vector<AskedCall>& asked, const GrantLedger& ledger);

private:
    void judgeRequest(const BusClient& client) const;
    void judgeWatch(const BusClient& client, const std::vector<AskedCall>& asked) const;
    void setWatcher(const std::string& owner);
    void noteWatchersAnswer(const AskedCall& asked, const WireMessage& answer);
    [[nodiscard]] bool isToWatcher(const AskedCall& asked) const;

    int m_grants = 0; ///< that a request should accept
    int m_reasonsToFail = 0;
    bool m_isWatcherKnown = false;
    std::string m_watcher; ///< the owner of the name of the watcher of status notifiers
    unsigned m_appointments = 0; ///< of such owners
    unsigned m_registrations = 0; ///< of the item, with another owner each
    StatusNotifierHost m_host = StatusNotifierHost::unknown;
    std::vector<int> m_completions; ///< that are due
    KdeShortcutModel m_kde;
};

} // namespace tallyfox
