/// The status item's menu, called by any peer with any arguments. A click on an action has its effect once, and nothing
/// else has any; each call gets one reply where one is wanted, of the right type and no longer than a menu can be; and
/// afterwards the menu is unchanged.

#include "Bus/AnyValues.h"
#include "Bus/HostileBus.h"
#include "FuzzSupport.h"
#include "Tallyfox/Agent/StatusItem/StatusMenu.h"

#include <QCoreApplication>

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

using namespace tallyfox;

namespace {

constexpr int mostSteps = 24;
constexpr std::string_view menuPath = "/MenuBar";
constexpr std::string_view menu = "com.canonical.dbusmenu";
constexpr std::string_view properties = "org.freedesktop.DBus.Properties";
constexpr std::size_t longestReply = 4096; ///< bytes: the whole menu has a thousand
constexpr int mostOfAList = 256; ///< ids, names or events in one call

struct Method {
    std::string_view name;
    std::string_view signature;
    std::string_view reply;
};
constexpr Method methods[] = {
    {"GetLayout", "iias", "u(ia{sv}av)"}, {"GetGroupProperties", "aias", "a(ia{sv})"},
    {"GetProperty", "is", "v"},           {"Event", "isvu", ""},
    {"EventGroup", "a(isvu)", "ai"},      {"AboutToShow", "i", "b"},
    {"AboutToShowGroup", "ai", "aiai"},
};

constexpr std::string_view otherMembers[] = {"chosen", "deleteLater", "ItemsPropertiesUpdated", "setContent", "Quit"};
constexpr std::string_view eventNames[] = {"clicked", "hovered", "opened", "closed", "", "Clicked"};
constexpr std::string_view propertyNames[] = {"label", "enabled", "visible", "type", "toggle-state", "icon-data", ""};

/// With two lines of figures. The actions are 2 to 5.
constexpr int ids[] = {0, 1, 2, 3, 4, 5, 100, 101};

bool isKnown(int id)
{
    return std::ranges::find(ids, id) != std::end(ids);
}

std::optional<StatusMenuAction> actionOf(int id)
{
    return id >= 2 && id <= 5 ? std::optional{static_cast<StatusMenuAction>(id - 2)} : std::nullopt;
}

struct Call {
    WireMessage message;
    std::optional<WireMessage::Kind> outcome{}; ///< nothing where the bus library decides
    std::string_view reply{}; ///< the signature of an answer
};

class Bench {
public:
    Bench()
        : m_menu{std::make_unique<StatusMenu>(m_bus.connection())}
    {
        QObject::connect(m_menu.get(), &StatusMenu::chosen, m_menu.get(),
                         [this](StatusMenuAction action) { m_chosen.push_back(action); });
        m_menu->setContent(contentOf(m_content));
        layout(); // from now on it is told of changes
        m_matches = m_bus.matches();
    }

    void attack(FuzzInput input)
    {
        publish(0);
        const std::string before = layout();
        for (int steps = 0; steps < mostSteps && !input.isEmpty(); ++steps)
            step(input);
        judge();
        publish(0);
        require(layout() == before, "no call changes the menu");
        require(m_bus.matches() == m_matches, "no call adds a match rule");
    }

private:
    void step(FuzzInput& input)
    {
        switch (input.below(8)) {
        case 0:
            judge();
            publish(input.below(4));
            break;
        case 1:
        case 2:
            callAnything(input);
            break;
        default:
            callMenu(input, input.oneOf(methods));
            break;
        }
    }

    /// One of four.
    static StatusMenuContent contentOf(std::size_t number)
    {
        const QStringList figures{number % 2 == 0 ? QString{} : QStringLiteral("42% used"), QStringLiteral("Claude")};
        return {.figures = [figures](bool /*isOpened*/) { return figures; }, .keepsAwake = number / 2 != 0};
    }

