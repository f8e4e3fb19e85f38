#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include "Tallyfox/Engine/Preferences/UserDefaultsText.h"
#include "Tallyfox/Engine/System/AccountHome.h"
#include "Tallyfox/Engine/System/FileUpdate.h"

#include <array>
#include <charconv>
#include <limits>

namespace tallyfox {

namespace {

constexpr std::string_view homeFolderBookmarkKey = "homeFolderBookmark";
constexpr std::string_view refreshMinutesKey = "refreshMinutes";
constexpr std::string_view launchAtLoginKey = "launchAtLogin";
constexpr std::string_view showDockIconKey = "showDockIcon";
constexpr std::string_view showAccountEmailsKey = "showAccountEmails";
constexpr std::string_view rankingPrivateKey = "rankingPrivate";
constexpr std::string_view notificationsEnabledKey = "notificationsEnabled";
constexpr std::string_view claudeThresholdKey = "claudeThreshold";
constexpr std::string_view codexThresholdKey = "codexThreshold";
constexpr std::string_view newsNotificationsKey = "newsNotifications";

constexpr std::array flagKeys{launchAtLoginKey,  showDockIconKey,         showAccountEmailsKey,
                              rankingPrivateKey, notificationsEnabledKey, newsNotificationsKey};
constexpr std::array thresholdKeys{claudeThresholdKey, codexThresholdKey};

template <typename Number> std::optional<Number> numberOf(std::string_view text)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{number} : std::nullopt;
}

template <typename Number> std::string textOf(Number number)
{
    std::array<char, 32> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
    return std::string{text.data(), end};
}

std::optional<bool> flagOf(std::string_view text)
{
    if (text == "true" || text == "1")
        return true;
    if (text == "false" || text == "0")
        return false;
    return std::nullopt;
}

std::optional<std::int64_t> minutesOf(std::string_view text)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 60;
    const auto minutes = numberOf<std::int64_t>(text);
    return minutes && *minutes >= -most && *minutes <= most ? minutes : std::nullopt;
}

std::optional<double> thresholdOf(std::string_view text)
{
    const auto percent = numberOf<double>(text);
    const bool isInRange = percent && *percent >= smallestThreshold && *percent <= largestThreshold; // no NaN is
    return isInRange ? percent : std::nullopt;
}

UserDefaultsText textIn(const std::filesystem::path& file)
{
    const auto content = FileUpdate::read(file);
    const auto* const text = std::get_if<std::string>(&content);
    return UserDefaultsText{text ? *text : std::string_view{}};
}

/// The value of a key, read with one of the functions above.
template <typename Value>
Value valueOf(const UserDefaultsText& text, std::string_view key, std::optional<Value> (*read)(std::string_view),
              Value standard)
{
    const auto stored = text.value(key);
    return stored ? read(*stored).value_or(standard) : standard;
}

std::int64_t refreshMinutesIn(const UserDefaultsText& text)
{
    const std::int64_t minutes = valueOf(text, refreshMinutesKey, minutesOf, std::int64_t{0});
    return minutes == 0 ? Preferences{}.refreshMinutes : minutes;
}

bool flagIn(const UserDefaultsText& text, std::string_view key, bool standard)
{
    return valueOf(text, key, flagOf, standard);
}

double thresholdIn(const UserDefaultsText& text, std::string_view key, double standard)
{
    return valueOf(text, key, thresholdOf, standard);
}

template <typename Value>
bool removeUnlessRead(UserDefaultsText& text, std::string_view key, std::optional<Value> (*read)(std::string_view))
{
    const auto stored = text.value(key);
    const bool isDamaged = stored && !read(*stored);
    if (isDamaged)
        text.remove(key);
    return isDamaged;
}

/// Takes out everything that is not read anyway; whether there was anything.
bool removeDamage(UserDefaultsText& text)
{
    bool wasDamaged = text.removeDamage();
    wasDamaged = removeUnlessRead(text, refreshMinutesKey, minutesOf) || wasDamaged;
    for (const std::string_view key : flagKeys)
        wasDamaged = removeUnlessRead(text, key, flagOf) || wasDamaged;
    for (const std::string_view key : thresholdKeys)
        wasDamaged = removeUnlessRead(text, key, thresholdOf) || wasDamaged;
    return wasDamaged;
}

