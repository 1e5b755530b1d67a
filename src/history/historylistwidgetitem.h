#pragma once

#include "history/history.h"

#include <QListWidgetItem>

/// A row of the list; holds its record as data of the role `Qt::UserRole`.
class HistoryListWidgetItem : public QListWidgetItem {
public:
    HistoryListWidgetItem() = default;

    void setRecord(const History &record) { setData(Qt::UserRole, QVariant::fromValue(record)); }
    /// A copy of the record.
    History record() const { return data(Qt::UserRole).value<History>(); }
    /// The scene of the record; the row owns it.
    Editor *editor() const { return record().editor(); }
};
