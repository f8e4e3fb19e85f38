#include "Tallyfox/UserDefaults.h"

#include "Tallyfox/Platform/AccountHome.h"

#include <QByteArray>
#include <QFile>
#include <QLatin1StringView>
#include <QSettings>
#include <QString>
#include <QVariant>

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

/// Creates what is missing of a folder's path, for the user alone. An existing folder is left as it is.
void makeFolders(const std::filesystem::path& folder)
{
    if (folder.has_parent_path() && folder.parent_path() != folder)
        makeFolders(folder.parent_path());
    mkdir(folder.c_str(), S_IRWXU); // a failure shows when the file is made
}

/// The file must be there, and private, before anything is written to it: QSettings keeps the mode of an existing
/// file, but gives a new one a mode that others may read.
bool makePrivateFile(const std::filesystem::path& path)
{
    makeFolders(path.parent_path());
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (file < 0)
        return false;
    const bool isPrivate = fchmod(file, S_IRUSR | S_IWUSR) == 0;
    close(file);
    return isPrivate;
}

bool write(QSettings& settings, QLatin1StringView key, const QVariant& value)
{
    const QVariant before = settings.value(key);
    settings.setValue(key, value);
    settings.sync();
    if (settings.status() == QSettings::NoError)
        return true;
    // QSettings keeps what it could not write and would hand it out, and write it, later.
    if (before.isValid())
        settings.setValue(key, before);
    else
        settings.remove(key);
    return false;
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
    if (!makePrivateFile(m_file))
        return false;
    QSettings settings{qtPath(m_file), QSettings::IniFormat};
    return write(settings, homeFolderBookmarkKey, QByteArray{token.data(), static_cast<qsizetype>(token.size())});
}

std::int64_t UserDefaults::refreshMinutes() const
{
    const QSettings settings{qtPath(m_file), QSettings::IniFormat};
    const std::int64_t minutes = settings.value(refreshMinutesKey).toLongLong(); // 0 for what is no number
    return minutes == 0 ? standardRefreshMinutes : minutes;
}

} // namespace tallyfox
