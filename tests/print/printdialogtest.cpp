#include "print/printdialogtest.h"

#include "platform/configuration.h"
#include "ui/uistyler.h"

void PrintDialogTest::initTestCase() {
    QCoreApplication::setApplicationName("Tindra"_qs); // names the log
    UIStyler::install(qApp);
    UIStyler::setColorsIniPath(qApp, ":/style/editor_variables.ini"_qs);
    UIStyler::setStyleSheetPaths(qApp, {":/style/editor.qss"_qs});
}

void PrintDialogTest::init() {
    m_printers = &FakePlatform::install()->printerList;
    m_printers->add("Office"_qs);
    P::resetForTesting();
    ConfigurationLocation("SOFTWARE\\Norvane\\Tindra"_qs).remove("Config"_qs);
    preferences()->Init();
    preferences()->SetString(P::PrinterName, "Office"_qs);
}

void PrintDialogTest::cleanup() {
    m_dialog.reset();
}

void PrintDialogTest::removePrinters() {
    m_printers->order.clear();
    m_printers->chosen.clear();
}

PrintPreviewDialog *PrintDialogTest::open(const QVector<QSize> &images) {
    m_dialog = std::make_unique<PrintPreviewDialog>();
    const QColor colors[] = {Qt::red, Qt::green, Qt::blue};
    for (int i = 0; i < images.size(); ++i) {
        QPixmap pixmap(images[i]);
        pixmap.fill(colors[i % 3]);
        m_dialog->addImage(pixmap);
    }
    m_dialog->show();
    // The preview rests after the first resize; without a printer it stays empty.
    const bool hasPrinter = list("printers_")->currentIndex() >= 0;
    (void)QTest::qWaitFor([this] { return !pages().isEmpty(); }, hasPrinter ? 5000 : 150);
    return m_dialog.get();
}

QLabel *PrintDialogTest::labelOf(const char *field) const {
    const QList<QLabel *> labels = m_dialog->findChildren<QLabel *>();
    const auto found = std::find_if(labels.begin(), labels.end(), [&](const QLabel *label) {
        return label->buddy() && label->buddy()->objectName() == QLatin1String(field);
    });
    return found == labels.end() ? (qFatal("no label of %s", field), nullptr) : *found;
}

QRect PrintDialogTest::shown(const QColor &color) const {
    const QImage image = preview();
    QRect area;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == color)
                area |= QRect(x, y, 1, 1);
        }
    }
    return area;
}
