#include "support/openedurls.h"

#include <QDesktopServices>

namespace {
const QStringList schemes{QStringLiteral("file"), QStringLiteral("https")};
}

OpenedUrls::OpenedUrls() {
    for (const QString &scheme : schemes)
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

OpenedUrls::~OpenedUrls() {
    for (const QString &scheme : schemes)
        QDesktopServices::unsetUrlHandler(scheme);
}

void OpenedUrls::open(const QUrl &url) {
    urls.append(url);
}
