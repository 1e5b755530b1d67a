#pragma once

#include <QStringList>

/// Absolute paths of the captures that lie in the work folder, by name. Links are none: they lead out of it.
QStringList temporaryCaptures();

/// Everything in the work folder that a normal exit deletes: the captures, links among them.
QStringList filesToClear();

/// The files themselves, behind all links and detours of the paths; empty texts for those that are missing.
QStringList canonicalFiles(const QStringList &paths);

/// The paths that name none of the files `known`, however those are spelled.
QStringList withoutFiles(const QStringList &paths, const QStringList &known);

/// Deletes those files, wherever they lie, and the AI tools' folders from the work folder; leaves all
/// that lies in the work folder while another editor has it. Part of a normal exit only: after any other end
/// they are what the next start brings back.
void removeTemporaryFiles(const QStringList &files);
