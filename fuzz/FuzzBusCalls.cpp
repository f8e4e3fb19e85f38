/// Our own objects on the session bus, called by any peer with any arguments. A valid call has its effect once, any
/// other has none; each gets one reply where one is wanted; and afterwards the objects are unchanged.

#include "Bus/AnyValues.h"
#include "Bus/HostileBus.h"
#include "FuzzSupport.h"
#include "Support/Agent/StatusNotifierProperties.h"
#include "Tallyfox/Agent/Instance/BusInstance.h"
#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"

#include <QGuiApplication>

#include <algorithm>
#include <memory>

using namespace tallyfox;

namespace {

constexpr int mostSteps = 24;
constexpr std::string_view instancePath = "/org/tallyfox/tallyfox";
constexpr std::string_view itemPath = "/StatusNotifierItem";
constexpr std::string_view application = "org.freedesktop.Application";
constexpr std::string_view item = "org.kde.StatusNotifierItem";
constexpr std::string_view properties = "org.freedesktop.DBus.Properties";

struct Method {
    std::string_view path;
    std::string_view interface;
    std::string_view name;
    std::string_view signature;
};

/// The methods that exist.
constexpr Method methods[] = {
    {instancePath, application, "Activate", "a{sv}"},
    {instancePath, application, "Open", "asa{sv}"},
    {instancePath, application, "ActivateAction", "sava{sv}"},
    {itemPath, item, "Activate", "ii"},
    {itemPath, item, "SecondaryActivate", "ii"},
    {itemPath, item, "ContextMenu", "ii"},
    {itemPath, item, "Scroll", "is"},
    {itemPath, item, "ProvideXdgActivationToken", "s"},
    {itemPath, properties, "Get", "ss"},
    {itemPath, properties, "GetAll", "s"},
    {itemPath, properties, "Set", "ssv"},
    {instancePath, properties, "Get", "ss"},
    {instancePath, properties, "GetAll", "s"},
    {instancePath, properties, "Set", "ssv"},
    {itemPath, "org.freedesktop.DBus.Introspectable", "Introspect", ""},
    {instancePath, "org.freedesktop.DBus.Introspectable", "Introspect", ""},
    {"/", "org.freedesktop.DBus.Peer", "GetMachineId", ""},
};

/// Members that must not be callable.
constexpr std::string_view privateMembers[] = {"asked",     "requested",   "claim",
                                               "send",      "deleteLater", "setObjectName",
                                               "destroyed", "NewTitle",    "XAyatanaNewLabel",
                                               "title",     "objectName",  "setParent",
                                               "x"};
constexpr std::string_view otherPaths[] = {"/", "/org", "/org/tallyfox", "/org/tallyfox/tallyfox/x", "/MenuBar"};
constexpr std::string_view otherInterfaces[] = {"", "org.freedesktop.DBus", "org.qtproject.Qt.QObject", "a.b"};

std::string effect(QPoint position)
{
    return "item " + std::to_string(position.x()) + ' ' + std::to_string(position.y());
}

std::string effect(AgentAction action)
{
    return "request " + std::to_string(static_cast<int>(action));
}

/// A call and its expected outcome.
struct Call {
    WireMessage message;
    std::string effect; ///< empty for none
    WireMessage::Kind outcome = WireMessage::Kind::error;
    bool isOutcomeKnown = true;
    std::string_view valueType; ///< of the property that is asked for
};

/// The expected outcome of any call by the documentation of our interfaces.
class Expectation {
public:
    explicit Expectation(bool isFirst)
        : m_isFirst(isFirst)
    { }

    void complete(Call& call) const
    {
        const WireMessage& message = call.message;
        if (message.path == instancePath && m_isFirst && isTo(message, application))
            completeRequest(call);
        else if (message.path == itemPath && isTo(message, item) && !isStandard(message.member))
            completeClick(call);
        else if (message.path == itemPath && message.interface == properties)
            completeProperty(call);
        else
            call.isOutcomeKnown = message.path != "/" && isOurs(message.interface);
    }

private:
    static bool isTo(const WireMessage& message, std::string_view interface)
    {
        return message.interface.empty() || message.interface == interface;
    }
    static bool isOurs(std::string_view interface)
    {
        return interface == application || interface == item;
    }
    /// A call without an interface may be for the library's own.
    static bool isStandard(std::string_view member)
    {
        return member == "Get" || member == "GetAll" || member == "Set" || member == "Introspect" || member == "Ping"
            || member == "GetMachineId";
    }

