#pragma once

class QString;

/// The folder that the program was installed to, where its optional libraries and their settings stand too.
QString programFolder();

/// Tests only: another folder instead; empty brings the program's own back.
void setProgramFolder(const QString &path);

/// Path of the optional library of that name, "Ostler" for example, in the program's folder.
QString libraryInProgramFolder(const QString &baseName);
