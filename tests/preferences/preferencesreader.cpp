// Tells what a process that starts now finds in the settings file: one line for each setting, by its key, and
// one for each widget of the preferences dialog, by its name.
#include "output/filenameutil.h"
#include "preferences/dialog/preferencesdialog.h"
#include "preferences/tindrapreferences.h"
#include "preferences/widgetstate.h"

#include <QApplication>

#include <cstdio>

namespace {

void tell(const QString &name, const QString &value) {
    std::printf("%s\t%s\n", qUtf8Printable(name), qUtf8Printable(value));
}

void tellSettings(const TindraPreferences &preferences) {
    for (int id = 0; id < TindraPreferences::ItemCount; ++id) {
        if (preferences.Type(id) == Preferences::String)
            tell(preferences.Name(id), preferences.GetString(id, {}));
        else if (preferences.Type(id) == Preferences::Bool)
            tell(preferences.Name(id),
                 preferences.GetBool(id, false) ? QStringLiteral("true") : QStringLiteral("false"));
        else if (preferences.Type(id) == Preferences::Int)
            tell(preferences.Name(id), QString::number(preferences.GetInt(id, 0)));
    }
    QList<QSize> presets;
    preferences.GetSizePresets(presets);
    QStringList sizes;
    for (const QSize &size : presets)
        sizes.append(QStringLiteral("%1x%2").arg(size.width()).arg(size.height()));
    tell(QStringLiteral("SizePresets"), sizes.join(QLatin1Char(',')));
}

void tellWidgets() {
    PreferencesDialog dialog;
    dialog.loadAll();
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        const QString state = widgetState(widget);
        if (widget->objectName().endsWith(QLatin1Char('_')) && !state.isNull())
            tell(widget->objectName(), state);
    }
}

} // namespace

int main(int argc, char **argv) {
    const QApplication application(argc, argv);
    TindraPreferences::instance()->Init();
    FileNameUtil::initialize();
    tellSettings(*TindraPreferences::instance());
    tellWidgets();
    return 0;
}
