#pragma once

#include <QCoreApplication>
#include <QString>

/// What the program tells of itself on standard output: the answers to `--help` and `--version`.
///
/// Only a start with one of the two and nothing else is a question. In any longer line they are words that
/// are no command, which the editor passes over, so that no line of a capture process changes its meaning.
class ProgramInformation {
    Q_DECLARE_TR_FUNCTIONS(ProgramInformation)
public:
    /// Whether this start asks such a question. To be asked before anything else of the editor exists.
    static bool isCall(int argc, char **argv);
    /// Answers it, in UTF-8, without a display and without a look at a running editor. The exit code: 0, or
    /// 1 when the answer could not be written.
    static int run(int argc, char **argv);

    /// The texts, in the language of the translator that is installed.
    static QString help();
    static QString version();
};
