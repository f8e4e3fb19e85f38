#pragma once

#include <QWidget>

class QHBoxLayout;

namespace tallyfox {

class ToggleToolButton;

/// The bar at the top of the popover: the program's name, and a button each for keeping awake, settings and services.
class PopoverHeader : public QWidget {
    Q_OBJECT

public:
    explicit PopoverHeader(QWidget* parent = nullptr);

    void setKeepsAwake(bool keepsAwake); ///< whether the cup is full

Q_SIGNALS:
    void keepAwakeToggled();
    void settingsRequested();
    void servicesRequested();

private:
    void addButtons(QHBoxLayout& row);

    ToggleToolButton* m_keepAwake;
};

} // namespace tallyfox
