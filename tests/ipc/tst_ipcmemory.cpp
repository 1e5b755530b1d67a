#include "ipc/ipcmemory.h"

#include <QtTest>

class Tst_IpcMemory : public QObject {
    Q_OBJECT
private slots:
    void init();

    void passesATextOn_data();
    void passesATextOn();
    void emptyTextIsNotWritten();
    void nothingWrittenIsNothingRead();
    void laterTextReplacesTheEarlier();
    void otherSideMayWriteIntoTheSameBlock();
    void blockIsOneMegabyte();
    void textBeyondTheBlockIsTorn();
    void blockOfAnotherSizeIsFilledAsFarAsItGoes();
    void blockGoesWithItsLastUser();

private:
    QString m_key;
};

void Tst_IpcMemory::init() {
    static int number = 0;
    m_key = QStringLiteral("tst_ipcmemory-%1-%2").arg(QCoreApplication::applicationPid()).arg(++number);
}

void Tst_IpcMemory::passesATextOn_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("letters") << QStringLiteral("/show");
    QTest::newRow("Hangul") << QString::fromUtf8("그림 1.png");
    QTest::newRow("long") << QString(500000, QLatin1Char('x'));
}

void Tst_IpcMemory::passesATextOn() {
    QFETCH(QString, text);
    IpcMemory writer;
    writer.SetKey(m_key);
    QVERIFY(writer.Write(text));
    IpcMemory reader;
    reader.SetKey(m_key);
    QString read;
    QVERIFY(reader.Read(read));
    QVERIFY(read == text);
}

void Tst_IpcMemory::emptyTextIsNotWritten() {
    IpcMemory memory;
    memory.SetKey(m_key);
    QVERIFY(!memory.Write(QString()));
    QVERIFY(!memory.Write(QStringLiteral("")));
    QString read;
    QVERIFY(!memory.Read(read));
}

void Tst_IpcMemory::nothingWrittenIsNothingRead() {
    IpcMemory memory;
    memory.SetKey(m_key);
    QString read;
    QVERIFY(!memory.Read(read));
    // A block that nobody has written to holds an empty text.
    QSharedMemory blank(m_key);
    QVERIFY(blank.create(64));
    QVERIFY(!memory.Read(read));
}

void Tst_IpcMemory::laterTextReplacesTheEarlier() {
    IpcMemory writer;
    writer.SetKey(m_key);
    QVERIFY(writer.Write(QStringLiteral("a long text comes first")));
    QVERIFY(writer.Write(QStringLiteral("short")));
    IpcMemory reader;
    reader.SetKey(m_key);
    QString read;
    QVERIFY(reader.Read(read));
    QCOMPARE(read, QStringLiteral("short"));
}

void Tst_IpcMemory::otherSideMayWriteIntoTheSameBlock() {
    IpcMemory first;
    first.SetKey(m_key);
    QVERIFY(first.Write(QStringLiteral("first")));
    IpcMemory second;
    second.SetKey(m_key);
    QVERIFY(second.Write(QStringLiteral("second")));
    IpcMemory reader;
    reader.SetKey(m_key);
    QString read;
    QVERIFY(reader.Read(read));
    QCOMPARE(read, QStringLiteral("second"));
    QVERIFY(first.Write(QStringLiteral("third")));
    QVERIFY(reader.Read(read));
    QCOMPARE(read, QStringLiteral("third"));
}

void Tst_IpcMemory::blockIsOneMegabyte() {
    IpcMemory writer;
    writer.SetKey(m_key);
    QVERIFY(writer.Write(QStringLiteral("x")));
    QSharedMemory block(m_key);
    QVERIFY(block.attach(QSharedMemory::ReadOnly));
    QCOMPARE(block.size(), 1048576);
}

void Tst_IpcMemory::textBeyondTheBlockIsTorn() {
    IpcMemory memory;
    memory.SetKey(m_key);
    // 4 bytes of size and 2 a character: this is the last that fits.
    const QString fitting((1048576 - 4) / 2, QLatin1Char('x'));
    QString read;
    QVERIFY(memory.Write(fitting));
    QVERIFY(memory.Read(read));
    QVERIFY(read == fitting);
    QVERIFY(memory.Write(fitting + QLatin1Char('x')));
    QVERIFY(!memory.Read(read));
    QVERIFY(read.isEmpty());
}

void Tst_IpcMemory::blockOfAnotherSizeIsFilledAsFarAsItGoes() {
    QSharedMemory small(m_key);
    QVERIFY(small.create(14));
    IpcMemory memory;
    memory.SetKey(m_key);
    QString read;
    QVERIFY(memory.Write(QStringLiteral("12345")));
    QVERIFY(memory.Read(read));
    QCOMPARE(read, QStringLiteral("12345"));
    QVERIFY(memory.Write(QStringLiteral("123456")));
    QVERIFY(!memory.Read(read));
}

void Tst_IpcMemory::blockGoesWithItsLastUser() {
    {
        IpcMemory writer;
        writer.SetKey(m_key);
        QVERIFY(writer.Write(QStringLiteral("x")));
    }
    QSharedMemory block(m_key);
    QVERIFY(!block.attach());
}

QTEST_GUILESS_MAIN(Tst_IpcMemory)
#include "tst_ipcmemory.moc"
