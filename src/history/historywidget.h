#pragma once

#include <QWidget>

/// The side panel that lists every capture of the session.
class HistoryWidget : public QWidget {
    Q_OBJECT
public:
    explicit HistoryWidget(QWidget *parent = nullptr);
};
