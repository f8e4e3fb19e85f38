#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace tallyfox {

/// Lets the user choose one folder.
class HomeFolderPicker {
public:
    struct Request {
        std::filesystem::path startFolder; ///< what the dialog shows first
        std::string message; ///< why the program asks, UTF-8
    };
    /// Called once, on the main thread: the chosen folder, or nothing when the user cancelled.
    using Completion = std::function<void(std::optional<std::filesystem::path>)>;

    HomeFolderPicker() = default;
    HomeFolderPicker(const HomeFolderPicker&) = delete;
    HomeFolderPicker& operator=(const HomeFolderPicker&) = delete;
    virtual ~HomeFolderPicker() = default;

    /// Shows the dialog without blocking; returns at once.
    virtual void begin(const Request& request, Completion completion) = 0;
};

} // namespace tallyfox