    static void accept(Call& call, std::string effect = {})
    {
        call.effect = std::move(effect);
        call.outcome = WireMessage::Kind::answer;
    }

    static void completeRequest(Call& call)
    {
        const WireMessage& message = call.message;
        const std::string name = message.textAt(0);
        if ((message.member == "Activate" && message.signature == "a{sv}")
            || (message.member == "Open" && message.signature == "asa{sv}"))
        {
            accept(call, effect(AgentAction::show));
        } else if (message.member == "ActivateAction" && message.signature == "sava{sv}") {
            if (name == "show" || name == "toggle" || name == "settings")
                accept(call,
                       effect(name == "show"         ? AgentAction::show
                                  : name == "toggle" ? AgentAction::toggle
                                                     : AgentAction::settings));
        } else {
            call.isOutcomeKnown = !isStandard(message.member);
        }
    }

    static void completeClick(Call& call)
    {
        const WireMessage& message = call.message;
        const bool isClick =
            message.member == "Activate" || message.member == "SecondaryActivate" || message.member == "ContextMenu";
        const QPoint position{static_cast<int>(message.numberAt(0)), static_cast<int>(message.numberAt(4))};
        if (isClick && message.signature == "ii")
            accept(call, effect(position));
        else if ((message.member == "Scroll" && message.signature == "is")
                 || (message.member == "ProvideXdgActivationToken" && message.signature == "s"))
            accept(call);
    }

    static void completeProperty(Call& call)
    {
        const WireMessage& message = call.message;
        const std::string interface = message.textAt(0);
        if (message.member == "Get" && message.signature == "ss" && interface == item) {
            const auto found = test::statusNotifierProperties.find(message.textAt(4 + interface.size() + 1));
            if (found == test::statusNotifierProperties.end())
                return;
            accept(call);
            call.valueType = found->second;
        } else {
            call.isOutcomeKnown = message.member == "Set"; // which is refused
        }
    }

    bool m_isFirst;
};

class Bench {
public:
    Bench()
        : m_item{std::make_unique<StatusNotifierItem>(QStringLiteral("org.tallyfox.tallyfox"), m_bus.connection())}
    {
        m_item->setContent(m_content);
        QObject::connect(m_item.get(), &StatusNotifierItem::activated, m_item.get(),
                         [this](QPoint position) { m_effects.push_back(effect(position)); });
        claim(1);
        m_bus.settle();
        m_bus.taken(); // the signals of the first content
        m_matches = m_bus.matches();
    }

    void attack(FuzzInput input)
    {
        if (!m_isFirst)
            claim(1);
        const std::string before = allProperties();
        const StatusItemContent content = m_content;
        for (int steps = 0; steps < mostSteps && !input.isEmpty(); ++steps)
            step(input);
        judge();
        setContent(content);
        require(allProperties() == before, "no call changes the item");
        require(m_bus.matches() == m_matches, "no call adds a match rule");
    }

private:
    void step(FuzzInput& input)
    {
        switch (input.below(16)) {
        case 0:
            judge();
            break;
        case 1:
            judge();
            claim(static_cast<std::uint32_t>(input.below(5)));
            break;
        case 2:
            judge();
            setContent(input.below(8) == 7 ? StatusItemContent{}
                                           : StatusItemContent{static_cast<std::int64_t>(input.number())});
            break;
        case 3:
            sendNoCall(input);
            break;
        case 4:
        case 5:
        case 6:
            callAnything(input);
            break;
        default:
            callMethod(input, input.oneOf(methods));
            break;
        }
    }

