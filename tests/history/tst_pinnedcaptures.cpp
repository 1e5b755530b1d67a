#include "canvas/editor.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "support/filesizelimit.h"
#include "support/imagecompare.h"
#include "support/literals.h"
#include "support/session.h"
#include "support/tracedby.h"

#include <QGraphicsRectItem>
#include <QTemporaryDir>
#include <QtTest>

/// The files in which pinned captures outlive the process.
class Tst_PinnedCaptures : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void pinnedBlockIsWritten();
    void folderIsWrittenAnew();
    void pictureComesWithoutDrawings();
    void unreadableRowIsSkipped();
    void unfinishedFilesGoAndDoNotComeBack();
    void fullDiskKeepsThePinnedCapture();
    void fullDiskMovesNoSavedFile();
    void captureThatCannotBePinnedIsNamed();
    void filesAreForTheUserAlone();
    void linkInTheFolderIsReplacedNotFollowed_data();
    void linkInTheFolderIsReplacedNotFollowed();
    void copiesAreNumberedInTheOrderOfTheFolder();
    void takenNumberIsLeftOut();
    void linksAreNotRestored();
    void pinsAreSetWhereTheRowsStand_data();
    void pinsAreSetWhereTheRowsStand();
    void pinsAreTakenFromTheBlock();

private:
    void add(const QString &name, int width) {
        QVERIFY(m_panel->addImage(Session::captureFile(name, {width, 4}, QColor(10, 20, width))));
    }
    HistoryListWidget *list() const { return m_panel->findChild<HistoryListWidget *>(); }
    Editor *editor(int row) const { return list()->rowItem(row)->editor(); }
    bool isPinned(int row) const { return list()->rowWidget(list()->rowItem(row))->isPinned(); }
    QString pinFile(int number) const { return workFolder() + "/pin/%1.png"_qs.arg(number); }
    QVector<int> widthsOf(const QStringList &paths) const {
        QVector<int> widths;
        for (const QString &path : paths)
            widths.append(QImage(path).width());
        return widths;
    }
    QVector<int> rowWidths() const {
        QVector<int> widths;
        for (int row = 0; row < list()->count(); ++row)
            widths.append(editor(row)->imageRect().width());
        return widths;
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<HistoryWidget> m_panel;
};

void Tst_PinnedCaptures::init() {
    m_session = std::make_unique<Session>();
    m_panel = std::make_unique<HistoryWidget>();
}

void Tst_PinnedCaptures::cleanup() {
    m_panel.reset();
    m_session.reset();
}

void Tst_PinnedCaptures::pinnedBlockIsWritten() {
    for (int width : {13, 12, 11})
        add("shot%1"_qs.arg(width), width);
    m_panel->setPinnedImages(true, 2);
    m_panel->SavePinnedHistories();
    QCOMPARE(m_panel->pinnedFilePaths(), (QStringList{pinFile(0), pinFile(1)}));
    QCOMPARE(widthsOf(m_panel->pinnedFilePaths()), (QVector<int>{11, 12}));
}

void Tst_PinnedCaptures::folderIsWrittenAnew() {
    add("a"_qs, 11);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    QVERIFY(QFile::copy(pinFile(0), pinFile(7)));
    m_panel->setPinnedImages(false);
    m_panel->SavePinnedHistories();
    QCOMPARE(m_panel->pinnedFilePaths(), QStringList());
    QVERIFY(QFileInfo(workFolder() + "/pin"_qs).isDir());
}

void Tst_PinnedCaptures::pictureComesWithoutDrawings() {
    add("a"_qs, 60);
    const QImage original(editor(0)->imageKey());
    editor(0)->addItem(new QGraphicsRectItem(1, 1, 20, 2));
    QVERIFY(editor(0)->flatten(true, false).toImage() != original);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    COMPARE_IMAGES(QImage(pinFile(0)), original, "pinned");
    QVERIFY(!editor(0)->isSaved());
}

