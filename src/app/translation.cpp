#include "app/translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace {

QString language() {
    return QLocale(QLocale::Korean).bcp47Name();
}

} // namespace

bool installProgramTranslation() {
    static QTranslator translator;
    return translator.load(QStringLiteral(":/TindraEditor_%0.qm").arg(language())) &&
           QCoreApplication::installTranslator(&translator);
}

void installToolkitTranslation() {
    static QTranslator translator;
    if (translator.load(QStringLiteral("qtbase_") + language(),
                        QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator);
}
