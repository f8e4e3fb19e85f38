#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QTabBar>

#include <vector>

class QAccessibleInterface;

namespace tallyfox {

/// The tabs of the settings window: a symbol above a title. Mnemonics are underlined while Alt is held.
class SettingsTabBar : public QTabBar {
    Q_OBJECT

public:
    explicit SettingsTabBar(QWidget* parent = nullptr);

    /// Appends a tab; an ampersand in `title` precedes its mnemonic.
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

/// The accessible interface of `bar`, which, unlike Qt's own, exposes which tab is selected. Qt takes ownership.
QAccessibleInterface* makeAccessibleTabBar(SettingsTabBar& bar);

} // namespace tallyfox
