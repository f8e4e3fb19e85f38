#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace tallyfox {

enum class LoginItemStatus {
    enabled, ///< the program starts with the user's session
    notRegistered,
    requiresApproval, ///< registered, but the user has switched it off in the desktop's own settings
    notFound, ///< registered, but the program that would be started is not there
};

/// Starts the program with the user's session, unless the user has changed that in the desktop's settings. Main thread;
/// reads and writes one small file.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    /// Returns whether the program will be started. It will not be when the desktop's settings forbid it: the user can
    /// allow it again only there.
    virtual bool registerItem() = 0;
    /// Returns whether the program will not be started; also true when it was not before.
    virtual bool unregisterItem() = 0;
    [[nodiscard]] virtual LoginItemStatus status() const = 0;
};

/// The login item of this desktop. `program` is the absolute path of what it starts, `id` the application's,
/// "org.tallyfox.tallyfox".
std::unique_ptr<LoginItem> makeLoginItem(const std::filesystem::path& program, const std::string& id);

} // namespace tallyfox
