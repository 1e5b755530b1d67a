#include "platform/linux/cupspresets.h"

#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <future>

namespace {

const QByteArray Preset("Dest Office sides=two-sided-long-edge\n");

QByteArray presetSides() {
    return CupsPresets::read(QStringLiteral("Office")).value("sides");
}

} // namespace

/// The user's file of presets, as it is found in his home. What the options mean is tested with real prints.
class Tst_CupsPresets : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void fileIsRead();
    void linkedFileIsRead();
    void pipeHoldsNothingUp();
    void whatIsNoFileOfPresetsIsLeftOut_data();
    void whatIsNoFileOfPresetsIsLeftOut();

private:
    static QString path() { return QDir::homePath() + QStringLiteral("/.cups/lpoptions"); }
    static void write(const QString &path, const QByteArray &content);
};

void Tst_CupsPresets::init() {
    QVERIFY(QDir::home().mkpath(QStringLiteral(".cups")));
}

void Tst_CupsPresets::cleanup() {
    QVERIFY(QDir(QFileInfo(path()).path()).removeRecursively());
}

void Tst_CupsPresets::write(const QString &path, const QByteArray &content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void Tst_CupsPresets::fileIsRead() {
    write(path(), Preset);
    QCOMPARE(presetSides(), QByteArray("two-sided-long-edge"));
}

void Tst_CupsPresets::linkedFileIsRead() {
    const QString target = QFileInfo(path()).path() + QStringLiteral("/presets");
    write(target, Preset);
    QVERIFY(QFile::link(target, path()));
    QCOMPARE(presetSides(), QByteArray("two-sided-long-edge"));
}

void Tst_CupsPresets::pipeHoldsNothingUp() {
    const QByteArray pipe = QFile::encodeName(path());
    QCOMPARE(::mkfifo(pipe.constData(), 0600), 0);
    std::promise<void> done;
    // Lets go of who is caught in the pipe, and tells whether somebody was.
    auto rescue = std::async(std::launch::async, [&pipe, isDone = done.get_future()] {
        if (isDone.wait_for(std::chrono::seconds(5)) == std::future_status::ready)
            return false;
        ::close(::open(pipe.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
        return true;
    });
    const QByteArray sides = presetSides();
    done.set_value();
    QVERIFY(!rescue.get());
    QCOMPARE(sides, QByteArray());
}

void Tst_CupsPresets::whatIsNoFileOfPresetsIsLeftOut_data() {
    QTest::addColumn<bool>("isFile");
    QTest::newRow("folder") << false;
    QTest::newRow("of megabytes") << true;
}

void Tst_CupsPresets::whatIsNoFileOfPresetsIsLeftOut() {
    QFETCH(bool, isFile);
    if (isFile)
        write(path(), Preset + QByteArray(3 * 1024 * 1024, '\n'));
    else
        QVERIFY(QDir::home().mkpath(path()));
    QCOMPARE(presetSides(), QByteArray());
}

QTEST_GUILESS_MAIN(Tst_CupsPresets)
#include "tst_cupspresets.moc"
