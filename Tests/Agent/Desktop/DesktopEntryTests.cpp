#include "Tallyfox/Agent/Desktop/DesktopEntry.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

std::string afterSetting(std::string_view before)
{
    DesktopEntry entry{before};
    entry.set("Key", "value");
    return entry.text();
}

TEST(DesktopEntry, valueIsUnescapedAndFromTheMainGroup)
{
    const std::pair<const char*, std::optional<std::string>> cases[]{
        {"[Desktop Entry]\nKey=value\n", "value"},
        {"# said\n\n[Desktop Entry]\r\n  Key =  value \r\n", "value"},
        {"[Desktop Entry]\nKey=one\nKey=two\n", "two"},
        {"[Desktop Entry]\nKey=\\sa\\tb\\nc\\\\d\\x\n", " a\tb\nc\\d\\x"},
        {"[Desktop Entry]\nKey=\n", ""},
        {"[Desktop Entry]\nKey=a=b\n", "a=b"},
        {"[Desktop Entry]\nKey=ends in \\", "ends in \\"},
        {"[Desktop Entry]\n#Key=value\nKey[de]=Wert\n", std::nullopt},
        {"[Desktop Action other]\nKey=value\n", std::nullopt},
        {"Key=value\n", std::nullopt},
        {"[Desktop Entry]\nKey\n", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(DesktopEntry{text}.value("Key"), value) << text;
}

TEST(DesktopEntry, settingAKeyChangesNothingElse)
{
    const std::pair<const char*, const char*> cases[]{
        {"", "[Desktop Entry]\nKey=value\n"},
        {"[Desktop Entry]\nKey=old\nName=n\n", "[Desktop Entry]\nKey=value\nName=n\n"},
        {"[Desktop Entry]\nName=n\n\n[Desktop Action a]\nKey=old\n",
         "[Desktop Entry]\nName=n\nKey=value\n\n[Desktop Action a]\nKey=old\n"},
        {"# said\n[Desktop Entry]\n# more\nName[de]=n\nnonsense",
         "# said\n[Desktop Entry]\n# more\nName[de]=n\nKey=value\nnonsense\n"},
        {"[Other]\nName=n\n", "[Other]\nName=n\n[Desktop Entry]\nKey=value\n"},
    };
    for (const auto& [before, after] : cases)
        EXPECT_EQ(afterSetting(before), after) << before;
}

TEST(DesktopEntry, setValueIsReadBackUnchanged)
{
    for (const std::string value : {"", " a  b ", "line\nfeed\r\t", "back\\slash", "\\s", "\xC3\xA4"}) {
        DesktopEntry entry{""};
        entry.set("Key", value);
        // Trailing blanks may be an editor's, and are not part of the value.
        const std::string expected = value == " a  b " ? " a  b" : value;
        EXPECT_EQ(DesktopEntry{entry.text()}.value("Key"), expected);
    }
}

TEST(DesktopEntry, removingAKeyRemovesAllItsLines)
{
    DesktopEntry entry{"[Desktop Entry]\nKey=one\nName=n\nKey=two\n"};
    entry.remove("Key");
    EXPECT_EQ(entry.text(), "[Desktop Entry]\nName=n\n");
}

TEST(ExecValue, pathIsQuotedByTheRulesOfDesktopEntries)
{
    const std::pair<const char*, const char*> cases[]{
        {"/usr/bin/tallyfox", "/usr/bin/tallyfox"},
        {"/opt/my programs/tallyfox", "\"/opt/my programs/tallyfox\""},
        {"/opt/a\"b", "\"/opt/a\\\"b\""},
        {"/opt/a\\b", "\"/opt/a\\\\b\""},
        {"/opt/100%/f", "/opt/100%%/f"},
        {"/opt/$HOME `x`", "\"/opt/\\$HOME \\`x\\`\""},
        {"/opt/\xC3\xA4;b", "\"/opt/\xC3\xA4;b\""},
        {"/opt/line\nfeed", "\"/opt/line\nfeed\""},
    };
    for (const auto& [path, value] : cases) {
        EXPECT_EQ(execValue(path), value);
        EXPECT_EQ(execProgram(value), path);
    }
}

TEST(ExecProgram, isTheFirstArgumentOfTheCommandLine)
{
    const std::pair<const char*, std::optional<std::string>> cases[]{
        {"tallyfox --settings %u", "tallyfox"},
        {"  \"/opt/my programs/tallyfox\" --home \"/a b\"", "/opt/my programs/tallyfox"},
        {"env A=1 tallyfox", "env"},
        {"\"/no end", std::nullopt},
        {"\"\" x", std::nullopt},
        {"", std::nullopt},
        {"   ", std::nullopt},
    };
    for (const auto& [value, program] : cases)
        EXPECT_EQ(execProgram(value), program) << value;
}

} // namespace
} // namespace tallyfox::test
