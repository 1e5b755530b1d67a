#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

/// One page of the preferences: a column of titled sections.
///
/// A page edits its own widgets only; the settings change in `save` alone. GUI thread only.
class PreferencesPage : public QWidget {
    Q_OBJECT
public:
    explicit PreferencesPage(QWidget *parent = nullptr);

    /// Shows the settings.
    virtual void load() = 0;
    /// Writes what is shown to the settings; those are stored by whoever opened the dialog.
    virtual void save() = 0;
    /// Shows what the settings are in a fresh profile. Asks nothing and writes nothing.
    virtual void setDefaults() = 0;

protected:
    /// A new section below the others; rows are added to the layout that it returns.
    QVBoxLayout *addSection(const QString &title);
    /// A row of that section, to be filled from the left.
    static QHBoxLayout *addRow(QVBoxLayout *section);
    /// An explanation as wide as the page, in as many lines as it needs.
    QLabel *addExplanation(QVBoxLayout *section, const QString &text);

private:
    QVBoxLayout *m_column;
};
