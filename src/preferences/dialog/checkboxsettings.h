#pragma once

#include "preferences/tindrapreferences.h"

#include <QVector>

class QCheckBox;

/// The check boxes of a page and the settings that they stand for.
///
/// The boxes are borrowed. GUI thread only.
class CheckBoxSettings {
public:
    void add(QCheckBox *box, TindraPreferences::Id id);

    void load() const;
    void save() const;
    /// Sets the boxes to what the settings are in a fresh profile.
    void setDefaults() const;

private:
    struct Entry {
        QCheckBox *box;
        TindraPreferences::Id id;
    };
    QVector<Entry> m_entries;
};
