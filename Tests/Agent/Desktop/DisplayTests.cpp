#include "Tallyfox/Agent/Desktop/Display.h"

#include <gtest/gtest.h>

namespace tallyfox {
namespace {

struct Session {
    const char* situation;
    DisplayVariables variables;
    bool hasXServer;
    std::optional<QByteArray> platform;
};

TEST(Display, platformDependsOnTheSession)
{
    const std::vector<Session> sessions{
        {"X11", {"", ":0", ""}, true, "xcb"},
        {"Wayland with its X server", {"", ":0", "wayland-0"}, true, "xcb"},
        {"Wayland whose X server is gone", {"", ":0", "wayland-0"}, false, "wayland"},
        {"Wayland alone", {"", "", "wayland-0"}, false, "wayland"},
        {"X server gone", {"", ":0", ""}, false, std::nullopt},
        {"console", {"", "", ""}, true, std::nullopt},
        {"the user's choice under X11", {"wayland", ":0", ""}, true, "wayland"},
        {"the user's choice on a console", {"offscreen", "", ""}, false, "offscreen"},
    };
    for (const Session& session : sessions) {
        EXPECT_EQ(platformFor(session.variables, [&] { return session.hasXServer; }), session.platform)
            << session.situation;
    }
}

TEST(Display, xServerIsNotTriedWhenTheUserHasChosen)
{
    EXPECT_EQ(platformFor({"offscreen", ":0", ""},
                          [] {
                              ADD_FAILURE();
                              return true;
                          }),
              "offscreen");
}

} // namespace
} // namespace tallyfox
