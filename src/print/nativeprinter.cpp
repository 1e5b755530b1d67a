#include "print/nativeprinter.h"

#include "platform/platform.h"
#include "print/pagelayout.h"
#include "print/printerpropertiesdialog.h"

#include <QImage>
#include <QPainter>

namespace {

Printers &printers() {
    return Platform::instance().printers();
}

float inPixels(int tenths) {
    return static_cast<float>(static_cast<float>(tenths) / 10.0F * PixelsPerMillimetre);
}

QString inMillimetres(int tenths) {
    return QString::number(static_cast<double>(static_cast<float>(tenths) / 10.0F), 'f', 1);
}

/// Transparent parts become paper.
QPixmap onWhite(const QPixmap &pixmap) {
    QPixmap page(pixmap.size());
    page.fill(Qt::white);
    QPainter painter(&page);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawPixmap(0, 0, pixmap);
    return page;
}

} // namespace

NativePrinter::NativePrinter(const QString &name, QObject *parent) : QObject(parent), m_printerName(name) {
    reload();
}

NativePrinter::~NativePrinter() = default;

QStringList NativePrinter::printerNames() {
    return printers().names();
}

QString NativePrinter::defaultPrinterName() {
    return printers().defaultName();
}

LateAnswer NativePrinter::latePrinterNames() {
    return printers().lateNames();
}

QStringList NativePrinter::takeLatePrinterNames() {
    return printers().takeLateNames();
}

void NativePrinter::reload() {
    read(printers().open(m_printerName));
}

LateAnswer NativePrinter::lateAnswer() const {
    return m_devMode ? LateAnswer::None : printers().latePrinter(m_printerName);
}

void NativePrinter::takeLateAnswer() {
    if (lateAnswer() == LateAnswer::Arrived)
        read(printers().takeLatePrinter(m_printerName));
}

void NativePrinter::read(std::unique_ptr<Printer> printer) {
    m_dc.reset();
    m_devMode.reset();
    m_printer = std::move(printer);
    if (!m_printer)
        return;
    m_devMode = m_printer->defaultMode();
    measure();
}

void NativePrinter::measure() {
    m_dc = m_printer->metrics(*m_devMode);
}

QVector<PaperEntry> NativePrinter::paperList() {
    QVector<PaperEntry> entries;
    if (!m_devMode)
        return entries;
    m_papers.clear();
    const QVector<PrinterPaper> papers = m_printer->papers();
    for (const PrinterPaper &paper : papers) {
        entries.append(
            {QStringLiteral("%0 (%1 x %2 mm)")
                 .arg(paper.name, inMillimetres(paper.size.width()), inMillimetres(paper.size.height())),
             paper.id});
        m_papers.insert(paper.id, {paper.name, paper.size});
        if (paper.name == m_devMode->formName)
            setPaperId(paper.id);
    }
    if (paperSize().isNull())
        setPaperId(PrinterMode::A4);
    return entries;
}

int NativePrinter::copies() const {
    return m_devMode ? m_devMode->copies : 1;
}

bool NativePrinter::isPortrait() const {
    return m_devMode && m_devMode->orientation != PrinterMode::Landscape;
}

quint16 NativePrinter::paperId() const {
    return m_devMode ? m_devMode->paperSize : PrinterMode::A4;
}

bool NativePrinter::isGrayscale() const {
    return m_devMode && m_devMode->color == PrinterMode::Monochrome;
}

QSizeF NativePrinter::paperSize() const {
    if (!m_devMode)
        return {};
    const float width = inPixels(m_devMode->paperWidth);
    const float length = inPixels(m_devMode->paperLength);
    if (m_devMode->orientation == PrinterMode::Portrait)
        return {width, length};
    return {length, width};
}

QRectF NativePrinter::printableRect() const {
    if (!m_devMode || !m_dc)
        return {};
    const auto pixels = [](int length, int perInch) {
        return static_cast<float>(length) / static_cast<float>(perInch) * PixelsPerInch;
    };
    return {pixels(m_dc->physicalOffsetX, m_dc->logPixelsX), pixels(m_dc->physicalOffsetY, m_dc->logPixelsY),
            pixels(m_dc->horzRes, m_dc->logPixelsX), pixels(m_dc->vertRes, m_dc->logPixelsY)};
}

void NativePrinter::setCopies(int copies) {
    if (!m_devMode)
        return;
    m_devMode->copies = copies;
    m_devMode->fields |= PrinterMode::CopiesField;
    measure();
}

void NativePrinter::setGrayscale(bool grayscale) {
    if (!m_devMode)
        return;
    m_devMode->color = grayscale ? PrinterMode::Monochrome : PrinterMode::FullColor;
    m_devMode->fields |= PrinterMode::ColorField;
    measure();
}

void NativePrinter::setPortrait(int portrait) {
    if (!m_devMode)
        return;
    m_devMode->orientation = portrait != 0 ? PrinterMode::Portrait : PrinterMode::Landscape;
    m_devMode->fields |= PrinterMode::OrientationField;
    measure();
}

void NativePrinter::setPaperId(quint16 id) {
    if (!m_devMode)
        return;
    const PaperInfo &paper = m_papers[id];
    m_devMode->paperSize = id;
    m_devMode->paperWidth = paper.size.isValid() ? paper.size.width() : 0;
    m_devMode->paperLength = paper.size.isValid() ? paper.size.height() : 0;
    m_devMode->formName = paper.name.left(PrinterMode::FormNameLimit);
    m_devMode->fields |= PrinterMode::PaperSizeField | PrinterMode::PaperLengthField |
                         PrinterMode::PaperWidthField | PrinterMode::FormNameField;
    measure();
}

bool NativePrinter::showProperties(QWidget *parent) {
    if (!m_devMode)
        return false;
    if (!parent)
        return true;
    PrinterPropertiesDialog dialog(m_printerName, *m_printer, *m_devMode, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    m_devMode = dialog.mode();
    return true;
}

// The resolution across serves down as well: where the two differ, the sheet follows the one across.
QRectF NativePrinter::toDevice(const QRectF &rect) const {
    if (!m_dc)
        return {};
    const auto pixels = [this](double length) {
        return static_cast<double>(
            static_cast<float>(static_cast<float>(m_dc->logPixelsX) * length / PixelsPerInch));
    };
    return {pixels(rect.left()), pixels(rect.top()), pixels(rect.width()), pixels(rect.height())};
}

bool NativePrinter::print(const QVector<PrintPage> &pages) {
    if (!m_devMode)
        return false;
    const std::unique_ptr<PrintJob> job = m_printer->startJob(*m_devMode, QStringLiteral("Tindra"));
    if (!job)
        return false;
    for (const PrintPage &page : pages) {
        const QRectF target = toDevice(page.targetRect);
        job->startPage();
        job->drawImage(onWhite(page.pixmap).toImage(), target, page.sourceRect);
        if (page.drawBorder)
            job->drawFrame(target);
        job->endPage();
    }
    job->end();
    return true;
}
