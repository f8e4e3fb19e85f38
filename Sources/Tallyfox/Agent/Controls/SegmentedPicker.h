#pragma once

#include <QGroupBox>
#include <QStringList>

#include <vector>

class QRadioButton;

namespace tallyfox {

/// A row of segments of equal width, one of which is chosen. One stop of the Tab key; the arrow keys choose. To a
/// screen reader it is a group of radio buttons.
class SegmentedPicker : public QGroupBox {
    Q_OBJECT

public:
    /// `title` is not drawn: it is the accessible name. The first of `labels` (at least one) is chosen.
    explicit SegmentedPicker(const QString& title, const QStringList& labels, QWidget* parent = nullptr);

    [[nodiscard]] int currentIndex() const;
    /// Chooses a segment; an index that no segment has changes nothing.
    void setCurrentIndex(int index);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void currentIndexChanged(int index); ///< only when another segment is chosen than before

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void choose(int index);
    void updateTabStop();
    void layOutSegments();

    std::vector<QRadioButton*> m_segments;
    int m_currentIndex = 0;
};

} // namespace tallyfox
