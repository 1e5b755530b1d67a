#include "ui/uistyler.h"

#include "ui/designedsizes.h"
#include "ui/stylesheettext.h"
#include "ui/treewalk.h"
#include "ui/uistylerproperties.h"

#include <QApplication>
#include <QChildEvent>
#include <QFile>
#include <QLayout>
#include <QScreen>
#include <QSettings>
#include <QStringList>
#include <QVariant>
#include <QWidget>
#include <QWindow>

namespace {

using namespace UIStylerProperty;

constexpr double DesignDpi = 96.0;

QHash<QObject *, UIStyler::ScaleCallback> &scaleCallbacks() {
    static QHash<QObject *, UIStyler::ScaleCallback> callbacks;
    return callbacks;
}

double scaleOf(const QScreen *screen) {
    return screen->logicalDotsPerInchX() / DesignDpi;
}

/// A widget's own sheet in a form that rules may follow: bare declarations stand for a rule of their own.
QString asRules(const QString &sheet) {
    const bool bare = sheet.contains(QLatin1Char(':')) && !sheet.contains(QLatin1Char('{'));
    return bare ? QStringLiteral("* {%1}").arg(sheet) : sheet;
}

/// Appends each sheet, made for the scale, to what the widget has: the rules that come later win. The copies
/// of earlier scales stay, since what the widget had of its own cannot be told from them, and a window seldom
/// changes its scale.
void applySheetFiles(QWidget *widget, const QStringList &paths, double scale) {
    const QSettings variables(qApp->property(ColorsIniPath).toString(), QSettings::IniFormat);
    const auto variable = [&variables](const QString &key) {
        return variables.value(key, QString()).toString();
    };
    for (const QString &path : paths) {
        QFile file(path);
        if (!file.exists() || !file.open(QIODevice::ReadOnly))
            continue;
        const QString text = QString::fromUtf8(file.readAll());
        if (!text.isEmpty())
            widget->setStyleSheet(asRules(widget->styleSheet()) +
                                  preprocessStyleSheet(text, variable, scale));
    }
}

void applySheetsOf(const QObject *holder, QWidget *widget, double scale) {
    const QVariant paths = holder->property(QssPaths);
    if (paths.isValid())
        applySheetFiles(widget, paths.toStringList(), scale);
}

/// The sheets of the application and of everything that a window belongs to, outermost first, so that the
/// nearest wins.
void applyInheritedSheets(QWidget *window, double scale) {
    applySheetsOf(qApp, window, scale);
    QList<const QWidget *> outermostFirst;
    for (const QWidget *ancestor = window->parentWidget(); ancestor; ancestor = ancestor->parentWidget())
        outermostFirst.prepend(ancestor);
    for (const QWidget *ancestor : qAsConst(outermostFirst))
        applySheetsOf(ancestor, window, scale);
}

void applyStyleSheets(QWidget *root, double scale) {
    if (root->isWindow())
        applyInheritedSheets(root, scale);
    walkTree<QWidget>(root, [root, scale](QWidget *widget) {
        if (!DesignedSizes::widgetOfWindow(root, widget))
            return false;
        applySheetsOf(widget, widget, scale);
        return true;
    });
}

void runScaleCallbacks(QWidget *root, double scale) {
    walkTree<QObject>(root, [root, scale](QObject *object) {
        if (!DesignedSizes::widgetOfWindow(root, object) && !DesignedSizes::layoutOfWindow(root, object))
            return false;
        const auto found = scaleCallbacks().constFind(object);
        if (found != scaleCallbacks().constEnd()) {
            // A copy: the callback may register another one.
            const UIStyler::ScaleCallback callback = *found;
            callback(scale);
        }
        return true;
    });
}

void rememberWindowSize(QWidget *window) {
    window->setProperty(WindowPrevWidth, window->width());
    window->setProperty(WindowPrevHeight, window->height());
}

/// A hidden window takes its scale when it is shown.
void applyScaleToVisibleWindow(QWidget *window, double scale) {
    if (!window->isWindow() || !window->testAttribute(Qt::WA_WState_Visible))
        return;
    rememberWindowSize(window);
    UIStyler::applyScale(window, scale);
}

} // namespace

