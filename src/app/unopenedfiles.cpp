#include "app/unopenedfiles.h"

#include "app/application.h"
#include "ui/builtinstyle.h"
#include "ui/messagedialog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>

#include <cstdlib>
#include <cstring>

namespace {

const char *const messageOption = "--tell-unopened";
// By number: from a stream of the C library the toolkit reads only what has come already.
constexpr int StandardInput = 0;
constexpr int NamedAtMost = 10;

QStringList namesFromStandardInput() {
    QFile input;
    QStringList names;
    if (!input.open(StandardInput, QIODevice::ReadOnly))
        return names;
    for (const QByteArray &path : input.readAll().split('\0')) {
        if (!path.isEmpty())
            names.append(UnopenedFiles::nameOf(QFile::decodeName(path)));
    }
    return names;
}

} // namespace

bool UnopenedFiles::isCall(int argc, char **argv) {
    return argc == 2 && std::strcmp(argv[1], messageOption) == 0;
}

int UnopenedFiles::run(int argc, char **argv) {
    const QStringList names = namesFromStandardInput();
    if (names.isEmpty())
        return EXIT_SUCCESS;
    Application application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/res/Tindra.ico")));
    installBuiltInStyle(&application);
    message(names)->exec();
    return EXIT_SUCCESS;
}

QString UnopenedFiles::nameOf(const QString &path) {
    const QString name = QFileInfo(QDir::cleanPath(path)).fileName();
    return name.isEmpty() ? path : name;
}

std::unique_ptr<MessageDialog> UnopenedFiles::message(const QStringList &names) {
    auto dialog = std::make_unique<MessageDialog>();
    dialog->setTitle(QStringLiteral("Tindra"));
    dialog->setIcon(MessageDialog::Warning);
    dialog->setText(tr("These files cannot be opened.\nPlease check that they are images and can be read."));
    QStringList lines = names.mid(0, NamedAtMost);
    if (names.size() > NamedAtMost)
        lines.append(tr("and %0 more").arg(names.size() - NamedAtMost));
    dialog->setInformativeText(lines.join(QLatin1Char('\n')));
    dialog->setStandardButtons(MessageDialog::Ok);
    return dialog;
}
