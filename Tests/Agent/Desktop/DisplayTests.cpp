#include "Tallyfox/Agent/Desktop/Display.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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
    bool hasLayerShell = false;
};

const std::vector<std::string> both{"xcb", "wayland"};

/// The platform of a session, or its problem.
std::string outcome(const Session& session)
{
    const auto platform =
        platformFor(session.variables,
                    {[&] { return session.hasXServer; }, [&] { return session.hasLayerShell; },
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
        {"Wayland with the layer shell", {"", ":0", "wayland-0"}, true, both, "wayland", true},
        {"Wayland with the layer shell, without its plug-in", {"", ":0", "wayland-0"}, true, {"xcb"}, "xcb", true},
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
    const auto platform = platformFor({"offscreen", ":0", ""}, {unwanted, unwanted, unwanted});
    EXPECT_EQ(std::get<QByteArray>(platform), "offscreen");
}

/// A session with a Wayland compositor and no X server, where Qt searches its plug-ins in a folder of the test's own.
class ChosenDisplayTest : public testing::Test {
protected:
    ChosenDisplayTest()
    {
        for (const char* variable : variables)
            m_before.push_back(qgetenv(variable));
        qunsetenv("QT_QPA_PLATFORM");
        qunsetenv("DISPLAY");
        qputenv("WAYLAND_DISPLAY", "wayland-0");
        QCoreApplication::setLibraryPaths({m_folder.path()});
        EXPECT_TRUE(QDir{m_folder.path()}.mkdir(QStringLiteral("platforms")));
    }
    ~ChosenDisplayTest() override
    {
        for (std::size_t index = 0; index < variables.size(); ++index) {
            if (m_before[index].isNull())
                qunsetenv(variables[index]);
            else
                qputenv(variables[index], m_before[index]);
        }
        QCoreApplication::setLibraryPaths(m_libraryPaths);
    }

    void addFile(const char* name) const
    {
        QFile file{m_folder.filePath(QString::fromLatin1(name))};
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }

    QTemporaryDir m_folder;

private:
    static constexpr std::array variables{"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY",
                                          "QT_QPA_PLATFORM_PLUGIN_PATH"};
    std::vector<QByteArray> m_before;
    QStringList m_libraryPaths = QCoreApplication::libraryPaths();
};

TEST_F(ChosenDisplayTest, missingPlugInIsReportedWithItsPackage)
{
    addFile("platforms/libqxcb.so");
    addFile("libqwayland-generic.so"); // not where Qt searches
    const auto display = chooseDisplay();
    ASSERT_TRUE(std::holds_alternative<DisplayProblem>(display));
    EXPECT_THAT(std::get<DisplayProblem>(display).message, HasSubstr("qt6-wayland"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("QT_QPA_PLATFORM"));
}

TEST_F(ChosenDisplayTest, installedPlugInIsChosen)
{
    addFile("platforms/libqwayland-generic.so");
    EXPECT_TRUE(std::holds_alternative<XcbConnection>(chooseDisplay()));
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), "wayland");
}

TEST_F(ChosenDisplayTest, userMayNameAnotherFolderOfPlugIns)
{
    addFile("libqwayland.so");
    qputenv("QT_QPA_PLATFORM_PLUGIN_PATH", m_folder.path().toUtf8());
    EXPECT_TRUE(std::holds_alternative<XcbConnection>(chooseDisplay()));
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), "wayland");
}

} // namespace
} // namespace tallyfox
