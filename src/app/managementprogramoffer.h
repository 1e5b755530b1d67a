#pragma once

#include <QCoreApplication>

class QWidget;

/// Offers the user to install the management program of the product family, which has a page for that.
class ManagementProgramOffer {
    Q_DECLARE_TR_FUNCTIONS(ManagementProgramOffer)
public:
    /// Where another product of the family is installed without the program, offers it.
    static void makeIfMissed(QWidget *window);
    /// Asks that question, and opens the page of the download if the answer is yes.
    static void make(QWidget *window, const QString &question);
};
