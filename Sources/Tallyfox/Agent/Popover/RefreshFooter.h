#pragma once

#include "TallyfoxCore/Time/Calendar.h"

#include <QWidget>

#include <optional>

class QLocale;

namespace tallyfox {

class ActivityIndicator;
class TextLabel;
class ToolButton;

/// "Refreshed 14:05" (the local time by `calendar`, in the short format of `locale`), or "Not updated".
QString refreshStatusText(std::optional<Instant> lastUpdated, const Calendar& calendar, const QLocale& locale);

/// The last row of the overview: where the data are processed, how old they are, and a button that refreshes them.
class RefreshFooter : public QWidget {
    Q_OBJECT

public:
    explicit RefreshFooter(QWidget* parent = nullptr);

    void setStatus(const QString& text);
    /// Shows either the refresh button or the activity indicator in its place. The one that is hidden passes its
    /// focus to the other.
    void setRefreshing(bool isRefreshing);

Q_SIGNALS:
    void refreshRequested();

private:
    TextLabel* m_status;
    ToolButton* m_refresh;
    ActivityIndicator* m_activity;
};

} // namespace tallyfox
