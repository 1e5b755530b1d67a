#include "canvas/editor.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "platform/namedlock.h"
#include "support/imagecompare.h"
#include "support/literals.h"
#include "support/session.h"

#include <QTemporaryDir>
#include <QtTest>

/// Saving while another editor has the work folder, which is decided once for a process.
class Tst_ForeignWorkFolder : public QObject {
    Q_OBJECT
private slots:
    void originalOfACaptureThatIsSavedOverDoesNotGoThere();
};

void Tst_ForeignWorkFolder::originalOfACaptureThatIsSavedOverDoesNotGoThere() {
    const Session session;
    platform::NamedLock otherEditor("Tindra"_qs, workFolder());
    QVERIFY(otherEditor.lock());
    QVERIFY(!ownsWorkFolder());
    const QTemporaryDir elsewhere;
    const QString file = elsewhere.filePath("shot.png"_qs);
    QImage untouched(40, 30, QImage::Format_RGB32);
    untouched.fill(Qt::red);
    QVERIFY(untouched.save(file));
    HistoryWidget panel;
    QVERIFY(panel.addImage(file));
    Editor *const editor = panel.findChild<HistoryListWidget *>()->rowItem(0)->editor();
    QVERIFY(QMetaObject::invokeMethod(editor, "onCrop", Q_ARG(QRect, QRect(10, 6, 20, 16))));
    QVERIFY(editor->saveFlattened(file, true, -1));
    QCOMPARE(QImage(file).size(), QSize(20, 16));

    // What the other one does at its exit.
    for (const QString &name : QDir(workFolder()).entryList({"*.png"_qs}, QDir::Files))
        QVERIFY(QFile::remove(workFolder() + "/"_qs + name));
    ImageProvider::instance()->pixmap(Session::captureFile("other"_qs)); // the one shown last is kept
    COMPARE_IMAGES(editor->flatten(false, true).toImage(), untouched, "kept");
}

QTEST_MAIN(Tst_ForeignWorkFolder)
#include "tst_foreignworkfolder.moc"
