#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QLocale>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tallyfox {

namespace {

constexpr std::int64_t thousand = 1'000;
constexpr std::int64_t million = 1'000'000;

/// `tokens` in units of `unit` with one decimal. Unlike with printf, the result is the same in every locale, and 1.25
/// becomes 1.3: a quarter is the only tie that a double holds exactly and that printf rounds down, to the even digit.
std::string withOneDecimal(std::int64_t tokens, std::int64_t unit)
{
    std::array<char, 32> digits{};
    double value = static_cast<double>(tokens) / static_cast<double>(unit);
    if (tokens % unit == unit / 4)
        value = std::nextafter(value, std::numeric_limits<double>::max());
    const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, 1).ptr;
    return {digits.begin(), end};
}

} // namespace

std::string tokenText(std::int64_t tokens)
{
    if (tokens >= million)
        return withOneDecimal(tokens, million) + 'M';
    if (tokens >= thousand)
        return withOneDecimal(tokens, thousand) + 'K';
    return exactTokenText(tokens);
}

QString tokenText(std::int64_t tokens, const QLocale& locale)
{
    if (tokens >= thousand)
        return QString::fromStdString(tokenText(tokens));
    return locale.toString(static_cast<qlonglong>(tokens));
}

std::string exactTokenText(std::int64_t tokens)
{
    constexpr std::size_t group = 3;
    std::string text = std::to_string(tokens);
    const std::size_t firstDigit = tokens < 0 ? 1 : 0;
    for (std::size_t end = text.size(); end > firstDigit + group; end -= group)
        text.insert(end - group, 1, ',');
    return text;
}

} // namespace tallyfox
