#include "Tallyfox/Agent/Settings/AboutSettingsView.h"

#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int aboutSpacing = 14;
constexpr int aboutLineSpacing = 3;

} // namespace

AboutSettingsView::AboutSettingsView(const QString& version, QWidget* parent)
    : SettingsForm(parent)
{
    addHeader(version.isEmpty() ? QStringLiteral("0.1.0") : version);
    addPrivacy();
    endSections();
}

void AboutSettingsView::addHeader(const QString& version)
{
    SettingsSection* const section = addSection(QString{});
    auto* const header = new QWidget{section};
    auto* const row = new QHBoxLayout{header};
    row->setContentsMargins(0, 4, 0, 4);
    row->setSpacing(aboutSpacing);
    row->addWidget(new IconTile{IconTile::logo, Symbol::barChartFill, Theme::cream(), Theme::accent(), header});
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(aboutLineSpacing);
    texts->addStretch();
    texts->addWidget(new TextLabel{QStringLiteral("Tallyfox"), Theme::title2(), Theme::ink(), header});
    texts->addWidget(new TextLabel{tr("Version %1").arg(version), Theme::body(), Theme::muted(), header});
    texts->addStretch();
    row->addLayout(texts);
    section->insertWideRow(0, header);
}

void AboutSettingsView::addPrivacy()
{
    SettingsSection* const section = addSection(tr("Privacy"));
    section->addValueRow(tr("Processing"), tr("100% Local"));
    section->addValueRow(tr("Raw transcripts"), tr("Never stored"));
    section->addValueRow(tr("Provider credentials"), tr("Never read"));
}

} // namespace tallyfox
