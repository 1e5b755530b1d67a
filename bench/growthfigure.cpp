// usage: growth-figure WHAT UNIT SIZE=VALUE…
//
// For a script that has measured it: prints the figure of what may grow linearly.

#include "figures.h"

#include <QCoreApplication>

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    std::vector<figures::Point> points;
    for (const QString &point : arguments.mid(3))
        points.push_back({point.section(QLatin1Char('='), 0, 0).toDouble(),
                          point.section(QLatin1Char('='), 1).toDouble()});
    if (points.size() < 4)
        qFatal("usage: growth-figure WHAT UNIT SIZE=VALUE…, four points or more");
    figures::printGrowth(arguments.at(1), qPrintable(arguments.at(2)), points, figures::Linear);
    return 0;
}
