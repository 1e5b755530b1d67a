#pragma once

#include <QCoreApplication>
#include <QTimer>

/// Calls `work` in the event loop of a program that is told to end so many milliseconds later, and comes back
/// when that loop has ended. A quit outside of it would end every later loop of the test as well.
template <class Work> void inProgramThatEnds(int milliseconds, Work work) {
    QTimer::singleShot(0, QCoreApplication::instance(), work);
    QTimer::singleShot(milliseconds, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
}
