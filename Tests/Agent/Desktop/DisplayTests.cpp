#include "Tallyfox/Agent/Desktop/Display.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tallyfox {
namespace {

using testing::HasSubstr;

struct Session {
    const char* situation;
    DisplayVariables variables;
    bool hasXServer;
    std::vector<std::string> plugIns;
    const char* platform; ///< or a part of the problem
};

const std::vector<std::string> both{"xcb", "wayland"};

/// The platform of a session, or its problem.
std::string outcome(const Session& session)
{
    const auto platform =
        platformFor(session.variables,
                    {[&] { return session.hasXServer; },
                     [&](const char* name) { return std::ranges::count(session.plugIns, std::string{name}) > 0; }});
    if (const auto* problem = std::get_if<DisplayProblem>(&platform))
        return problem->message;
    return std::get<QByteArray>(platform).toStdString();
}

TEST(Display, platformDependsOnTheSession)
{
    const std::vector<Session> sessions{
        {"X11", {"", ":0", ""}, true, both, "xcb"},
        {"Wayland with its X server", {"", ":0", "wayland-0"}, true, both, "xcb"},
        {"Wayland whose X server is gone", {"", ":0", "wayland-0"}, false, both, "wayland"},
        {"Wayland alone", {"", "", "wayland-0"}, false, both, "wayland"},
        {"the user's choice under X11", {"wayland", ":0", ""}, true, both, "wayland"},
        {"the user's choice on a console", {"offscreen", "", ""}, false, {}, "offscreen"},
        {"no plug-in for X11", {"", ":0", "wayland-0"}, true, {"wayland"}, "wayland"},
    };
    for (const Session& session : sessions)
        EXPECT_EQ(outcome(session), session.platform) << session.situation;
}

TEST(Display, sessionWithoutPlatformIsExplained)
{
    const std::vector<Session> sessions{
        {"X server gone", {"", ":0", ""}, false, both, "no display"},
        {"console", {"", "", ""}, true, both, "no display"},
        {"Wayland alone without its plug-in", {"", "", "wayland-0"}, false, {"xcb"}, "qt6-wayland"},
        {"Wayland whose X server is gone, without its plug-in", {"", ":0", "wayland-0"}, false, {"xcb"}, "qt6-wayland"},
        {"X11 without its plug-in", {"", ":0", ""}, true, {"wayland"}, "libqt6gui6"},
        {"no plug-ins", {"", ":0", "wayland-0"}, true, {}, "libqt6gui6"},
    };
    for (const Session& session : sessions)
        EXPECT_THAT(outcome(session), HasSubstr(session.platform)) << session.situation;
}

TEST(Display, nothingIsTriedWhenTheUserHasChosen)
{
    const auto unwanted = [](auto&&...) {
        ADD_FAILURE();
        return true;
    };
    const auto platform = platformFor({"offscreen", ":0", ""}, {unwanted, unwanted});
    EXPECT_EQ(std::get<QByteArray>(platform), "offscreen");
}

} // namespace
} // namespace tallyfox
