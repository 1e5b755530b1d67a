#include "preferences/dialog/sizeinputdialog.h"
#include "support/literals.h"
#include "support/modalanswers.h"
#include "support/secondscreen.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"
#include "ui/rangedspinbox.h"
#include "ui/uistyler.h"

#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QtTest>

class Tst_SizeInputDialog : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_dialog.reset(); }

    void texts_data();
    void texts();
    void limitsAreThoseOfTheScreens_data();
    void limitsAreThoseOfTheScreens();
    void sizeIsShownWithinTheLimits_data();
    void sizeIsShownWithinTheLimits();
    void typingPassesThroughSmallValues();
    void okOfANewSize();
    void knownSizeIsRefused_data();
    void knownSizeIsRefused();
    void halfTheSizeMayBeKnown_data();
    void halfTheSizeMayBeKnown();
    void okKeepsTheLimits();
    void cancelAndEscape_data();
    void cancelAndEscape();
    void enterIsOk();
    void tabLeadsFromLeftToRight();
    void rescaledWindowLeavesTheBorderOfScreens();

private:
    void open(SizeInputDialog::Mode mode = SizeInputDialog::Add) {
        m_dialog = std::make_unique<SizeInputDialog>(mode, &m_presets);
        m_dialog->open();
    }
    template <typename Widget> Widget *child(const char *name) const {
        return m_dialog->findChild<Widget *>(QLatin1String(name));
    }
    RangedSpinBox *box(const char *name) const { return child<RangedSpinBox>(name); }

    QList<QSize> m_presets;
    std::unique_ptr<SizeInputDialog> m_dialog;
};

void Tst_SizeInputDialog::init() {
    m_presets = {{100, 50}, {300, 200}};
}

void Tst_SizeInputDialog::texts_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("title");
    QTest::newRow("add") << 0 << "Add fixed preset";
    QTest::newRow("edit") << 1 << "Edit fixed preset";
}

