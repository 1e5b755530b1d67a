#pragma once

#include "platform/printer.h"

#include <QByteArray>

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

using CupsOptions = std::vector<std::pair<QByteArray, QByteArray>>;

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
    int resolution;         ///< device pixels per inch
    quint32 userFields = 0; ///< the mode's fields that the user has preset, unknown to the server

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
    static std::shared_ptr<CupsQueue> open(const QString &name);
    ~CupsQueue();
    CupsQueue(const CupsQueue &) = delete;
    CupsQueue &operator=(const CupsQueue &) = delete;

    const CupsQueueDescription &description() const { return m_description; }
    /// The number of the new job; 0 when the queue takes none.
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
