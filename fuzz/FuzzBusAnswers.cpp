/// Our clients of services on the session bus, against peers that reply anything, late, twice or never, that lie,
/// vanish and restart. Each client reports what has happened, once; it ignores all peers but the service; and once it
/// is destroyed, everything it was granted has been given back, and no match rule is left.

#include "Bus/AnyValues.h"
#include "Bus/BusClient.h"
#include "Bus/ClientModel.h"
#include "Bus/GrantLedger.h"
#include "Bus/HostileBus.h"
#include "Bus/ServiceAnswers.h"
#include "FuzzSupport.h"

#include <QCoreApplication>
#include <QtCore/qtestsupport_core.h>

#include <algorithm>
#include <memory>

using namespace tallyfox;

namespace {

constexpr int mostSteps = 32;
constexpr int hangGuard = 5000; ///< ms
constexpr std::size_t mostMatches = 6; ///< that one client may have at a time
constexpr std::string_view portalPath = "/org/freedesktop/portal/desktop";

constexpr std::string_view peers[] = {":1.5", ":1.6"};
constexpr std::string_view services[] = {"org.freedesktop.PowerManagement",
                                         "org.gnome.SessionManager",
                                         "org.freedesktop.portal.Desktop",
                                         "org.freedesktop.login1",
                                         "org.kde.StatusNotifierWatcher",
                                         "org.freedesktop.Notifications",
                                         "org.kde.kglobalaccel"};
constexpr std::string_view owners[] = {"", ":1.5", ":1.6"};
constexpr std::string_view errors[] = {
    "org.freedesktop.DBus.Error.UnknownMethod",  "org.freedesktop.DBus.Error.UnknownObject",
    "org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NoReply",
    "org.freedesktop.DBus.Error.AccessDenied",   "a.b",
    "org.freedesktop.DBus.Error.Disconnected",   "org.freedesktop.DBus.Error.UnknownInterface"};

struct SignalName {
    std::string_view path;
    std::string_view interface;
    std::string_view member;
};
constexpr SignalName signalNames[] = {
    {"/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", "StatusNotifierHostRegistered"},
    {"/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", "StatusNotifierHostUnregistered"},
    {"/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", "StatusNotifierItemRegistered"},
    {"/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher", "StatusNotifierItemUnregistered"},
    {portalPath, "org.freedesktop.portal.GlobalShortcuts", "Activated"},
    {"/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged"},
    {"", "org.freedesktop.portal.Session", "Closed"},
    {"/component/tallyfox", "org.kde.kglobalaccel.Component", "globalShortcutPressed"},
    {"/kglobalaccel", "org.kde.KGlobalAccel", "yourShortcutsChanged"},
};

class Scene {
public:
    Scene(HostileBus& bus, FuzzInput input)
        : m_bus(bus)
        , m_input(input)
        , m_matches(bus.matches())
        , m_client(
              std::make_unique<BusClient>(static_cast<BusClientKind>(m_input.below(busClientKinds)), bus.connection()))
    {
        settle();
    }

    void play()
    {
        for (int steps = 0; steps < mostSteps && !m_input.isEmpty() && !m_bus.hasHungUp(); ++steps)
            step();
        settle();
        m_client->end();
        if (m_bus.hasHungUp())
            return;
        settle();
        answerTheRest();
        m_client.reset();
        settle();
        require(m_ledger.isBalanced(), "what was granted is given back");
        require(m_ledger.areDescriptorsClosed(), "no descriptor is kept");
        require(m_bus.matches() == m_matches, "a destroyed client leaves no match rules");
    }

private:
    void step()
    {
        const std::uint8_t choice = m_input.byte();
        switch (choice % 16) {
        case 0:
            answer(&Scene::fillAnything);
            break;
        case 1:
            answer(&Scene::fillError);
            break;
        case 2:
            answerAgain();
            break;
        case 3:
            respond(true);
            break;
        case 4:
            respond(false);
            break;
        case 5:
            changeOwner();
            break;
        case 6:
            if (m_client->kind() == BusClientKind::kdeShortcut)
                pressOrRelease();
            else
                activate();
            break;
        case 7:
            signal();
            break;
        case 8:
            m_client->ask();
            break;
        case 9:
            end();
            break;
        case 10:
            hangUpPerhaps();
            break;
        case 11:
            forgeOwner();
            break;
        default:
            answer(&Scene::fillKindly);
            break;
        }
        if (choice < 192 && !m_bus.hasHungUp()) // otherwise several steps at a time
            settle();
    }

