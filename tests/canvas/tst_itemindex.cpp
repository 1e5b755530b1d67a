#include "canvas/itemindex.h"

#include <QGraphicsRectItem>
#include <QRandomGenerator>
#include <QtTest>

#include <vector>

using Items = QVector<QGraphicsItem *>;

class Tst_ItemIndex : public QObject {
    Q_OBJECT
private slots:
    void init();
    void findsTheTopmostFirst();
    void findsEachOnce();
    void touchingIsNoMeeting();
    void itemWithoutExtentMeetsEverything();
    void itemWithEmptyExtentMeetsNothing();
    void laterExtentCounts();
    void removedItemIsNotFound();
    void itemThatComesBackIsOnTop();
    void forgetsWhoIsGone();
    void itemOfAnySizeTakesFewCells_data();
    void itemOfAnySizeTakesFewCells();
    void agreesWithASearchOfAll_data();
    void agreesWithASearchOfAll();

private:
    QGraphicsItem *item(int number) { return &m_items.at(number); }
    void put(int number, const QRectF &extent);

    std::vector<QGraphicsRectItem> m_items{300};
    ItemIndex m_index;
};

void Tst_ItemIndex::init() {
    m_index = ItemIndex();
}

void Tst_ItemIndex::put(int number, const QRectF &extent) {
    m_index.add(item(number));
    m_index.place(item(number), extent);
}

void Tst_ItemIndex::findsTheTopmostFirst() {
    put(2, QRectF(0, 0, 50, 50));
    put(0, QRectF(20, 20, 50, 50));
    put(1, QRectF(40, 40, 50, 50));
    QCOMPARE(m_index.size(), 3);
    QCOMPARE(m_index.meeting(QRectF(45, 45, 2, 2)), (Items{item(1), item(0), item(2)}));
    QCOMPARE(m_index.meeting(QRectF(10, 10, 2, 2)), Items{item(2)});
    QCOMPARE(m_index.meeting(QRectF(95, 10, 2, 2)), Items());
}

void Tst_ItemIndex::findsEachOnce() {
    put(0, QRectF(-5000, -3000, 10000, 6000));
    put(1, QRectF(-10, -10, 2000, 20));
    QCOMPARE(m_index.meeting(QRectF(-1000, -1000, 4000, 4000)), (Items{item(1), item(0)}));
}

void Tst_ItemIndex::touchingIsNoMeeting() {
    put(0, QRectF(100, 100, 156, 156)); // ends where a cell may end
    QCOMPARE(m_index.meeting(QRectF(256, 120, 3, 3)), Items());
    QCOMPARE(m_index.meeting(QRectF(255, 120, 3, 3)), Items{item(0)});
    QCOMPARE(m_index.meeting(QRectF(97, 120, 3, 3)), Items());
}

void Tst_ItemIndex::itemWithoutExtentMeetsEverything() {
    put(0, QRectF(0, 0, 10, 10));
    m_index.add(item(1));
    put(2, QRectF(0, 0, 10, 10));
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), (Items{item(2), item(1), item(0)}));
    QCOMPARE(m_index.meeting(QRectF(9000, -50, 1, 1)), Items{item(1)});
}

void Tst_ItemIndex::itemWithEmptyExtentMeetsNothing() {
    put(0, QRectF());
    QCOMPARE(m_index.size(), 1);
    QCOMPARE(m_index.meeting(QRectF(-1, -1, 3, 3)), Items());
}

void Tst_ItemIndex::laterExtentCounts() {
    put(0, QRectF(0, 0, 10, 10));
    m_index.place(item(0), QRectF(600, 0, 10, 10));
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), Items());
    QCOMPARE(m_index.meeting(QRectF(605, 5, 1, 1)), Items{item(0)});
    m_index.place(item(1), QRectF(0, 0, 10, 10)); // never added
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), Items());
}

void Tst_ItemIndex::removedItemIsNotFound() {
    put(0, QRectF(0, 0, 600, 600));
    m_index.add(item(1));
    m_index.remove(item(0));
    m_index.remove(item(1));
    m_index.remove(item(2));
    QCOMPARE(m_index.size(), 0);
    QCOMPARE(m_index.meeting(QRectF(5, 5, 500, 500)), Items());
}

