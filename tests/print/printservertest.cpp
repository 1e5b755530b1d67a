#include "print/printservertest.h"

#include <QDir>
#include <QFile>

namespace {

constexpr int Patience = 15000; // milliseconds

template <typename State> void arrives(State state) {
    (void)QTest::qWaitFor([&] { return state() != LateAnswer::Awaited; }, Patience);
}

} // namespace

void PrintServerTest::initTestCase() {
    qputenv("CUPS_SERVER", "/nowhere");
}

void PrintServerTest::init() {
    Platform::setInstance(nullptr);
    m_server = std::make_unique<PrintServer>();
    QVERIFY2(m_server->isRunning(), m_server->log().constData());
}

void PrintServerTest::cleanup() {
    m_server.reset();
    removePresets();
}

QString PrintServerTest::names() {
    QStringList names = NativePrinter::printerNames();
    if (NativePrinter::latePrinterNames() != LateAnswer::None) {
        arrives([] { return NativePrinter::latePrinterNames(); });
        names = NativePrinter::takeLatePrinterNames();
    }
    return names.join(QLatin1Char(' '));
}

std::unique_ptr<NativePrinter> PrintServerTest::printer(const QString &name) {
    auto printer = std::make_unique<NativePrinter>(name);
    arrives([&] { return printer->lateAnswer(); });
    printer->takeLateAnswer();
    printer->paperList();
    return printer;
}

std::unique_ptr<Printer> PrintServerTest::opened(const QString &name) {
    auto queue = printers().open(name);
    arrives([&] { return printers().latePrinter(name); });
    return queue ? std::move(queue) : printers().takeLatePrinter(name);
}

void PrintServerTest::writePresets(const QByteArray &text) {
    QVERIFY(QDir::home().mkpath(".cups"_qs));
    QFile file(QDir::home().filePath(".cups/lpoptions"_qs));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

void PrintServerTest::removePresets() {
    QFile::remove(QDir::home().filePath(".cups/lpoptions"_qs));
}

PrintServer::Print PrintServerTest::printed(const QVector<PrintPage> &pages, NativePrinter &printer) {
    [&] { QVERIFY(printer.print(pages)); }();
    const PrintServer::Print print = m_server->next();
    if (print.pdf.isEmpty())
        qWarning("%s", m_server->log().constData());
    return print;
}

PrintServer::Print PrintServerTest::printedEmpty(Printer &queue, const PrinterMode &mode) {
    const auto job = queue.startJob(mode, "Tindra"_qs);
    if (!job)
        return {};
    job->startPage();
    job->endPage();
    job->end();
    return m_server->next();
}
