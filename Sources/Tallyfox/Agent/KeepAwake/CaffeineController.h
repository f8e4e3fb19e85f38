#pragma once

#include "Tallyfox/Agent/KeepAwake/SleepInhibitor.h"

#include <QObject>

#include <memory>

namespace tallyfox {

/// The keep-awake switch: off at every start, not stored. Main thread.
class CaffeineController : public QObject {
    Q_OBJECT

public:
    /// Keeps a reference: `inhibitor` must outlive the object.
    explicit CaffeineController(SleepInhibitor& inhibitor, QObject* parent = nullptr);
    ~CaffeineController() override;

    /// True exactly while an inhibition is in force.
    [[nodiscard]] bool isEnabled() const;

    /// Ends the inhibition or the pending request for one, or requests one. `isEnabled` becomes true once the desktop
    /// has granted it.
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
