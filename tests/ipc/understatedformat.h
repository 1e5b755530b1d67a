#pragma once

#include <QImageIOPlugin>

/// What a file of the format consists of.
constexpr char UnderstatedSignature[] = "understated";

/// A picture format of the test's own, built into its program: tells a size of one pixel and decodes to a
/// megabyte of 512 by 512.
class UnderstatedFormat : public QImageIOPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "understatedformat.json")
public:
    Capabilities capabilities(QIODevice *device, const QByteArray &format) const override;
    QImageIOHandler *create(QIODevice *device, const QByteArray &format) const override;
};
