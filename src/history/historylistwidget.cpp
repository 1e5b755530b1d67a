#include "history/historylistwidget.h"

HistoryListWidget::HistoryListWidget(QWidget *parent) : QListWidget(parent) {}
