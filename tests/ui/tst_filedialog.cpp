#include "support/modalanswers.h"
#include "ui/builtinstyle.h"
#include "ui/filedialog.h"
#include "ui/fileicons.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>

class Tst_FileDialog : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { installBuiltInStyle(qApp); }
    void picturesOfPlacesAreOurs_data();
    void picturesOfPlacesAreOurs();
    void picturesOfKindsAreOurs_data();
    void picturesOfKindsAreOurs();
    void viewsShowThem();
    void picturesGrowWithTheText();
    void namesOfPlacesFitTheSidebar();
    void chosenFolderIsTold();
    void cancelledChoiceIsEmpty();
    void missingFolderBeginsNearby_data();
    void missingFolderBeginsNearby();

private:
    QTemporaryDir m_folder;
};

namespace {

QImage picture(const QIcon &icon) {
    return icon.pixmap(32).toImage();
}

QImage ours(const QString &name) {
    return picture(QIcon(QStringLiteral(":/res/common/files/%1.svg").arg(name)));
}

int scaled(int size) {
    return size * qRound(QGuiApplication::primaryScreen()->logicalDotsPerInchX()) / 96;
}

QAbstractItemView *view(const QFileDialog &dialog, const char *name) {
    return dialog.findChild<QAbstractItemView *>(QLatin1String(name));
}

} // namespace

void Tst_FileDialog::picturesOfPlacesAreOurs_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("root") << QStringLiteral("/") << QStringLiteral("drive");
    QTest::newRow("home") << QDir::homePath() << QStringLiteral("home");
    QTest::newRow("folder") << QStringLiteral("/usr") << QStringLiteral("folder");
    QTest::newRow("file") << QCoreApplication::applicationFilePath() << QStringLiteral("file");
}

void Tst_FileDialog::picturesOfPlacesAreOurs() {
    QFETCH(QString, path);
    QFETCH(QString, name);
    const FileDialog dialog;
    QVERIFY(!ours(name).isNull());
    QCOMPARE(picture(dialog.iconProvider()->icon(QFileInfo(path))), ours(name));
}

void Tst_FileDialog::picturesOfKindsAreOurs_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("computer") << int(QFileIconProvider::Computer) << QStringLiteral("computer");
    QTest::newRow("network") << int(QFileIconProvider::Network) << QStringLiteral("computer");
    QTest::newRow("drive") << int(QFileIconProvider::Drive) << QStringLiteral("drive");
    QTest::newRow("folder") << int(QFileIconProvider::Folder) << QStringLiteral("folder");
    QTest::newRow("desktop") << int(QFileIconProvider::Desktop) << QStringLiteral("folder");
    QTest::newRow("trash") << int(QFileIconProvider::Trashcan) << QStringLiteral("folder");
    QTest::newRow("file") << int(QFileIconProvider::File) << QStringLiteral("file");
}

void Tst_FileDialog::picturesOfKindsAreOurs() {
    QFETCH(int, kind);
    QFETCH(QString, name);
    const FileDialog dialog;
    QCOMPARE(picture(dialog.iconProvider()->icon(QFileIconProvider::IconType(kind))), ours(name));
}

void Tst_FileDialog::viewsShowThem() {
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("inner")));
    FileDialog dialog;
    dialog.setDirectory(folder.path());
    dialog.show();
    QAbstractItemView *list = view(dialog, "listView");
    QTRY_COMPARE(list->model()->rowCount(list->rootIndex()), 1);
    const auto shown = [](const QModelIndex &index) {
        return picture(index.data(Qt::DecorationRole).value<QIcon>());
    };
    QTRY_COMPARE(shown(list->model()->index(0, 0, list->rootIndex())), ours(QStringLiteral("folder")));
    const QAbstractItemModel *places = view(dialog, "sidebar")->model();
    QCOMPARE(places->rowCount(), 2);
    QCOMPARE(shown(places->index(0, 0)), ours(QStringLiteral("computer")));
    QTRY_COMPARE(shown(places->index(1, 0)), ours(QStringLiteral("home")));
    const auto *path = dialog.findChild<QComboBox *>(QStringLiteral("lookInCombo"));
    QTRY_COMPARE(picture(path->itemIcon(path->currentIndex())), ours(QStringLiteral("folder")));
}