    /// Checks that panels are sent what has changed, once.
    void publish(std::size_t content)
    {
        m_menu->setContent(contentOf(content));
        m_bus.settle();
        std::size_t signalCount = 0;
        for (const WireMessage& said : m_bus.taken()) {
            require(said.kind == WireMessage::Kind::signal && said.path == menuPath, "panels receive signals only");
            require(said.signature == "a(ia{sv})a(ias)", "a signal has its type");
            ++signalCount;
        }
        require(signalCount == (content != m_content ? 1 : 0), "a change is told once");
        m_content = content;
    }

    /// A well-typed call, mostly with ids and names that mean something.
    void callMenu(FuzzInput& input, const Method& method)
    {
        Call call;
        call.message.member = method.name;
        call.message.path = menuPath;
        call.message.interface = menu;
        call.message.signature = method.signature;
        WireWriter writer;
        std::string_view types = method.signature;
        if (method.name == "EventGroup") {
            writer.array(8, [&] { writeEvents(input, writer); });
        } else {
            while (!types.empty())
                writeArgument(input, writer, types, call);
        }
        call.message.body = writer.bytes();
        const bool isWhole = m_listLength <= mostOfAList;
        expect(method, call, isWhole);
        send(input, std::move(call));
    }

    int anyId(FuzzInput& input)
    {
        const std::size_t place = input.below(std::size(ids) + 1);
        m_ids.push_back(place < std::size(ids) ? ids[place] : static_cast<int>(input.number()));
        return m_ids.back();
    }

    std::string anyText(FuzzInput& input, bool isEvent)
    {
        std::string text;
        if (input.below(8) == 7)
            text = AnyValues::text(input);
        else
            text = isEvent ? input.oneOf(eventNames) : input.oneOf(propertyNames);
        m_texts.push_back(text);
        return text;
    }

    /// One argument of a method; removes its type from `types`.
    void writeArgument(FuzzInput& input, WireWriter& writer, std::string_view& types, const Call& call)
    {
        const std::size_t count = types.front() == 'a' ? listLength(input) : 1;
        const bool isList = types.front() == 'a';
        types.remove_prefix(isList ? 1 : 0);
        const char type = types.front();
        types.remove_prefix(1);
        if (!isList)
            return writeOne(input, writer, type, call);
        writer.array(4, [&] {
            for (std::size_t place = 0; place < count; ++place)
                writeOne(input, writer, type, call);
        });
    }

    void writeOne(FuzzInput& input, WireWriter& writer, char type, const Call& call)
    {
        if (type == 'i') {
            writer.integer(static_cast<std::uint32_t>(anyId(input)));
        } else if (type == 's') {
            writer.text(anyText(input, call.message.member == "Event"));
        } else {
            std::string_view rest = type == 'v' ? "v" : "u";
            AnyValues::write(input, writer, rest);
        }
    }

    void writeEvents(FuzzInput& input, WireWriter& writer)
    {
        for (std::size_t count = listLength(input); count > 0; --count) {
            writer.align(8);
            writer.integer(static_cast<std::uint32_t>(anyId(input)));
            writer.text(anyText(input, true));
            std::string_view rest = "vu";
            AnyValues::write(input, writer, rest);
            AnyValues::write(input, writer, rest);
        }
    }

    /// Rarely one that is too long.
    std::size_t listLength(FuzzInput& input)
    {
        const std::size_t length = input.byte() >= 250 ? 250 + input.below(16) : input.below(5);
        m_listLength = std::max(m_listLength, static_cast<int>(length));
        return length;
    }

