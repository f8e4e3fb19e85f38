#include "Bus/ClientModel.h"

#include "Bus/ServiceAnswers.h"
#include "FuzzSupport.h"

#include <algorithm>
#include <utility>

namespace tallyfox {

namespace {

/// Any other values have no such properties.
StatusNotifierHost hostOf(const WireMessage& properties)
{
    const auto are = [&properties](bool hasHost, bool isListed) {
        return properties.signature == "a{sv}"
            && properties.body == ServiceAnswers::watcherProperties(hasHost, isListed);
    };
    if (are(false, true) || are(false, false))
        return StatusNotifierHost::absent;
    return are(true, false) ? StatusNotifierHost::refusing : StatusNotifierHost::present;
}

} // namespace

void ClientModel::noteAnswer(const BusClient& client, const std::vector<AskedCall>& all, AskedCall& asked,
                             const WireMessage& answer, bool isGrant)
{
    const WireMessage& call = asked.call;
    if (isPortalCall(call) && isGrant) {
        asked.portal = answer.sender;
        asked.handle = answer.textAt(0);
        if (asked.early && asked.early->first == asked.portal)
            noteResponse(asked, asked.early->second);
    } else if (client.isRequest()) {
        ++(isGrant ? m_grants : m_reasonsToFail);
    } else if (call.member == "GetCapabilities") {
        const auto before =
            std::ranges::count_if(all, [&](const AskedCall& one) { return one.call.serial < call.serial; });
        m_completions.resize(client.completions().size(), -1);
        m_completions[static_cast<std::size_t>(before)] =
            answer.kind == WireMessage::Kind::answer && answer.signature.starts_with("as") ? 1 : 0;
    } else if (client.kind() == BusClientKind::statusNotifierWatch) {
        noteWatchersAnswer(asked, answer);
    } else if (client.kind() == BusClientKind::kdeShortcut) {
        m_kde.noteAnswer(asked, answer);
    }
}

void ClientModel::noteResponse(AskedCall& asked, bool isGrant)
{
    if (!std::exchange(asked.isDecided, true))
        ++(isGrant ? m_grants : m_reasonsToFail);
}

void ClientModel::noteOwner(const BusClient& client, const std::string& name, const std::string& before,
                            const std::string& after)
{
    const bool isServices = name == client.service() || client.kind() == BusClientKind::sleepInhibitor;
    m_reasonsToFail += isServices && !before.empty() ? 1 : 0;
    if (name == "org.kde.StatusNotifierWatcher")
        setWatcher(after);
    if (name == "org.kde.kglobalaccel")
        m_kde.noteOwner(before, after);
}

bool ClientModel::noteKeys(const std::string& sender, bool isPress)
{
    return m_kde.noteKeys(sender, isPress);
}

void ClientModel::setWatcher(const std::string& owner)
{
    m_isWatcherKnown = true;
    m_watcher = owner;
    if (!owner.empty())
        ++m_appointments;
    m_host = owner.empty() ? StatusNotifierHost::absent : StatusNotifierHost::unknown;
}

/// Each owner is called at once, and again when it was not ready.
unsigned ClientModel::appointmentOf(const WireMessage& call)
{
    if (call.member == "setShortcutKeys")
        return m_kde.numberOf(call);
    if (call.member == "RegisterStatusNotifierItem" && m_registrations < m_appointments)
        ++m_registrations;
    return m_registrations;
}

bool ClientModel::isToWatcher(const AskedCall& asked) const
{
    return !m_watcher.empty() && asked.appointment == m_appointments;
}

void ClientModel::noteWatchersAnswer(const AskedCall& asked, const WireMessage& answer)
{
    const bool isError = answer.kind == WireMessage::Kind::error;
    if (asked.call.member == "GetNameOwner") {
        if (!m_isWatcherKnown)
            setWatcher(isError ? std::string{} : answer.textAt(0));
    } else if (!isToWatcher(asked)) {
        return;
    } else if (asked.call.member == "GetAll") {
        m_host = isError ? StatusNotifierHost::present : hostOf(answer);
    } else if (isError && answer.error.find("DBus.Error.Unknown") == std::string::npos) {
        m_host = StatusNotifierHost::refusing;
    }
}

void ClientModel::judge(const BusClient& client, const std::vector<AskedCall>& asked, const GrantLedger& ledger)
{
    m_completions.resize(client.completions().size(), -1);
    if (client.isRequest())
        judgeRequest(client);
    if (client.kind() == BusClientKind::statusNotifierWatch)
        judgeWatch(client, asked);
    if (client.kind() == BusClientKind::portalShortcut)
        require(!client.isBound() || ledger.openSessions() == 1, "a shortcut is bound by one session");
    if (client.kind() == BusClientKind::kdeShortcut) {
        require(client.isServed() == m_kde.isServed(), "a service that has not answered is not relied on");
        require(!client.isBound() || m_kde.hasService(), "keys in force are those of a service");
    }
    require(ledger.openSessions() <= 1, "there is one session at a time");
    require(client.completions() == m_completions, "completions report the replies of the service");
}

void ClientModel::judgeRequest(const BusClient& client) const
{
    require(client.granted() <= std::min(1, m_grants), "a grant is reported once, if there is one");
    require(client.failed() <= std::min(1, m_reasonsToFail), "a failure is reported once, and has a reason");
    if (client.kind() == BusClientKind::sleepInhibitor)
        return; // in what order it asks the services is up to it
    require(client.granted() == std::min(1, m_grants) || client.failed() > 0, "a grant is reported");
    require(client.failed() == std::min(1, m_reasonsToFail), "a failure is reported");
}

void ClientModel::judgeWatch(const BusClient& client, const std::vector<AskedCall>& asked) const
{
    require(client.host() == m_host, "the host is what the watcher has reported");
    const auto questions = std::ranges::count_if(
        asked, [this](const AskedCall& one) { return one.call.member == "GetAll" && isOpen(one) && isToWatcher(one); });
    require(questions <= 1, "a watcher gets one call at a time");
}

} // namespace tallyfox
