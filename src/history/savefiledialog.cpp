#include "history/savefiledialog.h"

#include "ui/messagedialog.h"

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QLineEdit>

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

/// "shot" of "shot.", whose suffix is still to come; a name of dots alone stays.
QString withoutLastDots(const QString &path) {
    int length = path.size();
    while (length > 0 && path[length - 1] == QLatin1Char('.'))
        --length;
    return length > 0 && path[length - 1] != QLatin1Char('/') ? path.left(length) : path;
}

} // namespace

SaveFileDialog::SaveFileDialog(QWidget *parent, const QString &suggested, const QStringList &filters,
                               int selected)
    : FileDialog(parent) {
    // The question is ours.
    setOption(QFileDialog::DontConfirmOverwrite);
    setAcceptMode(QFileDialog::AcceptSave);
    setFileMode(QFileDialog::AnyFile);
    setNameFilters(filters);
    connect(this, &QFileDialog::filterSelected, this,
            [this](const QString &filter) { setDefaultSuffix(suffixOfFilter(filter)); });
    selectNameFilter(filters.value(selected, filters.value(0)));
    setDefaultSuffix(suffixOfFilter(selectedNameFilter()));
    const QFileInfo file(suggested);
    beginIn(file.path());
    selectFile(file.fileName());
}

void SaveFileDialog::accept() {
    const QString named = chosenPath();
    if (!named.isEmpty() && !QFileInfo(named).isDir())
        setPath(withSuffix(named));
    // Whatever the dialog made of that: it is what will be written.
    const QString path = chosenPath();
    if (!mayWrite(path))
        return;
    if (!hasQuote()) {
        FileDialog::accept();
    } else if (QFileInfo(path).isDir()) {
        setDirectory(path);
        nameField()->clear();
    } else {
        done(Accepted);
    }
}

QLineEdit *SaveFileDialog::nameField() const {
    return findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
}

bool SaveFileDialog::hasQuote() const {
    return nameField()->text().contains(QLatin1Char('"'));
}

// The toolkit's dialog takes quotes for the bounds of several names and keeps only what stands between two.
QString SaveFileDialog::chosenPath() const {
    if (!hasQuote())
        return FileDialog::chosenPath();
    QString name = nameField()->text();
    if (name.startsWith(QLatin1String("~/")))
        name.replace(0, 1, QDir::homePath());
    return QDir::cleanPath(directory().absoluteFilePath(name));
}

void SaveFileDialog::setPath(const QString &path) {
    if (path == chosenPath() && directory() == QFileInfo(path).dir())
        return;
    // A folder that is missing cannot be shown; its file must not become one of the folder that is.
    const QFileInfo file(path);
    const bool isShown = file.dir().exists();
    if (isShown)
        selectFile(path);
    // While it has the focus, the field keeps what was typed, which the folder may not fit any more.
    nameField()->setText(isShown ? file.fileName() : path);
}

bool SaveFileDialog::mayWrite(const QString &path) {
    const QFileInfo file(path);
    // A folder of that name is opened instead.
    if (!file.exists() || file.isDir())
        return true;
    return MessageDialog::warning(
               this, tr("Tindra"), tr("\"%1\" exists already.\nWould you replace it?").arg(file.fileName()),
               MessageDialog::Yes | MessageDialog::No, MessageDialog::No) == MessageDialog::Yes;
}

// A dot in the middle of a name, as in "version 1.5", begins no suffix that a picture could be written in.
QString SaveFileDialog::withSuffix(const QString &path) const {
    const QString named = withoutLastDots(path);
    if (named.isEmpty() || isPictureSuffix(QFileInfo(named).suffix()))
        return named;
    return named + QLatin1Char('.') + suffixOfFilter(selectedNameFilter());
}
