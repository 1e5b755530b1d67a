#include "app/picturetrial.h"

#include "ipc/imagedecoder.h"
#include "ipc/imageprovider.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QtEndian>

#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

const char *const trialOption = "--try-pictures";
// By number: from a stream of the C library the toolkit reads only what has come already.
constexpr int StandardInput = 0;
constexpr int StandardOutput = 1;

/// Fewer bytes only at the end.
QByteArray readWhole(QIODevice *device, int size) {
    QByteArray bytes;
    while (bytes.size() < size) {
        const QByteArray piece = device->read(size - bytes.size());
        if (piece.isEmpty())
            break;
        bytes += piece;
    }
    return bytes;
}

bool isPicture(QByteArray encoded) {
    QBuffer buffer(&encoded);
    buffer.open(QIODevice::ReadOnly);
    return !decodeImage(&buffer, ImageProvider::BudgetMegabytes).isNull();
}

} // namespace

bool PictureTrial::isCall(int argc, char **argv) {
    return argc == 2 && std::strcmp(argv[1], trialOption) == 0;
}

int PictureTrial::run(int argc, char **argv) {
    // Texts in a drawing need fonts, and those the toolkit's graphics, but no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QFile question;
    QFile answers;
    if (!question.open(StandardInput, QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        !answers.open(StandardOutput, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return EXIT_FAILURE;
    answer(&question, &answers);
    return EXIT_SUCCESS;
}

void PictureTrial::answer(QIODevice *question, QIODevice *answers) {
    for (;;) {
        const QByteArray sizeField = readWhole(question, sizeof(quint64));
        if (sizeField.size() != int(sizeof(quint64)))
            return;
        const auto size = qFromBigEndian<quint64>(sizeField.constData());
        if (size > quint64(std::numeric_limits<int>::max()))
            return;
        const QByteArray encoded = readWhole(question, int(size));
        if (quint64(encoded.size()) != size)
            return;
        answers->putChar(isPicture(encoded) ? 'y' : 'n');
    }
}
