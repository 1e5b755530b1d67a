#include "app/unopenedfiles.h"
#include "ui/messagedialog.h"

#include <QLabel>
#include <QtTest>

namespace {

/// All that the message says.
QStringList textsOf(const MessageDialog &dialog) {
    QStringList texts;
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        if (!label->text().isEmpty())
            texts.append(label->text());
    }
    return texts;
}

QStringList numbered(int count) {
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(QStringLiteral("file %1.txt").arg(i));
    return names;
}

} // namespace

class Tst_UnopenedFiles : public QObject {
    Q_OBJECT
private slots:
    void theMessageNamesTheFiles_data();
    void theMessageNamesTheFiles();
    void aNameIsNeverBlank_data();
    void aNameIsNeverBlank();
    void onlyTheLoneOptionIsACall();
};

void Tst_UnopenedFiles::theMessageNamesTheFiles_data() {
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("lines");
    const QString hard = QStringLiteral("<b>50 %0</b> & \"it's\".txt");
    QTest::newRow("one") << QStringList{hard} << QStringList{hard};
    QTest::newRow("as many as fit") << numbered(10) << numbered(10);
    QTest::newRow("one too many") << numbered(11) << numbered(10) + QStringList{QStringLiteral("and 1 more")};
    QTest::newRow("many") << numbered(500) << numbered(10) + QStringList{QStringLiteral("and 490 more")};
}

void Tst_UnopenedFiles::theMessageNamesTheFiles() {
    QFETCH(QStringList, names);
    QFETCH(QStringList, lines);
    const std::unique_ptr<MessageDialog> message = UnopenedFiles::message(names);
    QCOMPARE(message->windowTitle(), QStringLiteral("Tindra"));
    const QStringList texts = textsOf(*message);
    QVERIFY2(texts.contains(lines.join(QLatin1Char('\n'))), qPrintable(texts.join(QLatin1Char('|'))));
}

void Tst_UnopenedFiles::aNameIsNeverBlank_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("in a folder") << QStringLiteral("/a b/c d.txt") << QStringLiteral("c d.txt");
    QTest::newRow("alone") << QStringLiteral("c.txt") << QStringLiteral("c.txt");
    QTest::newRow("a folder") << QStringLiteral("/a/folder/") << QStringLiteral("folder");
    QTest::newRow("a folder with more strokes") << QStringLiteral("folder//") << QStringLiteral("folder");
    QTest::newRow("the topmost folder") << QStringLiteral("/") << QStringLiteral("/");
    QTest::newRow("standard input") << QStringLiteral("-") << QStringLiteral("-");
}

void Tst_UnopenedFiles::aNameIsNeverBlank() {
    QFETCH(QString, path);
    QFETCH(QString, name);
    QCOMPARE(UnopenedFiles::nameOf(path), name);
}

void Tst_UnopenedFiles::onlyTheLoneOptionIsACall() {
    char program[] = "tindra-editor";
    char option[] = "--tell-unopened";
    char word[] = "/show";
    char *alone[] = {program, option, nullptr};
    char *longer[] = {program, option, word, nullptr};
    char *another[] = {program, word, nullptr};
    QVERIFY(UnopenedFiles::isCall(2, alone));
    QVERIFY(!UnopenedFiles::isCall(3, longer));
    QVERIFY(!UnopenedFiles::isCall(2, another));
    QVERIFY(!UnopenedFiles::isCall(1, alone));
}

QTEST_MAIN(Tst_UnopenedFiles)
#include "tst_unopenedfiles.moc"
