#pragma once

#include "preferences/dialog/generalpreferenceswidget.h"
#include "preferences/dialog/historypreferenceswidget.h"
#include "preferences/dialog/imagepreferenceswidget.h"
#include "preferences/dialog/shortcutpreferenceswidget.h"

#include <QDialog>
#include <QVector>

class QListWidget;
class QListWidgetItem;
class QStackedWidget;

/// The one window in which the user edits the program's options.
///
/// Nothing reaches the settings before OK, and nothing reaches their file: whoever opened the dialog stores
/// them when it ends with `QDialog::Accepted`. GUI thread only.
class PreferencesDialog : public QDialog {
    Q_OBJECT
public:
    explicit PreferencesDialog(QWidget *parent = nullptr);
    ~PreferencesDialog() override;

    /// Shows the settings on all pages.
    void loadAll();
    /// Shows the page at that place of the list; a number beyond it the first.
    void selectPage(int index);
    /// For the message to the capture process; see `GeneralPreferencesWidget`.
    bool hideButtonsTurnedOn() const { return m_general.hideButtonsTurnedOn(); }

private slots:
    void onItemSelectionChanged();
    void onOK();
    void onCancel();
    void onSetDefaultThisPage();
    void onSetDefaultAllPages();

private:
    struct Page {
        PreferencesPage *widget;
        QListWidgetItem *item;
    };

    void buildForm();
    void addPages();
    QWidget *buildButtons();
    /// The page of the selected entry, or null.
    PreferencesPage *selectedPage() const;
    bool confirms(const QString &question);

    QListWidget *m_preferencesList;
    QStackedWidget *m_preferencesPages;
    GeneralPreferencesWidget m_general;
    ImagePreferencesWidget m_image;
    ShortcutPreferencesWidget m_shortcut;
    HistoryPreferencesWidget m_history;
    QVector<Page> m_pages; ///< in the order of the list
};