    void end()
    {
        if (m_client->kind() == BusClientKind::portalShortcut)
            settle(); // it handles what has been sent, and no more
        m_client->end();
    }

    // Messages of the program

    void settle()
    {
        m_bus.settle();
        for (WireMessage& said : m_bus.taken())
            hear(std::move(said));
        if (m_client && m_client->isThere() && !m_bus.hasHungUp())
            m_model.judge(*m_client, m_asked, m_ledger);
        require(m_bus.matches().size() <= m_matches.size() + mostMatches, "match rules of a client are bounded");
    }

    void hear(WireMessage said)
    {
        require(said.kind == WireMessage::Kind::call, "clients send calls only");
        m_ledger.noteCall(said);
        if (said.member == "RegisterStatusNotifierItem" || said.member == "GetAll") {
            require(!said.destination.empty() && said.destination[0] == ':', "a call is for one watcher only");
            require(said.member == "GetAll" || said.textAt(0) == HostileBus::uniqueName,
                    "the item is registered under the program's name");
        }
        if (!said.wantsAnswer())
            return;
        AskedCall asked{.call = std::move(said)};
        asked.handle = expectedHandle(asked.call);
        asked.appointment = m_model.appointmentOf(asked.call);
        if (asked.call.member == "BindShortcuts")
            m_session = asked.call.textAt(0);
        m_asked.push_back(std::move(asked));
    }

    // Replies of peers

    using Fill = bool (Scene::*)(const AskedCall& asked, WireMessage& answer);

    /// Replies to one of the pending calls. `fill` returns whether the reply has a descriptor.
    void answer(Fill fill)
    {
        const auto waiting = std::ranges::count_if(m_asked, isOpen);
        if (waiting == 0)
            return;
        auto left = static_cast<std::ptrdiff_t>(m_input.below(static_cast<std::size_t>(std::min<long>(waiting, 256))));
        const auto asked =
            std::ranges::find_if(m_asked, [&left](const AskedCall& one) { return isOpen(one) && left-- == 0; });
        sendAnswer(*asked, fill);
    }

    void sendAnswer(AskedCall& asked, Fill fill)
    {
        WireMessage message{.kind = WireMessage::Kind::answer, .answered = asked.call.serial};
        message.sender = m_input.oneOf(peers);
        if (asked.call.destination == HostileBus::busName) { // it may be slow, but does not lie
            message.sender = HostileBus::busName;
            fill = fill == &Scene::fillAnything ? &Scene::fillKindly : fill;
        }
        const bool hasDescriptor = (this->*fill)(asked, message);
        const FileDescriptor descriptor = hasDescriptor ? m_ledger.newDescriptor() : FileDescriptor{};
        // A shortcut is destroyed at the end of the program, just before its connection: late replies need not be
        // handled.
        const bool isHeard = m_client->isThere() || m_client->kind() != BusClientKind::portalShortcut;
        if (!std::exchange(asked.isAnswered, true) && isHeard) {
            const bool isGrant = m_ledger.noteAnswer(asked, message, hasDescriptor);
            if (m_client->isThere())
                m_model.noteAnswer(*m_client, m_asked, asked, message, isGrant);
        }
        m_bus.send(std::move(message), descriptor.get());
    }

    bool fillError(const AskedCall& /*asked*/, WireMessage& answer)
    {
        answer.kind = WireMessage::Kind::error;
        answer.error = m_input.oneOf(errors);
        return m_input.flip() && fillAnything({}, answer);
    }

