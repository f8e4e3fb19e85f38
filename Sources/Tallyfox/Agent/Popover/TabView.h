#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QWidget>

namespace tallyfox {

/// One tab of the popover: draws snapshots, and says by signals what the user wants. Made anew each time its tab is
/// chosen, so what it remembers starts over. As high as its content; the popover scrolls it.
class TabView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows `snapshot`. Called once before the view is seen, then after each publication.
    virtual void setUsage(const UsageSnapshot& snapshot) = 0;

Q_SIGNALS:
    void refreshRequested();
    void homeAccessRequested();
    void dashboardRequested(); ///< switch to the Dashboard tab
};

} // namespace tallyfox
