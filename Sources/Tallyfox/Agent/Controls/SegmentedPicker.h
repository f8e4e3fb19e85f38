#pragma once

#include <QGroupBox>
#include <QStringList>

#include <vector>

class QRadioButton;

namespace tallyfox {

/// A row of segments of equal width, one of which is selected. It is a single tab stop, and the arrow keys select. A
/// screen reader sees a group of radio buttons.
class SegmentedPicker : public QGroupBox {
    Q_OBJECT

public:
    /// `title` is not drawn: it is the accessible name. The first of `labels` (at least one) is selected.
    explicit SegmentedPicker(const QString& title, const QStringList& labels, QWidget* parent = nullptr);

    [[nodiscard]] int currentIndex() const;
    /// Selects a segment; ignores an index out of range.
    void setCurrentIndex(int index);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    void currentIndexChanged(int index); ///< not if the segment was selected already

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void select(int index);
    void updateTabStop();
    void layOutSegments();

    std::vector<QRadioButton*> m_segments;
    int m_currentIndex = 0;
};

} // namespace tallyfox
