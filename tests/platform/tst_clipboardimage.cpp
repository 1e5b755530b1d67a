#include "platform/clipboardimage.h"
#include "platform/linux/linuxservices.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QWindow>
#include <QtTest>

/// Where there is no display server of the kind that a keeper could talk to.
class Tst_ClipboardImage : public QObject {
    Q_OBJECT
private slots:
    void init();
    void pictureIsOffered();
    void nothingWithoutAPicture();
    void nothingWithoutAWindow();

private:
    const QString m_before = QStringLiteral("copied before");
    std::unique_ptr<ClipboardImage> m_clipboard = makeClipboardImage();
};

void Tst_ClipboardImage::init() {
    QGuiApplication::clipboard()->setText(m_before);
}

void Tst_ClipboardImage::pictureIsOffered() {
    QImage picture(5, 4, QImage::Format_RGB32);
    picture.fill(qRgb(1, 2, 3));
    QWindow window;
    QVERIFY(m_clipboard->setImage(picture, &window));
    QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(picture.format()), picture);
}

void Tst_ClipboardImage::nothingWithoutAPicture() {
    QWindow window;
    QVERIFY(!m_clipboard->setImage(QImage(), &window));
    QCOMPARE(QGuiApplication::clipboard()->text(), m_before);
}

void Tst_ClipboardImage::nothingWithoutAWindow() {
    QVERIFY(!m_clipboard->setImage(QImage(5, 4, QImage::Format_RGB32), nullptr));
    QCOMPARE(QGuiApplication::clipboard()->text(), m_before);
}

QTEST_MAIN(Tst_ClipboardImage)
#include "tst_clipboardimage.moc"
