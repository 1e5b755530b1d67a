#pragma once

#include <QStringList>

/// Absolute paths of the captures that lie in the work folder, by name. Links are none: they lead out of it.
QStringList temporaryCaptures();

/// Everything in the work folder that a normal exit deletes: the captures, links among them.
QStringList filesToClear();

/// Deletes those files and the AI tools' folders from the work folder, and leaves the pinned
/// captures; does nothing while another editor has the folder. Part of a normal exit only: after any other
/// end they are what the next start brings back.
void removeTemporaryFiles(const QStringList &files);
