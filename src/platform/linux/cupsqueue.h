#pragma once

#include "platform/linux/cupspresets.h"
#include "platform/printer.h"

#include <QByteArray>

#include <memory>
#include <mutex>
#include <vector>

/// What a queue offers, read once. Its texts are not translated: a thread that is left to itself reads it,
/// and the program's translations may be gone by then.
struct CupsQueueDescription {
    /// Hundredths of a millimetre that the printer cannot reach, on the upright sheet.
    struct Margins {
        int left, top, right, bottom;
    };
    struct Media {
        PrinterPaper paper;
        QByteArray standardName; ///< empty where the queue names none
        Margins margins;
        bool needsBorderless = false; ///< nothing in the paper's name says that it has no margins
    };

    QVector<Media> media;
    PrinterMode mode;
    PrinterChoices choices;
    int resolution;      ///< device pixels per inch
    CupsPresets presets; ///< of the user, of which the mode tells what it has a place for

    const Media *mediaOf(quint16 paperId) const;
};

/// A queue of a CUPS server. Each call connects anew and may wait for the server as long as the network's
/// limits allow, so none belongs on the GUI thread. Any thread; one call at a time goes through.
class CupsQueue {
public:
    struct Entry {
        QString name;
        bool isDefault;
    };
    /// All queues that the server knows or sees; empty when it does not answer.
    static std::vector<Entry> list();
    /// Null when there is no such queue.
    static std::shared_ptr<CupsQueue> open(const QString &name, const CupsPresets &presets);
    ~CupsQueue();
    CupsQueue(const CupsQueue &) = delete;
    CupsQueue &operator=(const CupsQueue &) = delete;

    const CupsQueueDescription &description() const { return m_description; }
    /// The number of the new job; 0 when the queue takes none. Of `options` goes what the queue supports; the
    /// user's presets go as they are, as only the driver may know them.
    int createJob(const QByteArray &title, const CupsOptions &options);
    bool sendDocument(int job, const QByteArray &title, const QByteArray &pdf);
    void cancelJob(int job);

private:
    class Native;
    explicit CupsQueue(std::unique_ptr<Native> native);

    std::mutex m_mutex;
    std::unique_ptr<Native> m_native;
    CupsQueueDescription m_description;
};
