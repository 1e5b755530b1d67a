#pragma once

#include "ipc/imageprovider.h"
#include "output/filenameutil.h"
#include "platform/configuration.h"
#include "preferences/tindrapreferences.h"
#include "services/usagestatistics.h"
#include "services/workfolder.h"
#include "support/fakeplatform.h"

#include <QDir>
#include <QPixmap>
#include <QStringList>

/// What a program finds at its start, made anew for each test: default settings, an empty work folder, no
/// images, a desktop that only remembers. Collects the events of the usage statistics while it lives.
class Session {
public:
    Session() : platform(FakePlatform::install()), preferences(freshPreferences()) {
        FileNameUtil::initialize();
        ImageProvider::resetForTesting();
        QDir(workFolder()).removeRecursively();
        setUsageRecorder([this](const QString &code) { usage.append(code); });
    }
    ~Session() { setUsageRecorder({}); }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    /// Writes a capture of one colour into the work folder, as the capture process does.
    static QString captureFile(const QString &name, const QSize &size = {40, 30},
                               const QColor &color = Qt::white) {
        const QString path = workFolder() + QLatin1Char('/') + name + QStringLiteral(".png");
        QImage image(size, QImage::Format_RGB32);
        image.fill(color);
        image.save(path);
        return path;
    }
    /// A capture that came through memory.
    static QString captureInMemory(const QString &key, const QSize &size = {4, 3}) {
        QPixmap pixmap(size);
        pixmap.fill(Qt::white);
        ImageProvider::instance()->insert(key, pixmap);
        return key;
    }

    FakePlatform *const platform;
    TindraPreferences *const preferences;
    QStringList usage;

private:
    static TindraPreferences *freshPreferences() {
        TindraPreferences::resetForTesting();
        ConfigurationLocation(QStringLiteral("SOFTWARE\\Norvane\\Tindra")).remove(QStringLiteral("Config"));
        TindraPreferences::instance()->Init();
        return TindraPreferences::instance();
    }
};