void Tst_PinnedCaptures::unreadableRowIsSkipped() {
    add("a"_qs, 11);
    add("b"_qs, 12);
    m_panel->setPinnedImages(true);
    QVERIFY(QFile::remove(editor(0)->imageKey()));
    ImageProvider::resetForTesting();
    const QByteArray log = tracedBy([this] { m_panel->SavePinnedHistories(); });
    QCOMPARE(m_panel->pinnedFilePaths(), QStringList{pinFile(1)});
    QCOMPARE(widthsOf({pinFile(1)}), QVector<int>{11});
    const auto line = [](const QString &text) {
        return QString(" SavePinnedHistories : "_qs + text + "\r\n"_qs).toUtf8();
    };
    for (int number : {0, 1})
        QCOMPARE(log.count(line(pinFile(number))), 1);
    QCOMPARE(log.count("Failed to save"), 1);
    QVERIFY(log.contains(line("Failed to save [%1]"_qs.arg(pinFile(0)))));
}

// The editor was killed while it wrote a pin.
void Tst_PinnedCaptures::unfinishedFilesGoAndDoNotComeBack() {
    add("a"_qs, 11);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    const QString unfinished = pinFile(1) + ".aB3xyz"_qs;
    const QString foreign = workFolder() + "/pin/notes.png.txt"_qs;
    for (const QString &path : {unfinished, foreign})
        QVERIFY(QFile::copy(pinFile(0), path));
    QCOMPARE(m_panel->pinnedFilePaths(), QStringList{pinFile(0)});
    m_panel->removePinnedFiles();
    QVERIFY(!QFile::exists(pinFile(0)));
    QVERIFY(!QFile::exists(unfinished));
    QVERIFY(QFile::remove(foreign));
}

void Tst_PinnedCaptures::fullDiskKeepsThePinnedCapture() {
    add("old"_qs, 11);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    add("new"_qs, 12);
    m_panel->setPinnedImages(true);
    QVERIFY(QFile::setPermissions(editor(0)->imageKey(), QFile::Permissions(0x6644)));
    {
        const FileSizeLimit full(0);
        m_panel->SavePinnedHistories();
    }
    QCOMPARE(m_panel->pinnedFilePaths(), (QStringList{pinFile(0), pinFile(1)}));
    QCOMPARE(widthsOf(m_panel->pinnedFilePaths()), (QVector<int>{11, 12}));
    QCOMPARE(int(QFile::permissions(pinFile(0))) & 0x7077, 0x6000);
}

// What was saved is the user's; the picture as it was captured becomes the pin.
void Tst_PinnedCaptures::fullDiskMovesNoSavedFile() {
    add("a"_qs, 11);
    m_panel->setPinnedImages(true);
    const QString file = editor(0)->imageKey();
    QVERIFY(editor(0)->saveFlattened(file, true, -1));
    QVERIFY(!m_panel->imageFiles().contains(file));
    QStringList notKept;
    {
        const FileSizeLimit full(0);
        notKept = m_panel->SavePinnedHistories();
    }
    QCOMPARE(notKept, QStringList());
    QCOMPARE(m_panel->pinnedFilePaths(), QStringList{pinFile(0)});
    QCOMPARE(widthsOf({pinFile(0), file}), (QVector<int>{11, 11}));
}

// Its file is the only one then, and must not go with the end of the program.
void Tst_PinnedCaptures::captureThatCannotBePinnedIsNamed() {
    add("a"_qs, 11);
    add("b"_qs, 12);
    m_panel->setPinnedImages(true);
    const QString kept = editor(1)->imageKey();
    QVERIFY(QDir().mkpath(pinFile(1)));
    QCOMPARE(m_panel->SavePinnedHistories(), QStringList{kept});
    QCOMPARE(QImage(pinFile(0)).width(), editor(0)->imageRect().width());
    QVERIFY(!QImage(kept).isNull());
}

void Tst_PinnedCaptures::filesAreForTheUserAlone() {
    add("a"_qs, 11);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    const auto rightsOf = [](const QString &path) { return int(QFile::permissions(path)) & 0x7077; };
    QCOMPARE(rightsOf(pinFile(0)), 0x6000);
    QCOMPARE(rightsOf(workFolder() + "/pin"_qs), 0x7000);
    // A file that somebody else has laid there does not pass its rights on.
    QVERIFY(QFile::setPermissions(pinFile(0), QFile::Permissions(0x6666)));
    const QStringList copies = m_panel->restorePinnedImages();
    QCOMPARE(copies, QStringList{workFolder() + "/0.png"_qs});
    QCOMPARE(rightsOf(copies.first()), 0x6000);
}

