#pragma once

#include <QCoreApplication>
#include <QStringList>

#include <memory>

class MessageDialog;

/// Tells the user which of his files could not be opened, on behalf of another program that has no window.
///
/// The names come through standard input, each behind the one before and a zero byte. The message is a
/// process of its own: no editor needs to run, and one that runs is not disturbed.
class UnopenedFiles {
    Q_DECLARE_TR_FUNCTIONS(UnopenedFiles)
public:
    /// Whether this start is such a message. To be asked before anything else of the editor exists.
    static bool isCall(int argc, char **argv);
    /// Shows the message until the user has closed it; nothing without a name. The exit code.
    static int run(int argc, char **argv);

    /// How the message calls a file, or a folder that was given for one: without the folders above it.
    static QString nameOf(const QString &path);
    /// The message about these files, of which so many are named as fit; they have no folders.
    static std::unique_ptr<MessageDialog> message(const QStringList &names);
};
