#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QTabBar>

#include <vector>

class QAccessibleInterface;

namespace tallyfox {

/// The settings window's tabs: a symbol above a title. The letter that chooses a tab together with Alt is underlined
/// while that key is held.
class SettingsTabBar : public QTabBar {
    Q_OBJECT

public:
    explicit SettingsTabBar(QWidget* parent = nullptr);

    /// Adds a tab at the end; an ampersand in `title` stands before its letter.
    void addSymbolTab(Symbol symbol, const QString& title);

    void setShowsMnemonics(bool shows);

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    void announceChoice(int index);
    void paintTab(QPainter& painter, int index) const;

    std::vector<Symbol> m_symbols;
    bool m_showsMnemonics = false;
};

/// What a screen reader is told about `bar`: which tab is chosen, which the toolkit's own interface leaves out. The
/// toolkit's table of interfaces owns it.
QAccessibleInterface* makeAccessibleTabBar(SettingsTabBar& bar);

} // namespace tallyfox
