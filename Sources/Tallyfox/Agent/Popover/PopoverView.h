#pragma once

#include "Tallyfox/Agent/Popover/PopoverTab.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QWidget>

#include <memory>

namespace tallyfox {

/// The content of the popover: header, tab picker, and the view of the chosen tab, in 420 by 680 logical pixels. The
/// chosen tab stays when the popover closes. Given the focus, it hands it to the tab picker.
class PopoverView : public QWidget {
    Q_OBJECT

public:
    explicit PopoverView(PopoverTab selectedTab, QWidget* parent = nullptr);
    ~PopoverView() override;

    [[nodiscard]] PopoverTab selectedTab() const;
    /// Replaces the tab's view by a new one; does nothing when the tab is chosen already.
    void selectTab(PopoverTab tab);

    void setUsage(const UsageSnapshot& snapshot);
    void setKeepsAwake(bool keepsAwake); ///< whether the cup is full

Q_SIGNALS:
    void keepAwakeToggled();
    void settingsRequested();
    void refreshRequested();
    void homeAccessRequested();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    class Private;
    std::unique_ptr<Private> m;
};

} // namespace tallyfox
