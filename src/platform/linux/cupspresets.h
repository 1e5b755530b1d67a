#pragma once

#include <QByteArray>
#include <QString>

#include <utility>
#include <vector>

/// Names and values, as the printing system writes them.
using CupsOptions = std::vector<std::pair<QByteArray, QByteArray>>;

/// What the user has preset for a queue of his, in the files of the CUPS library: the server knows nothing of
/// it, and the library tells it only mixed with what it heard from the server.
///
/// An option has a standard name, such as "sides", and drivers have names of their own for some: "Duplex".
/// A preset may stand under either. Any thread, except for `read`.
class CupsPresets {
public:
    CupsPresets() = default;
    /// Of the text of such a file; what stands later counts.
    CupsPresets(const QByteArray &text, const QByteArray &queue);

    /// Reads the files of the machine and of the user. GUI thread: the names of files pass through a codec
    /// that a thread which outlives the program would find gone.
    static CupsPresets read(const QString &queue);

    /// By the standard name, in standard words where a driver's are known and in numbers where the standard
    /// has some; empty without a preset.
    QByteArray value(const char *option) const;
    /// What goes with a job that names `named` itself: all others, whatever the driver calls them. Of a paper
    /// that is described part by part, the tray and the kind go with a job that names its size.
    CupsOptions besides(const CupsOptions &named) const;
    /// The paper `media` with the words of the preset one that name no size, but a tray or a kind of paper.
    /// Those words alone where `media` is empty.
    QByteArray withTray(const QByteArray &media) const;

private:
    QByteArray given(const char *option) const;

    CupsOptions m_options;
};
