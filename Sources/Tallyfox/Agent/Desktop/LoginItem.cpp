#include "Tallyfox/Agent/Desktop/LoginItem.h"

#include "Tallyfox/Agent/Desktop/DesktopEntry.h"
#include "Tallyfox/Engine/System/FileUpdate.h"
#include "Tallyfox/Engine/System/SystemPaths.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace tallyfox {

namespace {

constexpr std::string_view hidden = "Hidden";
constexpr std::string_view exec = "Exec";
constexpr std::string_view tryExec = "TryExec";
/// Marks an entry that this program has created, and may remove.
constexpr std::string_view madeByUs = "X-Tallyfox-Created";
/// Marks an entry that this program has hidden, not the desktop's settings, and may show again.
constexpr std::string_view hiddenByUs = "X-Tallyfox-Hidden";

std::optional<DesktopEntry> readEntry(const std::filesystem::path& file)
{
    const auto content = FileUpdate::read(file);
    const auto* const text = std::get_if<std::string>(&content);
    return text ? std::optional{DesktopEntry{*text}} : std::nullopt;
}

/// `program` is a path, or a name to be found through `PATH`.
bool isExecutable(const std::string& program)
{
    const QString name = QFile::decodeName(program.c_str());
    const QFileInfo file{name};
    return file.isAbsolute() ? file.isFile() && file.isExecutable() : !QStandardPaths::findExecutable(name).isEmpty();
}

bool isHiddenByUs(const DesktopEntry& entry)
{
    return entry.isTrue(hidden) && entry.isTrue(hiddenByUs);
}

bool hasExecutableProgram(const DesktopEntry& entry)
{
    const auto tried = entry.value(tryExec);
    const auto program = execProgram(entry.value(exec).value_or(std::string{}));
    return program && isExecutable(*program) && (!tried || tried->empty() || isExecutable(*tried));
}

void setIfAbsent(DesktopEntry& entry, std::string_view key, std::string_view value)
{
    if (!entry.value(key))
        entry.set(key, value);
}

/// Besides the standard key, desktops have keys of their own for the switch in their settings.
bool isDisabledByUser(const DesktopEntry& entry)
{
    const bool isHidden = entry.isTrue(hidden) && !entry.isTrue(hiddenByUs);
    return isHidden || entry.value("X-GNOME-Autostart-enabled") == "false"
        || entry.value("X-MATE-Autostart-enabled") == "false";
}

/// Makes an entry start `program`, and changes nothing else. A command line that starts it already keeps its arguments.
void complete(DesktopEntry& entry, const std::filesystem::path& program)
{
    setIfAbsent(entry, "Type", "Application");
    setIfAbsent(entry, "Name", "Tallyfox");
    setIfAbsent(entry, "Icon", "org.tallyfox.tallyfox");
    if (execProgram(entry.value(exec).value_or(std::string{})) != program.native())
        entry.set(exec, execValue(program));
    entry.set(tryExec, program.native());
    if (isHiddenByUs(entry)) {
        entry.remove(hidden);
        entry.remove(hiddenByUs);
    }
}

/// An entry of the user's autostart folder. One that this class has created is removed again; one that somebody else
/// has created stays, and is hidden and shown.
class AutostartLoginItem : public LoginItem {
public:
    AutostartLoginItem(std::filesystem::path entry, std::filesystem::path program)
        : m_entry(std::move(entry))
        , m_program(std::move(program))
    { }

    bool registerItem() override;
    bool unregisterItem() override;
    [[nodiscard]] LoginItemStatus status() const override;

private:
    std::filesystem::path m_entry;
    std::filesystem::path m_program;
};

bool AutostartLoginItem::registerItem()
{
    const bool isWritten =
        FileUpdate::apply(m_entry, [this](const std::string& before) -> std::optional<FileUpdate::Replacement> {
            DesktopEntry entry{before};
            if (isDisabledByUser(entry))
                return std::nullopt;
            complete(entry, m_program);
            if (before.empty())
                entry.set(madeByUs, "true");
            const bool isComplete = entry.text() == before;
            return isComplete ? std::nullopt : std::optional{FileUpdate::Replacement{.content = entry.text()}};
        });
    return isWritten && status() == LoginItemStatus::enabled;
}

bool AutostartLoginItem::unregisterItem()
{
    const auto current = readEntry(m_entry);
    if (current && current->isTrue(madeByUs)) {
        std::error_code error;
        std::filesystem::remove(m_entry, error);
        return !error;
    }
    if (!current || current->isTrue(hidden))
        return status() != LoginItemStatus::enabled;
    return FileUpdate::apply(m_entry, [](const std::string& before) {
        DesktopEntry entry{before};
        entry.set(hidden, "true");
        entry.set(hiddenByUs, "true");
        return std::optional{FileUpdate::Replacement{.content = entry.text()}};
    });
}

LoginItemStatus AutostartLoginItem::status() const
{
    const auto entry = readEntry(m_entry);
    if (!entry || isHiddenByUs(*entry))
        return LoginItemStatus::notRegistered;
    if (isDisabledByUser(*entry))
        return LoginItemStatus::requiresApproval;
    return hasExecutableProgram(*entry) ? LoginItemStatus::enabled : LoginItemStatus::notFound;
}

} // namespace

std::unique_ptr<LoginItem> makeLoginItem(const std::filesystem::path& program, const std::string& id)
{
    return std::make_unique<AutostartLoginItem>(configurationFolder() / "autostart" / (id + ".desktop"), program);
}

} // namespace tallyfox