    /// What has to come of a call by the documentation of the interface.
    void expect(const Method& method, Call& call, bool isWhole)
    {
        const int first = m_ids.empty() ? 0 : m_ids.front();
        bool isValid = isWhole;
        if (method.name == "GetLayout") // the second number is the depth
            isValid = isWhole && isKnown(first) && m_ids[1] >= -1;
        else if (method.name == "Event" || method.name == "AboutToShow" || method.name == "GetProperty")
            isValid = isKnown(first);
        call.reply = method.reply;
        call.outcome = isValid ? WireMessage::Kind::answer : WireMessage::Kind::error;
        if (method.name == "GetProperty" && isValid)
            call.outcome.reset(); // not each entry has each property
        const bool hasEvents = method.name == "Event" || method.name == "EventGroup";
        for (std::size_t place = 0; hasEvents && isValid && place < m_ids.size(); ++place) {
            if (const auto action = actionOf(m_ids[place]); action && m_texts[place] == "clicked")
                m_expectedChoices.push_back(*action);
        }
        m_ids.clear();
        m_texts.clear();
        m_listLength = 0;
    }

    void callAnything(FuzzInput& input)
    {
        Call call;
        const std::size_t names = input.byte();
        call.message.path = names % 8 != 0 ? std::string{menuPath} : AnyValues::objectPath(input);
        call.message.interface = names / 8 % 4 == 0 ? std::string_view{} : names / 8 % 4 == 1 ? properties : menu;
        const Method& method = input.oneOf(methods);
        call.message.member = names / 32 % 2 == 0 ? method.name : input.oneOf(otherMembers);
        AnyValues::fill(input, call.message);
        const bool isOurs = std::ranges::any_of(methods, [&call](const Method& one) {
            return one.name == call.message.member && one.signature == call.message.signature;
        });
        // A call that happens to be valid is made with care elsewhere.
        if (isOurs && call.message.path == menuPath)
            return;
        call.outcome = WireMessage::Kind::error;
        send(input, std::move(call));
    }

    void send(FuzzInput& input, Call call)
    {
        call.message.sender = ":1.7";
        call.message.flags = input.byte() >= 240 ? WireMessage::noAnswerWanted : 0;
        const std::uint32_t serial = m_bus.send(call.message);
        m_calls.emplace(serial, std::move(call));
    }

    /// Checks the outcome of the calls since the last time.
    void judge()
    {
        m_bus.settle();
        require(m_chosen == m_expectedChoices, "a click has its effect once, and nothing else has any");
        m_chosen.clear();
        m_expectedChoices.clear();
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
        const bool isAnswer = answer.kind == WireMessage::Kind::answer;
        require(!call.outcome || answer.kind == *call.outcome, "a reply shows whether the call was valid");
        require(isAnswer || !answer.error.empty(), "an error has a name");
        require(!isAnswer || answer.signature == call.reply, "a reply has its type");
        require(answer.body.size() <= longestReply, "replies are bounded");
    }

    std::string layout()
    {
        WireMessage call{.path = std::string{menuPath}, .interface = std::string{menu}, .member = "GetLayout"};
        WireWriter writer;
        writer.integer(0);
        writer.integer(static_cast<std::uint32_t>(-1));
        writer.array(4, [] {});
        call.sender = ":1.8";
        call.signature = "iias";
        call.body = writer.bytes();
        const std::uint32_t serial = m_bus.send(std::move(call));
        m_bus.settle();
        const std::vector<WireMessage> said = m_bus.taken();
        require(said.size() == 1 && said[0].answered == serial && said[0].signature == "u(ia{sv}av)",
                "the menu returns its layout");
        return said[0].body;
    }

    HostileBus m_bus;
    std::unique_ptr<StatusMenu> m_menu;
    std::multiset<std::string> m_matches;
    std::size_t m_content = 0;
    std::vector<int> m_ids; ///< in the call that is being made
    std::vector<std::string> m_texts;
    int m_listLength = 0; ///< of its longest list
    std::map<std::uint32_t, Call> m_calls; ///< under their serials, those that have not been judged
    std::vector<StatusMenuAction> m_chosen;
    std::vector<StatusMenuAction> m_expectedChoices;
};

Bench& bench()
{
    static int argumentCount = 1;
    static char name[] = "FuzzBusMenu";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application{argumentCount, arguments};
    static Bench instance;
    return instance;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Bench& panels = bench();
    panels.attack(FuzzInput{textOf(data, size)});
    return 0;
}
