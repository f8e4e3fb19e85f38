#pragma once

#include "TallyfoxCore/Time/Calendar.h"

#include <QWidget>

#include <optional>

class QLocale;

namespace tallyfox {

class ActivityIndicator;
class TextLabel;
class ToolButton;

/// "Refreshed 14:05" (the time of day in `calendar`'s zone, as short as `locale` writes it), or "Not updated".
QString refreshStatusText(std::optional<Instant> lastUpdated, const Calendar& calendar, const QLocale& locale);

/// The last row of the overview: where data are processed, how old they are, and what refreshes them.
class RefreshFooter : public QWidget {
    Q_OBJECT

public:
    explicit RefreshFooter(QWidget* parent = nullptr);

    void setStatus(const QString& text);
    /// Puts the activity indicator in the place of the refresh button, or takes it away. The one that goes hands the
    /// focus on to the other.
    void setRefreshing(bool isRefreshing);

Q_SIGNALS:
    void refreshRequested();

private:
    TextLabel* m_status;
    ToolButton* m_refresh;
    ActivityIndicator* m_activity;
};

} // namespace tallyfox
