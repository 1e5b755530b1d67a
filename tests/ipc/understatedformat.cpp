#include "understatedformat.h"

#include <QImage>
#include <QVariant>

namespace {

constexpr int Side = 512; // pixels

class UnderstatedHandler : public QImageIOHandler {
public:
    bool canRead() const override { return true; }
    bool read(QImage *image) override {
        *image = QImage(Side, Side, QImage::Format_RGB32);
        image->fill(Qt::white);
        return true;
    }
    bool supportsOption(ImageOption option) const override { return option == Size; }
    QVariant option(ImageOption option) const override {
        return option == Size ? QVariant(QSize(1, 1)) : QVariant();
    }
};

} // namespace

QImageIOPlugin::Capabilities UnderstatedFormat::capabilities(QIODevice *device, const QByteArray &) const {
    return device && device->peek(sizeof UnderstatedSignature - 1) == UnderstatedSignature ? CanRead
                                                                                           : Capabilities();
}

QImageIOHandler *UnderstatedFormat::create(QIODevice *device, const QByteArray &format) const {
    auto *handler = new UnderstatedHandler;
    handler->setDevice(device);
    handler->setFormat(format);
    return handler;
}
