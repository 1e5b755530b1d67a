#include "support/substitutelibraries.h"

#include "platform/filesignature.h"
#include "platform/loadedlibrary.h"

#include <QDir>
#include <QFile>

namespace {

void copy(const QString &from, const QString &to) {
    QFile::remove(to);
    if (!QFile::copy(from, to))
        qFatal("%s is not built: name its target in tindra_use_substitutes()", qPrintable(from));
}

} // namespace

SubstituteLibraries::SubstituteLibraries() {
    platform::setTrustedRoots(QStringLiteral(TINDRA_MAKERS "/root.pem"));
    qputenv("TINDRA_TEST_CALLS", QFile::encodeName(callsPath()));
    platform::setLibraryTrialProgram(QStringLiteral(TINDRA_LIBRARY_TRIAL));
}

SubstituteLibraries::~SubstituteLibraries() {
    platform::setLibraryTrialProgram(QString());
    platform::setTrustedRoots(QString());
    qunsetenv("TINDRA_TEST_CALLS");
}

QString SubstituteLibraries::add(const QString &baseName, Signature signature) const {
    return addTo(folder(), baseName, signature);
}

QString SubstituteLibraries::addTo(const QString &folder, const QString &baseName,
                                   Signature signature) const {
    const QString name = platform::libraryFileName(baseName);
    const QString built = QStringLiteral(TINDRA_SUBSTITUTES "/") + name;
    const QString path = QDir(folder).filePath(name);
    QDir().mkpath(folder);
    copy(built, path);
    const QString suffix = QStringLiteral(".p7s");
    QFile::remove(path + suffix);
    if (signature == Signature::OfAnother)
        copy(built + QStringLiteral(".other") + suffix, path + suffix);
    else if (signature != Signature::None)
        copy(built + suffix, path + suffix);
    QFile file(path);
    // Behind what the loader looks at, so only the signature can tell.
    if (signature == Signature::Broken && (!file.open(QIODevice::Append) || file.write("x") != 1))
        qFatal("cannot change %s", qPrintable(path));
    return path;
}

QStringList SubstituteLibraries::calls() const {
    QFile file(callsPath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void SubstituteLibraries::forgetCalls() const {
    QFile::remove(callsPath());
}

QString SubstituteLibraries::callsPath() const {
    return m_folder.filePath(QStringLiteral("calls.txt"));
}