    bool fillAnything(const AskedCall& /*asked*/, WireMessage& answer)
    {
        AnyValues::fill(m_input, answer);
        return m_input.byte() >= 224;
    }

    bool fillKindly(const AskedCall& asked, WireMessage& answer)
    {
        return ServiceAnswers::fill(m_input, asked, answer);
    }

    void answerAgain()
    {
        if (!m_asked.empty())
            sendAnswer(m_asked[m_input.below(std::min<std::size_t>(m_asked.size(), 256))], &Scene::fillAnything);
    }

    /// The client is destroyed: what is granted now must be given back at once.
    void answerTheRest()
    {
        for (AskedCall& asked : m_asked) {
            if (isOpen(asked))
                sendAnswer(asked, &Scene::fillKindly);
        }
        settle();
    }

    // Signals of peers

    static WireMessage signalOf(std::string_view sender, std::string_view path, std::string_view interface,
                                std::string_view member)
    {
        WireMessage message{.kind = WireMessage::Kind::signal};
        message.path = path;
        message.interface = interface;
        message.member = member;
        message.sender = sender;
        return message;
    }

    /// The response to one of the requests of a portal, or to one whose handle is yet to be returned.
    void respond(bool isKind)
    {
        std::vector<std::size_t> requests;
        for (std::size_t place = 0; place < m_asked.size(); ++place) {
            if (!m_asked[place].handle.empty())
                requests.push_back(place);
        }
        if (requests.empty())
            return;
        const std::size_t place = requests[requests.size() - 1 - std::min(m_input.below(4), requests.size() - 1)];
        if (m_asked[place].handle != expectedHandle(m_asked[place].call))
            settle(); // the program cannot match an unexpected handle before it is returned
        AskedCall& asked = m_asked[place];
        WireMessage response =
            signalOf(m_input.oneOf(peers), asked.handle, "org.freedesktop.portal.Request", "Response");
        if (!asked.portal.empty() && m_input.below(8) < 6)
            response.sender = asked.portal;
        if (isKind)
            ServiceAnswers::fillResponse(m_input, asked, response);
        else
            AnyValues::fill(m_input, response, m_input.flip() ? "ua{sv}" : AnyValues::type(m_input));
        const bool isGrant = response.signature == "ua{sv}" && response.numberAt(0) == 0;
        if (!asked.isAnswered)
            asked.early = {response.sender, isGrant};
        else if (response.sender == asked.portal && m_client->isThere())
            m_model.noteResponse(asked, isGrant);
        m_bus.send(std::move(response));
    }

    void changeOwner()
    {
        const std::string name{m_input.oneOf(services)};
        const std::string before{m_input.oneOf(owners)};
        const std::string after{m_input.oneOf(owners)};
        if (m_client->isThere())
            m_model.noteOwner(*m_client, name, before, after);
        sendOwner(HostileBus::busName, name, before, after);
    }

    /// Any peer may send the signal that reports owners.
    void forgeOwner()
    {
        const std::string name{m_input.oneOf(services)};
        sendOwner(m_input.oneOf(peers), name, m_input.oneOf(owners), m_input.oneOf(owners));
    }

    void sendOwner(std::string_view sender, std::string_view name, std::string_view before, std::string_view after)
    {
        WireMessage message = signalOf(sender, "/org/freedesktop/DBus", HostileBus::busName, "NameOwnerChanged");
        WireWriter writer;
        for (const std::string_view text : {name, before, after})
            writer.text(text);
        message.signature = "sss";
        message.body = writer.bytes();
        m_bus.send(std::move(message));
    }

