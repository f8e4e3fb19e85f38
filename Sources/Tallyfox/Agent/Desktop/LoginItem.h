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

/// Starts the program with the user's session. What the user or the desktop has changed about it is respected. Main
/// thread; touches one small file.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    /// Whether the program is going to be started now. It is not when the desktop's settings forbid it: they are where
    /// the user allows it again.
    virtual bool registerItem() = 0;
    /// Whether it is not going to be started any more; also when it was not before.
    virtual bool unregisterItem() = 0;
    [[nodiscard]] virtual LoginItemStatus status() const = 0;
};

/// The login item of this desktop. `program` is the absolute path of what it starts, `id` the application's,
/// "org.tallyfox.tallyfox".
std::unique_ptr<LoginItem> makeLoginItem(const std::filesystem::path& program, const std::string& id);

} // namespace tallyfox
