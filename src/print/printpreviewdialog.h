#pragma once

#include "print/pagelayout.h"
#include "print/previewpicture.h"

#include <QDialog>
#include <QPixmap>
#include <QTimer>
#include <QVector>

class NativePrinter;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QSpinBox;
class QVBoxLayout;

/// Asks how images are printed, shows what comes of it, and prints them, one a page.
///
/// Give it images and run it with `exec`; there is nothing to do with the result. Starts with what was used
/// at the last printing; only printing stores anything. Without a printer it opens too, with nothing but
/// Cancel. Printers and settings that the printing system tells late are shown when they come. GUI thread
/// only.
class PrintPreviewDialog : public QDialog {
    Q_OBJECT
public:
    explicit PrintPreviewDialog(QWidget *parent = nullptr);
    ~PrintPreviewDialog() override;

    void addImage(const QPixmap &pixmap);

signals:
    /// Something changed that the preview shows.
    void updatePreview();

protected:
    void resizeEvent(QResizeEvent *event) override;

private slots:
    void onChangePrinter(const QString &name);
    void onLateAnswer();
    void onChangePageSize(int index);
    void onClickPrinterSettings();
    void onChangeOrientationButton(int id);
    void onChangeScaleButton(int id);
    void onChangeCopies(int copies);
    void onChangeGrayscale(int state);
    void onClickToPrevPage();
    void onClickToNextPage();
    void onClickPrint();
    void onClickCancel();
    void onUpdatePreview();

private:
    void buildForm();
    QWidget *buildSettings();
    void addPrinterRows(QVBoxLayout *column);
    QWidget *buildOrientation();
    QWidget *buildScale();
    QWidget *buildCentering();
    QWidget *buildMargins();
    QWidget *buildMore();
    QWidget *buildPreview();
    void addPages(QVBoxLayout *column);
    void addButtons(QVBoxLayout *column);
    void keepWheelAway();
    void addKeys();
    void connectControls();

    void addPrinters(const QStringList &names);
    void choosePrinter();
    void fillPapers();
    void awaitAnswers();

    bool loadSettings();
    void loadPrinterSettings();
    void loadLayout();
    void saveSettings() const;
    void refreshControls();
    void enableControls();
    void updateMarginRanges();
    PageSettings pageSettings() const;
    void evenScaleRows(int designed);
    void onChangeUiScale(double scale);

    NativePrinter *m_printer = nullptr;
    QTimer m_updateTimer;
    QTimer m_lateTimer;            ///< runs while an answer of the printing system is awaited
    bool m_areSettingsDue = false; ///< the printer's remembered ones, once it is read
    PreviewPicture m_preview;
    QPixmap m_previewPixmap;
    QVector<QPixmap> m_images;
    int m_pageIndex = 0;
    float m_uiScale = 1.0F;

    QScrollArea *m_settings;
    QVBoxLayout *m_settingsLayout;
    QGridLayout *m_scaleLayout;
    QComboBox *m_printers;
    QPushButton *m_printerSettings;
    QComboBox *m_pageSizes;
    QSpinBox *m_copies;
    QButtonGroup *m_orientation;
    QRadioButton *m_orientationPortrait;
    QRadioButton *m_orientationLandscape;
    QButtonGroup *m_scale; ///< by `PageSettings::Scale`
    QRadioButton *m_scaleFit;
    QRadioButton *m_scaleActual;
    QRadioButton *m_scaleCustom;
    QSpinBox *m_scaleCustomValue;
    QCheckBox *m_centerHorizontal;
    QCheckBox *m_centerVertical;
    QSpinBox *m_leftMarginValue;
    QSpinBox *m_topMarginValue;
    QSpinBox *m_rightMarginValue;
    QSpinBox *m_bottomMarginValue;
    QCheckBox *m_printGrayscale;
    QCheckBox *m_printBorder;
    QLabel *m_previewLabel;
    QLabel *m_pages;
    QPushButton *m_toPrevPage;
    QPushButton *m_toNextPage;
    QPushButton *m_print;
    QPushButton *m_cancel;
};
