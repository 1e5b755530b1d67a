// usage: bench_growth captures|items|segments|pixels
//
// How the cost of what users do grows with the number of captures, of items over a capture, of segments of a
// stroke, and with the pixels of a capture: processor time of all threads, a curve a line.

#include "growth.h"
#include "preferences/tindrapreferences.h"

#include <QApplication>

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    TindraPreferences::instance()->Init();
    const QString with = application.arguments().value(1);
    if (with == QLatin1String("captures"))
        growthWithCaptures();
    else if (with == QLatin1String("items"))
        growthWithItems();
    else if (with == QLatin1String("segments"))
        growthWithSegments();
    else if (with == QLatin1String("pixels"))
        growthWithPixels();
    else
        qFatal("usage: bench_growth captures|items|segments|pixels");
    return 0;
}
