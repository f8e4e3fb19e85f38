#include "Tallyfox/Agent/Popover/RankingView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int panelPadding = 28; // above and below the panel's content
constexpr int totalSize = 30;
constexpr int groupSpacing = 4; // between lines that belong together
constexpr int paragraph = 14; // between those that do not
constexpr int buttonSpacing = 10;

/// The providers' names are not translated.
QStringList boardLabels()
{
    QStringList labels{RankingView::tr("Overall")};
    const std::vector<std::string_view> boards = RankingModel::boards();
    for (auto board = boards.begin() + 1; board != boards.end(); ++board)
        labels << QString::fromUtf8(board->data(), static_cast<qsizetype>(board->size()));
    return labels;
}

TextLabel* addLine(QVBoxLayout& layout, const QString& text, const QFont& font, const QColor& color)
{
    auto* label = new TextLabel{text, font, color, layout.parentWidget()};
    label->setAlignment(Qt::AlignCenter);
    layout.addWidget(label);
    return label;
}

} // namespace

std::vector<std::string_view> RankingModel::boards()
{
    std::vector<std::string_view> boards{overallBoard};
    for (const Provider provider : allProviders)
        boards.push_back(traitsOf(provider).title);
    boards.push_back("Gemini");
    return boards;
}

std::int64_t RankingModel::monthlyTotal(std::span<const ProviderState> states, std::string_view board)
{
    std::int64_t sum = 0;
    for (const ProviderState& state : states) {
        if (board == overallBoard || board == traitsOf(state.provider).title)
            sum = tokenSum(sum, state.summary.totalTokens);
    }
    return sum;
}

RankingView::RankingView(QWidget* parent)
    : TabView(parent)
    , m_board(new SegmentedPicker{tr("Board"), boardLabels(), this})
{
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
    layout->setSpacing(Theme::tabSpacing);
    layout->addWidget(m_board);
    layout->addWidget(makePanel());
    addButtons(*layout);
    layout->addStretch();
    connect(m_board, &SegmentedPicker::currentIndexChanged, this, &RankingView::drawTotal);
}

Card* RankingView::makePanel()
{
    auto* panel = new Card{this};
    auto* layout = new QVBoxLayout{panel};
    layout->setContentsMargins(Theme::cardPadding, panelPadding, Theme::cardPadding, panelPadding);
    layout->setSpacing(groupSpacing);
    auto* trophy = new IconTile{IconTile::disc, Symbol::trophyFill, Theme::warning(), Theme::surfaceStrong(), panel};
    layout->addWidget(trophy, 0, Qt::AlignHCenter);
    layout->addSpacing(paragraph);
    addLine(*layout, tr("No ranking yet"), Theme::title3(), Theme::ink());
    layout->addSpacing(paragraph);
    addLine(*layout, tr("Monthly total"), Theme::caption(), Theme::muted());
    m_total = addLine(*layout, {}, Theme::system(totalSize, QFont::DemiBold), Theme::ink());
    layout->addSpacing(paragraph);
    addLine(*layout, tr("Ranking server is not connected"), Theme::caption(), Theme::muted());
    return panel;
}

/// Neither button does anything: there is no ranking yet.
void RankingView::addButtons(QVBoxLayout& layout)
{
    auto* row = new QHBoxLayout;
    layout.addLayout(row);
    row->setSpacing(buttonSpacing);
    row->addWidget(new PushButton{tr("How it works"), ButtonStyle::bordered, this}, 1);
    auto* submit = new PushButton{tr("Submit My Ranking"), ButtonStyle::borderedProminent, this};
    submit->setEnabled(false);
    row->addWidget(submit, 1);
}

void RankingView::setUsage(const UsageSnapshot& snapshot)
{
    m_states = snapshot.states;
    drawTotal();
}

void RankingView::drawTotal()
{
    const std::string_view board = RankingModel::boards().at(static_cast<std::size_t>(m_board->currentIndex()));
    m_total->setText(tokenText(RankingModel::monthlyTotal(m_states, board), locale()));
}

} // namespace tallyfox
