#pragma once

class QString;

/// The desktop's file manager.
class FileManager {
public:
    virtual ~FileManager() = default;

    /// Opens the file's folder with the file selected; false when no file manager took the request.
    virtual bool showFile(const QString &path) = 0;
};
