#pragma once

#include <QFrame>
#include <QPushButton>
#include <QWidget>

class QVBoxLayout;

namespace tallyfox {

/// The sheet that groups what belongs together: a rounded rectangle in the surface colour with a thin border. Lays
/// out nothing itself; the padding is the layout's.
class Card : public QFrame {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Paints the sheet into `frame`.
    static void paint(QPainter& painter, const QRectF& frame);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A card with a headline, and below it whatever its owner adds.
class TitledCard : public Card {
    Q_OBJECT

public:
    explicit TitledCard(const QString& title, QWidget* parent = nullptr);

    /// Where content goes; made with the card as its parent.
    [[nodiscard]] QVBoxLayout& content() const;

private:
    QVBoxLayout* m_content;
};

/// Any content, laid out in it by the caller, that can be pressed as a whole. Sizes itself after its layout.
class CardButton : public QPushButton {
    Q_OBJECT

public:
    /// `name` tells a screen reader what pressing it does.
    explicit CardButton(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void childEvent(QChildEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* m_veil = nullptr;
};

/// A thin line across its parent, or from top to bottom.
class Divider : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr, Qt::Orientation orientation = Qt::Horizontal);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Orientation m_orientation;
};

} // namespace tallyfox
