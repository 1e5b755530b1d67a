#pragma once

#include "platform/platform.h"
#include "print/nativeprinter.h"
#include "print/printedsheet.h"
#include "print/printserver.h"
#include "support/literals.h"

#include <QtTest>

/// Real printing over the program's real printers: each test has a fresh print server.
class PrintServerTest : public QObject {
    Q_OBJECT
protected:
    void initTestCase();
    void init();
    void cleanup();

    // Milliseconds: well above the limits that the program sets itself, which add up to less than two
    // seconds, and well below the twenty seconds of the network's.
    static constexpr int Frozen = 8000;

    static Printers &printers() { return Platform::instance().printers(); }
    // As long as a slow machine takes: the program itself does not wait that long.
    static QString names();
    static std::unique_ptr<NativePrinter> printer(const QString &name = "Office"_qs);
    static std::unique_ptr<Printer> opened(const QString &name);
    static PrintPage pageOf(const QPixmap &pixmap, const QRectF &target, bool border = false) {
        return {pixmap, QRectF(pixmap.rect()), target, border};
    }
    /// What the user has preset, in the form of the printing system's file; gone with the test.
    static void writePresets(const QByteArray &text);
    static void removePresets();
    PrintServer::Print printed(const QVector<PrintPage> &pages, NativePrinter &printer);
    /// What comes of an empty page in that mode.
    PrintServer::Print printedEmpty(Printer &queue, const PrinterMode &mode);

    std::unique_ptr<PrintServer> m_server;
};
