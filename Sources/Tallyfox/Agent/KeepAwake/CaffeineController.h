#pragma once

#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"

#include <QObject>

#include <memory>

namespace tallyfox {

/// The keep-awake switch: off at every start, never stored. Main thread.
class CaffeineController : public QObject {
    Q_OBJECT

public:
    /// Keeps a reference: `inhibitor` must outlive the object.
    explicit CaffeineController(SleepInhibitor& inhibitor, QObject* parent = nullptr);
    ~CaffeineController() override;

    /// Whether the computer is being kept awake: true exactly while an activity is in force.
    [[nodiscard]] bool isEnabled() const;

    /// Ends the activity, or one that is being asked for; begins one when there is none. `isEnabled` follows as soon
    /// as the desktop has granted it.
    void toggle();

Q_SIGNALS:
    void isEnabledPublished(bool isEnabled); ///< right after each change

private:
    void setActivity(std::unique_ptr<SleepInhibition> activity);
    void setEnabled(bool isEnabled);

    SleepInhibitor& m_inhibitor;
    std::unique_ptr<SleepInhibition> m_activity;
    bool m_isEnabled = false;
};

} // namespace tallyfox
