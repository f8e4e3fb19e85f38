#include "Tallyfox/Agent/Controls/TitledCard.h"

#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int titleSpacing = 8;

} // namespace

TitledCard::TitledCard(const QString& title, QWidget* parent)
    : Card(parent)
    , m_content(new QVBoxLayout{this})
{
    m_content->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    m_content->setSpacing(titleSpacing);
    m_content->addWidget(new TextLabel{title, Theme::headline(), Theme::ink(), this});
}

QVBoxLayout& TitledCard::content() const
{
    return *m_content;
}

} // namespace tallyfox
