/// A preferences file of any bytes: it can be read, and a grant can be stored in it without changing any other
/// preference.

#include "FuzzSupport.h"
#include "Support/ScratchFolder.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <string>

using namespace tallyfox;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const test::ScratchFolder folder;
    static int round = 0; // a new name each time, because Qt caches files by name
    const auto file = folder.path() / std::to_string(++round) / "tallyfox.ini";
    const std::string_view content = textOf(data, size);
    test::writeFile(file, content);
    UserDefaults defaults{file};
    const auto bookmark = defaults.homeFolderBookmark();
    const std::int64_t minutes = defaults.preferences().refreshMinutes;
    require(minutes != 0, "the interval is never none");
    require(test::readFile(file) == content, "reading changes nothing");

    const std::string token =
        bookmark.value_or("nothing") + "\n\x01\xFF;=%" + std::string(1, '\0') + std::string{content};
    require(defaults.setHomeFolderBookmark(token), "a grant can be stored whatever the file held");
    const UserDefaults again{file};
    require(again.homeFolderBookmark() == token, "a stored grant is read as it was");
    require(again.preferences().refreshMinutes == minutes, "storing a grant leaves the other preferences as they were");
    std::filesystem::remove_all(file.parent_path());
    return 0;
}
