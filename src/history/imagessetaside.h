#pragma once

#include <QString>
#include <QVector>

class Editor;

/// The untouched pictures of captures whose own file is about to be written over, as new private files in the
/// work folder; in memory where that takes none or another editor has it.
///
/// Made before the write. `replaceOriginals`, after it, gives them to the captures; without that they are
/// deleted again and everything is as before. The captures are borrowed and must stay meanwhile. GUI thread
/// only.
class ImagesSetAside {
public:
    explicit ImagesSetAside(const QVector<Editor *> &captures);
    ~ImagesSetAside();
    ImagesSetAside(const ImagesSetAside &) = delete;
    ImagesSetAside &operator=(const ImagesSetAside &) = delete;

    /// Whether all pictures could be kept; if not, nothing may be written over them.
    bool areWhole() const { return m_areWhole; }
    /// Lets the captures go on with their copies and leaves the files that they had to others.
    void replaceOriginals();

private:
    struct Copy {
        Editor *editor;
        QString key;
    };

    QVector<Copy> m_copies;
    bool m_areWhole = true;
};
