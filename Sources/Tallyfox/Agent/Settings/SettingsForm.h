#pragma once

#include "Tallyfox/Agent/Controls/OverlayScrollArea.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <utility>
#include <vector>

class QVBoxLayout;

namespace tallyfox {

class ToggleSwitch;

/// The value of a row that cannot be changed. A screen reader, which comes to it alone, hears what it is the value of.
class SettingsValue : public TextLabel {
    Q_OBJECT

public:
    explicit SettingsValue(const QString& label, QWidget* parent = nullptr);

    void setValue(const QString& value);

private:
    QString m_label;
};

/// A titled group of rows on a card.
class SettingsSection : public QWidget {
    Q_OBJECT

public:
    /// Without a title there is only the card.
    explicit SettingsSection(const QString& title, QWidget* parent = nullptr);

    /// Adds a row: a label at the left, which is also the control's accessible name, and the control at the right.
    /// `overhang`: how much of the control's right side is invisible, and may lie beyond the edge of the others.
    void addRow(const QString& label, QWidget* control, int overhang = 0);
    void addRow(const QString& label, ToggleSwitch* control);
    /// Adds a row with a value that cannot be changed; returns what shows it.
    SettingsValue* addValueRow(const QString& label, const QString& value);
    /// Adds a row of text, in the small secondary style.
    void addCaptionRow(const QString& text);
    /// Adds a row of text, in the secondary style.
    void addTextRow(const QString& text);
    /// Adds a row filled by `content`, before the row that has that place now.
    void insertWideRow(int place, QWidget* content);
    /// Adds a row with a button, as wide as its text; returns the row, to be hidden as a whole.
    QWidget* addButtonRow(QWidget* button);

private:
    QWidget* addEmptyRow(int verticalPadding, int place = -1);

    QVBoxLayout* m_rows;
};

/// A tab of the settings window: sections, one below the other, in a column in the middle. Scrolls where it must.
class SettingsForm : public OverlayScrollArea {
    Q_OBJECT

public:
    explicit SettingsForm(QWidget* parent = nullptr);

Q_SIGNALS:
    void toggled(PreferenceFlag preference, bool isOn); ///< by the user

protected:
    SettingsSection* addSection(const QString& title);
    /// Adds a row to `section` with a switch for a preference.
    void addToggle(SettingsSection* section, const QString& label, PreferenceFlag preference);
    /// Shows the values of all preferences with a switch; emits nothing.
    void showToggles(const Preferences& preferences);
    /// The last call: everything stays at the top.
    void endSections();

private:
    QVBoxLayout* m_column;
    std::vector<std::pair<PreferenceFlag, ToggleSwitch*>> m_toggles;
};

} // namespace tallyfox
