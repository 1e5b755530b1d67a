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
    /// What the store holds in this process: every item, and the size presets behind them.
    static QVector<QVariant> stored() {
        QVector<QVariant> values;
        for (int id = 0; id < P::ItemCount; ++id) {
            if (preferences()->Type(id) == Preferences::String)
                values.append(preferences()->GetString(id, {}));
            else
                values.append(preferences()->GetInt(id, preferences()->GetBool(id, false)));
        }
        QList<QSize> presets;
        preferences()->GetSizePresets(presets);
        for (const QSize &preset : qAsConst(presets))
            values.append(preset);
        return values;
    }
    /// Name of the message's icon.
    static QString iconOf(const QWidget *message) {
        const auto *icon = message->findChild<QWidget *>("icon_"_qs);
        return icon ? icon->property("icon").toString() : QString();
    }
    /// Answers the next message by that button, or by its frame if that is "close". `icon` receives the name
    /// of its icon.
    static void answerMessage(ModalAnswers &answers, const QString &button, QString &icon) {
        answers.add([button, &icon](QWidget *message) {
            icon = iconOf(message);
            QCOMPARE(message->windowTitle(), "Tindra"_qs);
            if (button == "close"_qs)
                message->close();
            else
                ModalAnswers::press(message, button);
        });
    }

    std::unique_ptr<PreferencesDialog> m_dialog;
};
