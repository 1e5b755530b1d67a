#pragma once

#include <QSize>
#include <QTableWidget>

/// The sizes that can be captured at once, in two columns that fill from the top, the left one first.
///
/// The cells share the table's width and height. GUI thread only.
class SizePresetTable : public QTableWidget {
    Q_OBJECT
public:
    /// How many sizes there can be.
    static constexpr int Rows = 3;
    static constexpr int Columns = 2;
    static constexpr int Capacity = Rows * Columns;

    explicit SizePresetTable(QWidget *parent = nullptr);

    /// Shows these and no others; nothing is selected afterwards.
    void setPresets(const QList<QSize> &presets);
    bool hasSelection() const;
    /// Place in the list of the selected size; -1 without a selection and for an empty cell.
    int selectedPreset() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void updateGeometries() override;
};