UIStyler::UIStyler(QObject *parent) : QObject(parent) {}

void UIStyler::install(QApplication *application) {
    if (!application || application->property(IsInstalledEventFilter).toBool())
        return;
    application->setProperty(IsInstalledEventFilter, true);
    application->installEventFilter(new UIStyler(application));
}

void UIStyler::setColorsIniPath(QApplication *application, const QString &path) {
    application->setProperty(ColorsIniPath, path);
}

void UIStyler::setStyleSheetPaths(QApplication *application, const QStringList &paths) {
    if (!paths.isEmpty())
        application->setProperty(QssPaths, paths);
}

void UIStyler::setDisadjust(QWidget *widget, bool exempt) {
    widget->setProperty(IsDisadjust, exempt);
}

void UIStyler::setScaleCallback(QObject *object, const ScaleCallback &callback) {
    if (!object)
        return;
    // Another object may come to stand at the same address, so the entry ends with its object.
    if (!scaleCallbacks().contains(object))
        connect(object, &QObject::destroyed, qApp, [](QObject *gone) { scaleCallbacks().remove(gone); });
    scaleCallbacks().insert(object, callback);
}

void UIStyler::applyScale(QWidget *widget, double scale) {
    // Exact: polish and show events are frequent and end here as long as nothing has changed.
    if (!widget || widget->property(Scale).toDouble() == scale)
        return;
    widget->setProperty(Scale, scale);
    DesignedSizes::adjust(widget, scale);
    applyStyleSheets(widget, scale);
    runScaleCallbacks(widget, scale);
    if (widget->isWindow() && !widget->property(IsWindowLoaded).toBool())
        widget->setProperty(IsWindowLoaded, true);
}

bool UIStyler::eventFilter(QObject *watched, QEvent *event) {
    auto *widget = qobject_cast<QWidget *>(watched);
    switch (event->type()) {
    case QEvent::Polish:
        if (widget && widget->isWindow())
            onPolish(widget);
        break;
    case QEvent::ChildPolished:
        if (auto *child = qobject_cast<QWidget *>(static_cast<QChildEvent *>(event)->child()))
            onChildPolished(child);
        break;
    case QEvent::Show:
        if (widget && widget->isWindow())
            onShow(widget);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void UIStyler::onPolish(QWidget *window) {
    rememberWindowSize(window);
    DesignedSizes::save(window);
}

void UIStyler::onChildPolished(QWidget *child) {
    const QWidget *window = child->window();
    if (!window || !window->property(IsWindowLoaded).toBool())
        return;
    DesignedSizes::save(child);
    applyScale(child, window->logicalDpiX() / DesignDpi);
}

void UIStyler::onShow(QWidget *window) {
    QWindow *handle = window->windowHandle();
    if (!handle)
        return;
    if (QScreen *screen = handle->screen()) {
        applyScale(window, scaleOf(screen));
        followScreen(window, screen);
    }
    m_screenConnections.replace(
        window, connect(handle, &QWindow::screenChanged, window,
                        [this, window](QScreen *screen) { onScreenChanged(window, screen); }));
}

void UIStyler::onScreenChanged(QWidget *window, QScreen *screen) {
    if (!screen || window->property(DisableScreenChanged).toBool())
        return;
    // Rescaling may move the window back across the border; what it reports then is dropped.
    window->setProperty(DisableScreenChanged, true);
    applyScaleToVisibleWindow(window, scaleOf(screen));
    followScreen(window, screen);
    window->setProperty(DisableScreenChanged, false);
}

void UIStyler::followScreen(QWidget *window, QScreen *screen) {
    m_dpiConnections.replace(
        window, connect(screen, &QScreen::logicalDotsPerInchChanged, window,
                        [window](qreal dpi) { applyScaleToVisibleWindow(window, dpi / DesignDpi); }));
}

double widgetScale(const QWidget *widget) {
    return widget ? static_cast<float>(widget->logicalDpiX()) / 96.0F : 1.0;
}
