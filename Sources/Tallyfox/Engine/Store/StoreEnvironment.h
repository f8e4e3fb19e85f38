#pragma once

#include "Tallyfox/Engine/Quota/ChildReaper.h"
#include "Tallyfox/Engine/Store/UsageStore.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace tallyfox {

/// What differs between the ways the program is run.
struct StoreEnvironmentOptions {
    /// Used as the granted folder for this run, whatever has been granted; not stored.
    std::optional<std::filesystem::path> home;
    bool fetchQuota = true; ///< whether a refresh starts `codex`
    std::filesystem::path userDefaults; ///< file of the preferences; `UserDefaults::standardPath()` in earnest
    std::shared_ptr<ChildReaper> reaper; ///< the program's one reaper; may be null without `fetchQuota`
    HomeFolderPicker* picker = nullptr; ///< null where there is no display
};

/// The store's environment on the real machine: system clock and zone, stored grant, the user's own `codex`.
UsageStoreEnvironment systemEnvironment(const StoreEnvironmentOptions& options);

} // namespace tallyfox
