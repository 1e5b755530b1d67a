#pragma once

#include <QListWidget>

/// The list of captures inside the panel.
class HistoryListWidget : public QListWidget {
    Q_OBJECT
public:
    explicit HistoryListWidget(QWidget *parent = nullptr);
};
