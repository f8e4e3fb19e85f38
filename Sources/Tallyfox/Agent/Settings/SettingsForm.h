#pragma once

#include "Tallyfox/Agent/Controls/OverlayScrollArea.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <utility>
#include <vector>

class QVBoxLayout;

namespace tallyfox {

class ToggleSwitch;

/// A read-only value of a row. Its accessible name includes the row's label, as screen readers move to it separately.
class SettingsValue : public TextLabel {
    Q_OBJECT

public:
    explicit SettingsValue(const QString& label, QWidget* parent = nullptr);

    void setValue(const QString& value);

private:
    QString m_label;
};

/// A titled card with rows.
class SettingsSection : public QWidget {
    Q_OBJECT

public:
    /// An empty `title` is not shown.
    explicit SettingsSection(const QString& title, QWidget* parent = nullptr);

    /// Adds a row: a label at the left, which is also the control's accessible name, and the control at the right.
    /// `overhang` is the width of the invisible part at the control's right, which may extend beyond the margin.
    void addRow(const QString& label, QWidget* control, int overhang = 0);
    void addRow(const QString& label, ToggleSwitch* control);
    /// Adds a row with a read-only value and returns the value's label.
    SettingsValue* addValueRow(const QString& label, const QString& value);
    /// Adds a row of text in the small secondary style.
    void addCaptionRow(const QString& text);
    /// Adds a row of text in the secondary style.
    void addTextRow(const QString& text);
    /// Inserts a row filled by `content` at index `place`.
    void insertWideRow(int place, QWidget* content);
    /// Adds a row with a button as wide as its text, and returns the row, so that it can be hidden.
    QWidget* addButtonRow(QWidget* button);

private:
    QWidget* addEmptyRow(int verticalPadding, int place = -1);

    QVBoxLayout* m_rows;
};

/// A tab of the settings window: sections in a centred column, scrollable if necessary.
class SettingsForm : public OverlayScrollArea {
    Q_OBJECT

public:
    explicit SettingsForm(QWidget* parent = nullptr);

Q_SIGNALS:
    void toggled(PreferenceFlag preference, bool isOn); ///< by the user

protected:
    SettingsSection* addSection(const QString& title);
    /// Adds a row with a switch for `preference` to `section`.
    void addToggle(SettingsSection* section, const QString& label, PreferenceFlag preference);
    /// Sets all switches without emitting a signal.
    void showToggles(const Preferences& preferences);
    /// Call last: aligns the sections to the top.
    void endSections();

private:
    QVBoxLayout* m_column;
    std::vector<std::pair<PreferenceFlag, ToggleSwitch*>> m_toggles;
};

} // namespace tallyfox