template <typename Set> bool change(const std::filesystem::path& file, const Set& set)
{
    return FileUpdate::apply(file, [&set](const std::string& before) -> std::optional<FileUpdate::Replacement> {
        UserDefaultsText text{before};
        const bool wasDamaged = removeDamage(text);
        set(text);
        return FileUpdate::Replacement{.content = text.text(), .keepsBackup = wasDamaged};
    });
}

bool setPlain(const std::filesystem::path& file, std::string_view key, const std::string& value)
{
    return change(file, [key, &value](UserDefaultsText& text) { text.setPlain(key, value); });
}

bool setFlag(const std::filesystem::path& file, std::string_view key, bool value)
{
    return setPlain(file, key, value ? "true" : "false");
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
    const UserDefaultsText text = textIn(m_file);
    constexpr Preferences standard;
    return {
        .refreshMinutes = refreshMinutesIn(text),
        .launchAtLogin = flagIn(text, launchAtLoginKey, standard.launchAtLogin),
        .showDockIcon = flagIn(text, showDockIconKey, standard.showDockIcon),
        .showAccountEmails = flagIn(text, showAccountEmailsKey, standard.showAccountEmails),
        .rankingPrivate = flagIn(text, rankingPrivateKey, standard.rankingPrivate),
        .notificationsEnabled = flagIn(text, notificationsEnabledKey, standard.notificationsEnabled),
        .claudeThreshold = thresholdIn(text, claudeThresholdKey, standard.claudeThreshold),
        .codexThreshold = thresholdIn(text, codexThresholdKey, standard.codexThreshold),
        .newsNotifications = flagIn(text, newsNotificationsKey, standard.newsNotifications),
    };
}

std::optional<std::string> UserDefaults::homeFolderBookmark() const
{
    return textIn(m_file).value(homeFolderBookmarkKey);
}

bool UserDefaults::setHomeFolderBookmark(std::string_view token)
{
    return change(m_file, [token](UserDefaultsText& text) { text.setBytes(homeFolderBookmarkKey, token); });
}

std::int64_t UserDefaults::refreshMinutes() const
{
    return preferences().refreshMinutes;
}

bool UserDefaults::setRefreshMinutes(std::int64_t minutes)
{
    return setPlain(m_file, refreshMinutesKey, textOf(minutes));
}

bool UserDefaults::launchAtLogin() const
{
    return preferences().launchAtLogin;
}

bool UserDefaults::setLaunchAtLogin(bool value)
{
    return setFlag(m_file, launchAtLoginKey, value);
}

bool UserDefaults::showDockIcon() const
{
    return preferences().showDockIcon;
}

bool UserDefaults::setShowDockIcon(bool value)
{
    return setFlag(m_file, showDockIconKey, value);
}

bool UserDefaults::showAccountEmails() const
{
    return preferences().showAccountEmails;
}

bool UserDefaults::setShowAccountEmails(bool value)
{
    return setFlag(m_file, showAccountEmailsKey, value);
}

bool UserDefaults::rankingPrivate() const
{
    return preferences().rankingPrivate;
}

bool UserDefaults::setRankingPrivate(bool value)
{
    return setFlag(m_file, rankingPrivateKey, value);
}

bool UserDefaults::notificationsEnabled() const
{
    return preferences().notificationsEnabled;
}

bool UserDefaults::setNotificationsEnabled(bool value)
{
    return setFlag(m_file, notificationsEnabledKey, value);
}

double UserDefaults::claudeThreshold() const
{
    return preferences().claudeThreshold;
}

bool UserDefaults::setClaudeThreshold(double percent)
{
    return setPlain(m_file, claudeThresholdKey, textOf(percent));
}

double UserDefaults::codexThreshold() const
{
    return preferences().codexThreshold;
}

bool UserDefaults::setCodexThreshold(double percent)
{
    return setPlain(m_file, codexThresholdKey, textOf(percent));
}

bool UserDefaults::newsNotifications() const
{
    return preferences().newsNotifications;
}

bool UserDefaults::setNewsNotifications(bool value)
{
    return setFlag(m_file, newsNotificationsKey, value);
}

} // namespace tallyfox
