#pragma once

#include "ipc/imagedecoder.h"

#include <QMap>
#include <QObject>
#include <QPixmap>

/// The captures of the session by key: an absolute path of a file of the work folder, or the name under
/// which the capture process handed bytes over in shared memory.
///
/// Keeps the image handed out last, and those that came through memory up to a budget of 1024 MB; files
/// are decoded when asked for. Bytes that are no image, or that claim more pixels than the budget holds,
/// give a null pixmap. One instance per process, GUI thread only.
class ImageProvider : public QObject {
    Q_OBJECT
public:
    static constexpr double BudgetMegabytes = 1024.0;

    static ImageProvider *instance();
    /// Tests only: forgets all images, leaving files alone.
    static void resetForTesting();

    /// Stores the image whose encoded bytes lie at the start of the shared block, `size` of them. Does
    /// nothing when the block is not of this user alone, or its lock is not to be had in time.
    void loadFromMemory(const QString &key, int size);
    QPixmap pixmap(const QString &path);
    /// Stores an image; false when the budget does not allow it. One that takes the place of another is
    /// counted in addition to that.
    bool insert(const QString &key, const QPixmap &pixmap);
    /// Forgets the image, and deletes the file when the path is an absolute one.
    bool remove(const QString &path);
    /// Forgets the image and leaves its file where it is.
    void forget(const QString &path);
    /// Forgets an image held in memory; false if there is none.
    bool dropFromMemory(const QString &path);
    /// Whether an image of that key is held in memory.
    bool isInMemory(const QString &key) const { return m_images.contains(key); }
    /// Whether the key is an absolute path of an existing file.
    bool isFile(const QString &path) const;

    double usedMegabytes() const { return m_usedMegabytes; }

private:
    ImageProvider() = default;
    void forgetCurrent();

    QPixmap m_currentPixmap;
    QString m_currentPath;
    QMap<QString, QPixmap> m_images;
    double m_usedMegabytes = 0;
};
