#pragma once

#include <QObject>
#include <QPointer>

class PreferencesDialog;
class QWidget;

/// Opens the preferences, one dialog at a time, stores them when the user accepts, and tells the capture
/// process of both ends.
class PreferencesFlow : public QObject {
    Q_OBJECT
public:
    /// The window is borrowed and outlives this object; it is the dialog's parent.
    explicit PreferencesFlow(QWidget *window);

    /// Shows the dialog on that page; an open one comes to the front as it is. A modal one has ended when
    /// this returns.
    void open(int page, bool modal);

private:
    void show() const;
    void takeToFront() const;
    static void onFinished(const PreferencesDialog &dialog, int result, bool modal);

    QWidget *m_window;
    QPointer<PreferencesDialog> m_dialog;
};
