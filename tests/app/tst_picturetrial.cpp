#include "app/picturetrial.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>
#include <QtTest>

namespace {

QByteArray sizeField(quint64 size) {
    QByteArray field(sizeof(quint64), Qt::Uninitialized);
    qToBigEndian(size, field.data());
    return field;
}

QByteArray asked(const QByteArray &picture) {
    return sizeField(quint64(picture.size())) + picture;
}

QByteArray encoded(const char *format) {
    QImage image(12, 7, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

QByteArray answered(QByteArray question) {
    QBuffer in(&question);
    in.open(QIODevice::ReadOnly);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    PictureTrial::answer(&in, &out);
    return out.data();
}

} // namespace

class Tst_PictureTrial : public QObject {
    Q_OBJECT
private slots:
    void eachPictureHasItsLetter_data();
    void eachPictureHasItsLetter();
    void aQuestionThatIsNotWholeHasNoAnswer_data();
    void aQuestionThatIsNotWholeHasNoAnswer();
    void onlyTheLoneOptionIsACall_data();
    void onlyTheLoneOptionIsACall();
};

void Tst_PictureTrial::eachPictureHasItsLetter_data() {
    QTest::addColumn<QList<QByteArray>>("pictures");
    QTest::addColumn<QByteArray>("letters");
    const QByteArray png = encoded("png");
    const QByteArray jpg = encoded("jpg");
    QVERIFY(png.size() > 30 && jpg.size() > 30);
    const QByteArray text("This is no picture at all, but a text of some length.");
    QTest::newRow("none") << QList<QByteArray>{} << QByteArray();
    QTest::newRow("pictures") << QList<QByteArray>{png, jpg} << QByteArray("yy");
    QTest::newRow("a text") << QList<QByteArray>{text} << QByteArray("n");
    QTest::newRow("nothing in it") << QList<QByteArray>{QByteArray()} << QByteArray("n");
    QTest::newRow("a torn picture") << QList<QByteArray>{png.left(png.size() / 2)} << QByteArray("n");
    QTest::newRow("in their order") << QList<QByteArray>{text, png, QByteArray(), jpg, text}
                                    << QByteArray("nynyn");
    QTest::newRow("a drawing with a text")
        << QList<QByteArray>{"<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
                             "<text x='2' y='15'>\xea\xb0\x80</text></svg>"}
        << QByteArray("y");
    QTest::newRow("more pixels than there is room for")
        << QList<QByteArray>{"<svg xmlns='http://www.w3.org/2000/svg' width='60000' height='60000'/>"}
        << QByteArray("n");
}

void Tst_PictureTrial::eachPictureHasItsLetter() {
    QFETCH(QList<QByteArray>, pictures);
    QFETCH(QByteArray, letters);
    QByteArray question;
    for (const QByteArray &picture : pictures)
        question += asked(picture);
    QCOMPARE(answered(question), letters);
}

void Tst_PictureTrial::aQuestionThatIsNotWholeHasNoAnswer_data() {
    QTest::addColumn<QByteArray>("question");
    QTest::addColumn<QByteArray>("letters");
    const QByteArray png = encoded("png");
    QTest::newRow("half a size") << QByteArray(3, '\0') << QByteArray();
    QTest::newRow("fewer bytes than told")
        << asked(png) + sizeField(quint64(png.size()) + 1) + png << QByteArray("y");
    QTest::newRow("more than there can be") << sizeField(quint64(1) << 40) + png << QByteArray();
    QTest::newRow("a negative number") << sizeField(~quint64(0)) + png << QByteArray();
}

void Tst_PictureTrial::aQuestionThatIsNotWholeHasNoAnswer() {
    QFETCH(QByteArray, question);
    QFETCH(QByteArray, letters);
    QCOMPARE(answered(question), letters);
}

void Tst_PictureTrial::onlyTheLoneOptionIsACall_data() {
    QTest::addColumn<QList<QByteArray>>("arguments");
    QTest::addColumn<bool>("isCall");
    QTest::newRow("nothing") << QList<QByteArray>{} << false;
    QTest::newRow("alone") << QList<QByteArray>{"--try-pictures"} << true;
    QTest::newRow("before a command") << QList<QByteArray>{"--try-pictures", "/show"} << false;
    QTest::newRow("an argument") << QList<QByteArray>{"/path", "--try-pictures"} << false;
    QTest::newRow("another") << QList<QByteArray>{"--help"} << false;
}

void Tst_PictureTrial::onlyTheLoneOptionIsACall() {
    QFETCH(QList<QByteArray>, arguments);
    QFETCH(bool, isCall);
    arguments.prepend("tindra-editor");
    QVector<char *> argv;
    for (QByteArray &argument : arguments)
        argv.append(argument.data());
    argv.append(nullptr);
    QCOMPARE(PictureTrial::isCall(arguments.size(), argv.data()), isCall);
}

QTEST_MAIN(Tst_PictureTrial)
#include "tst_picturetrial.moc"
