#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QWidget>

namespace tallyfox {

/// One tab of the popover: shows snapshots and emits what the user requests. A new one is created whenever its tab is
/// selected, so its state starts over. It is as high as its content; the popover scrolls it.
class TabView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows `snapshot`. Called before the view is shown, and after each publication.
    virtual void setUsage(const UsageSnapshot& snapshot) = 0;

Q_SIGNALS:
    void refreshRequested();
    void homeAccessRequested();
    void dashboardRequested(); ///< switch to the Dashboard tab
};

} // namespace tallyfox
