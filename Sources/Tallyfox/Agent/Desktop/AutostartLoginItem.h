#pragma once

#include "Tallyfox/Agent/Desktop/LoginItem.h"

#include <filesystem>
#include <string>

namespace tallyfox {

class DesktopEntry;

/// A login item as an entry of the user's autostart folder. An entry that this class has made is taken away again; one
/// that somebody else has put there stays, and is hidden and shown by keys of ours.
class AutostartLoginItem : public LoginItem {
public:
    AutostartLoginItem(std::filesystem::path entry, std::filesystem::path program);

    bool registerItem() override;
    bool unregisterItem() override;
    [[nodiscard]] LoginItemStatus status() const override;

private:
    [[nodiscard]] bool isSwitchedOff(const DesktopEntry& entry) const;
    void complete(DesktopEntry& entry) const;

    std::filesystem::path m_entry;
    std::filesystem::path m_program;
};

} // namespace tallyfox
