#pragma once

#include <QColor>
#include <QFont>
#include <QLabel>

namespace tallyfox {

/// `text` in lines of at most `width`, broken between words. What does not fit into `maximumLines` ends in an ellipsis;
/// a width below that of one of the words makes it one line.
QStringList fittedLines(const QString& text, const QFont& font, int width, int maximumLines);

/// Plain text that never grows out of its place: it wraps up to a number of lines, then ends in an ellipsis and shows
/// the whole of it under the pointer. A screen reader always gets the whole.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    TextLabel(const QFont& font, const QColor& color, QWidget* parent = nullptr);
    TextLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent = nullptr);

    void setColor(const QColor& color);
    [[nodiscard]] const QColor& color() const;

    void setMaximumLines(int lines); ///< at least 1, which it is at first

    /// Whether a part of the text does not fit.
    [[nodiscard]] bool isElided() const;

    [[nodiscard]] QSize sizeHint() const override; ///< all of the text in one line
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int horizontalMargins() const;
    [[nodiscard]] int verticalMargins() const;
    [[nodiscard]] QStringList lines() const;

    QColor m_color;
    int m_maximumLines = 1;
};

/// A short word on a faint patch of its own colour.
class Badge : public TextLabel {
    Q_OBJECT

public:
    explicit Badge(QWidget* parent = nullptr);
    Badge(const QString& text, const QColor& color, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tallyfox
