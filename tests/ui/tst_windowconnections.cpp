#include "ui/windowconnections.h"

#include <QtTest>

#include <memory>

class Tst_WindowConnections : public QObject {
    Q_OBJECT
private slots:
    void newConnectionReplacesTheFormer();
    void eachWindowHasItsOwn();
    void whatGoesIsForgotten();
    void windowMayOutliveThem();
};

namespace {
QMetaObject::Connection counting(QObject *sender, int *count) {
    return QObject::connect(sender, &QObject::objectNameChanged, sender, [count] { ++*count; });
}
} // namespace

void Tst_WindowConnections::newConnectionReplacesTheFormer() {
    WindowConnections connections;
    QObject window;
    int first = 0;
    int second = 0;
    connections.replace(&window, counting(&window, &first));
    connections.replace(&window, counting(&window, &second));
    window.setObjectName(QStringLiteral("a"));
    QCOMPARE(first, 0);
    QCOMPARE(second, 1);
    QCOMPARE(connections.count(), 1);
}

void Tst_WindowConnections::eachWindowHasItsOwn() {
    WindowConnections connections;
    QObject one;
    QObject other;
    int ofOne = 0;
    int ofOther = 0;
    connections.replace(&one, counting(&one, &ofOne));
    connections.replace(&other, counting(&other, &ofOther));
    one.setObjectName(QStringLiteral("a"));
    QCOMPARE(ofOne, 1);
    QCOMPARE(ofOther, 0);
    QCOMPARE(connections.count(), 2);
}

void Tst_WindowConnections::whatGoesIsForgotten() {
    WindowConnections connections;
    QObject stays;
    int count = 0;
    connections.replace(&stays, counting(&stays, &count));
    for (int i = 0; i < 3; ++i) {
        QObject window;
        connections.replace(&window, counting(&window, &count));
        connections.replace(&window, counting(&window, &count));
        QCOMPARE(connections.count(), 2);
    }
    QCOMPARE(connections.count(), 1);
    stays.setObjectName(QStringLiteral("a"));
    QCOMPARE(count, 1);
}

void Tst_WindowConnections::windowMayOutliveThem() {
    auto window = std::make_unique<QObject>();
    int count = 0;
    {
        WindowConnections connections;
        connections.replace(window.get(), counting(window.get(), &count));
    }
    window->setObjectName(QStringLiteral("a"));
    QCOMPARE(count, 1);
    window.reset();
}

QTEST_GUILESS_MAIN(Tst_WindowConnections)
#include "tst_windowconnections.moc"
