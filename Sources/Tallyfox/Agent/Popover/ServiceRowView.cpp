#include "Tallyfox/Agent/Popover/ServiceRowView.h"

#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int padding = 11;
constexpr int iconFrame = 26;
constexpr int symbolSize = 18;
constexpr int cellSpacing = 10; // between icon, texts and status
constexpr int rowLineSpacing = 2; // between name and detail
constexpr int detailLines = 2;

} // namespace

ServiceRowView::ServiceRowView(QWidget* parent)
    : Card(parent)
    , m_name(new TextLabel{Theme::system(Theme::body().pixelSize(), QFont::Medium), Theme::ink(), this})
    , m_detail(new TextLabel{Theme::caption(), Theme::muted(), this})
    , m_status(new TextLabel{Theme::caption2(), Theme::muted(), this})
{
    m_detail->setMaximumLines(detailLines);
    m_status->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    // In the middle of a row its edge may fall between two pixels, which would cut off what reaches below the line.
    m_status->setContentsMargins(0, 1, 0, 1);
    auto* layout = new QHBoxLayout{this};
    layout->setContentsMargins(padding + iconFrame + cellSpacing, padding, padding, padding);
    layout->setSpacing(cellSpacing);
    auto* texts = new QVBoxLayout;
    layout->addLayout(texts, 1);
    texts->setSpacing(rowLineSpacing);
    texts->addWidget(m_name);
    texts->addWidget(m_detail);
    layout->addWidget(m_status, 0, Qt::AlignVCenter);
}

void ServiceRowView::setRow(const ServiceRow& row)
{
    m_row = row;
    m_name->setText(row.name);
    m_detail->setText(row.detail);
    m_status->setText(row.status);
    m_status->setColor(row.statusColor);
    update();
}

const ServiceRow& ServiceRowView::row() const
{
    return m_row;
}

void ServiceRowView::paintEvent(QPaintEvent* event)
{
    Card::paintEvent(event);
    QPainter painter{this};
    constexpr double inset = (iconFrame - symbolSize) / 2.0;
    const double top = (height() - symbolSize) / 2.0;
    drawSymbol(painter, m_row.symbol, {padding + inset, top, symbolSize, symbolSize}, Theme::ink());
}

} // namespace tallyfox
