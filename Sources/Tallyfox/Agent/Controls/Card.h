#pragma once

#include <QFrame>
#include <QPushButton>
#include <QWidget>

class QVBoxLayout;

namespace tallyfox {

/// A rounded rectangle in the surface colour with a thin border. Has no layout of its own; the padding is that of the
/// layout.
class Card : public QFrame {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Paints the card's background and border into `frame`.
    static void paint(QPainter& painter, const QRectF& frame);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A card with a headline above its content.
class TitledCard : public Card {
    Q_OBJECT

public:
    explicit TitledCard(const QString& title, QWidget* parent = nullptr);

    /// The layout to add content to; the content's parent is the card.
    [[nodiscard]] QVBoxLayout& content() const;

private:
    QVBoxLayout* m_content;
};

/// A button that contains any widgets, laid out by the caller. Its size follows its layout.
class CardButton : public QPushButton {
    Q_OBJECT

public:
    /// `name` is the accessible name: what a press does.
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

/// A thin horizontal or vertical line.
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
