#include "Support/ScratchFolder.h"
#include "Tallyfox/Engine/Preferences/IniText.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace tallyfox::test {

namespace {

std::optional<std::string> valueIn(std::string_view text)
{
    return IniText{text}.value("key");
}

std::string afterSetting(std::string_view before)
{
    IniText text{before};
    text.setPlain("key", "5");
    return text.text();
}

std::string everyByteThenDigits()
{
    std::string bytes;
    for (int value = 0; value < 256; ++value)
        bytes.append({static_cast<char>(value), 'f', '0', ' '});
    return bytes;
}

} // namespace

TEST(IniText, valueIsReadInEveryNotation)
{
    const std::pair<const char*, std::optional<std::string>> cases[]{
        {"[General]\nkey=5\n", "5"},
        {"[General]\nkey=5", "5"},
        {"[general]\r\n  key  =\t 5 \r\n", "5"},
        {"\xEF\xBB\xBFkey=5\n", "5"},
        {"key=5\n[other]\nkey=6\n", "5"},
        {"[other]\nkey=6\n", std::nullopt},
        {"[General]\nkey=5\nkey=7\n", "7"},
        {"[General]\n;key=5\n#key=6\n", std::nullopt},
        {"[General]\nkeys=5\nKEY=5\n", std::nullopt},
        {"[General]\nkey=\n", ""},
        {"[General]\nkey=\"with ; and \\\" and \\\\ and \\x41\\n\"\n", "with ; and \" and \\ and A\n"},
        {"[General]\nkey=@ByteArray(\\0\\xff)\n", std::string("\0\xff", 2)},
        {"[General]\nkey=@ByteArray(\n", "@ByteArray("},
        {"[General]\nkey=\\\n", "\\"},
        {"[General]\nkey=\xC3\xA4\n", "\xC3\xA4"},
        {"", std::nullopt},
        {"\n\n", std::nullopt},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(valueIn(text), value) << text;
}

TEST(IniText, settingChangesTheKeyAndNothingElse)
{
    const std::pair<const char*, const char*> cases[]{
        {"", "[General]\nkey=5\n"},
        {"[General]\n", "[General]\nkey=5\n"},
        {"[General]\na=1\n\n[other]\nkey=6\n", "[General]\na=1\nkey=5\n\n[other]\nkey=6\n"},
        {"[other]\nkey=6\n", "[other]\nkey=6\n[General]\nkey=5\n"},
        {"; said\na=1\nkey=4\nkey=3\nb=2\n", "; said\na=1\nb=2\nkey=5\n"},
        {"no value\n[General]\na=1", "no value\n[General]\na=1\nkey=5\n"},
    };
    for (const auto& [before, after] : cases)
        EXPECT_EQ(afterSetting(before), after) << before;
}

TEST(IniText, damagedLinesAreRemoved)
{
    IniText text{"[General]\na=1\nno value\n=5\n[no end\nb=2\n; fine\n\n"};
    EXPECT_TRUE(text.removeDamage());
    EXPECT_EQ(text.text(), "[General]\na=1\nb=2\n; fine\n\n");
    EXPECT_FALSE(text.removeDamage());
}

TEST(IniText, bytesAreReadAsTheyWereSet)
{
    IniText text{""};
    text.setBytes("key", everyByteThenDigits());
    EXPECT_EQ(IniText{text.text()}.value("key"), everyByteThenDigits());
}

TEST(IniText, QSettingsReadsAndWritesTheSameFormat)
{
    const ScratchFolder folder;
    const auto file = folder.path() / "ours.ini";
    const QByteArray bytes = QByteArray::fromStdString(everyByteThenDigits());
    IniText text{""};
    text.setBytes("key", everyByteThenDigits());
    text.setPlain("number", "22.5");
    writeFile(file, text.text());
    QSettings settings{QString::fromStdString(file.native()), QSettings::IniFormat};
    EXPECT_EQ(settings.value(QStringLiteral("key")).toByteArray(), bytes);
    EXPECT_EQ(settings.value(QStringLiteral("number")).toDouble(), 22.5);

    settings.setValue(QStringLiteral("key"), bytes + bytes);
    settings.setValue(QStringLiteral("flag"), true);
    settings.sync();
    const IniText theirs{readFile(file)};
    EXPECT_EQ(theirs.value("key"), everyByteThenDigits() + everyByteThenDigits());
    EXPECT_EQ(theirs.value("flag"), "true");
}

} // namespace tallyfox::test
