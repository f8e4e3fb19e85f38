#pragma once

#include "Support/Agent/Probe.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace tallyfox::test {

/// An X server of its own without a screen, which ends with the object. It takes a display number that is free.
class PrivateDisplay {
public:
    PrivateDisplay();
    ~PrivateDisplay();
    PrivateDisplay(const PrivateDisplay&) = delete;
    PrivateDisplay& operator=(const PrivateDisplay&) = delete;

    /// What `DISPLAY` would hold; empty when no server could be started.
    [[nodiscard]] QString name() const
    {
        return m_name;
    }

    /// Runs an X program to its end; whether it went well.
    bool run(const QString& program, const QStringList& arguments);
    /// Presses keys with xdotool, "super+alt+b" for example; whether it went well.
    bool press(const QString& keys);
    /// Presses keys by their codes, all together, and lets them go. Unlike xdotool, which goes to the first layout for
    /// each key and back again, it leaves the layout to the keys.
    void pressCodes(const std::vector<std::uint8_t>& codes);

private:
    Probe m_server;
    QString m_name;
};

} // namespace tallyfox::test
