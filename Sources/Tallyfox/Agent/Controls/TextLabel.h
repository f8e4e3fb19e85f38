#pragma once

#include <QColor>
#include <QFont>
#include <QLabel>

namespace tallyfox {

/// Wraps `text` between words into lines of at most `width` and elides what does not fit into `maximumLines`. If a
/// single word is wider than `width`, the result is one elided line.
QStringList fittedLines(const QString& text, const QFont& font, int width, int maximumLines);

/// Plain text that always stays within its geometry: it wraps up to a number of lines, then it is elided, and the
/// tooltip shows all of it. The accessible name is always the full text.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    TextLabel(const QFont& font, const QColor& color, QWidget* parent = nullptr);
    TextLabel(const QString& text, const QFont& font, const QColor& color, QWidget* parent = nullptr);

    void setColor(const QColor& color);
    [[nodiscard]] const QColor& color() const;

    void setMaximumLines(int lines); ///< at least 1, the default

    /// Whether part of the text does not fit.
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

/// A short word on a faint background of its own colour.
class Badge : public TextLabel {
    Q_OBJECT

public:
    explicit Badge(QWidget* parent = nullptr);
    Badge(const QString& text, const QColor& color, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tallyfox
