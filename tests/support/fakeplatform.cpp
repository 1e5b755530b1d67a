#include "support/fakeplatform.h"

#include <QWindow>

FakePlatform *FakePlatform::install() {
    auto fake = std::make_unique<FakePlatform>();
    FakePlatform *installed = fake.get();
    Platform::setInstance(std::move(fake));
    return installed;
}

QVector<quint32> FakePlatform::postedMessages() const {
    QVector<quint32> numbers;
    for (const Event &event : posted)
        numbers.append(event.message);
    return numbers;
}

bool FakePlatform::post(quint32 message, quint64 wParam, qint64 lParam) {
    if (onPost)
        onPost(message);
    posted.append({message, wParam, lParam});
    return true;
}

qint64 FakePlatform::send(quint32 message, quint64 wParam, qint64 lParam) {
    posted.append({message, wParam, lParam});
    return 0;
}

bool FakePlatform::setImage(const QImage &image, QWindow *owner) {
    if (!clipboardWorks || !owner)
        return false;
    clipboard = image;
    return true;
}

bool FakePlatform::showFile(const QString &path) {
    shownFiles.append(path);
    return fileManagerWorks;
}

void FakePlatform::bringToFront(QWindow *) {
    ++broughtToFront;
}

void FakePlatform::onTerminate(std::function<void()> handler) {
    terminate = std::move(handler);
}
