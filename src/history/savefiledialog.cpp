#include "history/savefiledialog.h"

#include "output/filenameutil.h"

#include <QFileInfo>
#include <QImageWriter>

namespace {

bool isPictureSuffix(const QString &suffix) {
    const QByteArray format = suffix.toLatin1().toLower();
    return format == "gif" || QImageWriter::supportedImageFormats().contains(format);
}

/// "png" of "png file (*.png)".
QString suffixOfFilter(const QString &filter) {
    const int start = filter.lastIndexOf(QLatin1String("*.")) + 2;
    return filter.mid(start, filter.lastIndexOf(QLatin1Char(')')) - start);
}

} // namespace

SaveFileDialog::SaveFileDialog(QWidget *parent, const QString &suggested, const QStringList &filters,
                               int selected)
    : QFileDialog(parent) {
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setNameFilters(filters);
    connect(this, &QFileDialog::filterSelected, this,
            [this](const QString &filter) { setDefaultSuffix(suffixOfFilter(filter)); });
    selectNameFilter(filters.value(selected, filters.value(0)));
    setDefaultSuffix(suffixOfFilter(selectedNameFilter()));
    const QFileInfo file(suggested);
    setDirectory(file.absolutePath());
    selectFile(file.fileName());
}

QString SaveFileDialog::askPath() {
    if (exec() != QDialog::Accepted)
        return {};
    const QString path = selectedFiles().value(0);
    const QString named = withSuffix(path);
    return named == path ? path : FileNameUtil::uniqueFilePath(named);
}

void SaveFileDialog::accept() {
    const QString path = selectedFiles().value(0);
    if (!path.isEmpty() && !QFileInfo(path).isDir())
        selectFile(withSuffix(path));
    QFileDialog::accept();
}

// A dot in the middle of a name, as in "version 1.5", begins no suffix that a picture could be written in.
QString SaveFileDialog::withSuffix(const QString &path) const {
    if (path.isEmpty() || isPictureSuffix(QFileInfo(path).suffix()))
        return path;
    return path + QLatin1Char('.') + suffixOfFilter(selectedNameFilter());
}
