#pragma once

#include "platform/printer.h"

#include <QHash>
#include <QImage>

/// A printer that a test describes.
struct FakePrinter {
    struct Margins {
        int left, top, right, bottom; ///< upright, tenths of a millimetre
    };

    PrinterMode mode;
    QVector<PrinterPaper> papers;
    PrinterChoices choices;
    int resolutionX = 300; ///< per inch
    int resolutionY = 300;
    Margins margins{40, 50, 60, 70};
    bool isThere = true;
    bool hasMetrics = true;
    bool takesJobs = true;

    /// A4, Letter and A5, colour, both sides, three qualities.
    static FakePrinter office();
};

/// Printers that print nothing and remember what they were told.
class FakePrinters : public Printers {
public:
    struct Drawing {
        QImage image;
        QRectF target;
        QRectF source;
    };
    struct Page {
        QVector<Drawing> drawings;
        QVector<QRectF> frames;
        bool isEnded = false;
    };
    struct Job {
        QString printer;
        QString title;
        PrinterMode mode;
        QVector<Page> pages;
        bool isEnded = false;
    };

    /// Adds a printer, the first of which is the default one.
    void add(const QString &name, const FakePrinter &printer = FakePrinter::office());
    FakePrinter &printer(const QString &name) { return *m_printers[name]; }

    QStringList order; ///< the names, as the system lists them
    QString chosen;    ///< the default printer
    QStringList opened;
    LateAnswer lateList = LateAnswer::None;  ///< other than None: `names` gives nothing
    QHash<QString, LateAnswer> latePrinters; ///< other than None: `open` gives nothing
    QVector<PrinterMode> measured;           ///< the modes whose page was asked for
    QVector<std::shared_ptr<Job>> jobs;

    QStringList names() override { return lateList == LateAnswer::None ? order : QStringList(); }
    LateAnswer lateNames() const override { return lateList; }
    QStringList takeLateNames() override;
    QString defaultName() override { return lateList == LateAnswer::None ? chosen : QString(); }
    std::unique_ptr<Printer> open(const QString &name) override;
    LateAnswer latePrinter(const QString &name) const override { return latePrinters.value(name); }
    std::unique_ptr<Printer> takeLatePrinter(const QString &name) override;

private:
    std::unique_ptr<Printer> find(const QString &name);

    QHash<QString, std::shared_ptr<FakePrinter>> m_printers;
};
