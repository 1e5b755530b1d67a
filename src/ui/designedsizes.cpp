#include "ui/designedsizes.h"

#include "ui/treewalk.h"
#include "ui/uistylerproperties.h"

#include <QComboBox>
#include <QLayout>
#include <QPushButton>
#include <QVariant>
#include <QWidget>

namespace {

using namespace UIStylerProperty;

/// The toolkit's "no limit" for a maximum size.
constexpr int UnlimitedSize = 16777215;

int scaled(const QObject *object, const char *property, double scale) {
    return static_cast<int>(object->property(property).toInt() * scale);
}

/// Calls `use` with the widget as a button or combo box, the only kinds whose icons have a designed size.
template <typename Use> void withIconSize(QWidget *widget, Use use) {
    if (auto *button = qobject_cast<QPushButton *>(widget))
        use(button);
    else if (auto *combo = qobject_cast<QComboBox *>(widget))
        use(combo);
}

bool claim(QObject *object) {
    if (object->property(IsSavedInitialSize).toBool())
        return false;
    object->setProperty(IsSavedInitialSize, true);
    return true;
}

void saveWidget(QWidget *widget) {
    widget->setProperty(InitialFontPt, widget->font().pointSizeF());
    withIconSize(widget, [widget](auto *control) {
        widget->setProperty(InitialIconWidth, control->iconSize().width());
        widget->setProperty(InitialIconHeight, control->iconSize().height());
    });
    widget->setProperty(InitialMaxWidth, widget->maximumWidth());
    widget->setProperty(InitialMaxHeight, widget->maximumHeight());
    if (widget->minimumWidth() > 0)
        widget->setProperty(InitialMinWidth, widget->minimumWidth());
    if (widget->minimumHeight() > 0)
        widget->setProperty(InitialMinHeight, widget->minimumHeight());
}

void saveLayout(QLayout *layout) {
    const QMargins margins = layout->contentsMargins();
    layout->setProperty(InitialLayoutSpace, layout->spacing());
    layout->setProperty(InitialLayoutLeft, margins.left());
    layout->setProperty(InitialLayoutTop, margins.top());
    layout->setProperty(InitialLayoutRight, margins.right());
    layout->setProperty(InitialLayoutBottom, margins.bottom());
}

void adjustFont(QWidget *widget, double scale) {
    // The designed point size counts as pixels: 9 points are 9 pixels at scale 1. A font designed in
    // pixels has a negative point size and stays.
    const double pixels = widget->property(InitialFontPt).toDouble() * scale;
    if (pixels <= 0.0)
        return;
    QFont font = widget->font();
    font.setPixelSize(static_cast<int>(pixels));
    widget->setFont(font);
}

void adjustLimits(QWidget *widget, double scale) {
    // Beyond the toolkit's limit the product means "unlimited" still, so nothing is set.
    const int maximumWidth = scaled(widget, InitialMaxWidth, scale);
    if (maximumWidth <= UnlimitedSize)
        widget->setMaximumWidth(maximumWidth);
    const int maximumHeight = scaled(widget, InitialMaxHeight, scale);
    if (maximumHeight <= UnlimitedSize)
        widget->setMaximumHeight(maximumHeight);
    const int minimumWidth = scaled(widget, InitialMinWidth, scale);
    if (minimumWidth > 0)
        widget->setMinimumWidth(minimumWidth);
    const int minimumHeight = scaled(widget, InitialMinHeight, scale);
    if (minimumHeight > 0)
        widget->setMinimumHeight(minimumHeight);
}

void adjustWidget(QWidget *widget, double scale) {
    adjustFont(widget, scale);
    withIconSize(widget, [widget, scale](auto *control) {
        control->setIconSize(
            QSize(scaled(widget, InitialIconWidth, scale), scaled(widget, InitialIconHeight, scale)));
    });
    adjustLimits(widget, scale);
}

void adjustLayout(QLayout *layout, double scale) {
    layout->setSpacing(scaled(layout, InitialLayoutSpace, scale));
    layout->setContentsMargins(
        scaled(layout, InitialLayoutLeft, scale), scaled(layout, InitialLayoutTop, scale),
        scaled(layout, InitialLayoutRight, scale), scaled(layout, InitialLayoutBottom, scale));
}

bool hasExemptAncestor(const QWidget *widget) {
    for (const QWidget *ancestor = widget->parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        if (ancestor->property(IsDisadjust).toBool())
            return true;
    }
    return false;
}

} // namespace

QWidget *DesignedSizes::widgetOfWindow(const QWidget *root, QObject *object) {
    auto *widget = qobject_cast<QWidget *>(object);
    return widget && widget->window() == root->window() ? widget : nullptr;
}

QLayout *DesignedSizes::layoutOfWindow(const QWidget *root, QObject *object) {
    auto *layout = qobject_cast<QLayout *>(object);
    return layout && layout->parentWidget() && layout->parentWidget()->window() == root->window() ? layout
                                                                                                  : nullptr;
}

void DesignedSizes::save(QWidget *root) {
    walkTree<QObject>(root, [root](QObject *object) {
        if (QWidget *widget = widgetOfWindow(root, object)) {
            if (!claim(widget))
                return false;
            saveWidget(widget);
            return true;
        }
        if (QLayout *layout = layoutOfWindow(root, object)) {
            if (!claim(layout))
                return false;
            saveLayout(layout);
            return true;
        }
        return false;
    });
}

void DesignedSizes::adjust(QWidget *root, double scale) {
    if (hasExemptAncestor(root))
        return;
    walkTree<QObject>(root, [root, scale](QObject *object) {
        if (QWidget *widget = widgetOfWindow(root, object)) {
            if (widget->property(IsDisadjust).toBool())
                return false;
            // The toolkit makes some buttons of its dialogs so late that nobody has seen them yet; without
            // sizes of their own they would shrink to nothing.
            if (claim(widget))
                saveWidget(widget);
            adjustWidget(widget, scale);
            return true;
        }
        if (QLayout *layout = layoutOfWindow(root, object)) {
            if (claim(layout))
                saveLayout(layout);
            adjustLayout(layout, scale);
            return true;
        }
        return false;
    });
}
