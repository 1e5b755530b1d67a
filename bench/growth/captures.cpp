#include "app/tindraeditor.h"
#include "growth.h"
#include "history/historybuttonwidget.h"
#include "history/historylistwidget.h"
#include "history/historylistwidgetitem.h"
#include "history/historywidget.h"
#include "ipc/imageprovider.h"
#include "measuring.h"
#include "preferences/tindrapreferences.h"

#include <QApplication>
#include <QPushButton>

#include <algorithm>
#include <functional>
#include <map>

namespace {

constexpr QSize CaptureSize(640, 360);
constexpr int Counts[] = {1, 2, 5, 10, 20, 50, 100};
constexpr int Rounds = 5;
/// Milliseconds after which everything that follows an action is done, thumbnails included.
constexpr int Done = 100;
/// And after which that is so for many.
constexpr int AllDone = 1500;

/// The main window with its list of captures.
class Window {
public:
    Window();
    /// The processor time of the one that makes them `count`.
    double addUpTo(int count);
    void empty();
    double switching();
    double selecting();
    double checking();
    double pinning();
    double removing();

private:
    QString nextCapture();
    void clickSelectMode() {
        m_window.findChild<QPushButton *>(QStringLiteral("historySelectMode_"))->click();
    }
    static double costOf(const std::function<void()> &action) {
        settle(Done);
        const double begin = processorMs();
        action();
        settle(Done);
        return processorMs() - begin;
    }

    TindraEditor m_window;
    HistoryWidget *m_panel = m_window.findChild<HistoryWidget *>();
    HistoryListWidget *m_list = m_window.findChild<HistoryListWidget *>();
    int m_lastKey = 0;
};

Window::Window() {
    if (!m_panel || !m_list)
        qFatal("no list");
    m_window.showMaximized();
    settle(1000);
}

QString Window::nextCapture() {
    const QString key = QStringLiteral("capture %1").arg(++m_lastKey);
    ImageProvider::instance()->insert(key, QPixmap::fromImage(patternedCapture(CaptureSize)));
    return key;
}

double Window::addUpTo(int count) {
    while (m_list->count() < count - 1)
        m_window.AddNewPixmap(nextCapture(), QPoint(), true);
    settle(AllDone);
    const QString key = nextCapture();
    return costOf([&] { m_window.AddNewPixmap(key, QPoint(), true); });
}

void Window::empty() {
    while (m_list->count() > 0)
        m_panel->removeOldestImage();
}

/// To the row below and back.
double Window::switching() {
    return costOf([&] {
               m_panel->selectNextRow();
               settle(Done);
               m_panel->selectPreviousRow();
           }) /
           2;
}

/// Select mode, on and off.
double Window::selecting() {
    const double cost = costOf([&] { clickSelectMode(); });
    clickSelectMode();
    return cost;
}

double Window::checking() {
    clickSelectMode();
    const double cost = costOf([&] {
        auto *check =
            m_list->rowWidget(m_list->rowItem(0))->findChild<QPushButton *>(QStringLiteral("selectButton_"));
        check->click();
    });
    clickSelectMode();
    return cost;
}

double Window::pinning() {
    const double cost = costOf([&] { m_list->rowWidget(m_list->rowItem(0))->setPinned(true); });
    m_list->rowWidget(m_list->rowItem(0))->setPinned(false);
    return cost;
}

/// The oldest goes, as when the list is full.
double Window::removing() {
    return costOf([&] { m_panel->removeOldestImage(); });
}

} // namespace

void growthWithCaptures() {
    std::map<int, QVector<double>> insert, change, select, check, pin, remove;
    Window window;
    for (int round = 0; round < Rounds; ++round) {
        for (const int count : Counts) {
            insert[count].append(window.addUpTo(count));
            if (count > 1)
                change[count].append(window.switching());
            select[count].append(window.selecting());
            check[count].append(window.checking());
            pin[count].append(window.pinning());
            remove[count].append(window.removing());
        }
        window.empty();
    }
    const auto print = [](const char *what, const std::map<int, QVector<double>> &costs, double bound) {
        Curve curve(QLatin1String(what), bound);
        for (const auto &[count, measured] : costs)
            curve.add(count, *std::min_element(measured.begin(), measured.end()));
        curve.print();
    };
    print("insertion of a capture into captures", insert, figures::Flat);
    print("switch to another of captures", change, figures::Flat);
    print("start of select mode with captures", select, figures::Linear);
    print("check of a row of captures", check, figures::Flat);
    print("pin of one of captures", pin, figures::Linear);
    print("removal of the oldest of captures", remove, figures::Flat);
}
