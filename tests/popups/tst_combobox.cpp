#include "popups/combobox.h"
#include "support/fakeplatform.h"

#include <QListView>
#include <QTest>

class Tst_ComboBox : public QObject {
    Q_OBJECT
private slots:
    void viewIsAListOfItsOwn();
    void listGetsTheShadow();
};

void Tst_ComboBox::viewIsAListOfItsOwn() {
    ComboBox box;
    QCOMPARE(box.view()->metaObject()->className(), "QListView");
    QCOMPARE(box.cursor().shape(), Qt::PointingHandCursor);
}

void Tst_ComboBox::listGetsTheShadow() {
    FakePlatform *platform = FakePlatform::install();
    platform->nativeShadow = true;
    ComboBox box;
    box.addItems({QStringLiteral("a"), QStringLiteral("b")});
    box.show();
    QVERIFY(platform->shadowed.isEmpty());
    box.showPopup();
    QVERIFY(platform->shadowed.contains(box.view()->window()->windowHandle()));
    box.hidePopup();
}

QTEST_MAIN(Tst_ComboBox)
#include "tst_combobox.moc"
