#pragma once

#include <QPoint>
#include <QString>

/// One command line, parsed completely before anything of it is carried out.
///
/// Command words count in any case; numbers that are none read as 0; words that are no command, the
/// program's own path among them, are passed over. A command that lacks an argument makes the whole line
/// void: `parseFailed` is set and everything else keeps its default.
struct CommandLine {
    bool parseFailed = false;
    bool close = false;
    bool kill = false;
    bool show = false;
    bool hide = false;
    bool skip = false;
    bool memory = false;
    bool about = false;
    bool preference = false;
    bool updatePref = false;
    bool autoSave = false;
    bool save = false;
    QString path;       ///< file to add, or the key of the image in shared memory
    QPoint point;       ///< of the capture, in screen pixels
    int memorySize = 0; ///< bytes
    int preferencePage = 0;
    int prefId = 0;
    bool prefValue = false;

    /// What a line asks for; of several only one happens.
    enum class MainAction { None, Close, Kill, Show, Hide, Preference, About, UpdatePref, AddImage };
    /// What follows the main action, also when that is `None`.
    enum class SaveAction { None, AutoSave, Save };

    static CommandLine parse(const QString &line);

    /// The first in the order of the enumeration that the line asks for.
    MainAction mainAction() const;
    SaveAction saveAction() const;
};
