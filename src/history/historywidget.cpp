#include "history/historywidget.h"

HistoryWidget::HistoryWidget(QWidget *parent) : QWidget(parent) {}
