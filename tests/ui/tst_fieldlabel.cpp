#include "support/literals.h"
#include "ui/fieldlabel.h"

#include <QSpinBox>
#include <QtTest>

class Tst_FieldLabel : public QObject {
    Q_OBJECT
private slots:
    void beginsAsTheFieldIs_data();
    void beginsAsTheFieldIs();
    void followsTheField();
    void followsWhatHoldsTheField();
};

void Tst_FieldLabel::beginsAsTheFieldIs_data() {
    QTest::addColumn<bool>("enabled");
    QTest::newRow("enabled") << true;
    QTest::newRow("disabled") << false;
}

void Tst_FieldLabel::beginsAsTheFieldIs() {
    QFETCH(bool, enabled);
    QSpinBox field;
    field.setEnabled(enabled);
    const FieldLabel label("Copies"_qs, &field);
    QCOMPARE(label.text(), "Copies"_qs);
    QCOMPARE(label.isEnabled(), enabled);
}

void Tst_FieldLabel::followsTheField() {
    QSpinBox field;
    const FieldLabel label("Copies"_qs, &field);
    for (const bool enabled : {false, true}) {
        field.setEnabled(enabled);
        QCOMPARE(label.isEnabled(), enabled);
    }
}

void Tst_FieldLabel::followsWhatHoldsTheField() {
    QWidget group;
    QSpinBox field(&group);
    const FieldLabel label("Copies"_qs, &field);
    group.setEnabled(false);
    QVERIFY(!label.isEnabled());
}

QTEST_MAIN(Tst_FieldLabel)
#include "tst_fieldlabel.moc"
