#include "history/saveflow.h"

#include "canvas/editor.h"
#include "history/savefiledialog.h"
#include "output/filenameutil.h"
#include "output/pictureformats.h"
#include "output/postsavedialog.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "services/workfolder.h"
#include "ui/messagedialog.h"

#include <QFileInfo>

namespace {

constexpr int BestJpgQuality = 100;
constexpr int QualityOfTheFormat = -1;

bool isJpg(const QString &suffix) {
    return suffix.compare(QLatin1String("jpg"), Qt::CaseInsensitive) == 0;
}

} // namespace

QString SaveFlow::autoSavePath() {
    const QString folder = FileNameUtil::folderOrDefault(
        TindraPreferences::instance()->GetString(TindraPreferences::AutoSavePath, QString()));
    const QString name = FileNameUtil::generateFileName(folder, false);
    return FileNameUtil::uniqueFilePath(QStringLiteral("%1.%2").arg(name, FileNameUtil::currentFileSuffix()));
}

bool SaveFlow::askSavePath(QString &path, bool &ok) const {
    const TindraPreferences *preferences = TindraPreferences::instance();
    const QString folder =
        FileNameUtil::folderOrDefault(preferences->GetString(TindraPreferences::FilePath, QString()));
    const QStringList filters = tr(PictureFilters).split(QStringLiteral(";;"));
    SaveFileDialog dialog(m_panel, FileNameUtil::generateFileName(folder, false), filters,
                          preferences->GetInt(TindraPreferences::FileFormat, 0));
    path = dialog.askPath();
    ok = !path.isEmpty();
    return ok;
}

bool SaveFlow::writeImage(Editor *editor, const QString &path) {
    return !isInWorkFolder(path) && editor->saveFlattened(path, true, qualityFor(QFileInfo(path).suffix()));
}

void SaveFlow::reportImage(bool written, const QString &path, bool rememberFolder, bool showResult) const {
    if (!written) {
        reportFailure(path);
        return;
    }
    const QFileInfo file(path);
    reportSaveFormat(file.suffix());
    TindraPreferences *preferences = TindraPreferences::instance();
    if (rememberFolder && !file.absolutePath().isEmpty())
        preferences->SetString(TindraPreferences::FilePath, file.absolutePath());
    if (showResult && preferences->GetBool(TindraPreferences::ShowPostSaveDlg, true))
        showResultOf(path);
}

void SaveFlow::reportVanished() const {
    MessageDialog::warning(m_panel, tr("Tindra"), tr("failed to save image."));
}

int SaveFlow::qualityFor(const QString &suffix) {
    if (!isJpg(suffix))
        return QualityOfTheFormat;
    bool isNumber = false;
    const int quality =
        TindraPreferences::instance()->GetString(TindraPreferences::JpgQuality, QString()).toInt(&isNumber);
    return isNumber ? quality : BestJpgQuality;
}

void SaveFlow::reportBatch(int count, const QString &firstPath) const {
    TindraPreferences *preferences = TindraPreferences::instance();
    if (count == 0) {
        const QString text = QFileInfo::exists(firstPath)
                                 ? tr("failed to save images.")
                                 : tr("failed to save images.\nplease change save folder.");
        MessageDialog::warning(m_panel, tr("Tindra"), text);
    } else if (preferences->GetBool(TindraPreferences::ShowPostSaveAllDlg, true)) {
        PostSaveDialog dialog(PostSaveDialog::Batch, m_panel);
        dialog.setSavedPath(firstPath);
        dialog.setCount(count);
        dialog.exec();
        preferences->SetBool(TindraPreferences::ShowPostSaveAllDlg, !dialog.isSkipChecked());
    }
}

void SaveFlow::showResultOf(const QString &path) const {
    PostSaveDialog dialog(PostSaveDialog::OneImage, m_panel);
    dialog.setSavedPath(path);
    dialog.exec();
    TindraPreferences::instance()->SetBool(TindraPreferences::ShowPostSaveDlg, !dialog.isSkipChecked());
}

void SaveFlow::reportFailure(const QString &path) const {
    const QFileInfo file(path);
    const bool isAccessible = file.isReadable() && file.isWritable() && !isInWorkFolder(path);
    const QString text = isAccessible ? tr("failed to save image.") : tr("failed to access save file.");
    MessageDialog::warning(m_panel, tr("Tindra"), text);
}

void SaveFlow::reportSaveFormat(const QString &suffix) {
    for (const PictureFormat &format : PictureFormats) {
        if (suffix.compare(QLatin1String(format.suffix), Qt::CaseInsensitive) == 0)
            recordUsage(format.usageEvent);
    }
}
