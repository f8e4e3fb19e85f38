#include "Tallyfox/Agent/Popover/HomeAccessInvitation.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>

namespace tallyfox {

namespace {

QVBoxLayout* makeTexts(const QString& title, const QString& line, QWidget* parent)
{
    auto* titleLabel = new TextLabel{title, Theme::headline(), Theme::ink(), parent};
    titleLabel->setMaximumLines(2);
    auto* lineLabel = new TextLabel{line, Theme::caption(), Theme::muted(), parent};
    lineLabel->setMaximumLines(3);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(titleLabel);
    texts->addWidget(lineLabel);
    return texts;
}

} // namespace

HomeAccessInvitation::HomeAccessInvitation(QWidget* parent)
    : CardButton(tr("Enable 30-day usage"), parent)
{
    setAccessibleDescription(tr("Opens a folder picker for your home folder"));
    auto* card = new Card{this};
    auto* row = new QHBoxLayout{card};
    row->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    row->setSpacing(10);
    row->addWidget(new IconTile{IconTile::small, Symbol::folderPlus, Theme::accent(), Theme::surfaceStrong(), card});
    row->addLayout(
        makeTexts(tr("Enable 30-day usage"), tr("Allow read-only access to Claude and Codex usage metadata"), card), 1);
    row->addWidget(new TextLabel{tr("Allow Access"), Theme::system(12, QFont::DemiBold), Theme::accent(), card});
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(card);
}

} // namespace tallyfox