    /// The keys of a shortcut, pressed or not.
    void activate()
    {
        settle();
        WireMessage message =
            signalOf(m_input.oneOf(peers), portalPath, "org.freedesktop.portal.GlobalShortcuts", "Activated");
        const auto created = std::find_if(m_asked.rbegin(), m_asked.rend(), [](const AskedCall& one) {
            return one.call.member == "CreateSession" && !one.portal.empty();
        });
        const std::string session = m_session.empty() || m_input.below(8) == 7 ? "/x" : m_session;
        const std::string id = m_input.below(8) == 7 ? AnyValues::text(m_input) : "toggle-popover";
        WireWriter writer;
        writer.text(session);
        writer.text(id);
        writer.integer(m_input.number(), 8);
        std::string_view types = "a{sv}";
        AnyValues::write(m_input, writer, types);
        message.signature = "osta{sv}";
        message.body = writer.bytes();
        const bool isMeant = m_client->isBound() && created != m_asked.rend() && created->portal == message.sender
            && session == m_session && id == "toggle-popover";
        const int before = m_client->activated();
        m_bus.send(std::move(message));
        settle();
        require(m_client->activated() == before + (isMeant ? 1 : 0), "only the portal can activate the shortcut");
    }

    /// The keys of a KDE shortcut, or of another.
    void pressOrRelease()
    {
        settle();
        const bool isPress = m_input.flip();
        WireMessage message = signalOf(m_input.oneOf(peers), "/component/tallyfox", "org.kde.kglobalaccel.Component",
                                       isPress ? "globalShortcutPressed" : "globalShortcutReleased");
        const std::string action = m_input.below(8) == 7 ? AnyValues::text(m_input) : "toggle-popover";
        WireWriter writer;
        writer.text("tallyfox");
        writer.text(action);
        writer.integer(m_input.number(), 8);
        message.signature = "ssx";
        message.body = writer.bytes();
        const bool isMeant = m_client->isThere() && action == "toggle-popover";
        const bool activates = isMeant && m_model.noteKeys(message.sender, isPress);
        const int before = m_client->activated();
        m_bus.send(std::move(message));
        settle();
        require(m_client->activated() == before + (activates ? 1 : 0), "only pressed keys activate the shortcut, once");
    }

    /// Any other signal, from any peer.
    void signal()
    {
        const SignalName& name = m_input.oneOf(signalNames);
        WireMessage message =
            signalOf(m_input.oneOf(peers), name.path.empty() ? m_session : name.path, name.interface, name.member);
        if (message.path.empty())
            message.path = "/x";
        AnyValues::fill(m_input, message);
        settle();
        const int before = m_client->activated();
        m_bus.send(std::move(message));
        settle();
        require(m_client->activated() == before, "other signals do not activate the shortcut");
    }

    /// Rarely: a new bus takes some time.
    void hangUpPerhaps()
    {
        if (m_input.byte() < 192)
            return;
        m_bus.hangUp();
        m_client->ask();
        require(QTest::qWaitFor([this] { return hasEnded(); }, hangGuard), "a client reports the lost bus");
    }

    bool hasEnded() const
    {
        if (!m_client->isThere())
            return true;
        switch (m_client->kind()) {
        case BusClientKind::portalShortcut:
            return true; // its state does not change
        case BusClientKind::kdeShortcut:
            return !m_client->isServed();
        case BusClientKind::statusNotifierWatch:
            return m_client->host() == StatusNotifierHost::absent;
        case BusClientKind::notificationCenter:
            return std::ranges::count(m_client->completions(), -1) == 0;
        default:
            return m_client->failed() == 1;
        }
    }

    HostileBus& m_bus;
    FuzzInput m_input;
    std::multiset<std::string> m_matches; ///< before the client
    GrantLedger m_ledger;
    std::vector<AskedCall> m_asked;
    std::string m_session; ///< the last that was bound
    ClientModel m_model;
    std::unique_ptr<BusClient> m_client;
};

HostileBus& livingBus()
{
    static int argumentCount = 1;
    static char name[] = "FuzzBusAnswers";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application{argumentCount, arguments};
    static std::unique_ptr<HostileBus> bus;
    if (!bus || bus->hasHungUp()) {
        bus.reset();
        bus = std::make_unique<HostileBus>();
    }
    return *bus;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Scene{livingBus(), FuzzInput{textOf(data, size)}}.play();
    return 0;
}
