#pragma once

#include <QImage>
#include <QString>

/// Whether two images have the same size and the same pixels (compared as ARGB, alpha 0 equal whatever the
/// colour). On a difference, expected, actual and a picture of the differing pixels are written below the
/// folder of TINDRA_TEST_PICTURES (or the current one), and `message` tells the first differing pixel.
bool sameImage(const QImage &actual, const QImage &expected, const QString &name, QString *message);

/// QVERIFY2 for images.
#define COMPARE_IMAGES(actual, expected, name)                                                               \
    do {                                                                                                     \
        QString compareMessage;                                                                              \
        QVERIFY2(sameImage((actual), (expected), QStringLiteral(name), &compareMessage),                     \
                 qPrintable(compareMessage));                                                                \
    } while (false)