    /// Tries to become the agent.
    void claim(std::uint32_t answer)
    {
        m_instance.reset();
        m_bus.settle();
        require(m_bus.namesHeld() == 0, "the name is given back");
        m_bus.setNameAnswer(answer);
        m_instance = std::make_unique<BusInstance>(m_bus.connection(), QStringLiteral("org.tallyfox.tallyfox"));
        QObject::connect(m_instance.get(), &SingleInstance::requested, m_instance.get(),
                         [this](AgentAction action) { m_effects.push_back(effect(action)); });
        using Claim = SingleInstance::Claim;
        const Claim expected = answer == 1 ? Claim::first : answer == 3 ? Claim::other : Claim::impossible;
        require(m_instance->claim() == expected, "the outcome of a claim is what the bus replies");
        m_isFirst = answer == 1;
    }

    void callMethod(FuzzInput& input, const Method& method)
    {
        Call call;
        call.message.path = method.path;
        call.message.interface = input.byte() == 255 ? "" : method.interface;
        call.message.member = method.name;
        const std::size_t way = input.below(8);
        if (method.interface == properties && way < 6)
            fillProperty(input, call.message);
        else if (way < 7)
            AnyValues::fill(input, call.message, method.signature);
        else
            AnyValues::fill(input, call.message);
        send(input, std::move(call));
    }

    /// The names of a property, and its new value when it is to be set.
    static void fillProperty(FuzzInput& input, WireMessage& message)
    {
        auto property = test::statusNotifierProperties.begin();
        std::advance(property, static_cast<std::ptrdiff_t>(input.below(test::statusNotifierProperties.size())));
        WireWriter writer;
        writer.text(input.byte() == 255 ? "" : message.path == itemPath ? item : application);
        message.signature = "s";
        if (message.member != "GetAll") {
            writer.text(property->first);
            message.signature += 's';
        }
        if (message.member == "Set") {
            message.signature += 'v';
            const std::string type = input.flip() ? std::string{property->second} : "v";
            writer.signature(type);
            std::string_view types = type;
            AnyValues::write(input, writer, types);
        }
        message.body = writer.bytes();
    }

    void callAnything(FuzzInput& input)
    {
        Call call;
        const Method& method = input.oneOf(methods);
        const std::size_t names = input.byte();
        call.message.path = names % 4 != 0 ? std::string{method.path}
            : names % 8 == 0               ? AnyValues::objectPath(input)
                                           : std::string{input.oneOf(otherPaths)};
        call.message.interface = names / 8 % 2 == 0 ? input.oneOf(methods).interface : input.oneOf(otherInterfaces);
        call.message.member = names / 16 % 2 == 0 ? input.oneOf(methods).name : input.oneOf(privateMembers);
        AnyValues::fill(input, call.message);
        send(input, std::move(call));
    }

    /// A reply without a call, or a signal without a receiver.
    void sendNoCall(FuzzInput& input)
    {
        const Method& method = input.oneOf(methods);
        const std::size_t kind = input.below(3);
        WireMessage message{.kind = static_cast<WireMessage::Kind>(kind + 2)};
        if (message.kind == WireMessage::Kind::signal) {
            message.path = method.path;
            message.interface = method.path == "/" ? "a.b" : method.interface; // the library answers signals of Peer
            message.member = method.name;
        } else {
            message.answered = static_cast<std::uint32_t>(input.number()) | 0x80000000U;
            message.error = kind == 1 ? "org.freedesktop.DBus.Error.Failed" : "";
        }
        message.sender = ":1.7";
        AnyValues::fill(input, message);
        m_bus.send(std::move(message));
    }

    void send(FuzzInput& input, Call call)
    {
        call.message.sender = ":1.7";
        call.message.flags = input.byte() >= 240 ? WireMessage::noAnswerWanted : 0;
        Expectation{m_isFirst}.complete(call);
        if (!call.effect.empty())
            m_expectedEffects.push_back(call.effect);
        const std::uint32_t serial = m_bus.send(call.message);
        m_calls.emplace(serial, std::move(call));
    }

