#include "Agent/Translations/ShownTexts.h"

#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QScrollBar>
#include <QTabBar>
#include <QToolTip>

#include <algorithm>

namespace tallyfox::test {

namespace {

std::vector<QWidget*> visibleWidgets(const QWidget& window)
{
    std::vector<QWidget*> widgets;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window)
            widgets.push_back(widget);
    }
    return widgets;
}

void addTexts(const QWidget& widget, std::vector<QString>& texts)
{
    texts.push_back(widget.toolTip());
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        texts.push_back(label->text());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        texts.push_back(button->text());
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
        texts.push_back(group->title());
    if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
        for (int index = 0; index < tabs->count(); ++index)
            texts.push_back(tabs->tabText(index));
    }
    if (const auto* choices = qobject_cast<const QComboBox*>(&widget)) {
        for (int index = 0; index < choices->count(); ++index)
            texts.push_back(choices->itemText(index));
    }
}

void addAccessibleTexts(const QAccessibleInterface& element, std::vector<QString>& texts)
{
    if (element.state().invisible)
        return;
    texts.push_back(element.text(QAccessible::Name));
    texts.push_back(element.text(QAccessible::Description));
    for (int index = 0; index < element.childCount(); ++index) {
        if (const QAccessibleInterface* child = element.child(index))
            addAccessibleTexts(*child, texts);
    }
}

/// The text of a widget that shows one.
QString ownText(const QWidget& widget)
{
    if (const auto* label = qobject_cast<const TextLabel*>(&widget))
        return label->text();
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return button ? button->text() : QString{};
}

bool isCut(const QWidget& widget)
{
    if (const auto* label = qobject_cast<const TextLabel*>(&widget))
        return label->isElided();
    return widget.fontMetrics().horizontalAdvance(ownText(widget)) > widget.contentsRect().width();
}

int neededHeight(const QWidget& widget)
{
    return widget.hasHeightForWidth() ? widget.heightForWidth(widget.width()) : widget.minimumSizeHint().height();
}

QString describe(const QWidget& widget)
{
    return QLatin1String{widget.metaObject()->className()} + QStringLiteral(" \"%1\"").arg(ownText(widget));
}

/// Tabs and lists neither wrap nor elide, so they need their full size.
bool hasLessThanItNeeds(const QWidget& widget)
{
    return (qobject_cast<const QTabBar*>(&widget) || qobject_cast<const QComboBox*>(&widget))
        && widget.width() < widget.sizeHint().width();
}

bool isInScrollArea(const QWidget& widget)
{
    return widget.parentWidget()->objectName() == QStringLiteral("qt_scrollarea_viewport");
}

bool reachesOut(const QWidget& widget)
{
    const QRect place = widget.parentWidget()->rect();
    if (isInScrollArea(widget))
        return widget.width() > place.width();
    return !place.contains(widget.geometry());
}

/// Scroll bars and the veils of cards overlap their content on purpose.
bool mayOverlap(const QWidget& widget)
{
    return widget.testAttribute(Qt::WA_TransparentForMouseEvents) || qobject_cast<const QScrollBar*>(&widget);
}

std::vector<QString> overlaps(const std::vector<QWidget*>& widgets)
{
    std::vector<QString> found;
    for (std::size_t one = 0; one < widgets.size(); ++one) {
        for (std::size_t other = one + 1; other < widgets.size(); ++other) {
            const QWidget& first = *widgets[one];
            const QWidget& second = *widgets[other];
            if (first.parent() == second.parent() && first.geometry().intersects(second.geometry())
                && !mayOverlap(first) && !mayOverlap(second))
                found.push_back(describe(first) + QStringLiteral(" overlaps ") + describe(second));
        }
    }
    return found;
}

} // namespace

std::vector<QString> shownTexts(const QWidget& window)
{
    std::vector<QString> texts{window.windowTitle()};
    for (const QWidget* widget : visibleWidgets(window))
        addTexts(*widget, texts);
    addAccessibleTexts(*QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&window)), texts);
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    return texts;
}

std::vector<QString> misplacements(QWidget& window)
{
    const std::vector<QWidget*> widgets = visibleWidgets(window);
    std::vector<QString> found = overlaps(widgets);
    for (QWidget* widget : widgets) {
        if (!ownText(*widget).isEmpty() && isCut(*widget)
            && tooltipAt(*widget, widget->rect().center()) != ownText(*widget))
            found.push_back(describe(*widget) + QStringLiteral(" is clipped and has no tooltip"));
        if (!ownText(*widget).isEmpty() && widget->height() < neededHeight(*widget))
            found.push_back(describe(*widget) + QStringLiteral(" is too low for its text"));
        if (hasLessThanItNeeds(*widget))
            found.push_back(describe(*widget) + QStringLiteral(" is too narrow"));
        if (reachesOut(*widget))
            found.push_back(describe(*widget) + QStringLiteral(" extends beyond its parent"));
    }
    QToolTip::hideText();
    return found;
}

std::vector<QString> elidedTexts(const QWidget& window)
{
    std::vector<QString> texts;
    for (const QWidget* widget : visibleWidgets(window)) {
        if (!ownText(*widget).isEmpty() && isCut(*widget))
            texts.push_back(ownText(*widget));
    }
    return texts;
}

} // namespace tallyfox::test
