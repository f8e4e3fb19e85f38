#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include "Tallyfox/Engine/Preferences/IniText.h"
#include "Tallyfox/Engine/System/FileUpdate.h"
#include "Tallyfox/Engine/System/SystemPaths.h"

#include <array>
#include <charconv>
#include <limits>
#include <tuple>
#include <type_traits>

namespace tallyfox {

namespace {

constexpr std::string_view homeFolderBookmarkKey = "homeFolderBookmark";
constexpr std::int64_t mostMinutes = std::numeric_limits<std::int64_t>::max() / 60; // their seconds fit 64 bits

/// One preference: its key, its member, and the bounds of a stored value. A value out of bounds counts as damage.
template <typename Value> struct Entry {
    std::string_view key;
    Value Preferences::*member;
    Value least = std::numeric_limits<Value>::lowest();
    Value most = std::numeric_limits<Value>::max();
};

constexpr std::tuple entries{
    Entry<std::int64_t>{"refreshMinutes", &Preferences::refreshMinutes, -mostMinutes, mostMinutes},
    Entry<bool>{"launchAtLogin", &Preferences::launchAtLogin},
    Entry<bool>{"showDockIcon", &Preferences::showDockIcon},
    Entry<bool>{"showAccountEmails", &Preferences::showAccountEmails},
    Entry<bool>{"rankingPrivate", &Preferences::rankingPrivate},
    Entry<bool>{"notificationsEnabled", &Preferences::notificationsEnabled},
    Entry<double>{"claudeThreshold", &Preferences::claudeThreshold, smallestThreshold, largestThreshold},
    Entry<double>{"codexThreshold", &Preferences::codexThreshold, smallestThreshold, largestThreshold},
    Entry<bool>{"newsNotifications", &Preferences::newsNotifications},
    Entry<bool>{"requestsShortcut", &Preferences::requestsShortcut},
};

/// Converts to the type of whichever member it initialises.
struct AnyValue {
    template <typename Value> operator Value() const;
};

template <typename Record, typename... Values> consteval std::size_t countMembers()
{
    if constexpr (requires { Record{Values{}..., AnyValue{}}; })
        return countMembers<Record, Values..., AnyValue>();
    else
        return sizeof...(Values);
}

static_assert(std::tuple_size_v<decltype(entries)> == countMembers<Preferences>(), "a preference has no entry");

template <typename Action> void forEachEntry(const Action& action)
{
    std::apply([&](const auto&... entry) { (action(entry), ...); }, entries);
}

std::optional<bool> parse(std::string_view text, std::type_identity<bool> /*type*/)
{
    if (text == "true" || text == "1")
        return true;
    if (text == "false" || text == "0")
        return false;
    return std::nullopt;
}

template <typename Number> std::optional<Number> parse(std::string_view text, std::type_identity<Number> /*type*/)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{number} : std::nullopt;
}

std::string print(bool value)
{
    return value ? "true" : "false";
}

template <typename Number> std::string print(Number number)
{
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
    return std::string{text.data(), end};
}

template <typename Value> std::optional<Value> storedValue(const IniText& text, const Entry<Value>& entry)
{
    const auto stored = text.value(entry.key);
    const auto value = stored ? parse(*stored, std::type_identity<Value>{}) : std::nullopt;
    return value && *value >= entry.least && *value <= entry.most ? value : std::nullopt; // NaN is out of bounds
}

IniText readText(const std::filesystem::path& file)
{
    const auto content = FileUpdate::read(file);
    const auto* const text = std::get_if<std::string>(&content);
    return IniText{text ? *text : std::string_view{}};
}

/// Removes the lines that `preferences()` ignores; returns whether there were any.
bool removeDamage(IniText& text)
{
    bool wasDamaged = text.removeDamage();
    forEachEntry([&](const auto& entry) {
        if (!text.value(entry.key) || storedValue(text, entry))
            return;
        text.remove(entry.key);
        wasDamaged = true;
    });
    return wasDamaged;
}

template <typename Set> bool change(const std::filesystem::path& file, const Set& set)
{
    return FileUpdate::apply(file, [&set](const std::string& before) -> std::optional<FileUpdate::Replacement> {
        IniText text{before};
        const bool wasDamaged = removeDamage(text);
        set(text);
        return FileUpdate::Replacement{.content = text.text(), .keepsBackup = wasDamaged};
    });
}

template <typename Value> bool setMember(const std::filesystem::path& file, Value Preferences::*member, Value value)
{
    return change(file, [&](IniText& text) {
        forEachEntry([&](const auto& entry) {
            if constexpr (std::is_same_v<decltype(entry.member), Value Preferences::*>) {
                if (entry.member == member)
                    text.setPlain(entry.key, print(value));
            }
        });
    });
}

} // namespace

std::filesystem::path UserDefaults::standardPath()
{
    return configurationFolder() / "tallyfox" / "tallyfox.ini";
}

UserDefaults::UserDefaults(std::filesystem::path file)
    : m_file(std::move(file))
{ }

Preferences UserDefaults::preferences() const
{
    constexpr Preferences initial;
    const IniText text = readText(m_file);
    Preferences result;
    forEachEntry(
        [&](const auto& entry) { result.*entry.member = storedValue(text, entry).value_or(initial.*entry.member); });
    if (result.refreshMinutes == 0)
        result.refreshMinutes = initial.refreshMinutes;
    return result;
}

bool UserDefaults::set(PreferenceFlag member, bool value)
{
    return setMember(m_file, member, value);
}

bool UserDefaults::set(std::int64_t Preferences::*member, std::int64_t value)
{
    return setMember(m_file, member, value);
}

bool UserDefaults::set(double Preferences::*member, double value)
{
    return setMember(m_file, member, value);
}

std::optional<std::string> UserDefaults::homeFolderBookmark() const
{
    return readText(m_file).value(homeFolderBookmarkKey);
}

bool UserDefaults::setHomeFolderBookmark(std::string_view token)
{
    return change(m_file, [token](IniText& text) { text.setBytes(homeFolderBookmarkKey, token); });
}

} // namespace tallyfox
