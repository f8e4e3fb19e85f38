#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include <gmock/gmock.h>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ShortcutBackEnds, suitTheSession)
{
    constexpr auto portal = ShortcutBackEnd::portal;
    constexpr auto keyGrab = ShortcutBackEnd::keyGrab;
    EXPECT_THAT(shortcutBackEnds(u"xcb", false), ElementsAre(keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"xcb", true), ElementsAre(portal, keyGrab));
    EXPECT_THAT(shortcutBackEnds(u"wayland", true), ElementsAre(portal));
    EXPECT_THAT(shortcutBackEnds(u"wayland-egl", true), ElementsAre(portal));
    EXPECT_THAT(shortcutBackEnds(u"offscreen", true), IsEmpty());
}

} // namespace
} // namespace tallyfox::test
