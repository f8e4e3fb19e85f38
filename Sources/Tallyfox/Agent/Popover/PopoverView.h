#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QWidget>

#include <array>

namespace tallyfox {

class OverlayScrollArea;
class SegmentedPicker;
class TabView;
class ToggleToolButton;

/// The tabs of the popover, in the order of the picker.
enum class PopoverTab { overview, dashboard, ranking, services };

inline constexpr std::array allPopoverTabs{PopoverTab::overview, PopoverTab::dashboard, PopoverTab::ranking,
                                           PopoverTab::services};

/// "Overview", "Dashboard", "Ranking" or "Services": also the untranslated label of its segment.
constexpr const char* rawValue(PopoverTab tab)
{
    switch (tab) {
    case PopoverTab::overview:
        return QT_TRANSLATE_NOOP("PopoverTab", "Overview");
    case PopoverTab::dashboard:
        return QT_TRANSLATE_NOOP("PopoverTab", "Dashboard");
    case PopoverTab::ranking:
        return QT_TRANSLATE_NOOP("PopoverTab", "Ranking");
    case PopoverTab::services:
        return QT_TRANSLATE_NOOP("PopoverTab", "Services");
    }
    return "";
}

/// The content of the popover: header, tab picker, and the view of the selected tab, in 420 by 680 logical pixels.
/// The tab stays selected when the popover closes. The tab picker is its focus proxy.
class PopoverView : public QWidget {
    Q_OBJECT

public:
    explicit PopoverView(PopoverTab selectedTab, QWidget* parent = nullptr);

    [[nodiscard]] PopoverTab selectedTab() const;
    /// Replaces the view with a new one for `tab`; does nothing if the tab is selected already.
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
    [[nodiscard]] QWidget* makeHeader();
    void showTab();

    ToggleToolButton* m_keepAwake = nullptr;
    SegmentedPicker* m_picker = nullptr;
    OverlayScrollArea* m_content = nullptr;
    TabView* m_tab = nullptr;
    UsageSnapshot m_snapshot;
};

} // namespace tallyfox
