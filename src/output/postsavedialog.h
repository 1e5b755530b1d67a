#pragma once

#include "ui/messagedialog.h"

/// Tells where a capture was saved and offers to open it.
class PostSaveDialog : public MessageDialog {
    Q_OBJECT
public:
    enum Type { OneImage = 0, Batch = 2 };
    enum Result { OpenImage = 0, OpenFolder = 1, Closed = 2 };

    explicit PostSaveDialog(Type type, QWidget *parent = nullptr);

    void setSavedPath(const QString &path);
    void setCount(int count);
    bool isSkipChecked() const;

private slots:
    void onClickOpenImage();
    void onClickOpenFolder();

private:
    Type m_type;
    QString m_path;
};