    /// Checks the outcome of the calls since the last time.
    void judge()
    {
        m_bus.settle();
        // Both kinds of effect come in order, but actions a moment later than clicks.
        std::ranges::stable_sort(m_effects, {}, [](const std::string& one) { return one.front(); });
        std::ranges::stable_sort(m_expectedEffects, {}, [](const std::string& one) { return one.front(); });
        require(m_effects == m_expectedEffects, "a valid call has its effect once, and no other has any");
        m_effects.clear();
        m_expectedEffects.clear();
        for (const WireMessage& said : m_bus.taken()) {
            require(said.isAnswer(), "callers receive replies only");
            const auto call = m_calls.find(said.answered);
            require(call != m_calls.end(), "a call gets one reply at most");
            judgeAnswer(call->second, said);
            m_calls.erase(call);
        }
        require(std::ranges::none_of(m_calls, [](const auto& call) { return call.second.message.wantsAnswer(); }),
                "a call that wants a reply gets one");
        m_calls.clear();
    }

    static void judgeAnswer(const Call& call, const WireMessage& answer)
    {
        const auto demand = [&](bool holds, const char* promise) {
            if (!holds)
                std::fprintf(stderr, "%s %s.%s(%s): %s\n", call.message.path.c_str(), call.message.interface.c_str(),
                             call.message.member.c_str(), call.message.signature.c_str(), answer.error.c_str());
            require(holds, promise);
        };
        // The library replies to calls of its own methods and to invalid calls even if no reply is wanted; a bus drops
        // those.
        const bool isOurMethod = call.outcome == WireMessage::Kind::answer && call.message.interface != properties;
        demand(call.message.wantsAnswer() || !isOurMethod, "a call that wants no reply gets none");
        demand(!call.isOutcomeKnown || answer.kind == call.outcome, "a reply shows whether the call was valid");
        demand(answer.kind == WireMessage::Kind::answer || !answer.error.empty(), "an error has a name");
        const std::string begin = static_cast<char>(call.valueType.size()) + std::string{call.valueType} + '\0';
        demand(call.valueType.empty() || (answer.signature == "v" && answer.body.starts_with(begin)),
               "a property has its type");
    }

    /// Changes the content and checks what panels are sent.
    void setContent(const StatusItemContent& content)
    {
        std::vector<std::string> expected;
        if (content != m_content) {
            expected = {"NewTitle", "NewToolTip", "XAyatanaNewLabel"};
            if (StatusIconPainter::number(content.percent) != StatusIconPainter::number(m_content.percent))
                expected.emplace_back("NewIcon");
            expected.emplace_back("PropertiesChanged");
        }
        m_content = content;
        m_item->setContent(content);
        m_bus.settle();
        std::vector<std::string> told;
        for (const WireMessage& said : m_bus.taken()) {
            require(said.kind == WireMessage::Kind::signal && said.path == itemPath, "panels receive signals only");
            told.push_back(said.member);
        }
        require(told == expected, "panels receive what has changed, and nothing when nothing has");
    }

    std::string allProperties()
    {
        WireMessage call{.path = std::string{itemPath}, .interface = std::string{properties}, .member = "GetAll"};
        WireWriter writer;
        writer.text(item);
        call.sender = ":1.8";
        call.signature = "s";
        call.body = writer.bytes();
        const std::uint32_t serial = m_bus.send(std::move(call));
        m_bus.settle();
        const std::vector<WireMessage> said = m_bus.taken();
        require(said.size() == 1 && said[0].answered == serial && said[0].signature == "a{sv}",
                "the item returns its properties");
        return said[0].body;
    }

    HostileBus m_bus;
    StatusItemContent m_content{42};
    std::unique_ptr<StatusNotifierItem> m_item;
    std::unique_ptr<BusInstance> m_instance;
    bool m_isFirst = false;
    std::multiset<std::string> m_matches;
    std::map<std::uint32_t, Call> m_calls; ///< under their serials, those that have not been judged
    std::vector<std::string> m_effects;
    std::vector<std::string> m_expectedEffects;
};

/// Painting the icon needs an application object, but no display.
Bench& bench()
{
    static int argumentCount = 1;
    static char name[] = "FuzzBusCalls";
    static char* arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    static const QGuiApplication painter{argumentCount, arguments};
    static Bench instance;
    return instance;
}

} // namespace

/// The font library forgets a pattern where a font is chosen for the icon's number.
extern "C" const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Bench& peers = bench();
    peers.attack(FuzzInput{textOf(data, size)});
    return 0;
}
