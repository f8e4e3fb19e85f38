#pragma once

#include <QWidget>

namespace tallyfox {

class StepSlider;
class TextLabel;

/// A threshold as the tab shows it: 20 as "20%", 22.5 as "22%".
QString thresholdText(double percent);

/// A percentage of remaining usage: a slider, and its value beside it.
class ThresholdControl : public QWidget {
    Q_OBJECT

public:
    explicit ThresholdControl(const QString& name, QWidget* parent = nullptr);

    /// Shows `percent`; emits nothing.
    void setPercent(double percent);

Q_SIGNALS:
    void chosen(double percent);

private:
    void choose(int percent);
    void showText(double percent);

    StepSlider* m_slider;
    TextLabel* m_text;
};

} // namespace tallyfox
