/// Makes one change as the settings do. The exit status is 0 if it is reported as done, 1 if it is reported as failed.
///
///     settingsProbe preference | register | unregister

#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <string_view>

namespace {

using namespace tallyfox;

bool change(std::string_view action)
{
    if (action == "preference")
        return UserDefaults{UserDefaults::standardPath()}.set(&Preferences::refreshMinutes, 9);
    const auto loginItem = makeLoginItem("/bin/true", "org.tallyfox.tallyfox");
    return action == "register" ? loginItem->registerItem() : loginItem->unregisterItem();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2)
        return 2;
    return change(arguments[1]) ? 0 : 1;
}
