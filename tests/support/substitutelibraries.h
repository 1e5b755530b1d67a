#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A folder with libraries of the maker's that a test has put there, and the calls that they got.
///
/// As long as it lives the libraries' throw-away makers are trusted by this process, and libraries are tried
/// by a small program instead of by the test.
class SubstituteLibraries {
public:
    enum class Signature { Good, None, OfAnother, Broken };

    SubstituteLibraries();
    ~SubstituteLibraries();
    SubstituteLibraries(const SubstituteLibraries &) = delete;
    SubstituteLibraries &operator=(const SubstituteLibraries &) = delete;

    QString folder() const { return m_folder.path(); }
    /// Puts a library that `tindra_substitute_library(FILE baseName …)` built into the folder, or another
    /// folder, and returns its path.
    QString add(const QString &baseName, Signature signature = Signature::Good) const;
    QString addTo(const QString &folder, const QString &baseName,
                  Signature signature = Signature::Good) const;
    /// What the libraries have recorded by `recordCall` so far, in order.
    QStringList calls() const;
    void forgetCalls() const;

private:
    QString callsPath() const;

    QTemporaryDir m_folder;
};
