#include "Tallyfox/Agent/Popover/DashboardSummary.h"

#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/DashboardModel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int verticalPadding = 12;
constexpr int horizontalPadding = 6;
constexpr int figureSpacing = 3; // between a value and its title

TextLabel* centeredLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent)
{
    auto* label = new TextLabel{text, font, color, parent};
    label->setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace

DashboardSummary::DashboardSummary(QWidget* parent)
    : Card(parent)
{
    auto* row = new QHBoxLayout{this};
    row->setContentsMargins(horizontalPadding, verticalPadding, horizontalPadding, verticalPadding);
    row->setSpacing(horizontalPadding);
    m_today = addFigure(*row, tr("Today Tokens"));
    addDivider(*row);
    m_total = addFigure(*row, tr("30D Total"));
    addDivider(*row);
    m_cost = addFigure(*row, tr("Est. cost"));
}

TextLabel* DashboardSummary::addFigure(QHBoxLayout& row, const QString& title)
{
    auto* figure = new QWidget{this};
    figure->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed); // shares are equal whatever stands in them
    auto* stack = new QVBoxLayout{figure};
    stack->setContentsMargins(0, 0, 0, 0);
    stack->setSpacing(figureSpacing);
    TextLabel* value = centeredLabel({}, Theme::headline(), Theme::ink(), figure);
    stack->addWidget(value);
    stack->addWidget(centeredLabel(title, Theme::caption2(), Theme::muted(), figure));
    row.addWidget(figure, 1);
    return value;
}

void DashboardSummary::addDivider(QHBoxLayout& row)
{
    auto* divider = new QFrame{this};
    divider->setFixedSize(1, dividerHeight);
    divider->setAutoFillBackground(true);
    QPalette palette = divider->palette();
    palette.setColor(QPalette::Window, Theme::line());
    divider->setPalette(palette);
    row.addWidget(divider, 0, Qt::AlignCenter);
}

void DashboardSummary::setStates(std::span<const ProviderState> states)
{
    m_today->setText(tokenText(DashboardModel::todayTokens(states), locale()));
    m_total->setText(tokenText(DashboardModel::totalTokens(states), locale()));
    m_cost->setText(QString::fromStdString(DashboardModel::hypotheticalCost(states)));
}

} // namespace tallyfox
