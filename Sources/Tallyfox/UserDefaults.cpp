#include "Tallyfox/UserDefaults.h"

#include "Tallyfox/Platform/AccountHome.h"
#include "TallyfoxCore/FileDescriptor.h"

#include <QByteArray>
#include <QFile>
#include <QLatin1StringView>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyfox {

namespace {

using namespace Qt::StringLiterals;

constexpr auto homeFolderBookmarkKey = "homeFolderBookmark"_L1;
constexpr auto refreshMinutesKey = "refreshMinutes"_L1;
constexpr std::int64_t standardRefreshMinutes = 5;

QString qtPath(const std::filesystem::path& path)
{
    return QFile::decodeName(path.c_str());
}

using Values = QMap<QString, QVariant>;

Values valuesIn(const std::filesystem::path& file)
{
    const QSettings settings{qtPath(file), QSettings::IniFormat};
    Values values;
    for (const QString& key : settings.allKeys())
        values[key] = settings.value(key);
    return values;
}

void putValues(const std::filesystem::path& file, const Values& values)
{
    QSettings settings{qtPath(file), QSettings::IniFormat};
    for (auto each = values.constBegin(); each != values.constEnd(); ++each)
        settings.setValue(each.key(), each.value());
}

/// Creates what is missing of a folder's path, for the user alone. An existing folder is left as it is.
void makeFolders(const std::filesystem::path& folder)
{
    if (folder.has_parent_path() && folder.parent_path() != folder)
        makeFolders(folder.parent_path());
    mkdir(folder.c_str(), S_IRWXU); // a failure shows when something is to be made in it
}

/// A new folder beside a file that is to be replaced; goes with everything in it.
class WorkFolder {
public:
    explicit WorkFolder(const std::filesystem::path& file)
        : m_path(file.native() + ".XXXXXX")
        , m_isMade(mkdtemp(m_path.data()) != nullptr)
    { }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder()
    {
        std::error_code ignored;
        if (m_isMade)
            std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] bool isMade() const
    {
        return m_isMade;
    }
    [[nodiscard]] std::filesystem::path file(const char* name) const
    {
        return std::filesystem::path{m_path} / name;
    }

private:
    std::string m_path;
    bool m_isMade;
};

/// Whether the file could be made private and is on the disk.
bool settle(const std::filesystem::path& file)
{
    const FileDescriptor opened{open(file.c_str(), O_RDONLY | O_CLOEXEC)};
    return opened.isOpen() && fchmod(opened.get(), S_IRUSR | S_IWUSR) == 0 && fsync(opened.get()) == 0;
}

/// Replaces the file whole, or leaves it untouched. On a full disk QSettings puts a cut-off file in the place of the
/// old one and reports success; so it writes elsewhere, and what it wrote is read again before it replaces anything.
/// The second name makes sure that the disk is read, not what QSettings remembers of the first.
bool replace(const std::filesystem::path& file, const Values& values)
{
    makeFolders(file.parent_path());
    const WorkFolder folder{file};
    if (!folder.isMade())
        return false;
    const auto written = folder.file("written.ini");
    const auto checked = folder.file("checked.ini");
    putValues(written, values);
    return rename(written.c_str(), checked.c_str()) == 0 && valuesIn(checked) == values && settle(checked)
        && rename(checked.c_str(), file.c_str()) == 0;
}

/// The file itself where `file` is a link to it, so that the link is not what is replaced.
std::filesystem::path behindLinks(const std::filesystem::path& file)
{
    std::error_code error;
    const auto target = std::filesystem::canonical(file, error);
    return error ? file : target;
}

} // namespace

std::filesystem::path UserDefaults::standardPath()
{
    const char* const configured = std::getenv("XDG_CONFIG_HOME");
    const std::filesystem::path folder =
        configured && configured[0] == '/' ? std::filesystem::path{configured} : accountHome() / ".config";
    return folder / "tallyfox" / "tallyfox.ini";
}

UserDefaults::UserDefaults(std::filesystem::path file)
    : m_file(std::move(file))
{ }

std::optional<std::string> UserDefaults::homeFolderBookmark() const
{
    const QSettings settings{qtPath(m_file), QSettings::IniFormat};
    const QVariant value = settings.value(homeFolderBookmarkKey);
    return value.isValid() ? std::optional{value.toByteArray().toStdString()} : std::nullopt;
}

bool UserDefaults::setHomeFolderBookmark(std::string_view token)
{
    Values values = valuesIn(m_file);
    values[homeFolderBookmarkKey] = QByteArray{token.data(), static_cast<qsizetype>(token.size())};
    return replace(behindLinks(m_file), values);
}

std::int64_t UserDefaults::refreshMinutes() const
{
    const QSettings settings{qtPath(m_file), QSettings::IniFormat};
    const std::int64_t minutes = settings.value(refreshMinutesKey).toLongLong(); // 0 for what is no number
    return minutes == 0 ? standardRefreshMinutes : minutes;
}

} // namespace tallyfox
