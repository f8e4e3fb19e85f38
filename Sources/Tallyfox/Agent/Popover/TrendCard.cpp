#include "Tallyfox/Agent/Popover/TrendCard.h"

#include "Tallyfox/Agent/Charts/LineChart.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/ChartPoint.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int trendSpacing = 8; // between the header and the chart
constexpr int chevronSize = 13;

QHBoxLayout* header(const QString& title, QWidget* parent)
{
    auto* row = new QHBoxLayout;
    row->addWidget(new TextLabel{title, Theme::headline(), Theme::ink(), parent}, 1);
    row->addWidget(new SymbolView{Symbol::chevronRight, chevronSize, Theme::muted(), parent});
    return row;
}

} // namespace

TrendCard::TrendCard(QWidget* parent)
    : QWidget(parent)
    , m_chart(new LineChart{this})
{
    const QString title = tr("30D Trend");
    m_chart->setAccessibleName(title);
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    layout->setSpacing(trendSpacing);
    layout->addLayout(header(title, this));
    layout->addWidget(m_chart);
}

void TrendCard::setStates(const std::vector<ProviderState>& states, const Calendar& calendar)
{
    m_chart->setData(chartContent(trendPoints(states), calendar));
}

void TrendCard::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    Card::paint(painter, rect());
}

} // namespace tallyfox
