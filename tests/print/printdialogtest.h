#pragma once

#include "preferences/tindrapreferences.h"
#include "print/printpreviewdialog.h"
#include "support/fakeplatform.h"
#include "support/literals.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QSpinBox>
#include <QtTest>

/// The print dialog under the program's style sheet, with one printer, Office, which was used last.
class PrintDialogTest : public QObject {
    Q_OBJECT
protected:
    void initTestCase();
    void init();
    void cleanup();

    using P = TindraPreferences;
    static P *preferences() { return P::instance(); }
    FakePrinter &office() { return m_printers->printer("Office"_qs); }
    void removePrinters();

    /// The dialog with images of these sizes, red, green, blue.
    PrintPreviewDialog *open(const QVector<QSize> &images = {{96, 48}});
    template <typename Widget = QWidget> Widget *child(const char *name) const {
        auto *found = m_dialog->findChild<Widget *>(QLatin1String(name));
        return found ? found : (qFatal("no child %s", name), nullptr);
    }
    QSpinBox *number(const char *name) const { return child<QSpinBox>(name); }
    QComboBox *list(const char *name) const { return child<QComboBox>(name); }
    QAbstractButton *button(const char *name) const { return child<QAbstractButton>(name); }
    QLabel *labelOf(const char *field) const;
    QString pages() const { return child<QLabel>("pages_")->text(); }
    QImage preview() const { return child<QLabel>("previewLabel_")->pixmap(Qt::ReturnByValue).toImage(); }
    /// Where that colour is in the preview; null when it is nowhere.
    QRect shown(const QColor &color) const;
    static void settle() { QCoreApplication::processEvents(); }
    FakePrinters::Job &job() { return *m_printers->jobs.last(); }

    FakePrinters *m_printers = nullptr;
    std::unique_ptr<PrintPreviewDialog> m_dialog;
};
