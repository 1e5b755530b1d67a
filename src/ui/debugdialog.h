#pragma once

#include <QDialog>

class QButtonGroup;
class QPushButton;

/// The hidden panel that support asks for: how much the log writes, the log itself, and by which road the
/// capture process hands its pictures over.
class DebugDialog : public QDialog {
    Q_OBJECT
public:
    explicit DebugDialog(QWidget *parent = nullptr);

public slots:
    void onChangeLogLevel();
    void onOpenLog();
    void onChangeFileMemoryMode();
    void onOk();

signals:
    /// Pictures are wanted through memory (true) or as files; to be told to the capture process.
    void fileMemoryModeChanged(bool memory);

private:
    QWidget *buildLogLevels();
    QWidget *buildFeatures();
    QWidget *buildButtons();
    void showFileMemoryMode();

    QButtonGroup *m_levels;
    QPushButton *m_fileMemoryMode;
    int m_level;
};
