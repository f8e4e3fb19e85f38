#pragma once

#include <cstddef>
#include <filesystem>

namespace tallyfox::bench {

/// Makes `home` a home folder with `count` history files of each assistant, all of them links to files of `bound`
/// (each several times when it has fewer), so that it takes no space and no time.
void linkHistories(const std::filesystem::path& bound, const std::filesystem::path& home, std::size_t count);

/// Makes `home` a home folder with `count` small Codex session files in a folder for each day. Keeps the files of an
/// earlier call.
void writeSmallSessions(const std::filesystem::path& home, std::size_t count);

} // namespace tallyfox::bench
