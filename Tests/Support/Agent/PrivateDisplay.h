#pragma once

#include "Support/Agent/Probe.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace tallyfox::test {

/// An X server without a monitor, which is ended with the object. It uses a free display number.
class PrivateDisplay {
public:
    /// `screen` is width, height and depth.
    explicit PrivateDisplay(const QString& screen = QStringLiteral("800x600x24"));
    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay&) = delete;
    PrivateDisplay& operator=(const PrivateDisplay&) = delete;

    /// The value for `DISPLAY`; empty when no server could be started.
    [[nodiscard]] QString name() const
    {
        return m_name;
    }

    /// Runs an X program to its end; returns whether it succeeded.
    bool run(const QString& program, const QStringList& arguments);
    /// Presses keys with xdotool, "super+alt+b" for example; returns whether that succeeded.
    bool press(const QString& keys);
    /// Presses keys by their codes, all together, and releases them. Unlike xdotool, which switches to the first layout
    /// for each key, it does not change the layout.
    void pressCodes(const std::vector<std::uint8_t>& codes);

private:
    Probe m_server;
    QString m_name;
};

} // namespace tallyfox::test
