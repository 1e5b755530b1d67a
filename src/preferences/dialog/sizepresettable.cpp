#include "preferences/dialog/sizepresettable.h"

#include <QHeaderView>
#include <QScrollBar>

SizePresetTable::SizePresetTable(QWidget *parent) : QTableWidget(Rows, Columns, parent) {
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The tabulator leads on to the buttons.
    setTabKeyNavigation(false);
    for (QHeaderView *header : {horizontalHeader(), verticalHeader()}) {
        header->hide();
        header->setMinimumSectionSize(1);
    }
}

void SizePresetTable::setPresets(const QList<QSize> &presets) {
    clear();
    for (int index = 0; index < qMin(presets.size(), Capacity); ++index) {
        const QSize &size = presets[index];
        auto *cell = new QTableWidgetItem(QStringLiteral("%0 x %1").arg(size.width()).arg(size.height()));
        cell->setTextAlignment(Qt::AlignCenter);
        cell->setData(Qt::UserRole, index);
        setItem(index % Rows, index / Rows, cell);
    }
}

bool SizePresetTable::hasSelection() const {
    return selectionModel()->hasSelection();
}

int SizePresetTable::selectedPreset() const {
    const QModelIndexList selected = selectionModel()->selectedIndexes();
    const QVariant index = selected.isEmpty() ? QVariant() : selected.first().data(Qt::UserRole);
    return index.isValid() ? index.toInt() : -1;
}

void SizePresetTable::resizeEvent(QResizeEvent *event) {
    QTableWidget::resizeEvent(event);
    for (int column = 0; column < Columns; ++column)
        setColumnWidth(column, width() / Columns);
    // The line below the last row would double that of the frame.
    const int height = viewport()->height() + 1;
    for (int row = 0; row < Rows; ++row)
        setRowHeight(row, height * (row + 1) / Rows - height * row / Rows);
}

// The cells are wider than the room between the frame's lines, and nothing may scroll for that.
void SizePresetTable::updateGeometries() {
    QTableWidget::updateGeometries();
    horizontalScrollBar()->setMaximum(0);
    verticalScrollBar()->setMaximum(0);
}
