/// Draws every SVG picture below a folder into one PNG, at its own size and twice as large, with its name,
/// so that a whole family of icons can be judged at a glance.
///
/// usage: icon-sheet FOLDER SHEET.png [SIZE …]    SIZE: also at these sizes, in pixels

#include <QDir>
#include <QDirIterator>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QVector>

#include <cstdio>

namespace {

constexpr int Columns = 4;
constexpr int Gap = 12;
constexpr int LabelHeight = 20;
constexpr int LabelWidth = 230;

QStringList picturesBelow(const QString &folder) {
    QStringList names;
    QDirIterator iterator(folder, {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        names.append(QDir(folder).relativeFilePath(iterator.next()));
    names.sort();
    return names;
}

/// The sizes in which one picture is drawn; a size given in pixels fits its longer side.
QVector<QSize> sizesOf(const QSize &own, const QVector<int> &further) {
    QVector<QSize> sizes{own, own * 2};
    for (const int side : further)
        sizes.append(own.scaled(side, side, Qt::KeepAspectRatio));
    return sizes;
}

QSize cellSize(const QString &folder, const QStringList &names, const QVector<int> &further) {
    QSize cell(LabelWidth, 0);
    for (const QString &name : names) {
        int width = 0;
        for (const QSize &size :
             sizesOf(QSvgRenderer(folder + QLatin1Char('/') + name).defaultSize(), further)) {
            width += size.width() + Gap;
            cell.setHeight(qMax(cell.height(), size.height()));
        }
        cell.setWidth(qMax(cell.width(), width));
    }
    return cell + QSize(Gap, Gap + LabelHeight);
}

bool drawCell(QPainter &painter, QPoint corner, const QString &folder, const QString &name,
              const QVector<int> &further) {
    QSvgRenderer picture(folder + QLatin1Char('/') + name);
    painter.drawText(QRect(corner, QSize(LabelWidth, LabelHeight)), Qt::AlignVCenter, name);
    int x = corner.x();
    for (const QSize &size : sizesOf(picture.defaultSize(), further)) {
        const QRect area(QPoint(x, corner.y() + LabelHeight), size);
        // White pictures need a dark ground.
        if (name.startsWith(QLatin1String("CoachmarkWidget/")) ||
            name.startsWith(QLatin1String("EditorView/zoom_")))
            painter.fillRect(area, QColor(0, 127, 245));
        picture.render(&painter, area);
        x += size.width() + Gap;
    }
    return picture.isValid();
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: icon-sheet FOLDER SHEET.png [SIZE ...]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QVector<int> further;
    for (int i = 3; i < argc; ++i)
        further.append(QByteArray(argv[i]).toInt());
    const QStringList names = picturesBelow(folder);
    const QSize cell = cellSize(folder, names, further);
    const int rows = (names.size() + Columns - 1) / Columns;
    QImage sheet(cell.width() * Columns + Gap, cell.height() * rows + Gap, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    bool valid = !names.isEmpty();
    for (int i = 0; i < names.size(); ++i) {
        const QPoint corner(Gap + cell.width() * (i % Columns), Gap + cell.height() * (i / Columns));
        if (!drawCell(painter, corner, folder, names.at(i), further)) {
            std::fprintf(stderr, "icon-sheet: not a picture: %s\n", qPrintable(names.at(i)));
            valid = false;
        }
    }
    painter.end();
    if (!sheet.save(QString::fromLocal8Bit(argv[2]))) {
        std::fprintf(stderr, "icon-sheet: cannot write %s\n", argv[2]);
        return 1;
    }
    return valid ? 0 : 1;
}
