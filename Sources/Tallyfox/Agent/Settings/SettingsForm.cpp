#include "Tallyfox/Agent/Settings/SettingsForm.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Controls/ToggleSwitch.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int columnWidth = 620;
constexpr int formPadding = 18;
constexpr int sectionSpacing = 16;
constexpr int titleSpacing = 6;
constexpr int formRowHeight = 36;
constexpr int formRowPadding = 14; ///< at the sides
constexpr int buttonRowPadding = 7; ///< above and below
constexpr int captionRowPadding = 8; ///< above and below
constexpr int labelSpacing = 16;

/// Draws a separator at its top, unless it is the first visible row.
class FormRow : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void moveEvent(QMoveEvent* event) override
    {
        QWidget::moveEvent(event);
        update();
    }

    void paintEvent(QPaintEvent* /*event*/) override
    {
        if (y() <= parentWidget()->layout()->contentsMargins().top())
            return;
        QPainter painter{this};
        const PixelGrid grid{painter};
        painter.fillRect(QRectF{formRowPadding, grid.y(0), width() - 2.0 * formRowPadding, grid.thinLine()},
                         Theme::withOpacity(Theme::line(), separatorOpacity));
    }

private:
    static constexpr double separatorOpacity = 0.7;
};

} // namespace

SettingsValue::SettingsValue(const QString& label, QWidget* parent)
    : TextLabel(Theme::body(), Theme::muted(), parent)
    , m_label(label)
{ }

void SettingsValue::setValue(const QString& value)
{
    setText(value);
    setAccessibleName(tr("%1: %2", "a label and its value").arg(m_label, value));
}

SettingsSection::SettingsSection(const QString& title, QWidget* parent)
    : QWidget(parent)
{
    auto* const column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(titleSpacing);
    if (!title.isEmpty()) {
        auto* const label = new TextLabel{title, Theme::headline(), Theme::ink(), this};
        label->setContentsMargins(2, 0, 2, 0);
        column->addWidget(label);
    }
    auto* const card = new Card{this};
    column->addWidget(card);
    m_rows = new QVBoxLayout{card};
    m_rows->setContentsMargins(0, 1, 0, 1);
    m_rows->setSpacing(0);
}

QWidget* SettingsSection::addEmptyRow(int verticalPadding, int place)
{
    auto* const row = new FormRow{this};
    row->setMinimumHeight(formRowHeight);
    auto* const line = new QHBoxLayout{row};
    line->setContentsMargins(formRowPadding, verticalPadding, formRowPadding, verticalPadding);
    line->setSpacing(labelSpacing);
    m_rows->insertWidget(place, row);
    return row;
}

void SettingsSection::addRow(const QString& label, ToggleSwitch* control)
{
    addRow(label, control, ToggleSwitch::ringSpace);
}

void SettingsSection::addRow(const QString& label, QWidget* control, int overhang)
{
    QWidget* const row = addEmptyRow(0);
    row->layout()->setContentsMargins(formRowPadding, 0, formRowPadding - overhang, 0);
    auto* const name = new TextLabel{label, Theme::body(), Theme::ink(), row};
    name->setBuddy(control);
    row->layout()->addWidget(name);
    row->layout()->addWidget(control);
    row->layout()->setAlignment(control, Qt::AlignRight | Qt::AlignVCenter);
    if (control->accessibleName().isEmpty())
        control->setAccessibleName(label);
}

SettingsValue* SettingsSection::addValueRow(const QString& label, const QString& value)
{
    auto* const shown = new SettingsValue{label, this};
    shown->setValue(value);
    addRow(label, shown);
    return shown;
}

void SettingsSection::addCaptionRow(const QString& text)
{
    QWidget* const row = addEmptyRow(captionRowPadding);
    row->setMinimumHeight(0);
    auto* const caption = new TextLabel{text, Theme::caption(), Theme::muted(), row};
    caption->setMaximumLines(3);
    row->layout()->addWidget(caption);
}

void SettingsSection::addTextRow(const QString& text)
{
    QWidget* const row = addEmptyRow(0);
    row->layout()->addWidget(new TextLabel{text, Theme::body(), Theme::muted(), row});
}

void SettingsSection::insertWideRow(int place, QWidget* content)
{
    const QLayoutItem* const after = m_rows->itemAt(place);
    QWidget* const row = addEmptyRow(captionRowPadding, place);
    row->layout()->addWidget(content);
    if (after)
        row->stackUnder(after->widget()); // screen readers follow the stacking order
}

QWidget* SettingsSection::addButtonRow(QWidget* button)
{
    QWidget* const row = addEmptyRow(buttonRowPadding);
    row->layout()->addWidget(button);
    row->layout()->setAlignment(button, Qt::AlignLeft | Qt::AlignVCenter);
    return row;
}

SettingsForm::SettingsForm(QWidget* parent)
    : OverlayScrollArea(parent)
{
    auto* const page = new QWidget{this};
    auto* const sides = new QHBoxLayout{page};
    sides->setContentsMargins(formPadding, formPadding, formPadding, formPadding);
    auto* const column = new QWidget{page};
    column->setMaximumWidth(columnWidth);
    sides->addWidget(column);
    m_column = new QVBoxLayout{column};
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(sectionSpacing);
    setWidget(page);
}

SettingsSection* SettingsForm::addSection(const QString& title)
{
    auto* const section = new SettingsSection{title, m_column->parentWidget()};
    m_column->addWidget(section);
    return section;
}

void SettingsForm::addToggle(SettingsSection* section, const QString& label, PreferenceFlag preference)
{
    auto* const toggle = new ToggleSwitch{this};
    section->addRow(label, toggle);
    connect(toggle, &QCheckBox::toggled, this, [this, preference](bool isOn) { Q_EMIT toggled(preference, isOn); });
    m_toggles.emplace_back(preference, toggle);
}

void SettingsForm::showToggles(const Preferences& preferences)
{
    for (const auto& [preference, toggle] : m_toggles)
        toggle->showChecked(preferences.*preference);
}

void SettingsForm::endSections()
{
    m_column->addStretch(1);
}

} // namespace tallyfox
