#include "Tallyfox/Agent/Popover/RankingView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Popover/RankingModel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/CommandLine/TokenText.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QVBoxLayout>

#include <ranges>

namespace tallyfox {

namespace {

constexpr int panelPadding = 28; // above and below the panel's content
constexpr int totalSize = 30;
constexpr int groupSpacing = 4; // between lines that belong together
constexpr int paragraph = 14; // between those that do not
constexpr int buttonSpacing = 10;

} // namespace

class RankingView::Private {
public:
    explicit Private(RankingView& view)
        : m_board(new SegmentedPicker{tr("Board"), boardLabels(), &view})
        , m_panel(new Card{&view})
        , m_total(new TextLabel{Theme::system(totalSize, QFont::DemiBold), Theme::ink(), m_panel})
    {
        auto* layout = new QVBoxLayout{&view};
        layout->setContentsMargins(Theme::tabPadding, Theme::tabPadding, Theme::tabPadding, Theme::tabPadding);
        layout->setSpacing(Theme::tabSpacing);
        layout->addWidget(m_board);
        layout->addWidget(m_panel);
        fillPanel();
        addButtons(*layout, view);
        layout->addStretch();
        connect(m_board, &SegmentedPicker::currentIndexChanged, &view, [this] { drawTotal(); });
    }

    void setUsage(const UsageSnapshot& snapshot)
    {
        m_states = snapshot.states;
        drawTotal();
    }

private:
    /// The providers' names are not translated.
    static QStringList boardLabels()
    {
        QStringList labels{tr("Overall")};
        for (const std::string_view board : RankingModel::boards() | std::views::drop(1))
            labels << QString::fromUtf8(board.data(), static_cast<qsizetype>(board.size()));
        return labels;
    }

    void fillPanel()
    {
        auto* layout = new QVBoxLayout{m_panel};
        layout->setContentsMargins(Theme::cardPadding, panelPadding, Theme::cardPadding, panelPadding);
        layout->setSpacing(groupSpacing);
        auto* trophy =
            new IconTile{IconTile::disc, Symbol::trophyFill, Theme::warning(), Theme::surfaceStrong(), m_panel};
        layout->addWidget(trophy, 0, Qt::AlignHCenter);
        layout->addSpacing(paragraph);
        addLine(*layout, new TextLabel{tr("No ranking yet"), Theme::title3(), Theme::ink(), m_panel});
        layout->addSpacing(paragraph);
        addLine(*layout, new TextLabel{tr("Monthly total"), Theme::caption(), Theme::muted(), m_panel});
        addLine(*layout, m_total);
        layout->addSpacing(paragraph);
        addLine(*layout,
                new TextLabel{tr("Ranking server is not connected"), Theme::caption(), Theme::muted(), m_panel});
    }

    static void addLine(QVBoxLayout& layout, TextLabel* label)
    {
        label->setAlignment(Qt::AlignCenter);
        layout.addWidget(label);
    }

    /// Neither does anything, as there is no ranking to explain or to join.
    static void addButtons(QVBoxLayout& layout, RankingView& view)
    {
        auto* row = new QHBoxLayout;
        layout.addLayout(row);
        row->setSpacing(buttonSpacing);
        row->addWidget(new PushButton{tr("How it works"), ButtonStyle::bordered, &view}, 1);
        auto* submit = new PushButton{tr("Submit My Ranking"), ButtonStyle::borderedProminent, &view};
        submit->setEnabled(false);
        row->addWidget(submit, 1);
    }

    void drawTotal()
    {
        const std::string_view board = RankingModel::boards().at(static_cast<std::size_t>(m_board->currentIndex()));
        m_total->setText(tokenText(RankingModel::monthlyTotal(m_states, board), m_total->locale()));
    }

    std::vector<ProviderState> m_states;
    SegmentedPicker* m_board;
    Card* m_panel;
    TextLabel* m_total;
};

RankingView::RankingView(QWidget* parent)
    : TabView(parent)
    , m(std::make_unique<Private>(*this))
{ }

RankingView::~RankingView() = default;

void RankingView::setUsage(const UsageSnapshot& snapshot)
{
    m->setUsage(snapshot);
}

} // namespace tallyfox
