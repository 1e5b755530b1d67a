#pragma once

#include <QString>

/// What is known of a size of paper by its standard name, such as "iso_a4_210x297mm".
struct KnownPaper {
    quint16 id; ///< the same for all printers, always below 256
    QString name;
};

/// Id and name of a common paper; id 0 for any other.
KnownPaper knownPaper(const QString &standardName);
