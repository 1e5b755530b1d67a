#pragma once

#include "output/filenameutil.h"
#include "platform/configuration.h"
#include "preferences/dialog/preferencesdialog.h"
#include "preferences/tindrapreferences.h"
#include "support/fakeplatform.h"
#include "support/literals.h"
#include "support/modalanswers.h"

#include <QtTest>

#include <memory>

/// The preferences dialog over the settings of a fresh profile.
class DialogTest : public QObject {
    Q_OBJECT
protected:
    using P = TindraPreferences;

    static P *preferences() { return P::instance(); }
    static QString location() { return "SOFTWARE\\Norvane\\Tindra\\Config"_qs; }

    /// What a program finds at its first start.
    static void freshProfile() {
        FakePlatform::install();
        P::resetForTesting();
        ConfigurationLocation("SOFTWARE\\Norvane\\Tindra"_qs).remove("Config"_qs);
        preferences()->Init();
        FileNameUtil::initialize();
    }
    /// A dialog as the main window opens it.
    void openDialog(int page = 0) {
        m_dialog = std::make_unique<PreferencesDialog>();
        m_dialog->loadAll();
        m_dialog->selectPage(page);
        m_dialog->show();
    }
    template <typename Widget> Widget *child(const char *name) const {
        auto *widget = m_dialog->findChild<Widget *>(QLatin1String(name));
        if (!widget)
            qFatal("the dialog has no \"%s\"", name);
        return widget;
    }
    QWidget *widget(const char *name) const { return child<QWidget>(name); }
    void click(const char *name) const { child<QAbstractButton>(name)->click(); }

    std::unique_ptr<PreferencesDialog> m_dialog;
};
