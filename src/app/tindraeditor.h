#pragma once

#include <QMainWindow>

/// The one top-level window: takes command lines, owns toolbar, canvas and recent captures, and decides
/// between hiding and exiting. Not shown by its constructor. GUI thread only.
class TindraEditor : public QMainWindow {
    Q_OBJECT
public:
    explicit TindraEditor(QWidget *parent = nullptr);

public slots:
    /// Parses one command line completely and then carries out at most one main action and the save actions.
    void treatCommand(QString cmdline);

signals:
    /// A command line arrived, by whatever road; a direct call of `treatCommand`.
    void commandArrived(QString cmdline);
};