void Tst_FileDialog::picturesGrowWithTheText() {
    QWidget window;
    window.show();
    QTest::qWait(10);
    FileDialog dialog(&window);
    dialog.show();
    QTest::qWait(10);
    for (const char *name : {"listView", "treeView", "sidebar"}) {
        const QAbstractItemView *shown = view(dialog, name);
        shown->ensurePolished();
        QVERIFY2(shown->style()->pixelMetric(QStyle::PM_ListViewIconSize, nullptr, shown) == scaled(16) &&
                     shown->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, shown) == scaled(16),
                 name);
    }
    QCOMPARE(dialog.findChild<QComboBox *>(QStringLiteral("lookInCombo"))->iconSize(),
             QSize(scaled(16), scaled(16)));
}

void Tst_FileDialog::namesOfPlacesFitTheSidebar() {
    FileDialog dialog;
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const QAbstractItemView *sidebar = view(dialog, "sidebar");
    QVERIFY(sidebar->minimumWidth() >= scaled(110));
    QVERIFY2(
        sidebar->sizeHintForColumn(0) <= sidebar->viewport()->width(),
        qPrintable(
            QStringLiteral("%1 of %2").arg(sidebar->sizeHintForColumn(0)).arg(sidebar->viewport()->width())));
}

void Tst_FileDialog::chosenFolderIsTold() {
    const QTemporaryDir folder;
    ModalAnswers answers;
    answers.add([&](QWidget *widget) {
        auto *dialog = qobject_cast<FileDialog *>(widget);
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("title"));
        QCOMPARE(dialog->directory().absolutePath(), folder.path());
        QVERIFY(dialog->testOption(QFileDialog::ShowDirsOnly));
        static_cast<QDialog *>(dialog)->accept();
    });
    QCOMPARE(FileDialog::askFolder(nullptr, QStringLiteral("title"), folder.path()), folder.path());
    QVERIFY(answers.isDone());
}

void Tst_FileDialog::cancelledChoiceIsEmpty() {
    ModalAnswers answers;
    answers.addClose();
    QCOMPARE(FileDialog::askFolder(nullptr, QString(), QDir::homePath()), QString());
    QVERIFY(answers.isDone());
}

void Tst_FileDialog::missingFolderBeginsNearby_data() {
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("shown");
    const QString here = m_folder.path();
    QTest::newRow("there") << here << here;
    QTest::newRow("missing in one that is there") << here + QStringLiteral("/missing") << here;
    QTest::newRow("two levels missing") << here + QStringLiteral("/missing/too") << here;
    QTest::newRow("a file's") << QCoreApplication::applicationFilePath()
                              << QCoreApplication::applicationDirPath();
    QTest::newRow("root") << QStringLiteral("/") << QStringLiteral("/");
    QTest::newRow("all of it missing") << QStringLiteral("/missing/folder") << QDir::homePath();
    QTest::newRow("without the way to it") << QStringLiteral("inner") << QDir::homePath();
    QTest::newRow("none") << QString() << QDir::homePath();
}

void Tst_FileDialog::missingFolderBeginsNearby() {
    QFETCH(QString, folder);
    // Whoever starts the program is anywhere.
    const QTemporaryDir elsewhere;
    QVERIFY(QDir(elsewhere.path()).mkdir(QStringLiteral("inner")));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(elsewhere.path()));
    QString begun;
    ModalAnswers answers;
    answers.add([&](QWidget *widget) {
        begun = qobject_cast<FileDialog *>(widget)->directory().absolutePath();
        widget->close();
    });
    FileDialog::askFolder(nullptr, QString(), folder);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(answers.isDone());
    QTEST(begun, "shown");
}

QTEST_MAIN(Tst_FileDialog)
#include "tst_filedialog.moc"