void Tst_SizeInputDialog::texts() {
    QFETCH(int, mode);
    open(SizeInputDialog::Mode(mode));
    QTEST(m_dialog->windowTitle(), "title");
    QStringList labels;
    for (const QLabel *label : child<QWidget>("top_")->findChildren<QLabel *>())
        labels.append(label->text());
    QCOMPARE(labels, (QStringList{"W"_qs, "H"_qs}));
    const QWidget *bottom = child<QWidget>("bottom_");
    QCOMPARE(bottom->findChild<PositiveButton *>("ok_"_qs)->text(), "ok"_qs);
    QCOMPARE(bottom->findChild<NegativeButton *>("cancel_"_qs)->text(), "cancel"_qs);
    for (const char *name : {"width_", "height_", "ok_", "cancel_"})
        QCOMPARE(child<QWidget>(name)->cursor().shape(), Qt::PointingHandCursor);
    const QWidget &window = *m_dialog;
    QCOMPARE(window.minimumSize(), QSize(236, 126));
    QCOMPARE(window.maximumSize(), QSize(236, 126));
    QVERIFY(!(m_dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
}

void Tst_SizeInputDialog::limitsAreThoseOfTheScreens_data() {
    QTest::addColumn<QRect>("another");
    QTest::newRow("one screen") << QRect();
    QTest::newRow("another beside it")
        << QRect(QGuiApplication::primaryScreen()->size().width(), 0, 1000, 1500);
}

void Tst_SizeInputDialog::limitsAreThoseOfTheScreens() {
    QFETCH(QRect, another);
    std::unique_ptr<SecondScreen> second;
    if (!another.isNull())
        second = std::make_unique<SecondScreen>(another);
    QRect desktop = another;
    for (const QScreen *screen : QGuiApplication::screens())
        desktop |= screen->geometry();
    open();
    QCOMPARE(box("width_")->minLimit(), 20);
    QCOMPARE(box("width_")->maxLimit(), desktop.width());
    QCOMPARE(box("height_")->minLimit(), 20);
    QCOMPARE(box("height_")->maxLimit(), desktop.height());
}

void Tst_SizeInputDialog::sizeIsShownWithinTheLimits_data() {
    const QSize desktop = QGuiApplication::primaryScreen()->virtualSize();
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("shown");
    QTest::newRow("plain") << QSize(640, 480) << QSize(640, 480);
    QTest::newRow("none was ever locked") << QSize(-1, -1) << QSize(20, 20);
    QTest::newRow("lowest") << QSize(20, 20) << QSize(20, 20);
    QTest::newRow("as large as the desktop") << desktop << desktop;
    QTest::newRow("of a larger desktop") << QSize(99999, 99999) << desktop;
}

void Tst_SizeInputDialog::sizeIsShownWithinTheLimits() {
    QFETCH(QSize, size);
    QFETCH(QSize, shown);
    open();
    m_dialog->setSize(size);
    QCOMPARE(m_dialog->size(), shown);
    QCOMPARE(QSize(box("width_")->value(), box("height_")->value()), shown);
}

void Tst_SizeInputDialog::typingPassesThroughSmallValues() {
    open();
    m_dialog->setSize({640, 480});
    // What is shown first is there to be typed over.
    QTest::keyClicks(box("width_"), "5"_qs);
    QCOMPARE(box("width_")->value(), 5);
    QTest::keyClicks(box("width_"), "3"_qs);
    QCOMPARE(m_dialog->size(), QSize(53, 480));
}

void Tst_SizeInputDialog::okOfANewSize() {
    ModalAnswers answers;
    open();
    m_dialog->setSize({640, 480});
    child<QAbstractButton>("ok_")->click();
    QCOMPARE(m_dialog->result(), 1);
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_dialog->size(), QSize(640, 480));
    QVERIFY(answers.texts().isEmpty());
}

void Tst_SizeInputDialog::knownSizeIsRefused_data() {
    QTest::addColumn<int>("mode");
    QTest::addColumn<QSize>("size");
    QTest::newRow("add, the first") << 0 << QSize(100, 50);
    QTest::newRow("add, the last") << 0 << QSize(300, 200);
    QTest::newRow("edit, another") << 1 << QSize(300, 200);
    QTest::newRow("edit, without a change") << 1 << QSize(100, 50);
}

void Tst_SizeInputDialog::knownSizeIsRefused() {
    QFETCH(int, mode);
    QFETCH(QSize, size);
    open(SizeInputDialog::Mode(mode));
    m_dialog->setSize(size);
    ModalAnswers answers;
    QString icon;
    answers.add([this, &icon](QWidget *message) {
        if (message == m_dialog.get())
            return;
        icon = message->findChild<QWidget *>("icon_"_qs)->property("icon").toString();
        QCOMPARE(message->windowTitle(), "Tindra"_qs);
        QCOMPARE(message->findChildren<QAbstractButton *>().size(), 1);
        ModalAnswers::press(message, "Ok"_qs);
    });
    child<QAbstractButton>("ok_")->click();
    QVERIFY(answers.isDone());
    QCOMPARE(answers.texts(), QStringList{"This size has already been added."_qs});
    QCOMPARE(icon, "Warning"_qs);
    QVERIFY(m_dialog->isVisible());
    QCOMPARE(m_dialog->size(), size);
}

void Tst_SizeInputDialog::halfTheSizeMayBeKnown_data() {
    QTest::addColumn<QSize>("size");
    QTest::newRow("width") << QSize(100, 51);
    QTest::newRow("height") << QSize(101, 50);
    QTest::newRow("width of one, height of the other") << QSize(100, 200);
    QTest::newRow("turned") << QSize(50, 100);
}

void Tst_SizeInputDialog::halfTheSizeMayBeKnown() {
    QFETCH(QSize, size);
    open();
    m_dialog->setSize(size);
    child<QAbstractButton>("ok_")->click();
    QCOMPARE(m_dialog->result(), 1);
}

void Tst_SizeInputDialog::okKeepsTheLimits() {
    open();
    m_dialog->setSize({640, 480});
    box("width_")->setValue(5);
    child<QAbstractButton>("ok_")->click();
    QCOMPARE(m_dialog->size(), QSize(20, 480));
}

void Tst_SizeInputDialog::cancelAndEscape_data() {
    QTest::addColumn<bool>("byKey");
    QTest::newRow("cancel") << false;
    QTest::newRow("Escape") << true;
}

void Tst_SizeInputDialog::cancelAndEscape() {
    QFETCH(bool, byKey);
    open();
    m_dialog->setResult(99);
    if (byKey)
        QTest::keyClick(box("height_"), Qt::Key_Escape);
    else
        child<QAbstractButton>("cancel_")->click();
    QCOMPARE(m_dialog->result(), 0);
    QVERIFY(!m_dialog->isVisible());
}

void Tst_SizeInputDialog::enterIsOk() {
    open();
    m_dialog->setSize({640, 480});
    box("height_")->setFocus();
    box("height_")->selectAll();
    QTest::keyClicks(box("height_"), "7"_qs);
    QTest::keyClick(box("height_"), Qt::Key_Return);
    QCOMPARE(m_dialog->result(), 1);
    QCOMPARE(m_dialog->size(), QSize(640, 20));
}

void Tst_SizeInputDialog::tabLeadsFromLeftToRight() {
    open();
    m_dialog->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QCOMPARE(m_dialog->focusWidget(), box("width_"));
    for (const char *name : {"height_", "ok_", "cancel_", "width_"}) {
        QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Tab);
        QCOMPARE(m_dialog->focusWidget(), child<QWidget>(name));
    }
}

void Tst_SizeInputDialog::rescaledWindowLeavesTheBorderOfScreens() {
    const int border = QGuiApplication::primaryScreen()->geometry().right() + 1;
    const SecondScreen second(QRect(border, 0, 2000, 1200));
    open();
    m_dialog->move(border - 50, 500);
    UIStyler::applyScale(m_dialog.get(), 1.5);
    QCOMPARE(m_dialog->pos(), QPoint(border, 500));
}

QTEST_MAIN(Tst_SizeInputDialog)
#include "tst_sizeinputdialog.moc"
