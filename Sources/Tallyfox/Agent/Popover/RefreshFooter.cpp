#include "Tallyfox/Agent/Popover/RefreshFooter.h"

#include "Tallyfox/Agent/Controls/ProgressIndicators.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLocale>
#include <QTime>

#include <chrono>

namespace tallyfox {

namespace {

constexpr int shieldSide = 13;

struct FooterText {
    Q_DECLARE_TR_FUNCTIONS(RefreshFooter)
};

QTime timeOfDay(Instant instant, const Calendar& calendar)
{
    const auto local = instant + calendar.offsetAt(instant).offset;
    const auto sinceMidnight = local - std::chrono::floor<std::chrono::days>(local);
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(sinceMidnight).count();
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(milliseconds));
}

TextLabel* caption(const QString& text, QWidget* parent)
{
    return new TextLabel{text, Theme::caption(), Theme::muted(), parent};
}

} // namespace

QString refreshStatusText(std::optional<Instant> lastUpdated, const Calendar& calendar, const QLocale& locale)
{
    if (!lastUpdated)
        return FooterText::tr("Not updated");
    const QTime clock = timeOfDay(*lastUpdated, calendar);
    // The short format of the C locale includes seconds, which would be noise here.
    const QString time = locale.language() == QLocale::C ? clock.toString(QStringLiteral("HH:mm"))
                                                         : locale.toString(clock, QLocale::ShortFormat);
    return FooterText::tr("Refreshed %1", "%1: a time of day").arg(time);
}

RefreshFooter::RefreshFooter(QWidget* parent)
    : QWidget(parent)
    , m_status(caption({}, this))
    , m_refresh(new ToolButton{Symbol::arrowClockwise, tr("Refresh"), this})
    , m_activity(new ActivityIndicator{tr("Refreshing"), this})
{
    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(2, 0, 2, 0);
    row->setSpacing(5);
    row->addWidget(new SymbolView{Symbol::shieldLock, shieldSide, Theme::muted(), this});
    row->addWidget(caption(tr("Local processing"), this));
    row->addStretch();
    row->addWidget(m_status);
    // Both are centred in the same square, so that nothing moves when one replaces the other.
    auto* control = new QWidget{this};
    control->setFixedSize(ToolButton::side, ToolButton::side);
    for (QWidget* part : {static_cast<QWidget*>(m_refresh), static_cast<QWidget*>(m_activity)}) {
        part->setParent(control);
        part->move((control->width() - part->width()) / 2, (control->height() - part->height()) / 2);
    }
    row->addWidget(control);
    m_activity->hide();
    connect(m_refresh, &ToolButton::clicked, this, &RefreshFooter::refreshRequested);
}

void RefreshFooter::setStatus(const QString& text)
{
    m_status->setText(text);
}

void RefreshFooter::setRefreshing(bool isRefreshing)
{
    QWidget* coming = m_refresh;
    QWidget* going = m_activity;
    if (isRefreshing)
        std::swap(coming, going);
    coming->show();
    if (going->hasFocus())
        coming->setFocus();
    going->hide();
}

} // namespace tallyfox