void Tst_PinnedCaptures::linkInTheFolderIsReplacedNotFollowed_data() {
    QTest::addColumn<bool>("targetExists");
    QTest::newRow("to a file") << true;
    QTest::newRow("to nothing") << false;
}

void Tst_PinnedCaptures::linkInTheFolderIsReplacedNotFollowed() {
    QFETCH(bool, targetExists);
    const QTemporaryDir elsewhere;
    const QString target = elsewhere.filePath("mine.png"_qs);
    if (targetExists)
        QVERIFY(QFile(target).open(QIODevice::WriteOnly));
    QVERIFY(QDir().mkpath(workFolder() + "/pin"_qs));
    QVERIFY(QFile::link(target, pinFile(0)));
    add("a"_qs, 11);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    QCOMPARE(QFileInfo(target).size(), qint64(0));
    QCOMPARE(QFile::exists(target), targetExists);
    QVERIFY(!QFileInfo(pinFile(0)).isSymLink());
    QCOMPARE(widthsOf({pinFile(0)}), QVector<int>{11});
}

void Tst_PinnedCaptures::copiesAreNumberedInTheOrderOfTheFolder() {
    for (int width : {13, 12, 11})
        add("shot%1"_qs.arg(width), width);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    QVERIFY(QFile::remove(pinFile(1)));
    const QStringList copies = m_panel->restorePinnedImages();
    QCOMPARE(copies, (QStringList{workFolder() + "/0.png"_qs, workFolder() + "/1.png"_qs}));
    QCOMPARE(widthsOf(copies), (QVector<int>{11, 13}));
    QCOMPARE(m_panel->pinnedFilePaths().size(), 2);
}

void Tst_PinnedCaptures::takenNumberIsLeftOut() {
    for (int width : {12, 11})
        add("shot%1"_qs.arg(width), width);
    m_panel->setPinnedImages(true);
    m_panel->SavePinnedHistories();
    const QString taken = Session::captureFile("0"_qs, {99, 4});
    QCOMPARE(m_panel->restorePinnedImages(), QStringList{workFolder() + "/1.png"_qs});
    QCOMPARE(widthsOf({taken}), QVector<int>{99});
}

void Tst_PinnedCaptures::linksAreNotRestored() {
    const QTemporaryDir elsewhere;
    const QString outside = elsewhere.filePath("outside.png"_qs);
    QVERIFY(QFile::rename(Session::captureFile("x"_qs), outside));
    QVERIFY(QDir().mkpath(workFolder() + "/pin"_qs));
    QVERIFY(QFile::link(outside, pinFile(0)));
    QCOMPARE(m_panel->restorePinnedImages(), QStringList());
    QVERIFY(!QFile::exists(workFolder() + "/0.png"_qs));

    // Nor is a copy written through a link that waits in its place.
    QVERIFY(QFile::remove(pinFile(0)));
    QVERIFY(QFile::copy(outside, pinFile(0)));
    const QString trap = elsewhere.filePath("trap.png"_qs);
    QVERIFY(QFile::link(trap, workFolder() + "/0.png"_qs));
    m_panel->restorePinnedImages();
    QVERIFY(!QFile::exists(trap));
}

void Tst_PinnedCaptures::pinsAreSetWhereTheRowsStand_data() {
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("pinned");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("the first") << 2 << 2;
    QTest::newRow("all") << int(HistoryWidget::HistoryLimit) << 3;
}

void Tst_PinnedCaptures::pinsAreSetWhereTheRowsStand() {
    QFETCH(int, rows);
    for (int width : {13, 12, 11})
        add("shot%1"_qs.arg(width), width);
    m_panel->setPinnedImages(true, rows);
    QTEST(list()->pinnedCount(nullptr), "pinned");
    QCOMPARE(rowWidths(), (QVector<int>{11, 12, 13}));
}

void Tst_PinnedCaptures::pinsAreTakenFromTheBlock() {
    for (int width : {13, 12, 11})
        add("shot%1"_qs.arg(width), width);
    m_panel->setPinnedImages(true, 2);
    m_panel->setPinnedImages(false);
    QVERIFY(!isPinned(0));
    QVERIFY(!isPinned(1));
    QCOMPARE(rowWidths(), (QVector<int>{11, 12, 13}));
}

QTEST_MAIN(Tst_PinnedCaptures)
#include "tst_pinnedcaptures.moc"
