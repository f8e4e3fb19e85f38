#pragma once

#include <map>
#include <string>

namespace tallyfox::test {

/// The properties of a status item and their D-Bus signatures: those of freedesktop.org's StatusNotifierItem, and those
/// that Ayatana's panels add to it.
inline const std::map<std::string, std::string> statusNotifierProperties{
    {"Category", "s"},
    {"Id", "s"},
    {"Title", "s"},
    {"Status", "s"},
    {"WindowId", "i"},
    {"IconThemePath", "s"},
    {"IconName", "s"},
    {"IconPixmap", "a(iiay)"},
    {"IconAccessibleDesc", "s"},
    {"OverlayIconName", "s"},
    {"OverlayIconPixmap", "a(iiay)"},
    {"AttentionIconName", "s"},
    {"AttentionIconPixmap", "a(iiay)"},
    {"AttentionMovieName", "s"},
    {"AttentionAccessibleDesc", "s"},
    {"ToolTip", "(sa(iiay)ss)"},
    {"ItemIsMenu", "b"},
    {"Menu", "o"},
    {"XAyatanaLabel", "s"},
    {"XAyatanaLabelGuide", "s"},
    {"XAyatanaOrderingIndex", "u"},
};

} // namespace tallyfox::test