void Tst_ItemIndex::itemThatComesBackIsOnTop() {
    put(0, QRectF(0, 0, 10, 10));
    put(1, QRectF(0, 0, 10, 10));
    m_index.remove(item(0));
    put(0, QRectF(0, 0, 10, 10));
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), (Items{item(0), item(1)}));
}

void Tst_ItemIndex::forgetsWhoIsGone() {
    put(0, QRectF(0, 0, 10, 10));
    put(1, QRectF(0, 0, 10, 10));
    m_index.keepOnly({item(2), item(1)});
    QCOMPARE(m_index.size(), 1);
    QVERIFY(m_index.contains(item(1)));
    QVERIFY(!m_index.contains(item(0)) && !m_index.contains(item(2)));
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), Items{item(1)});
}

void Tst_ItemIndex::itemOfAnySizeTakesFewCells_data() {
    QTest::addColumn<QRectF>("extent");
    QTest::newRow("a text of the size 5000") << QRectF(-5e4, -5e4, 1e5, 1e5);
    QTest::newRow("very long") << QRectF(-10, 0, 2e6, 10);
}

void Tst_ItemIndex::itemOfAnySizeTakesFewCells() {
    QFETCH(QRectF, extent);
    put(0, QRectF(0, 0, 10, 10));
    put(1, extent);
    put(2, QRectF(0, 0, 10, 10));
    QCOMPARE(m_index.cellsInUse(), 1);
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), (Items{item(2), item(1), item(0)}));
    QCOMPARE(m_index.meeting(QRectF(extent.right() - 4, 5, 3, 3)), Items{item(1)});
    // Moved, made small, made large again, taken away.
    m_index.place(item(1), extent.translated(extent.width(), 0));
    QCOMPARE(m_index.meeting(QRectF(extent.right() + 10, 5, 3, 3)), Items{item(1)});
    m_index.place(item(1), QRectF(0, 0, 20, 20));
    QCOMPARE(m_index.meeting(QRectF(15, 15, 1, 1)), Items{item(1)});
    QCOMPARE(m_index.meeting(QRectF(30, 5, 1, 1)), Items());
    m_index.place(item(1), extent);
    m_index.remove(item(1));
    QCOMPARE(m_index.meeting(QRectF(5, 5, 1, 1)), (Items{item(2), item(0)}));
}

void Tst_ItemIndex::agreesWithASearchOfAll_data() {
    QTest::addColumn<int>("largest");
    QTest::newRow("small items") << 40;
    QTest::newRow("items of several cells") << 900;
    QTest::newRow("items across everything") << 5000;
    QTest::newRow("too large for cells") << 60000;
}

void Tst_ItemIndex::agreesWithASearchOfAll() {
    QFETCH(int, largest);
    QRandomGenerator random(7);
    const auto somewhere = [&random](int side) {
        return QRectF(random.bounded(4000) - 1000, random.bounded(3000) - 1000, 1 + random.bounded(side),
                      1 + random.bounded(side));
    };
    QVector<QPair<QGraphicsItem *, QRectF>> plain; // lowest first
    for (int step = 0; step < 3000; ++step) {
        QGraphicsItem *one = item(random.bounded(int(m_items.size())));
        const auto known =
            std::find_if(plain.begin(), plain.end(), [one](const auto &entry) { return entry.first == one; });
        if (known == plain.end()) {
            const QRectF extent = somewhere(largest);
            plain.append({one, extent});
            m_index.add(one);
            m_index.place(one, extent);
        } else {
            plain.erase(known);
            m_index.remove(one);
        }
        const QRectF area = somewhere(random.bounded(2) ? 3 : 700);
        Items expected;
        for (const auto &entry : qAsConst(plain)) {
            if (entry.second.intersects(area))
                expected.prepend(entry.first);
        }
        QCOMPARE(m_index.meeting(area), expected);
        QCOMPARE(m_index.size(), plain.size());
    }
}

QTEST_MAIN(Tst_ItemIndex)
#include "tst_itemindex.moc"
