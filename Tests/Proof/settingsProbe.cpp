/// Does one thing that the settings do, and ends: 0 when it says that it succeeded, 1 when it says that it failed.
///
///     settingsProbe preference | register | unregister

#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <string_view>

namespace {

using namespace tallyfox;

bool perform(std::string_view action)
{
    if (action == "preference")
        return UserDefaults{UserDefaults::standardPath()}.setRefreshMinutes(9);
    const auto loginItem = makeLoginItem("/bin/true", "org.tallyfox.tallyfox");
    return action == "register" ? loginItem->registerItem() : loginItem->unregisterItem();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
        return 2;
    return perform(arguments[1]) ? 0 : 1;
}
