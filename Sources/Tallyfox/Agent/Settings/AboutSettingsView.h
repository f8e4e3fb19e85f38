#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"

namespace tallyfox {

/// The "About" tab: the program's name and version, and what it promises.
class AboutSettingsView : public SettingsForm {
    Q_OBJECT

public:
    /// Without a version it is the first one, "0.1.0".
    explicit AboutSettingsView(const QString& version, QWidget* parent = nullptr);

private:
    void addHeader(const QString& version);
    void addPrivacy();
};

} // namespace tallyfox
